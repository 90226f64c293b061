#include "platform/FolderListing_posix.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/MemberList.h"
#include "platform/Posix.h"

namespace brackwell::posix {
namespace {

FileStatus StatusOf(const struct stat& status) {
  return {.IsFolder = S_ISDIR(status.st_mode),
          .Size = S_ISDIR(status.st_mode) ? 0 : static_cast<std::uint64_t>(status.st_size),
          .DateLastModified = DateTime(std::chrono::seconds(status.st_mtim.tv_sec))};
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

/// Whether a look-up says that there can be nothing, rather than that it may not tell.
bool IsNowhere(int code) {
  return code == ENOENT || code == ENOTDIR || code == ELOOP || code == ENAMETOOLONG;
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

  const std::vector<Member>& Files() override {
    ReadMembers();
    return mMembers.Files();
  }

  const std::vector<Member>& SubFolders() override {
    ReadMembers();
    return mMembers.SubFolders();
  }

  std::optional<FileStatus> Find(std::string_view name) const override {
    char terminated[NAME_MAX + 1];
    if (name.size() > NAME_MAX) return std::nullopt;
    name.copy(terminated, name.size());
    terminated[name.size()] = '\0';
    return FindAt(mHandle.Get(), terminated);
  }

 private:
  void ReadMembers() {
    if (mRead) return;
    if (!mReadable) throw FileSystemError(FileError::PermissionDenied, mPath);
    mMembers.Clear();
    ReadNames();
    mMembers.Order();
    mRead = true;
  }

  void ReadNames() {
    alignas(dirent64) static thread_local char buffer[64 * 1024];
    if (lseek(mHandle.Get(), 0, SEEK_SET) != 0) Raise(errno, mPath);
    for (;;) {
      const auto length = getdents64(mHandle.Get(), buffer, sizeof buffer);
      if (length < 0) Raise(errno, mPath);
      if (length == 0) return;
      for (long at = 0; at < length;) {
        const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
        at += entry->d_reclen;
        if (!IsDotName(entry->d_name)) Gather(*entry);
      }
    }
  }

  void Gather(const dirent64& entry) {
    unsigned char type = entry.d_type;
    if (type == DT_UNKNOWN) {
      struct stat status {};
      if (fstatat(mHandle.Get(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;  // gone again
      type = IFTODT(status.st_mode);
    }
    const bool isLink = type == DT_LNK;
    const auto status = isLink ? FindAt(mHandle.Get(), entry.d_name) : std::nullopt;
    mMembers.Gather(entry.d_name, isLink ? status && status->IsFolder : type == DT_DIR, isLink);
  }

  const std::string mPath;
  const Handle mHandle;
  const bool mReadable;
  MemberList mMembers;
  bool mRead = false;
};

}  // namespace

std::unique_ptr<Folder> OpenListing(const std::string& path, const Tick& tick) {
  const Location location(path);
  Handle handle(openat(location.Folder(), location.Name(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
  const bool readable = handle.IsOpen() || errno != EACCES;
  if (!readable) handle = OpenFolder(path);
  if (!handle.IsOpen()) Raise(errno, path);
  return std::make_unique<Listing>(path, std::move(handle), readable, tick);
}

std::optional<FileStatus> FindAt(int folder, const char* name) {
  struct stat status {};
  if (fstatat(folder, name, &status, 0) == 0) return StatusOf(status);
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0) return StatusOf(status);  // leads nowhere
  return std::nullopt;
}

ItemProperties PropertiesAt(int folder, const char* name, const std::string& path) {
  struct statx own {};
  if (statx(folder, name, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &own) != 0)
    Raise(IsNowhere(errno) ? ENOENT : errno, path, FileError::FileNotFound);
  struct statx target = own;
  if (S_ISLNK(own.stx_mode) && statx(folder, name, 0, STATX_BASIC_STATS | STATX_BTIME, &target) != 0)
    target = own;

  ItemProperties properties;
  properties.Path = WithoutSeparator(path);
  properties.Name = FileName(path);
  properties.ParentFolder = ParentPath(path);
  properties.DateCreated = DateOf(target.stx_btime);
  properties.DateLastAccessed = DateOf(target.stx_atime);
  properties.DateLastModified = DateOf(target.stx_mtime);
  properties.Attributes = (S_ISDIR(target.stx_mode) ? Attribute::Directory : 0) |
                          (S_ISLNK(own.stx_mode) ? Attribute::Alias : 0) |
                          ((target.stx_mode & 0222) == 0 ? Attribute::ReadOnly : 0) |
                          (properties.Name.starts_with('.') ? Attribute::Hidden : 0);
  if (!S_ISDIR(target.stx_mode)) properties.Size = target.stx_size;
  return properties;
}

}  // namespace brackwell::posix
