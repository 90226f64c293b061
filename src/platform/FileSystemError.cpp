#include "platform/FileSystemError.h"

#include <utility>

namespace brackwell {

std::string Describe(FileError error) {
  switch (error) {
    case FileError::FileNotFound:
      return "File not found";
    case FileError::DeviceError:
      return "Device I/O error";
    case FileError::FileAlreadyExists:
      return "File already exists";
    case FileError::DiskFull:
      return "Disk full";
    case FileError::TooManyFiles:
      return "Too many files";
    case FileError::PermissionDenied:
      return "Permission denied";
    case FileError::DiskNotReady:
      return "Disk not ready";
    case FileError::PathFileAccess:
      return "Path/File access error";
    case FileError::PathNotFound:
      return "Path not found";
  }
  return {};
}

FileSystemError::FileSystemError(FileError error, std::string path)
    : std::runtime_error(Describe(error) + ": " + path), mError(error), mPath(std::move(path)) {}

}  // namespace brackwell
