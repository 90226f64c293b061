#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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
  /// Not open where this is not, or no more can be had.
  Handle Duplicate() const { return Handle(fcntl(mDescriptor, F_DUPFD_CLOEXEC, 0)); }
  /// False where the system reports that what was written did not reach the disk.
  bool Close();

 private:
  int mDescriptor;
};

/// The folders that a run stays in. Below them no link is followed, whatever somebody puts there meanwhile;
/// the way to each of them may lead through links.
class Roots {
 public:
  explicit Roots(std::vector<std::string> paths = {});

  /// What holds the item at a path, and how the path goes on from there.
  struct Start {
    int Folder;          // AT_FDCWD for a path that lies in none of the roots
    std::size_t Offset;  // of the rest of the path; the path's length for a root itself
    bool IsConfined;     // whether the rest is below a root
  };
  Start Find(std::string_view path) const;

 private:
  struct Root {
    std::string Path;  // without separator at its end
    Handle Folder;
  };
  std::vector<Root> mRoots;
};

/// Where a path is, in a form that every *at() call takes, however long the path: system calls refuse more
/// than PATH_MAX bytes, while trees may be deeper. A path that leads nowhere gives an empty name, which none
/// of them find.
class Location {
 public:
  /// The path's links are followed.
  explicit Location(const std::string& path) : Location(path, Roots()) {}
  /// No link below a root is followed on the way to the item. `path` must outlive this. Raises where a
  /// folder on the way cannot be entered.
  Location(const std::string& path, const Roots& roots);
  Location(const Location&) = delete;
  Location& operator=(const Location&) = delete;

  int Folder() const { return mHolder.IsOpen() ? mHolder.Get() : mBase; }
  const char* Name() const { return mName; }
  const std::string& Path() const { return mPath; }
  /// The folder that holds, or will hold, the item; raises. Call it last.
  Handle TakeParent();
  /// For a call that looks the item up as what it leads to, where it may: AT_SYMLINK_NOFOLLOW below a root.
  int LookUpFlags() const { return mIsConfined ? AT_SYMLINK_NOFOLLOW : 0; }
  /// The same for openat.
  int OpenFlags() const { return mIsConfined ? O_NOFOLLOW : 0; }

 private:
  bool Approach(std::size_t at);
  std::size_t BeginOfName();
  Handle Open(const std::string& folders) const;

  const std::string& mPath;
  bool mIsConfined = false;
  int mBase;
  Handle mHolder;
  const char* mName;
  std::string mCutName;  // empty where the path has it as it is
};

/// Whether two looks at a file, by handle or by name, saw the same one, and nobody has written to it or
/// changed its properties in between.
bool IsUnchanged(const struct stat& before, const struct stat& now);

/// Whether a look-up says that there can be nothing, rather than that it may not tell.
bool IsNowhere(int code);

/// Maps errno to our error. `missing` is what ENOENT means for the call.
FileError ErrorOf(int code, FileError missing = FileError::PathNotFound);
[[noreturn]] void Raise(int code, const std::string& path, FileError missing = FileError::PathNotFound);

/// Throws for an item that could not be given its name in an open folder: BadFileName where the disk cannot
/// hold such a name, which some file systems tell by saying that nothing was found.
[[noreturn]] void RaiseForName(int code, int folder, const std::string& path);

/// Raises where the file `name` in an open folder, with the status `existing`, may not be replaced. A rename
/// would get past a file's own protection. The system lets an administrator through; missing write bits still
/// say that somebody wants the file kept.
void CheckReplaceable(const struct stat& existing, int folder, const char* name, const std::string& path);

/// Renames what is no folder and never overwrites, except where the file system has no call that refuses to:
/// there another program can take the name in between. Gives errno, or 0 once it is done; EXDEV where the two
/// are on different volumes.
int RenameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to);

/// Opens a folder to look members up in it; raises.
Handle OpenFolder(const std::string& path);
Handle OpenFolder(const Location& location);
/// The same for the folder that holds, or will hold, an item.
Handle OpenParent(const Location& location);

/// Writes all of it at the file's position; raises.
void WriteAll(const Handle& file, std::string_view bytes, const std::string& path);

}  // namespace brackwell::posix
