#pragma once

#include <memory>
#include <string>

namespace brackwell {

/// For as long as it lives, this process may not read a folder, or may not change it, whoever runs it.
class ClosedFolder {
 public:
  enum class To { Readers, Writers };

  ClosedFolder(const std::string& path, To whom);
  ~ClosedFolder();
  ClosedFolder(const ClosedFolder&) = delete;
  ClosedFolder& operator=(const ClosedFolder&) = delete;

 private:
  struct Before;
  std::unique_ptr<Before> mBefore;
};

}  // namespace brackwell
