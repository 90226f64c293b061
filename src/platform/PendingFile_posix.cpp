#include "platform/PendingFile_posix.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <utility>

namespace brackwell::posix {
namespace {

constexpr int NeighbourNumbers = 16;  // as many writers of one target at a time as anybody can have

/// The lock tells a file that is being written from one that a killed program left. False where somebody who
/// takes it for such a leftover has been faster; file systems without locks are put up with.
bool MarkAsBeingWritten(const Handle& file) {
  return flock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// The same names for the same target, so that the next writer finds what a killed one left; short, since the
/// target's own name may already be as long as names can be.
std::string NeighbourName(const std::string& target, int number) {
  char name[48];
  std::snprintf(name, sizeof name, ".brackwell-%016zx-%d.tmp", std::hash<std::string>{}(target), number);
  return name;
}

/// Gives the name of the new link. One that is there has been left by a killed program: it takes its target's
/// place as soon as it is made.
std::string MakeNeighbourLink(const Handle& folder, const std::string& name, const std::string& path,
                              const std::string& text) {
  for (int number = 0; number < NeighbourNumbers; ++number) {
    std::string neighbour = NeighbourName(name, number);
    if (symlinkat(text.c_str(), folder.Get(), neighbour.c_str()) == 0) return neighbour;
    if (errno != EEXIST) Raise(errno, path);
    struct stat found {};
    const bool isLeftover =
        fstatat(folder.Get(), neighbour.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(found.st_mode);
    if (!isLeftover || unlinkat(folder.Get(), neighbour.c_str(), 0) != 0) continue;
    if (symlinkat(text.c_str(), folder.Get(), neighbour.c_str()) == 0) return neighbour;
  }
  throw FileSystemError(FileError::PathFileAccess, path);
}

/// What cannot be kept there is no reason to refuse the link.
void SetTimeOfLink(const Handle& folder, const std::string& name, const timespec& modified) {
  const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, modified};
  static_cast<void>(utimensat(folder.Get(), name.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0);
}

}  // namespace

PendingFile::PendingFile(Handle folder, std::string name, std::string path)
    : mFolder(std::move(folder)), mName(std::move(name)), mPath(std::move(path)) {
  if (!OpenUnnamed()) OpenNamed();
}

PendingFile::~PendingFile() { GiveUpName(); }

void PendingFile::GiveUpName() {
  if (!mNeighbour.empty()) unlinkat(mFolder.Get(), mNeighbour.c_str(), 0);
  mNeighbour.clear();
}

bool PendingFile::OpenUnnamed() {
  static const bool canBeNamedLater = access("/proc/self/fd", X_OK) == 0;
  if (!canBeNamedLater) return false;
  mFile = Handle(openat(mFolder.Get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (mFile.IsOpen()) {
    MarkAsBeingWritten(mFile);
    return true;
  }
  if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL || errno == ENOENT) return false;
  RaiseLast();
}

void PendingFile::OpenNamed() {
  for (int number = 0; number < NeighbourNumbers;) {
    std::string neighbour = NeighbourName(mName, number);
    mFile = Handle(
        openat(mFolder.Get(), neighbour.c_str(), O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (mFile.IsOpen()) {
      if (!MarkAsBeingWritten(mFile) || !IsAt(neighbour, mFile)) continue;
      mNeighbour = std::move(neighbour);
      return;
    }
    if (errno != EEXIST) RaiseLast();
    if (!RemoveLeftover(neighbour)) ++number;
  }
  throw FileSystemError(FileError::PathFileAccess, mPath);
}

void PendingFile::Commit(bool replace) {
  // A network file system tells only on closing that the content did not fit.
  if (!Handle(fcntl(mFile.Get(), F_DUPFD_CLOEXEC, 0)).Close()) RaiseLast();
  TakePlace(replace);
  mFile.Close();  // from now on it is everybody's
}

void PendingFile::TakePlace(bool replace) {
  if (mNeighbour.empty()) {
    if (LinkAs(mName)) return;
    if (errno != EEXIST || !replace) RaiseForTheName(errno);
    GiveNeighbourName();
  }
  const int folder = mFolder.Get();
  const char* neighbour = mNeighbour.c_str();
  int error = 0;
  if (!replace)
    error = RenameWithoutReplacing(folder, neighbour, folder, mName.c_str());
  else if (renameat(folder, neighbour, folder, mName.c_str()) != 0)
    error = errno;
  if (error != 0) RaiseForTheName(error);
  mNeighbour.clear();
}

bool PendingFile::LinkAs(const std::string& name) const {
  char self[40];
  std::snprintf(self, sizeof self, "/proc/self/fd/%d", mFile.Get());
  return linkat(AT_FDCWD, self, mFolder.Get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

void PendingFile::GiveNeighbourName() {
  for (int number = 0; number < NeighbourNumbers;) {
    std::string neighbour = NeighbourName(mName, number);
    if (LinkAs(neighbour)) {
      mNeighbour = std::move(neighbour);
      return;
    }
    if (errno != EEXIST) RaiseLast();
    if (!RemoveLeftover(neighbour)) ++number;
  }
  throw FileSystemError(FileError::PathFileAccess, mPath);
}

bool PendingFile::RemoveLeftover(const std::string& neighbour) const {
  const Handle found(
      openat(mFolder.Get(), neighbour.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!found.IsOpen()) return errno == ENOENT;
  struct stat status {};
  if (fstat(found.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (flock(found.Get(), LOCK_EX | LOCK_NB) != 0) return false;
  if (!IsAt(neighbour, found)) return true;  // gone meanwhile; the name may be another writer's by now
  return unlinkat(mFolder.Get(), neighbour.c_str(), 0) == 0;
}

bool PendingFile::IsAt(const std::string& neighbour, const Handle& file) const {
  struct stat named {};
  struct stat open {};
  return fstatat(mFolder.Get(), neighbour.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         fstat(file.Get(), &open) == 0 && named.st_dev == open.st_dev && named.st_ino == open.st_ino;
}

void PendingFile::RaiseLast() const { Raise(errno, mPath); }

/// The neighbour itself may have been taken away, too.
void PendingFile::RaiseForTheName(int code) const {
  if (!mNeighbour.empty() && !IsAt(mNeighbour, mFile)) Raise(code, mPath);
  RaiseForName(code, mFolder.Get(), mPath);
}

void PutLink(const Handle& folder, const std::string& name, const std::string& path, const std::string& text,
             const timespec& modified, bool replace) {
  if (!replace) {
    if (symlinkat(text.c_str(), folder.Get(), name.c_str()) != 0) RaiseForName(errno, folder.Get(), path);
    return SetTimeOfLink(folder, name, modified);
  }
  const std::string neighbour = MakeNeighbourLink(folder, name, path, text);
  SetTimeOfLink(folder, neighbour, modified);
  if (renameat(folder.Get(), neighbour.c_str(), folder.Get(), name.c_str()) == 0) return;
  const int error = errno;
  unlinkat(folder.Get(), neighbour.c_str(), 0);
  Raise(error, path);
}

}  // namespace brackwell::posix
