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
    std::string neighbour = NeighbourName(number);
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
    std::string neighbour = NeighbourName(number);
    if (LinkAs(neighbour)) {
      mNeighbour = std::move(neighbour);
      return;
    }
    if (errno != EEXIST) RaiseLast();
    if (!RemoveLeftover(neighbour)) ++number;
  }
  throw FileSystemError(FileError::PathFileAccess, mPath);
}

/// The same names for the same target, so that the next writer finds what a killed one left; short, since the
/// target's own name may already be as long as names can be.
std::string PendingFile::NeighbourName(int number) const {
  char name[48];
  std::snprintf(name, sizeof name, ".brackwell-%016zx-%d.tmp", std::hash<std::string>{}(mName), number);
  return name;
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

}  // namespace brackwell::posix
