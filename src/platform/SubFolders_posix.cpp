#include "platform/SubFolders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "platform/Posix.h"

namespace brackwell {
namespace {

struct Names {
  std::vector<std::string> Folders;
  std::vector<std::string> Links;
};

unsigned char TypeOf(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type;
  struct stat status {};
  if (fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return DT_UNKNOWN;  // gone again
  return IFTODT(status.st_mode);
}

Names Read(DIR& folder, const std::string& path) {
  Names names;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(&folder);
    if (!entry && errno != 0) posix::Raise(errno, path);
    if (!entry) return names;
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const unsigned char type = TypeOf(dirfd(&folder), *entry);
    if (type == DT_DIR) names.Folders.emplace_back(name);
    if (type == DT_LNK) names.Links.emplace_back(name);
  }
}

}  // namespace

void ListSubFolders(const std::string& path, const std::function<void(std::vector<std::string>)>& found) {
  const posix::Location location(path);
  const int opened =
      openat(location.Folder(), location.Name(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
  if (opened < 0) posix::Raise(errno, path);
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(opened), closedir);
  if (!folder) posix::Raise(errno, path);
  Names names = Read(*folder, path);
  found(std::move(names.Folders));
  for (std::string& link : names.Links) {
    struct stat status {};
    if (fstatat(dirfd(folder.get()), link.c_str(), &status, 0) == 0 && S_ISDIR(status.st_mode))
      found({std::move(link)});
  }
}

}  // namespace brackwell
