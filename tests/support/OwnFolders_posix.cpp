#include <cstdlib>

#include "support/OwnFolders.h"

namespace brackwell {

OwnVariable::OwnVariable(const char* name, const std::string& value) : mName(name) {
  if (const char* before = std::getenv(name)) mBefore = before;
  setenv(name, value.c_str(), 1);
}

OwnVariable::~OwnVariable() {
  if (mBefore.empty())
    unsetenv(mName);
  else
    setenv(mName, mBefore.c_str(), 1);
}

OwnTempFolder::OwnTempFolder(const std::string& path) : mVariable("TMPDIR", path) {}

OwnHomeFolder::OwnHomeFolder(const std::string& path) : mVariable("HOME", path) {}

}  // namespace brackwell
