#include "support/FolderLink.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brackwell {

bool MakeFolderLink(const std::string& path, const std::string& target) {
  if (symlink(target.c_str(), path.c_str()) != 0)
    throw std::system_error(errno, std::generic_category(), path);
  return true;
}

}  // namespace brackwell
