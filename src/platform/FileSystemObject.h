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

// Everything that the tools know of files and folders comes through one FileSystemObject. All calls throw
// FileSystemError; a call that only asks (FileExists, FolderExists, Find) answers instead.
//
// A link, to a file or to a folder or to nothing, is an item like a file, with its own dates and size: it is
// listed, found, described and copied as such. Only the way to an item may lead through links, and none of
// those below a root of Within.

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
inline constexpr unsigned Alias = 1024;  // a link
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

/// What an item is.
enum class ItemKind { File, Folder, Link, Pipe, Socket, CharacterDevice, BlockDevice };

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

/// Differs once another folder has taken this one's place, or a member was added, removed or renamed, even if
/// the modification time was set back. Two changes within one tick of the file system's clock look the same:
/// a state read right after LastChanged proves nothing.
struct FolderState {
  std::uint64_t Volume = 0;
  std::uint64_t Index = 0;
  std::uint64_t ModificationTicks = 0;  // in the finest unit of the system
  std::uint64_t ChangeTicks = 0;        // likewise; 0 if the file system keeps no change time
  DateTime LastChanged{};               // the later of the two
  bool operator==(const FolderState&) const = default;
};

/// An open folder. It holds a handle of the system's: let go of it before descending.
class Folder {
 public:
  virtual ~Folder() = default;

  virtual const std::string& Path() const = 0;
  virtual ItemProperties Properties() const = 0;
  /// The state now, even if the members were read earlier.
  virtual FolderState State() const = 0;

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

class FileSystemObject {
 public:
  virtual ~FileSystemObject() = default;

  /// The same file system for a run in the folders that the user chose, which may be links or lie behind
  /// them. Below these roots no link is followed, also not one that takes a folder's place while the run
  /// goes on, so nothing is reached that lies elsewhere; win32::Roots says what Windows cannot keep of that.
  /// Holds a handle of each, on Windows of the folders that it has used last, which nobody can rename then.
  virtual std::unique_ptr<FileSystemObject> Within(const std::vector<std::string>& roots) const = 0;

  /// True for anything that is there and is not a folder. A link counts as what it leads to, unless it lies
  /// below a root.
  virtual bool FileExists(const std::string& path) const = 0;
  virtual bool FolderExists(const std::string& path) const = 0;

  /// Raises FileNotFound where there is no file, PermissionDenied where that may not be known.
  virtual ItemProperties GetFile(const std::string& path) const = 0;
  /// Raises PathNotFound where there is no folder. `tick` is called while the members are read.
  virtual std::unique_ptr<Folder> GetFolder(const std::string& path, const Tick& tick = {}) const = 0;
  /// True where `folder` is `ancestor` or lies below it, whatever links lead to them. Both must exist.
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

  /// Copies one regular file, or a link as the link it is, with its modification time. A new file takes its
  /// mode, access list and user attributes from its source and lets in nobody whom the source does not; on
  /// Windows it has the access list that its folder gives, as with every copy made there. A file that is
  /// there gets the content and modification time; all else stays its own, as in TextReader::Rewrite. A link
  /// that is there is replaced, not followed. At every moment the target is wholly old or wholly new. Throws
  /// FileAlreadyExists (no overwrite; on POSIX, on a disk that ignores case, the target is the copy of
  /// another file beside the source), PermissionDenied (a read-only target, even for an administrator; one
  /// that another program has open for writing, where the system tells; a folder; the source itself),
  /// PathFileAccess (what is neither file nor link; a source that keeps changing while it is copied; a target
  /// that changes meanwhile), BadFileName (a name that the target's disk cannot hold), DiskFull, ...
  virtual void CopyFile(const std::string& source, const std::string& target, bool overwrite,
                        const Tick& tick = {}) = 0;
  /// Copies the content that `source` leads to, which may be a link, into a file of its own: one that has
  /// the target's name already is replaced by a rename, never written into, so what shares its content with
  /// others leaves them alone. Throws as CopyFile does, and PathFileAccess where the target is a link.
  virtual void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick = {}) = 0;
  /// Raises FileAlreadyExists, PathNotFound (no parent folder), ...
  virtual void CreateFolder(const std::string& path) = 0;

  /// Copies a folder and everything below it, into `target` itself; an existing target is merged with.
  /// Throws FileAlreadyExists where `target` is a file or a link, or as CopyFile does, PathFileAccess for a
  /// folder that would be copied into itself. What cannot be copied is left out and the rest copied, then the
  /// first error thrown; a full disk ends it at once.
  void CopyFolder(const std::string& source, const std::string& target, bool overwrite,
                  const Tick& tick = {});

  /// Reads a regular file as bytes. This and GetFile may be called on several threads at once.
  virtual std::unique_ptr<TextReader> OpenTextFile(const std::string& path) const = 0;
  /// A new text file: appears, complete, when the writer is closed. A link of that name is replaced, not
  /// followed. Raises FileAlreadyExists (no overwrite), ...
  virtual std::unique_ptr<TextWriter> CreateTextFile(const std::string& path, bool overwrite) = 0;

  /// Gives a new folder the modification time of another, and its mode, access list and user attributes as
  /// CopyFile gives them to a new file.
  virtual void CopyFolderProperties(const std::string& source, const std::string& target) = 0;
};

/// The file system of this machine.
std::unique_ptr<FileSystemObject> CreateFileSystemObject();

}  // namespace brackwell
