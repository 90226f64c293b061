#include "support/OwnTempFolder.h"

#include <cstdlib>

namespace brackwell {

OwnTempFolder::OwnTempFolder(const std::string& path) {
  if (const char* before = std::getenv("TMPDIR")) mBefore = before;
  setenv("TMPDIR", path.c_str(), 1);
}

OwnTempFolder::~OwnTempFolder() {
  if (mBefore.empty())
    unsetenv("TMPDIR");
  else
    setenv("TMPDIR", mBefore.c_str(), 1);
}

}  // namespace brackwell
