#include "platform/FileCopy_posix.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>

#include "platform/PendingFile_posix.h"
#include "platform/Posix.h"

namespace brackwell::posix {
namespace {

constexpr std::size_t KernelChunk = 1 << 20;   // bytes between two ticks when the kernel copies
constexpr std::size_t BufferSize = 256 << 10;  // bytes, when we do

void CallTick(const Tick& tick) {
  if (tick) tick();
}

struct Source {
  Handle File;
  struct stat Status {};
};

/// Pipes and devices are told by their status, before anything is opened.
Source OpenSource(const std::string& path) {
  const Location location(path);
  Source source;
  if (fstatat(location.Folder(), location.Name(), &source.Status, 0) != 0)
    Raise(errno, path, FileError::FileNotFound);
  if (S_ISDIR(source.Status.st_mode)) throw FileSystemError(FileError::FileNotFound, path);
  if (!S_ISREG(source.Status.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  source.File =
      Handle(openat(location.Folder(), location.Name(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!source.File.IsOpen()) Raise(errno, path, FileError::FileNotFound);
  if (fstat(source.File.Get(), &source.Status) != 0) Raise(errno, path);
  if (!S_ISREG(source.Status.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  return source;
}

void CheckTarget(const Target& target, const struct stat& source, bool overwrite) {
  if (!target.Existing) return;
  const struct stat& existing = *target.Existing;
  if (S_ISDIR(existing.st_mode)) throw FileSystemError(FileError::PermissionDenied, target.Path);
  if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, target.Path);
  const bool same = existing.st_dev == source.st_dev && existing.st_ino == source.st_ino;
  if (same) throw FileSystemError(FileError::PermissionDenied, target.Path);
  CheckReplaceable(existing, target.Path);
}

/// Copies content by the kernel where it can, up to where the file ends: it may have grown or shrunk
/// meanwhile.
class ContentCopy {
 public:
  ContentCopy(const Source& source, const std::string& sourcePath, int to, const std::string& targetPath,
              const Tick& tick)
      : mFrom(source.File.Get()), mTo(to), mSourcePath(sourcePath), mTargetPath(targetPath), mTick(tick) {}

  void CopyAll(const struct stat& status) {
    if (status.st_size > 0 && ioctl(mTo, FICLONE, mFrom) == 0) return;
    const bool hasHoles = status.st_blocks * 512 < status.st_size;
    if (hasHoles)
      CopyData(status.st_size);
    else
      CopyRange(0, LLONG_MAX);
  }

 private:
  void CopyData(off_t size) {
    for (off_t at = 0; at < size;) {
      const off_t data = lseek(mFrom, at, SEEK_DATA);
      if (data < 0 && errno == ENXIO) break;  // only a hole is left
      if (data < 0) return CopyRange(at, LLONG_MAX);
      const off_t hole = lseek(mFrom, data, SEEK_HOLE);
      if (hole < 0) return CopyRange(data, LLONG_MAX);
      CopyRange(data, hole);
      at = hole;
    }
    struct stat now {};
    if (fstat(mFrom, &now) != 0 || ftruncate(mTo, now.st_size) != 0) Raise(errno, mTargetPath);
  }

  void CopyRange(off_t from, off_t end) {
    off_t in = from;
    off_t out = from;
    while (in < end) {
      const auto wanted = static_cast<std::size_t>(std::min<off_t>(end - in, KernelChunk));
      const auto copied = copy_file_range(mFrom, &in, mTo, &out, wanted, 0);
      if (copied < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO))
        Raise(errno, mTargetPath);
      if (copied == 0 && in > from) return;  // the end
      // Some file systems refuse, some say at once that nothing is there: reading tells for certain.
      if (copied <= 0) return CopyByBuffer(in, end);
      CallTick(mTick);
    }
  }

  void CopyByBuffer(off_t from, off_t end) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(BufferSize);
    while (from < end) {
      const auto wanted = static_cast<std::size_t>(std::min<off_t>(end - from, BufferSize));
      const auto length = pread(mFrom, buffer.get(), wanted, from);
      if (length < 0 && errno == EINTR) continue;
      if (length < 0) Raise(errno, mSourcePath);
      if (length == 0) return;
      for (ssize_t done = 0; done < length;) {
        const auto written = pwrite(mTo, buffer.get() + done, length - done, from + done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) Raise(errno, mTargetPath);
        done += written;
      }
      from += length;
      CallTick(mTick);
    }
  }

  const int mFrom;
  const int mTo;
  const std::string& mSourcePath;
  const std::string& mTargetPath;
  const Tick& mTick;
};

/// A file that is replaced keeps its owner. The special mode bits go with the owner they were given by. What
/// a file system such as FAT cannot keep is no reason to refuse the copy.
void CopyStatus(const struct stat& source, const Target& target, int file) {
  if (target.Existing && (target.Existing->st_uid != geteuid() || target.Existing->st_gid != getegid()))
    static_cast<void>(fchown(file, target.Existing->st_uid, target.Existing->st_gid) == 0);
  struct stat made {};
  const bool sameOwner =
      fstat(file, &made) == 0 && made.st_uid == source.st_uid && made.st_gid == source.st_gid;
  fchmod(file, source.st_mode & (sameOwner ? 07777 : 0777));
  const timespec times[] = {source.st_atim, source.st_mtim};
  if (futimens(file, times) != 0 && errno != EPERM) Raise(errno, target.Path);
}

}  // namespace

void CopyOneFile(const std::string& sourcePath, const std::string& targetPath, bool overwrite,
                 const Tick& tick) {
  const Source source = OpenSource(sourcePath);
  const Target target = FindTarget(targetPath);
  CheckTarget(target, source.Status, overwrite);
  PendingFile pending(OpenParent(target.Path), std::string(FileName(target.Path)), target.Path);
  CallTick(tick);
  ContentCopy(source, sourcePath, pending.Descriptor(), target.Path, tick).CopyAll(source.Status);
  CopyStatus(source.Status, target, pending.Descriptor());
  pending.Commit(overwrite);
}

}  // namespace brackwell::posix
