#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/FileSystemError.h"
#include "platform/Paths.h"
#include "platform/Posix.h"
#include "platform/TempFolder.h"

namespace brackwell {

std::string GetTempFolder() {
  if (const char* chosen = std::getenv("TMPDIR"); chosen && *chosen) return WithSeparator(chosen);
  const std::string folder = "/tmp/brackwell-" + std::to_string(geteuid());
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) posix::Raise(errno, folder);
  struct stat status {};
  if (lstat(folder.c_str(), &status) != 0) posix::Raise(errno, folder);
  const bool isOurs = S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 0077) == 0;
  if (!isOurs) throw FileSystemError(FileError::PermissionDenied, folder);
  return WithSeparator(folder);
}

}  // namespace brackwell
