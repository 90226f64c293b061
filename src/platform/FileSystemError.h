#pragma once

#include <stdexcept>
#include <string>

namespace brackwell {

/// The numbers by which users and handlers know a fault; one per kind, the same on every system.
enum class FileError : int {
  BadFileName = 52,
  FileNotFound = 53,
  DeviceError = 57,
  FileAlreadyExists = 58,
  DiskFull = 61,
  TooManyFiles = 67,
  PermissionDenied = 70,
  DiskNotReady = 71,
  PathFileAccess = 75,
  PathNotFound = 76,
};

/// The text that belongs to a number, such as "Permission denied".
std::string Describe(FileError error);

/// The one error that the file system raises.
class FileSystemError : public std::runtime_error {
 public:
  FileSystemError(FileError error, std::string path);
  /// With a text of its own, where the one of its number would not tell what is wrong.
  FileSystemError(FileError error, std::string path, std::string description);

  int Number() const { return static_cast<int>(mError); }
  FileError Kind() const { return mError; }
  const std::string& Description() const { return mDescription; }
  /// The native path that the failed call was about.
  const std::string& Path() const { return mPath; }

 private:
  FileError mError;
  std::string mPath;
  std::string mDescription;
};

/// For a new name that its folder's disk refuses.
FileSystemError CannotHoldName(const std::string& path);
/// For a file that does not stay the same for as long as it is copied.
FileSystemError KeepsChanging(const std::string& path);

}  // namespace brackwell
