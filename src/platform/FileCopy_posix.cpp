#include "platform/FileCopy_posix.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <optional>
#include <string>

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

using Existing = std::optional<struct stat>;

Existing FindItem(const Location& location, int flags) {
  struct stat status {};
  if (fstatat(location.Folder(), location.Name(), &status, flags) == 0) return status;
  if (errno != ENOENT) Raise(errno, location.Path());
  return std::nullopt;
}

/// Pipes and devices are told by their status, before anything is opened.
Source OpenSource(const Location& location, const struct stat& found, int flags) {
  const std::string& path = location.Path();
  if (S_ISDIR(found.st_mode)) throw FileSystemError(FileError::FileNotFound, path);
  if (!S_ISREG(found.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  Source source;
  source.File = Handle(
      openat(location.Folder(), location.Name(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags));
  if (!source.File.IsOpen()) Raise(errno, path, FileError::FileNotFound);
  if (fstat(source.File.Get(), &source.Status) != 0) Raise(errno, path);
  if (!S_ISREG(source.Status.st_mode)) throw FileSystemError(FileError::PathFileAccess, path);
  return source;
}

struct stat RequireItem(const Location& location, int flags) {
  const Existing found = FindItem(location, flags);
  if (!found) throw FileSystemError(FileError::FileNotFound, location.Path());
  return *found;
}

void CheckTarget(const Existing& existing, const Location& target, const struct stat& source,
                 bool overwrite) {
  if (!existing) return;
  const std::string& path = target.Path();
  if (S_ISDIR(existing->st_mode)) throw FileSystemError(FileError::PermissionDenied, path);
  if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, path);
  const bool same = existing->st_dev == source.st_dev && existing->st_ino == source.st_ino;
  if (same) throw FileSystemError(FileError::PermissionDenied, path);
  if (!S_ISLNK(existing->st_mode)) CheckReplaceable(*existing, target.Folder(), target.Name(), path);
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
void CopyStatus(const struct stat& source, const Existing& existing, int file, const std::string& path) {
  if (existing && (existing->st_uid != geteuid() || existing->st_gid != getegid()))
    static_cast<void>(fchown(file, existing->st_uid, existing->st_gid) == 0);
  struct stat made {};
  const bool sameOwner =
      fstat(file, &made) == 0 && made.st_uid == source.st_uid && made.st_gid == source.st_gid;
  fchmod(file, source.st_mode & (sameOwner ? 07777 : 0777));
  const timespec times[] = {source.st_atim, source.st_mtim};
  if (futimens(file, times) != 0 && errno != EPERM) Raise(errno, path);
}

void CopyRegularFile(const Location& from, const struct stat& found, int flags, const Location& target,
                     const Existing& existing, bool overwrite, const Tick& tick) {
  const Source source = OpenSource(from, found, flags);
  const std::string& path = target.Path();
  PendingFile pending(OpenParent(target), std::string(FileName(path)), path);
  CallTick(tick);
  ContentCopy(source, from.Path(), pending.Descriptor(), path, tick).CopyAll(source.Status);
  CopyStatus(source.Status, existing, pending.Descriptor(), path);
  pending.Commit(overwrite);
}

std::string TextOfLink(const Location& link) {
  char text[PATH_MAX];
  const auto length = readlinkat(link.Folder(), link.Name(), text, sizeof text);
  if (length < 0) Raise(errno, link.Path(), FileError::FileNotFound);
  return std::string(text, static_cast<std::size_t>(length));
}

}  // namespace

void CopyOneFile(const Location& source, const Location& target, bool overwrite, const Tick& tick) {
  const struct stat found = RequireItem(source, AT_SYMLINK_NOFOLLOW);
  const Existing existing = FindItem(target, AT_SYMLINK_NOFOLLOW);
  CheckTarget(existing, target, found, overwrite);
  if (!S_ISLNK(found.st_mode))
    return CopyRegularFile(source, found, O_NOFOLLOW, target, existing, overwrite, tick);
  if (symlinkat(TextOfLink(source).c_str(), target.Folder(), target.Name()) != 0) Raise(errno, target.Path());
}

void CopyAsNewFile(const Location& source, const Location& target, const Tick& tick) {
  const struct stat found = RequireItem(source, 0);
  const Existing existing = FindItem(target, AT_SYMLINK_NOFOLLOW);
  if (existing && S_ISLNK(existing->st_mode)) throw FileSystemError(FileError::PathFileAccess, target.Path());
  CheckTarget(existing, target, found, true);
  CopyRegularFile(source, found, 0, target, existing, true, tick);
}

}  // namespace brackwell::posix
