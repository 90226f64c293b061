#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/DefaultProgram_posix.h"
#include "platform/FileSystemError.h"
#include "platform/Paths.h"
#include "platform/Places.h"
#include "platform/Posix.h"
#include "platform/TempFolder.h"

namespace brackwell {

namespace {

/// Ends in the path separator; empty if the user chose none.
std::string ChosenFolder() {
  const char* chosen = std::getenv("TMPDIR");
  return chosen && *chosen ? WithSeparator(chosen) : std::string();
}

void MakeFolder(const std::string& folder) {
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) posix::Raise(errno, folder);
}

std::string PrivateFolder(const std::string& folder) {
  MakeFolder(folder);
  struct stat status {};
  if (lstat(folder.c_str(), &status) != 0) posix::Raise(errno, folder);
  const bool isOurs = S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 0077) == 0;
  if (!isOurs) throw FileSystemError(FileError::PermissionDenied, folder);
  return WithSeparator(folder);
}

/// Snaps see the user's home, except for what is hidden in it, and little else.
bool IsSeenBySnaps(const std::string& folder) {
  const std::string home = WithSeparator(HomeFolder());
  return folder.size() > home.size() && folder.starts_with(home) && folder[home.size()] != '.';
}

/// A snap that was never started has no folder yet.
std::string FolderOfSnap(const std::string& snap) {
  std::string folder = HomeFolder();
  for (const std::string& name : {std::string("snap"), snap, std::string("common")})
    MakeFolder(folder = JoinPath(folder, name));
  return PrivateFolder(JoinPath(folder, "brackwell"));
}

}  // namespace

std::string GetTempFolder() {
  const std::string chosen = ChosenFolder();
  return chosen.empty() ? PrivateFolder("/tmp/brackwell-" + std::to_string(geteuid())) : chosen;
}

std::string ReportPath(const std::string& fileName) {
  const std::string snap = posix::SnapThatOpens(fileName);
  const bool isSeen = snap.empty() || IsSeenBySnaps(ChosenFolder());
  return (isSeen ? GetTempFolder() : FolderOfSnap(snap)) + fileName;
}

}  // namespace brackwell
