#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/FileSystemError.h"

// What the POSIX sources of the ground floor share.

namespace brackwell::posix {

/// Owns a file descriptor.
class Handle {
 public:
  explicit Handle(int descriptor = -1) : mDescriptor(descriptor) {}
  Handle(Handle&& other) noexcept : mDescriptor(other.mDescriptor) { other.mDescriptor = -1; }
  Handle& operator=(Handle&& other) noexcept;
  ~Handle() { Close(); }

  int Get() const { return mDescriptor; }
  bool IsOpen() const { return mDescriptor >= 0; }
  /// False where the system reports that what was written did not reach the disk.
  bool Close();

 private:
  int mDescriptor;
};

/// Where a path is, in a form that every *at() call takes, however long the path: system calls refuse more
/// than PATH_MAX bytes, while trees may be deeper. A path that leads nowhere gives an empty name, which none
/// of them find.
class Location {
 public:
  explicit Location(const std::string& path);
  int Folder() const { return mHolder.IsOpen() ? mHolder.Get() : mBase; }
  const char* Name() const { return mName; }

 private:
  int mBase;
  Handle mHolder;
  const char* mName;
};

/// Maps errno to our error. `missing` is what ENOENT means for the call.
FileError ErrorOf(int code, FileError missing = FileError::PathNotFound);
[[noreturn]] void Raise(int code, const std::string& path, FileError missing = FileError::PathNotFound);

/// Raises where the file `path`, with the status `existing`, may not be replaced. A rename would get past a
/// file's own protection. An administrator is let through by the system; missing write bits still say that
/// somebody wants the file kept.
void CheckReplaceable(const struct stat& existing, const std::string& path);

/// Renames what is no folder and never overwrites; gives errno, or 0 once it is done. EXDEV where the two are
/// on different volumes.
int RenameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to);

/// Opens a folder to look members up in it; raises.
Handle OpenFolder(const std::string& path);
/// The same for the folder that holds, or will hold, `path`.
Handle OpenParent(const std::string& path);

/// Where a path leads, links followed, and what is there now.
struct Target {
  std::string Path;
  std::optional<struct stat> Existing;
};
/// Raises PathFileAccess for a dangling link.
Target FindTarget(const std::string& path);

/// Writes all of it at the file's position; raises.
void WriteAll(const Handle& file, std::string_view bytes, const std::string& path);

}  // namespace brackwell::posix
