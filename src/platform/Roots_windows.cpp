#include "platform/Roots_windows.h"

#include <algorithm>

#include "platform/FolderListing_windows.h"
#include "platform/Paths.h"

namespace brackwell::win32 {

Roots::Roots(const std::vector<std::string>& paths) {
  for (const std::string& path : paths)
    if (!path.empty()) mPaths.emplace_back(WithoutSeparator(path));
}

/// The path's own length where it is a root or lies in none.
std::size_t Roots::LengthOfRoot(const std::string& path) const {
  const std::size_t end = WithoutSeparator(path).size();
  std::size_t longest = 0;
  for (const std::string& root : mPaths) {
    const bool isBelow = end > root.size() && path.starts_with(root) &&
                         (EndsWithSeparator(root) || EndsWithSeparator(path.substr(0, root.size() + 1)));
    if (path.starts_with(root) && (isBelow || end == root.size())) longest = std::max(longest, root.size());
  }
  return longest > 0 && longest < end ? longest : path.size();
}

void Roots::CheckWay(const std::string& path) const {
  const std::size_t root = LengthOfRoot(path);
  const std::string folder(ParentPath(path));
  if (root == path.size() || folder.size() <= root) return;
  {
    const std::lock_guard lock(mMutex);
    if (folder == mChecked) return;
  }
  for (std::string at = folder; at.size() > root; at = ParentPath(at)) {
    const auto found = FindItem(at);
    if (!found || found->IsLink) throw FileSystemError(FileError::PathNotFound, path);
  }
  const std::lock_guard lock(mMutex);
  mChecked = folder;
}

}  // namespace brackwell::win32
