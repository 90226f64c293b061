#include "platform/Posix.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include "platform/Paths.h"

namespace brackwell::posix {
namespace {

/// One folder after the other, where the kernel cannot do it at once.
Handle OpenStepByStep(int folder, std::string_view path) {
  Handle at;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string name(path.substr(0, end));
    Handle next(
        openat(at.IsOpen() ? at.Get() : folder, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!next.IsOpen()) return next;
    at = std::move(next);
    path.remove_prefix(std::min(path.find_first_not_of('/', end), path.size()));
  }
  return at;
}

/// No link in `path` is followed.
Handle OpenBelow(int folder, const std::string& path) {
  open_how how{};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_NO_SYMLINKS;
  Handle opened(static_cast<int>(syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how)));
  if (opened.IsOpen() || (errno != ENOSYS && errno != EPERM)) return opened;
  return OpenStepByStep(folder, path);
}

/// For file systems such as exFAT in user space, where no call refuses an existing target. What others put
/// there between these two calls is overwritten; nothing better exists there.
int RenameToFreeName(int fromFolder, const char* from, int toFolder, const char* to) {
  struct stat found {};
  if (fstatat(toFolder, to, &found, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  if (errno != ENOENT) return errno;
  return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

bool AreEqual(const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; }

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  std::swap(mDescriptor, other.mDescriptor);
  return *this;
}

bool Handle::Close() {
  const int descriptor = std::exchange(mDescriptor, -1);
  return descriptor < 0 || close(descriptor) == 0;
}

Roots::Roots(std::vector<std::string> paths) {
  for (std::string& path : paths) {
    path = WithoutSeparator(path);
    if (path.empty()) continue;
    // One that cannot be opened is still a root: what lies below it is nowhere.
    Handle folder(openat(Location(path).Folder(), Location(path).Name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    mRoots.push_back({std::move(path), std::move(folder)});
  }
}

Roots::Start Roots::Find(std::string_view path) const {
  Start start{.Folder = AT_FDCWD, .Offset = 0, .IsConfined = false};
  std::size_t longest = 0;
  for (const Root& root : mRoots) {
    if (root.Path.size() < longest || !path.starts_with(root.Path)) continue;
    const std::size_t rest = std::min(path.find_first_not_of('/', root.Path.size()), path.size());
    const bool isBelow = rest > root.Path.size() || root.Path.ends_with('/');
    if (rest < path.size() && !isBelow) continue;  // the root's name is only how another one begins
    longest = root.Path.size();
    start = {.Folder = root.Folder.Get(), .Offset = rest, .IsConfined = rest < path.size()};
  }
  return start;
}

Location::Location(const std::string& path, const Roots& roots)
    : mPath(path), mBase(AT_FDCWD), mName(path.c_str()) {
  const Roots::Start start = roots.Find(path);
  mIsConfined = start.IsConfined;
  if (mIsConfined) mBase = start.Folder;
  const std::size_t begin = mIsConfined ? start.Offset : 0;
  const bool leadsSomewhere = (!mIsConfined || mBase >= 0) && Approach(begin);
  if (!leadsSomewhere) mName = "";
}

/// Opens the folders on the way, from `at` in the path on; false where they lead nowhere.
bool Location::Approach(std::size_t at) {
  const std::size_t begin = at;
  const std::size_t nameAt = mIsConfined ? BeginOfName() : 0;
  while (at < nameAt || mPath.size() - at >= PATH_MAX) {
    const std::size_t end = mIsConfined ? nameAt : mPath.size();
    const std::size_t cut = mPath.rfind('/', std::min(end - 1, at + PATH_MAX - 2));
    if (cut == std::string::npos || cut <= at) return false;
    Handle next = Open(mPath.substr(at, cut - at));
    if (!next.IsOpen() && IsNowhere(errno)) return false;
    if (!next.IsOpen()) Raise(errno, mPath);
    mHolder = std::move(next);
    at = std::min(mPath.find_first_not_of('/', cut), mPath.size());
  }
  if (!mCutName.empty())
    mName = mCutName.c_str();
  else if (mIsConfined || at > begin)
    mName = at < mPath.size() ? mPath.c_str() + at : ".";
  return true;
}

/// Also cuts separators off its end, which would make the system follow a link.
std::size_t Location::BeginOfName() {
  const std::size_t end = mPath.find_last_not_of('/') + 1;
  const std::size_t begin = mPath.rfind('/', end - 1) + 1;
  if (end < mPath.size()) mCutName = mPath.substr(begin, end - begin);
  return begin;
}

Handle Location::Open(const std::string& folders) const {
  if (mIsConfined) return OpenBelow(Folder(), folders);
  return Handle(openat(Folder(), folders.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

Handle Location::TakeParent() {
  if (!mIsConfined || *mName == '\0') return OpenParent(*this);
  Handle parent = mHolder.IsOpen() ? std::move(mHolder) : Handle(fcntl(mBase, F_DUPFD_CLOEXEC, 0));
  if (!parent.IsOpen()) Raise(errno, mPath);
  return parent;
}

bool IsUnchanged(const struct stat& before, const struct stat& now) {
  return before.st_dev == now.st_dev && before.st_ino == now.st_ino && before.st_size == now.st_size &&
         AreEqual(before.st_mtim, now.st_mtim) && AreEqual(before.st_ctim, now.st_ctim);
}

bool IsNowhere(int code) {
  return code == ENOENT || code == ENOTDIR || code == ELOOP || code == ENAMETOOLONG;
}

FileError ErrorOf(int code, FileError missing) {
  switch (code) {
    case ENOENT:
    case ELOOP:
    case ENAMETOOLONG:  // nothing can be there
      return missing;
    case ENOTDIR:
      return FileError::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return FileError::PermissionDenied;
    case EEXIST:
    case ENOTEMPTY:
      return FileError::FileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return FileError::DiskFull;
    case EMFILE:
    case ENFILE:
      return FileError::TooManyFiles;
    case EIO:
      return FileError::DeviceError;
    case ENOMEDIUM:
    case ENODEV:
    case ENXIO:
      return FileError::DiskNotReady;
    default:
      return FileError::PathFileAccess;
  }
}

void Raise(int code, const std::string& path, FileError missing) {
  throw FileSystemError(ErrorOf(code, missing), path);
}

void RaiseForName(int code, int folder, const std::string& path) {
  struct stat status {};
  const bool isThere = fstat(folder, &status) == 0 && status.st_nlink > 0;
  const bool mayBeTheName = code == EINVAL || code == EILSEQ || code == ENAMETOOLONG || code == ENOENT;
  if (isThere && mayBeTheName) throw CannotHoldName(path);
  Raise(code, path);
}

void CheckReplaceable(const struct stat& existing, int folder, const char* name, const std::string& path) {
  if (!S_ISREG(existing.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  if ((existing.st_mode & 0222) == 0) throw FileSystemError(FileError::PermissionDenied, path);
  if (faccessat(folder, name, W_OK, AT_EACCESS) != 0) Raise(errno, path);
}

int RenameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
  if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL) return errno;
  // Not known to this file system. A second name refuses an existing target as well.
  if (linkat(fromFolder, from, toFolder, to, 0) != 0) {
    const bool hasNoLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
    return hasNoLinks ? RenameToFreeName(fromFolder, from, toFolder, to) : errno;
  }
  if (unlinkat(fromFolder, from, 0) == 0) return 0;
  const int error = errno;
  unlinkat(toFolder, to, 0);  // what keeps its old name gets no new one
  return error;
}

Handle OpenFolder(const std::string& path) { return OpenFolder(Location(path)); }

Handle OpenFolder(const Location& location) {
  Handle folder(
      openat(location.Folder(), location.Name(), O_PATH | O_DIRECTORY | O_CLOEXEC | location.OpenFlags()));
  if (!folder.IsOpen()) Raise(errno, location.Path());
  return folder;
}

Handle OpenParent(const Location& location) {
  const std::string_view path = location.Name();
  if (path.empty()) Raise(ENOENT, location.Path());
  const std::size_t end = path.find_last_of('/');
  const std::string folder = end == std::string_view::npos ? "." : std::string(path.substr(0, end + 1));
  Handle parent(openat(location.Folder(), folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!parent.IsOpen()) Raise(errno, location.Path());
  return parent;
}

void WriteAll(const Handle& file, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const auto written = write(file.Get(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Raise(errno, path);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace brackwell::posix
