#include "platform/FileRewrite_posix.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/FileProperties_posix.h"
#include "platform/InPlaceCopy_posix.h"
#include "platform/Paths.h"
#include "platform/PendingFile_posix.h"
#include "platform/TempFolder.h"

namespace brackwell::posix {
namespace {

/// False also for a folder that only takes additions: there nothing can be replaced, nor a neighbour be
/// removed.
bool MayBeChanged(const Handle& folder) {
  struct statx status {};
  return faccessat(folder.Get(), ".", W_OK | X_OK, AT_EACCESS) == 0 &&
         (statx(folder.Get(), "", AT_EMPTY_PATH, 0, &status) != 0 ||
          (status.stx_attributes & STATX_ATTR_APPEND) == 0);
}

/// True where a program has the file open for writing: what it is about to write would get lost. A lease for
/// reading is given only where none has; where it is refused for any other reason nobody knows. `file` is
/// open for reading alone.
bool IsBeingWritten(const Handle& file) {
  // Whoever opens the file meanwhile waits until the lease is given back, and the holder is sent a signal:
  // one that no program minds, since the usual one would end ours.
  if (fcntl(file.Get(), F_SETSIG, SIGURG) != 0) return false;
  if (fcntl(file.Get(), F_SETLEASE, F_RDLCK) != 0) return errno == EAGAIN;
  fcntl(file.Get(), F_SETLEASE, F_UNLCK);
  return false;
}

/// True where the system puts a file's content on the disk before a rename that gives it the name of another.
/// Elsewhere a power cut could leave a name without content, unless the disk is waited for, each time.
bool RenameKeepsOrder(const Handle& file) {
  struct statfs system {};
  if (fstatfs(file.Get(), &system) != 0) return false;
  return system.f_type == EXT4_SUPER_MAGIC || system.f_type == BTRFS_SUPER_MAGIC ||
         system.f_type == TMPFS_MAGIC;
}

class FileRewriter final : public FileRewrite {
 public:
  FileRewriter(Handle file, const struct stat& opened, Handle folder, std::string path, Tick tick)
      : mOpened(opened),
        mPath(std::move(path)),
        mTick(std::move(tick)),
        mName(FileName(mPath)),
        mOld(std::move(file)),
        mFolder(std::move(folder)),
        mLiesBeside(MayBeChanged(mFolder)),
        mNew(mLiesBeside ? mFolder.Duplicate() : OpenFolder(GetTempFolder()), mName, mPath) {
    CheckUnused();
    CheckUnchanged();
    if (!MayReplace()) mNew.GiveUpName();
  }

  void Write(std::string_view bytes) override { WriteAll(mNew.File(), bytes, mPath); }

  const Handle& Content() const override { return mNew.File(); }

  void Close() override {
    if (!TryToReplace()) Overwrite();
  }

  void CloseAsCopy(const timespec& modified) override {
    mModified = modified;
    Close();
  }

 private:
  void CheckUnused() const {
    if (IsBeingWritten(mOld)) Raise(EBUSY, mPath);
  }

  void CheckUnchanged() const {
    struct stat open {};
    struct stat named {};
    if (fstat(mOld.Get(), &open) != 0 || !IsUnchanged(mOpened, open) ||
        fstatat(mFolder.Get(), mName.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !IsUnchanged(mOpened, named))
      throw FileSystemError(FileError::PathFileAccess, mPath);
  }

  bool MayReplace() const { return mLiesBeside && mOpened.st_nlink == 1; }

  /// False where the new content has to go into the very file that is there: it has other names, belongs to
  /// somebody else, is mounted there, or lies in a folder that may not be changed.
  bool TryToReplace() {
    if (!MayReplace() || !CopyProperties(mOld, mOpened, mNew.File())) return false;
    if (mModified)
      SetTimes(mNew.File());
    else if (!RenameKeepsOrder(mNew.File()) && fdatasync(mNew.Descriptor()) != 0)
      Raise(errno, mPath);
    // As late as can be: what is added from here on is lost.
    CheckUnused();
    CheckUnchanged();
    try {
      mNew.Commit(true);
      return true;
    } catch (const FileSystemError& error) {
      if (error.Kind() != FileError::PermissionDenied) throw;
      return false;
    }
  }

  void Overwrite() {
    mNew.GiveUpName();
    const off_t size = SaveOldContent();
    CheckUnused();
    const Handle target = OpenToWrite();
    CheckUnchanged();
    if (const int error = CopyInPlace(mNew.File(), size, target, mOpened, mTick)) Raise(error, mPath);
    if (mModified) SetTimes(target);
  }

  /// Only its owner can; where that is somebody else, the file counts as modified now.
  void SetTimes(const Handle& file) const {
    const timespec times[] = {mOpened.st_atim, *mModified};
    if (futimens(file.Get(), times) != 0 && errno != EPERM) Raise(errno, mPath);
  }

  /// Behind the new content, whose size it gives.
  off_t SaveOldContent() const {
    struct stat made {};
    if (fstat(mNew.Descriptor(), &made) != 0) Raise(errno, mPath);
    if (const int error = CopyBytes(mOld.Get(), 0, mNew.Descriptor(), made.st_size, mOpened.st_size, mTick))
      Raise(error, mPath);
    return made.st_size;
  }

  Handle OpenToWrite() const {
    Handle target(openat(mFolder.Get(), mName.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!target.IsOpen() || fstat(target.Get(), &status) != 0) Raise(errno, mPath);
    if (!IsUnchanged(mOpened, status)) throw FileSystemError(FileError::PathFileAccess, mPath);
    return target;
  }

  const struct stat mOpened;
  const std::string mPath;
  const Tick mTick;
  const std::string mName;
  const Handle mOld;
  const Handle mFolder;
  const bool mLiesBeside;  // else in the folder for temporary files
  PendingFile mNew;
  std::optional<timespec> mModified;  // of a copy
};

}  // namespace

std::unique_ptr<FileRewrite> RewriteFile(Handle file, const struct stat& opened, Handle folder,
                                         const std::string& path, Tick tick) {
  return std::make_unique<FileRewriter>(std::move(file), opened, std::move(folder), path, std::move(tick));
}

}  // namespace brackwell::posix
