#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystemError.h"
#include "platform/Paths.h"
#include "platform/TextFile.h"

// Everything that the tools know of files and folders comes through one FileSystemObject. All calls raise
// FileSystemError; a call that only asks (FileExists, FolderExists, Find) answers instead. Symbolic links are
// followed; a link that leads nowhere counts as a file, with the dates and the size of the link itself.

namespace brackwell {

/// Whole seconds since 1970-01-01 UTC, rounded down: the precision in which dates are compared.
using DateTime = std::chrono::sys_seconds;

/// Bits of ItemProperties::Attributes.
namespace Attribute {
inline constexpr unsigned ReadOnly = 1;  // on POSIX: no write bit set, whoever asks
inline constexpr unsigned Hidden = 2;    // on POSIX: the name begins with a dot
inline constexpr unsigned System = 4;
inline constexpr unsigned Directory = 16;
inline constexpr unsigned Archive = 32;
inline constexpr unsigned Alias = 1024;  // a symbolic link
inline constexpr unsigned Compressed = 2048;
}  // namespace Attribute

/// What one look-up of a name tells.
struct FileStatus {
  bool IsFolder = false;
  std::uint64_t Size = 0;  // bytes
  DateTime DateLastModified{};
};

/// One member of a folder, as its listing names it. The name lives as long as the Folder that gave it.
struct Member {
  std::string_view Name;
  bool IsLink = false;
};

/// What an item is, its links followed.
enum class ItemKind { File, Folder, DanglingLink, Pipe, Socket, CharacterDevice, BlockDevice };

/// What one look-up of a file or folder tells beside its name.
struct ItemDetails {
  ItemKind Kind = ItemKind::File;
  unsigned Attributes = 0;
  DateTime DateCreated{};  // the epoch where the file system keeps none
  DateTime DateLastAccessed{};
  DateTime DateLastModified{};
  std::uint64_t Size = 0;  // bytes; 0 for a folder
};

/// The properties of a file or folder, read in one look-up. Costlier ones have calls of their own.
struct ItemProperties : ItemDetails {
  std::string Path;
  std::string Name;
  std::string ParentFolder;  // its path; empty for a root
};

/// An open folder. It holds a handle of the system's: let go of it before descending.
class Folder {
 public:
  virtual ~Folder() = default;

  virtual const std::string& Path() const = 0;
  virtual ItemProperties Properties() const = 0;

  /// The folder's members in OrderOfNames. Read on the first call of either and kept. Everything that is not
  /// a folder is a file, pipes and sockets included.
  virtual const std::vector<Member>& Files() = 0;
  virtual const std::vector<Member>& SubFolders() = 0;

  /// Looks a member up now, by name, whether listed or not; nothing where there is none or none can be seen.
  virtual std::optional<FileStatus> Find(std::string_view name) const = 0;

  /// Reads what there is to know of a member that is a file. Raises FileNotFound where there is none (any
  /// more), PermissionDenied where that may not be known.
  virtual ItemDetails FileDetails(std::string_view name) const = 0;

  /// Gives a member another name in the same folder and never overwrites: raises FileAlreadyExists where the
  /// name is taken, in whatever case. A member's own name may change its case. Raises PathFileAccess for what
  /// is no IsFileName, FileNotFound, ... The lists stay as they were read.
  virtual void Rename(const std::string& name, const std::string& newName) = 0;
};

/// Tells two folders apart whatever paths lead to them.
struct FolderIdentity {
  std::uint64_t Volume = 0;
  std::uint64_t Index = 0;
  bool operator==(const FolderIdentity&) const = default;
};

class FileSystemObject {
 public:
  virtual ~FileSystemObject() = default;

  /// True for anything that is there and is not a folder.
  virtual bool FileExists(const std::string& path) const = 0;
  virtual bool FolderExists(const std::string& path) const = 0;

  /// Raises FileNotFound where there is no file, PermissionDenied where that may not be known.
  virtual ItemProperties GetFile(const std::string& path) const = 0;
  /// Raises PathNotFound where there is no folder. `tick` is called while the members are read.
  virtual std::unique_ptr<Folder> GetFolder(const std::string& path, const Tick& tick = {}) const = 0;
  virtual FolderIdentity Identity(const std::string& folder) const = 0;
  /// True where `folder` is `ancestor` or lies below it, whatever links lead there. Both must exist.
  virtual bool LiesWithin(const std::string& folder, const std::string& ancestor) const = 0;

  /// The path of the drive (volume) that holds `path`: "C:" on Windows, the mount point on POSIX.
  virtual std::string Drive(const std::string& path) const = 0;
  /// 8.3 names on Windows; elsewhere, and where there is none, the long ones.
  virtual std::string ShortName(const std::string& path) const = 0;
  virtual std::string ShortPath(const std::string& path) const = 0;
  /// What the desktop calls this kind of file. The file is not opened.
  virtual std::string Type(const std::string& path) const = 0;
  /// The same for an item already looked up. Asks nobody, so it is right for very many.
  virtual std::string Type(std::string_view name, ItemKind kind) const = 0;

  /// Copies one regular file's content, modification time and mode. The target is replaced in one step, once
  /// the new content is complete on disk beside it, so it is wholly old or wholly new at every moment; where
  /// it is a link, what the link leads to is replaced. Raises FileAlreadyExists (no overwrite),
  /// PermissionDenied (a read-only target, also for an administrator; a folder; the source itself),
  /// PathFileAccess (a source or target that is no regular file, or a dangling link), DiskFull, ...
  virtual void CopyFile(const std::string& source, const std::string& target, bool overwrite,
                        const Tick& tick = {}) = 0;
  /// Renames a file and never overwrites: raises FileAlreadyExists. Across volumes it is copied, then
  /// removed.
  virtual void MoveFile(const std::string& source, const std::string& target) = 0;
  /// Raises FileAlreadyExists, PathNotFound (no parent folder), ...
  virtual void CreateFolder(const std::string& path) = 0;

  /// Copies a folder and everything below it, into `target` itself; an existing target is merged with. Links
  /// that lead nowhere, or back into the chain of folders being copied, are made again as links. Raises
  /// FileAlreadyExists where `target` is a file, PathFileAccess for a folder that would be copied into
  /// itself. What cannot be copied is left out and the rest copied, then the first error raised; a full disk
  /// ends it at once.
  void CopyFolder(const std::string& source, const std::string& target, bool overwrite,
                  const Tick& tick = {});

  /// Reads a regular file as bytes. This and GetFile may be called on several threads at once.
  virtual std::unique_ptr<TextReader> OpenTextFile(const std::string& path) const = 0;
  /// A new text file: appears, complete, when the writer is closed. A link of that name is replaced, not
  /// followed. Raises FileAlreadyExists (no overwrite), ...
  virtual std::unique_ptr<TextWriter> CreateTextFile(const std::string& path, bool overwrite) = 0;

  /// Gives a folder the mode and modification time of another.
  virtual void CopyFolderProperties(const std::string& source, const std::string& target) = 0;
  /// Makes the link `target` that leads where the text of the link `source` says; an existing target is left.
  virtual void CopyLink(const std::string& source, const std::string& target) = 0;
};

/// The file system of this machine.
std::unique_ptr<FileSystemObject> CreateFileSystemObject();

/// True where the link at `path` leads to `root` or to a folder between the two: entering it would never end.
/// `root` must be a leading part of `path`.
bool LeadsBack(const FileSystemObject& files, const std::string& root, const std::string& path);

}  // namespace brackwell
