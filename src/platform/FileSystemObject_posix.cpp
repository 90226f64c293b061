#include "platform/FileSystemObject.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "platform/FileCopy_posix.h"
#include "platform/FileProperties_posix.h"
#include "platform/FolderListing_posix.h"
#include "platform/PendingFile_posix.h"
#include "platform/Posix.h"
#include "platform/TextFile_posix.h"

namespace brackwell {
namespace {

using posix::Handle;
using posix::Location;
using posix::PendingFile;
using posix::Raise;

/// The mode bits that the user wants no new file to have. Asked for by `umask`, they would be lifted for all
/// threads for a moment. Where the system does not tell, files are the user's alone.
mode_t ModeMask() {
  constexpr std::string_view Key = "Umask:";
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(Key))
      return static_cast<mode_t>(std::strtoul(line.c_str() + Key.size(), nullptr, 8));
  return 0077;
}

class FileWriter final : public TextWriter {
 public:
  FileWriter(const Location& location, bool overwrite)
      : mPath(location.Path()),
        mOverwrite(overwrite),
        mFile(posix::OpenParent(location), std::string(FileName(mPath)), mPath) {}

  void Write(std::string_view bytes) override { posix::WriteAll(mFile.File(), bytes, mPath); }

  void Close() override {
    fchmod(mFile.Descriptor(), 0666 & ~ModeMask());
    mFile.Commit(mOverwrite);
  }

 private:
  const std::string mPath;
  const bool mOverwrite;
  PendingFile mFile;
};

std::string TextOf(char* text) {
  std::string result(text ? text : "");
  g_free(text);
  return result;
}

class PosixFileSystem final : public FileSystemObject {
 public:
  explicit PosixFileSystem(const std::vector<std::string>& roots = {}) : mRoots(roots) {}

  std::unique_ptr<FileSystemObject> Within(const std::vector<std::string>& roots) const override {
    return std::make_unique<PosixFileSystem>(roots);
  }

  bool FileExists(const std::string& path) const override { return IsFolder(path) == false; }

  bool FolderExists(const std::string& path) const override { return IsFolder(path) == true; }

  ItemProperties GetFile(const std::string& path) const override {
    const Location location(path, mRoots);
    if (*location.Name() == '\0') throw FileSystemError(FileError::FileNotFound, path);
    ItemProperties file = posix::PropertiesAt(location.Folder(), location.Name(), path);
    if (file.Attributes & Attribute::Directory) throw FileSystemError(FileError::FileNotFound, path);
    return file;
  }

  std::unique_ptr<Folder> GetFolder(const std::string& path, const Tick& tick) const override {
    return posix::OpenListing(Location(path, mRoots), tick);
  }

  bool LiesWithin(const std::string& folder, const std::string& ancestor) const override {
    const FileIdentity wanted = IdentityOf(posix::OpenFolder(Location(ancestor, mRoots)), ancestor);
    Handle at = posix::OpenFolder(Location(folder, mRoots));
    for (FileIdentity last{};;) {
      const FileIdentity here = IdentityOf(at, folder);
      if (here == wanted) return true;
      if (here == last) return false;  // the root is its own parent
      last = here;
      at = Handle(openat(at.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
      if (!at.IsOpen()) Raise(errno, folder);
    }
  }

  std::string Drive(const std::string& path) const override {
    char resolved[PATH_MAX];
    std::string nearest = path;  // that is there and not too deep to be resolved
    struct stat own {};
    if (lstat(path.c_str(), &own) == 0 && S_ISLNK(own.st_mode)) nearest = ParentPath(path);
    while (nearest.size() >= PATH_MAX || !realpath(nearest.c_str(), resolved)) {
      if (nearest.empty()) return "/";
      nearest = ParentPath(nearest);
    }
    std::string drive(resolved);
    struct stat status {};
    if (lstat(resolved, &status) != 0) return "/";
    for (std::string parent(ParentPath(drive)); !parent.empty(); parent = ParentPath(drive)) {
      struct stat above {};
      if (lstat(parent.c_str(), &above) != 0 || above.st_dev != status.st_dev) break;
      drive = parent;
    }
    return drive;
  }

  std::string ShortName(const std::string& path) const override { return std::string(FileName(path)); }
  std::string ShortPath(const std::string& path) const override {
    return std::string(WithoutSeparator(path));
  }

  std::string Type(const std::string& path) const override {
    const Location location(path, mRoots);
    struct stat status {};
    if (fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) != 0)
      Raise(errno, path, FileError::FileNotFound);
    return Type(FileName(path), posix::KindOf(status.st_mode));
  }

  std::string Type(std::string_view name, ItemKind kind) const override {
    return TextOf(g_content_type_get_description(ContentType(name, kind).c_str()));
  }

  void CopyFile(const std::string& source, const std::string& target, bool overwrite,
                const Tick& tick) override {
    posix::CopyOneFile(Location(source, mRoots), Location(target, mRoots), overwrite, tick, mTwins);
  }

  void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick) override {
    posix::CopyAsNewFile(Location(source, mRoots), Location(target, mRoots), tick);
  }

  void CreateFolder(const std::string& path) override {
    const std::string name(WithoutSeparator(path));
    const Location location(name, mRoots);
    if (mkdirat(location.Folder(), location.Name(), 0777) == 0) return;
    const int error = errno;
    posix::RaiseForName(error, posix::OpenParent(location).Get(), path);
  }

  void CopyFolderProperties(const std::string& source, const std::string& target) override {
    const Handle from = OpenToRead(Location(source, mRoots));
    const Handle to = OpenToRead(Location(target, mRoots));
    struct stat status {};
    if (fstat(from.Get(), &status) != 0) Raise(errno, source);
    const timespec times[] = {status.st_atim, status.st_mtim};
    // Kept where the file system can keep them; the copy itself is done.
    posix::CopyPropertiesToNew(from, status, to);
    static_cast<void>(futimens(to.Get(), times) == 0);
  }

  std::unique_ptr<TextReader> OpenTextFile(const std::string& path) const override {
    return posix::OpenText(Location(path, mRoots));
  }

  std::unique_ptr<TextWriter> CreateTextFile(const std::string& path, bool overwrite) override {
    const Location location(path, mRoots);
    struct stat status {};
    if (fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
      if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, path);
      if (S_ISDIR(status.st_mode)) throw FileSystemError(FileError::PermissionDenied, path);
      if (!S_ISLNK(status.st_mode)) posix::CheckReplaceable(status, location.Folder(), location.Name(), path);
    }
    return std::make_unique<FileWriter>(location, overwrite);
  }

 private:
  static Handle OpenToRead(const Location& folder) {
    Handle opened(openat(folder.Folder(), folder.Name(),
                         O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC | folder.OpenFlags()));
    if (!opened.IsOpen()) Raise(errno, folder.Path());
    return opened;
  }

  static FileIdentity IdentityOf(const Handle& folder, const std::string& path) {
    struct stat status {};
    if (fstat(folder.Get(), &status) != 0) Raise(errno, path);
    return {status.st_dev, status.st_ino};
  }

  /// Nothing where there is no item or none can be seen.
  std::optional<bool> IsFolder(const std::string& path) const try {
    const Location location(path, mRoots);
    struct stat status {};
    if (fstatat(location.Folder(), location.Name(), &status, location.LookUpFlags()) != 0 &&
        fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) != 0)
      return std::nullopt;
    return S_ISDIR(status.st_mode);
  } catch (const FileSystemError&) {
    return std::nullopt;
  }

  static std::string ContentType(std::string_view name, ItemKind kind) {
    switch (kind) {
      case ItemKind::Folder:
        return "inode/directory";
      case ItemKind::Link:
        return "inode/symlink";
      case ItemKind::Pipe:
        return "inode/fifo";
      case ItemKind::Socket:
        return "inode/socket";
      case ItemKind::CharacterDevice:
        return "inode/chardevice";
      case ItemKind::BlockDevice:
        return "inode/blockdevice";
      case ItemKind::File:
        break;
    }
    return TextOf(g_content_type_guess(std::string(name).c_str(), nullptr, 0, nullptr));
  }

  const posix::Roots mRoots;
  posix::CaseTwins mTwins;
};

}  // namespace

std::unique_ptr<FileSystemObject> CreateFileSystemObject() { return std::make_unique<PosixFileSystem>(); }

}  // namespace brackwell
