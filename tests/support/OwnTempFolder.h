#pragma once

#include <string>

namespace brackwell {

/// For as long as it lives, the user's temporary folder is the one given.
class OwnTempFolder {
 public:
  explicit OwnTempFolder(const std::string& path);
  ~OwnTempFolder();
  OwnTempFolder(const OwnTempFolder&) = delete;
  OwnTempFolder& operator=(const OwnTempFolder&) = delete;

 private:
  std::string mBefore;
};

}  // namespace brackwell
