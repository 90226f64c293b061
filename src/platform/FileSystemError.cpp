#include "platform/FileSystemError.h"

#include <utility>

namespace brackwell {

std::string Describe(FileError error) {
  switch (error) {
    case FileError::BadFileName:
      return "Bad file name or number";
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
    : FileSystemError(error, std::move(path), Describe(error)) {}

FileSystemError::FileSystemError(FileError error, std::string path, std::string description)
    : std::runtime_error(description + ": " + path),
      mError(error),
      mPath(std::move(path)),
      mDescription(std::move(description)) {}

FileSystemError CannotHoldName(const std::string& path) {
  return {FileError::BadFileName, path, "The target's disk cannot hold this name"};
}

FileSystemError KeepsChanging(const std::string& path) {
  return {FileError::PathFileAccess, path, "The file keeps changing while it is copied"};
}

}  // namespace brackwell
