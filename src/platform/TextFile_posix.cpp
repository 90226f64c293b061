#include "platform/TextFile_posix.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/FileRewrite_posix.h"
#include "platform/Paths.h"
#include "platform/Posix.h"

namespace brackwell::posix {
namespace {

Handle OpenToRead(int folder, const char* name, int flags, const std::string& path) {
  Handle file(openat(folder, name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags));
  if (!file.IsOpen()) Raise(errno, path, FileError::FileNotFound);
  return file;
}

class FileReader final : public TextReader {
 public:
  /// A file that is not open yet will be when it is needed, with `openFlags`. `folder` holds it.
  FileReader(Handle file, const struct stat& opened, Handle folder, int openFlags, std::string path)
      : mFile(std::move(file)),
        mOpened(opened),
        mFolder(std::move(folder)),
        mOpenFlags(openFlags),
        mPath(std::move(path)) {}

  std::uint64_t Size() const override { return static_cast<std::uint64_t>(mOpened.st_size); }

  std::optional<FileIdentity> SharedIdentity() const override {
    if (mOpened.st_nlink < 2) return std::nullopt;
    return FileIdentity{mOpened.st_dev, mOpened.st_ino};
  }

  std::size_t Read(char* buffer, std::size_t size) override {
    Open();
    const std::size_t wanted = TellsNoSize() ? size : std::min<std::uint64_t>(size, Left());
    std::size_t done = 0;
    while (done < wanted) {
      const auto length = read(mFile.Get(), buffer + done, wanted - done);
      if (length < 0 && errno == EINTR) continue;
      if (length < 0) Raise(errno, mPath);
      if (length == 0) break;
      done += static_cast<std::size_t>(length);
    }
    mAt += done;
    return done;
  }

  std::string ReadAll() override {
    std::string content;
    if (!TellsNoSize())
      Append(content, Left());
    else
      while (Append(content, Step) == Step) continue;
    return content;
  }

  void Rewind() override {
    Open();
    if (lseek(mFile.Get(), 0, SEEK_SET) != 0) Raise(errno, mPath);
    mAt = 0;
  }

  std::unique_ptr<TextWriter> Rewrite(Tick tick) override {
    Open();
    CheckReplaceable(mOpened, mFolder.Get(), std::string(FileName(mPath)).c_str(), mPath);
    return RewriteFile(Copy(mFile), mOpened, Copy(mFolder), mPath, std::move(tick));
  }

 private:
  static constexpr std::size_t Step = 1 << 20;

  void Open() {
    if (!mFile.IsOpen())
      mFile = OpenToRead(mFolder.Get(), std::string(FileName(mPath)).c_str(), mOpenFlags, mPath);
  }
  Handle Copy(const Handle& handle) const {
    Handle copy = handle.Duplicate();
    if (!copy.IsOpen()) Raise(errno, mPath);
    return copy;
  }
  bool TellsNoSize() const { return Size() == 0; }
  std::uint64_t Left() const { return Size() - mAt; }

  std::size_t Append(std::string& content, std::size_t size) {
    const std::size_t before = content.size();
    content.resize(before + size);
    const std::size_t length = Read(content.data() + before, size);
    content.resize(before + length);
    return length;
  }

  Handle mFile;
  const struct stat mOpened;
  const Handle mFolder;
  const int mOpenFlags;
  const std::string mPath;
  std::uint64_t mAt = 0;
};

}  // namespace

/// Looked at before it is opened, since opening a pipe or device can hang or do something; the one look-up
/// tells the size as well. An empty file waits until somebody wants to read it nevertheless; so does one of
/// several names, which may be known by another.
std::unique_ptr<TextReader> OpenText(Location&& location) {
  const std::string& path = location.Path();
  struct stat status {};
  if (fstatat(location.Folder(), location.Name(), &status, location.LookUpFlags()) != 0)
    Raise(errno, path, FileError::FileNotFound);
  if (!S_ISREG(status.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  const bool isWanted = status.st_size > 0 && status.st_nlink < 2;
  Handle file =
      isWanted ? OpenToRead(location.Folder(), location.Name(), location.OpenFlags(), path) : Handle();
  const int openFlags = location.OpenFlags();
  return std::make_unique<FileReader>(std::move(file), status, location.TakeParent(), openFlags, path);
}

}  // namespace brackwell::posix
