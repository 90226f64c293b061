#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace brackwell::win32 {

/// The folders that a run stays in: see FileSystemObject::Within. A link is found by looking at each folder
/// on the way, so one that somebody puts there between that look and the call behind it is followed.
class Roots {
 public:
  explicit Roots(const std::vector<std::string>& paths = {});

  /// Whether the path leads below a root.
  bool IsBelow(const std::string& path) const { return LengthOfRoot(path) < path.size(); }
  /// Throws PathNotFound where one of the folders between a root and the item is a link.
  void CheckWay(const std::string& path) const;

 private:
  std::size_t LengthOfRoot(const std::string& path) const;

  std::vector<std::string> mPaths;  // without separators at their ends
  mutable std::mutex mMutex;
  mutable std::string mChecked;  // the folder to which the way is free: most calls are about its members
};

}  // namespace brackwell::win32
