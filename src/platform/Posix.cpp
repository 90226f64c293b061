#include "platform/Posix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include "platform/Paths.h"

namespace brackwell::posix {
namespace {

std::string ResolveLink(const Location& location, const std::string& path) {
  char text[PATH_MAX];
  const auto length = readlinkat(location.Folder(), location.Name(), text, sizeof text);
  if (length < 0) Raise(errno, path);
  const std::string_view leadsTo(text, static_cast<std::size_t>(length));
  return leadsTo.starts_with('/') ? std::string(leadsTo) : JoinPath(ParentPath(path), leadsTo);
}

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  std::swap(mDescriptor, other.mDescriptor);
  return *this;
}

bool Handle::Close() {
  const int descriptor = std::exchange(mDescriptor, -1);
  return descriptor < 0 || close(descriptor) == 0;
}

Location::Location(const std::string& path) : mBase(AT_FDCWD), mName(path.c_str()) {
  std::size_t at = 0;
  while (path.size() - at >= PATH_MAX) {
    const std::size_t cut = path.rfind('/', at + PATH_MAX - 2);
    if (cut == std::string::npos || cut <= at) break;
    Handle next(openat(Folder(), path.substr(at, cut - at).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!next.IsOpen()) {
      mName = "";
      return;
    }
    mHolder = std::move(next);
    at = path.find_first_not_of('/', cut);
    if (at == std::string::npos) {
      mName = ".";
      return;
    }
    mName = path.c_str() + at;
  }
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

void CheckReplaceable(const struct stat& existing, const std::string& path) {
  if (!S_ISREG(existing.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  if ((existing.st_mode & 0222) == 0) throw FileSystemError(FileError::PermissionDenied, path);
  const Location location(path);
  if (faccessat(location.Folder(), location.Name(), W_OK, AT_EACCESS) != 0) Raise(errno, path);
}

int RenameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to) {
  if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL) return errno;
  // Not known to this file system. A second name refuses an existing target as well.
  if (linkat(fromFolder, from, toFolder, to, 0) != 0) return errno;
  if (unlinkat(fromFolder, from, 0) == 0) return 0;
  const int error = errno;
  unlinkat(toFolder, to, 0);  // what keeps its old name gets no new one
  return error;
}

Handle OpenFolder(const std::string& path) {
  const Location location(path);
  Handle folder(openat(location.Folder(), location.Name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder.IsOpen()) Raise(errno, path);
  return folder;
}

Handle OpenParent(const std::string& path) {
  const std::string_view folder = ParentPath(path);
  return OpenFolder(folder.empty() ? "." : std::string(folder));
}

Target FindTarget(const std::string& path) {
  constexpr int MostLinks = 40;  // in one chain, as for the system itself
  std::string at = path;
  for (int links = 0; links <= MostLinks; ++links) {
    const Location location(at);
    struct stat status {};
    if (fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      if (links > 0 && ErrorOf(errno) == FileError::PathNotFound) break;
      if (errno != ENOENT) Raise(errno, path);
      return {at, std::nullopt};
    }
    if (!S_ISLNK(status.st_mode)) return {at, status};
    at = ResolveLink(location, at);
  }
  throw FileSystemError(FileError::PathFileAccess, path);
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
