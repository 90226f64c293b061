#include "support/ClosedFolder.h"

#include <sys/stat.h>

#include "support/WithoutPrivileges_posix.h"

namespace brackwell {

struct ClosedFolder::Before {
  explicit Before(const std::string& path) : Path(path) {}

  std::string Path;
  WithoutPrivileges AsAnyUser;
};

ClosedFolder::ClosedFolder(const std::string& path, To whom) : mBefore(std::make_unique<Before>(path)) {
  chmod(path.c_str(), whom == To::Readers ? 0300 : 0500);
}

ClosedFolder::~ClosedFolder() { chmod(mBefore->Path.c_str(), 0700); }

}  // namespace brackwell
