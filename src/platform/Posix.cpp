#include "platform/Posix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <utility>

namespace brackwell::posix {

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

Handle OpenFolder(const std::string& path) {
  const Location location(path);
  Handle folder(openat(location.Folder(), location.Name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder.IsOpen()) Raise(errno, path);
  return folder;
}

}  // namespace brackwell::posix
