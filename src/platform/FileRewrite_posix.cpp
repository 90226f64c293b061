#include "platform/FileRewrite_posix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/Paths.h"
#include "platform/PendingFile_posix.h"

namespace brackwell::posix {
namespace {

bool AreEqual(const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; }

/// The same file, and nobody has written to it or changed its properties in between.
bool IsUnchanged(const struct stat& before, const struct stat& now) {
  return before.st_dev == now.st_dev && before.st_ino == now.st_ino && before.st_size == now.st_size &&
         AreEqual(before.st_mtim, now.st_mtim) && AreEqual(before.st_ctim, now.st_ctim);
}

class FileRewriter final : public TextWriter {
 public:
  FileRewriter(const Handle& file, const struct stat& opened, const std::string& path)
      : mOpened(opened),
        mPath(FindTarget(path).Path),
        mOld(fcntl(file.Get(), F_DUPFD_CLOEXEC, 0)),
        mFolder(OpenParent(mPath)),
        mNew((CheckReplaceable(mOpened, mPath), OpenParent(mPath)), std::string(FileName(mPath)), mPath) {
    if (!mOld.IsOpen()) Raise(errno, mPath);
  }

  void Write(std::string_view bytes) override { WriteAll(mNew.File(), bytes, mPath); }

  void Close() override {
    CheckUnchanged();
    KeepOwnerAndMode();
    mNew.Commit(true);
  }

 private:
  void CheckUnchanged() const {
    struct stat open {};
    struct stat named {};
    if (fstat(mOld.Get(), &open) != 0 || !IsUnchanged(mOpened, open) ||
        fstatat(mFolder.Get(), std::string(FileName(mPath)).c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !IsUnchanged(mOpened, named))
      throw FileSystemError(FileError::PathFileAccess, mPath);
  }

  void KeepOwnerAndMode() const {
    const int file = mNew.Descriptor();
    if ((mOpened.st_uid != geteuid() || mOpened.st_gid != getegid()) &&
        fchown(file, mOpened.st_uid, mOpened.st_gid) != 0)
      Raise(errno, mPath);
    if (fchmod(file, mOpened.st_mode & 07777) != 0) Raise(errno, mPath);
  }

  const struct stat mOpened;
  const std::string mPath;
  const Handle mOld;
  const Handle mFolder;
  PendingFile mNew;
};

}  // namespace

std::unique_ptr<TextWriter> RewriteFile(const Handle& file, const struct stat& opened,
                                        const std::string& path) {
  return std::make_unique<FileRewriter>(file, opened, path);
}

}  // namespace brackwell::posix
