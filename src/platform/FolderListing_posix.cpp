#include "platform/FolderListing_posix.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "platform/MemberList.h"
#include "platform/NameCounts.h"
#include "platform/Posix.h"

namespace brackwell::posix {
namespace {

FileStatus StatusOf(const struct stat& status) {
  return {.IsFolder = S_ISDIR(status.st_mode),
          .Size = S_ISDIR(status.st_mode) ? 0 : static_cast<std::uint64_t>(status.st_size),
          .DateLastModified = DateTime(std::chrono::seconds(status.st_mtim.tv_sec))};
}

/// Wraps around for dates far away, which is fine for telling times apart.
std::uint64_t TicksOf(const timespec& time) {
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec);
}

DateTime DateOf(const statx_timestamp& time) { return DateTime(std::chrono::seconds(time.tv_sec)); }

bool IsDotName(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool IsLink(const std::string& path) {
  const Location location(path);
  struct stat status {};
  return fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISLNK(status.st_mode);
}

/// Reads what is to be known of `name` in the open folder; `shownName` is the name that it goes by. Gives an
/// errno, or 0.
int DetailsAt(int folder, const char* name, std::string_view shownName, ItemDetails& details) {
  struct statx status {};
  if (statx(folder, name, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
    return IsNowhere(errno) ? ENOENT : errno;
  details.Kind = KindOf(status.stx_mode);
  details.DateCreated = DateOf(status.stx_btime);
  details.DateLastAccessed = DateOf(status.stx_atime);
  details.DateLastModified = DateOf(status.stx_mtime);
  details.Attributes = (details.Kind == ItemKind::Folder ? Attribute::Directory : 0) |
                       (details.Kind == ItemKind::Link ? Attribute::Alias : 0) |
                       ((status.stx_mode & 0222) == 0 ? Attribute::ReadOnly : 0) |
                       (shownName.starts_with('.') ? Attribute::Hidden : 0);
  if (details.Kind != ItemKind::Folder) details.Size = status.stx_size;
  return 0;
}

class Listing final : public Folder {
 public:
  Listing(std::string path, Handle handle, bool readable, Tick tick)
      : mPath(std::move(path)), mHandle(std::move(handle)), mReadable(readable), mMembers(std::move(tick)) {}

  const std::string& Path() const override { return mPath; }
  ItemProperties Properties() const override {
    ItemProperties properties = PropertiesAt(mHandle.Get(), "", mPath);
    if (IsLink(properties.Path)) properties.Attributes |= Attribute::Alias;
    return properties;
  }

  FolderState State() const override {
    struct stat status {};
    if (fstat(mHandle.Get(), &status) != 0) Raise(errno, mPath);
    return {.Volume = status.st_dev,
            .Index = status.st_ino,
            .ModificationTicks = TicksOf(status.st_mtim),
            .ChangeTicks = TicksOf(status.st_ctim),
            .LastChanged = DateTime(std::chrono::seconds(std::max(status.st_mtime, status.st_ctime)))};
  }

  const std::vector<Member>& Files() override {
    ReadMembers();
    return mMembers.Files();
  }

  const std::vector<Member>& SubFolders() override {
    ReadMembers();
    return mMembers.SubFolders();
  }

  std::optional<FileStatus> Find(std::string_view name) const override {
    if (name.size() > NAME_MAX) return std::nullopt;
    return FindAt(mHandle.Get(), Terminated(name).Text);
  }

  ItemDetails FileDetails(std::string_view name) const override {
    ItemDetails details;
    const int error = name.size() > NAME_MAX ? ENAMETOOLONG
                                             : DetailsAt(mHandle.Get(), Terminated(name).Text, name, details);
    if (error != 0) Raise(error, JoinPath(mPath, name), FileError::FileNotFound);
    if (details.Kind == ItemKind::Folder)
      throw FileSystemError(FileError::FileNotFound, JoinPath(mPath, name));
    return details;
  }

  void Rename(const std::string& name, const std::string& newName) override {
    if (!IsFileName(newName)) throw FileSystemError(FileError::PathFileAccess, JoinPath(mPath, newName));
    if (name == newName) return;
    NameCounts& names = Names();
    const NameCounts::Key own = NameCounts::KeyOf(name);
    const NameCounts::Key wanted = NameCounts::KeyOf(newName);
    const bool changesCase = own == wanted;
    if (names.Count(wanted) > (changesCase ? 1 : 0))
      throw FileSystemError(FileError::FileAlreadyExists, JoinPath(mPath, newName));
    const int error = RenameMember(name, newName, changesCase);
    if (error != 0) Raise(error, JoinPath(mPath, newName), FileError::FileNotFound);
    names.Remove(own);
    names.Add(wanted);
  }

 private:
  struct Terminated {
    explicit Terminated(std::string_view name) { Text[name.copy(Text, NAME_MAX)] = '\0'; }
    char Text[NAME_MAX + 1];
  };

  /// Counted once; the renames keep it up to date.
  NameCounts& Names() {
    if (!mNames) {
      NameCounts names;
      ReadNames([&](const dirent64& entry) { names.Add(NameCounts::KeyOf(entry.d_name)); });
      mNames = std::move(names);
    }
    return *mNames;
  }

  /// Gives errno, or 0.
  int RenameMember(const std::string& name, const std::string& newName, bool changesCase) const {
    const int folder = mHandle.Get();
    const int error = RenameWithoutReplacing(folder, name.c_str(), folder, newName.c_str());
    if (error != EEXIST || !changesCase || IsListed(newName)) return error;
    // To a file system that ignores case the new name is there already, being the old one.
    return renameat(folder, name.c_str(), folder, newName.c_str()) == 0 ? 0 : errno;
  }

  /// Asked of the names themselves: some file systems that ignore case give one file a number for each
  /// spelling.
  bool IsListed(const std::string& name) const {
    bool isListed = false;
    ReadNames([&](const dirent64& entry) { isListed = isListed || name == entry.d_name; });
    return isListed;
  }

  void ReadMembers() {
    if (mRead) return;
    mMembers.Clear();
    ReadNames([this](const dirent64& entry) { Gather(entry); });
    mMembers.Order();
    mRead = true;
  }

  template <typename Visit>
  void ReadNames(Visit visit) const {
    if (!mReadable) throw FileSystemError(FileError::PermissionDenied, mPath);
    alignas(dirent64) char buffer[64 * 1024];  // not shared: a tick may have another folder read meanwhile
    if (lseek(mHandle.Get(), 0, SEEK_SET) != 0) Raise(errno, mPath);
    for (;;) {
      const auto length = getdents64(mHandle.Get(), buffer, sizeof buffer);
      if (length < 0) Raise(errno, mPath);
      if (length == 0) return;
      for (long at = 0; at < length;) {
        const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
        at += entry->d_reclen;
        if (!IsDotName(entry->d_name)) visit(*entry);
      }
    }
  }

  void Gather(const dirent64& entry) {
    unsigned char type = entry.d_type;
    if (type == DT_UNKNOWN) {
      struct stat status {};
      if (fstatat(mHandle.Get(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
        type = IFTODT(status.st_mode);
      else if (errno == ENOENT)
        return;  // gone again
    }
    mMembers.Gather(entry.d_name, type == DT_DIR, type == DT_LNK);
  }

  const std::string mPath;
  const Handle mHandle;
  const bool mReadable;
  MemberList mMembers;
  bool mRead = false;
  std::optional<NameCounts> mNames;  // once something has been renamed
};

}  // namespace

std::unique_ptr<Folder> OpenListing(const Location& location, const Tick& tick) {
  Handle handle(openat(location.Folder(), location.Name(),
                       O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC | location.OpenFlags()));
  const bool readable = handle.IsOpen() || errno != EACCES;
  if (!readable) handle = OpenFolder(location);
  if (!handle.IsOpen()) Raise(errno, location.Path());
  return std::make_unique<Listing>(location.Path(), std::move(handle), readable, tick);
}

std::optional<FileStatus> FindAt(int folder, const char* name) {
  struct stat status {};
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return StatusOf(status);
}

ItemProperties PropertiesAt(int folder, const char* name, const std::string& path) {
  ItemProperties properties;
  properties.Path = WithoutSeparator(path);
  properties.Name = FileName(path);
  properties.ParentFolder = ParentPath(path);
  if (const int error = DetailsAt(folder, name, properties.Name, properties))
    Raise(error, path, FileError::FileNotFound);
  return properties;
}

ItemKind KindOf(mode_t mode) {
  if (S_ISDIR(mode)) return ItemKind::Folder;
  if (S_ISLNK(mode)) return ItemKind::Link;
  if (S_ISFIFO(mode)) return ItemKind::Pipe;
  if (S_ISSOCK(mode)) return ItemKind::Socket;
  if (S_ISCHR(mode)) return ItemKind::CharacterDevice;
  return S_ISBLK(mode) ? ItemKind::BlockDevice : ItemKind::File;
}

}  // namespace brackwell::posix
