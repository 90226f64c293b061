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
#include <utility>

#include "platform/FileProperties_posix.h"
#include "platform/FileRewrite_posix.h"
#include "platform/Paths.h"
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

/// A name that the disk cannot hold may be refused by the look-up already.
Existing FindTarget(const Location& target) {
  struct stat status {};
  if (fstatat(target.Folder(), target.Name(), &status, AT_SYMLINK_NOFOLLOW) == 0) return status;
  const int error = errno;
  if (error != ENOENT) RaiseForName(error, OpenParent(target).Get(), target.Path());
  return std::nullopt;
}

struct stat RequireItem(const Location& location, int flags) {
  struct stat status {};
  if (fstatat(location.Folder(), location.Name(), &status, flags) != 0)
    Raise(errno, location.Path(), FileError::FileNotFound);
  return status;
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

/// By name, which may lead to another file by now.
bool HasStayedTheSame(const Source& source, const Location& location, int flags) {
  struct stat now {};
  return fstatat(location.Folder(), location.Name(), &now, flags) == 0 && IsUnchanged(source.Status, now);
}

/// A link in the place of the very file that it leads to would lead to itself, and the file would be lost.
void CheckLinkTarget(const Location& link, const Existing& existing, const std::string& target) {
  struct stat led {};
  if (existing && fstatat(link.Folder(), link.Name(), &led, 0) == 0 && led.st_dev == existing->st_dev &&
      led.st_ino == existing->st_ino)
    throw FileSystemError(FileError::PermissionDenied, target);
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

/// Copies content by the kernel where it can, as far as the file went when it was opened. Whether it has
/// changed meanwhile is for the caller to notice.
class ContentCopy {
 public:
  ContentCopy(const Source& source, const std::string& sourcePath, int to, const std::string& targetPath,
              const Tick& tick)
      : mFrom(source.File.Get()), mTo(to), mSourcePath(sourcePath), mTargetPath(targetPath), mTick(tick) {}

  void CopyAll(const struct stat& status) {
    const off_t size = status.st_size;
    const bool hasHoles = status.st_blocks * 512 < size;
    if (size == 0) return CopyRange(0, LLONG_MAX);  // files of the kernel's tell no size
    if (ioctl(mTo, FICLONE, mFrom) == 0) return;
    if (hasHoles)
      CopyData(size);
    else
      CopyRange(0, size);
  }

 private:
  void CopyData(off_t size) {
    for (off_t at = 0; at < size;) {
      const off_t data = lseek(mFrom, at, SEEK_DATA);
      if (data < 0 && errno == ENXIO) break;  // only a hole is left
      if (data < 0) return CopyRange(at, size);
      const off_t hole = lseek(mFrom, data, SEEK_HOLE);
      if (hole < 0) return CopyRange(data, size);
      CopyRange(data, std::min(hole, size));
      at = hole;
    }
    if (ftruncate(mTo, size) != 0) Raise(errno, mTargetPath);
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

void CopyTimes(const struct stat& source, const Handle& file, const std::string& path) {
  const timespec times[] = {source.st_atim, source.st_mtim};
  if (futimens(file.Get(), times) != 0 && errno != EPERM) Raise(errno, path);
}

/// One copy of a file's content, and what is asked about it once it is made.
class OneFile {
 public:
  /// `follows` says whether `source` may be a link that is followed.
  OneFile(const Location& source, const struct stat& found, bool follows, const Location& target,
          const Tick& tick)
      : mFrom(source),
        mTo(target),
        mFollows(follows),
        mTick(tick),
        mSource(OpenSource(source, found, follows ? 0 : O_NOFOLLOW)) {}

  /// False where the source has changed meanwhile; then nothing else has happened.
  bool CopyToNewFile(Handle folder, bool replace) const {
    const std::string& path = mTo.Path();
    PendingFile pending(std::move(folder), std::string(FileName(path)), path);
    if (!CopyContent(pending.File())) return false;
    CopyPropertiesToNew(mSource.File, mSource.Status, pending.File());
    CopyTimes(mSource.Status, pending.File(), path);
    pending.Commit(replace);
    return true;
  }

  /// The same for a target that is there.
  bool CopyOnto(const struct stat& existing, Handle folder) const {
    const std::string& path = mTo.Path();
    Handle old(openat(folder.Get(), std::string(FileName(path)).c_str(),
                      O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!old.IsOpen()) Raise(errno, path);
    const auto rewrite = RewriteFile(std::move(old), existing, std::move(folder), path, WithoutErrors());
    if (!CopyContent(rewrite->Content())) return false;
    rewrite->CloseAsCopy(mSource.Status.st_mtim);
    return true;
  }

 private:
  bool CopyContent(const Handle& to) const {
    CallTick(mTick);
    ContentCopy(mSource, mFrom.Path(), to.Get(), mTo.Path(), mTick).CopyAll(mSource.Status);
    return HasStayedTheSame(mSource, mFrom, mFollows ? 0 : AT_SYMLINK_NOFOLLOW);
  }

  /// For what must not be left half done: whoever wants the run to end says so again with the next tick.
  Tick WithoutErrors() const {
    return [this] {
      try {
        CallTick(mTick);
      } catch (...) {
      }
    };
  }

  const Location& mFrom;
  const Location& mTo;
  const bool mFollows;
  const Tick& mTick;
  const Source mSource;
};

/// Calls `copy` until it has found its source unchanged.
template <typename Copy>
void CopyUnchanged(const Location& source, Copy copy) {
  constexpr int Attempts = 2;
  for (int attempt = 0; attempt < Attempts; ++attempt)
    if (copy()) return;
  throw KeepsChanging(source.Path());
}

std::string TextOfLink(const Location& link) {
  char text[PATH_MAX];
  const auto length = readlinkat(link.Folder(), link.Name(), text, sizeof text);
  if (length < 0) Raise(errno, link.Path(), FileError::FileNotFound);
  return std::string(text, static_cast<std::size_t>(length));
}

bool TryToCopy(const Location& source, const Location& target, bool overwrite, const Tick& tick,
               CaseTwins& twins) {
  const struct stat found = RequireItem(source, AT_SYMLINK_NOFOLLOW);
  const Existing existing = FindTarget(target);
  CheckTarget(existing, target, found, overwrite);
  Handle folder = OpenParent(target);
  if (existing) twins.Check(source, target, folder);
  if (S_ISLNK(found.st_mode)) {
    CheckLinkTarget(source, existing, target.Path());
    PutLink(folder, std::string(FileName(target.Path())), target.Path(), TextOfLink(source), found.st_mtim,
            existing.has_value());
    return true;
  }
  const OneFile file(source, found, false, target, tick);
  if (existing && S_ISREG(existing->st_mode)) return file.CopyOnto(*existing, std::move(folder));
  return file.CopyToNewFile(std::move(folder), existing.has_value());
}

}  // namespace

void CopyOneFile(const Location& source, const Location& target, bool overwrite, const Tick& tick,
                 CaseTwins& twins) {
  CopyUnchanged(source, [&] { return TryToCopy(source, target, overwrite, tick, twins); });
}

void CopyAsNewFile(const Location& source, const Location& target, const Tick& tick) {
  CopyUnchanged(source, [&] {
    const struct stat found = RequireItem(source, 0);
    const Existing existing = FindTarget(target);
    if (existing && S_ISLNK(existing->st_mode))
      throw FileSystemError(FileError::PathFileAccess, target.Path());
    CheckTarget(existing, target, found, true);
    return OneFile(source, found, true, target, tick).CopyToNewFile(OpenParent(target), existing.has_value());
  });
}

}  // namespace brackwell::posix
