#include "platform/Roots_windows.h"

#include <algorithm>
#include <utility>

#include "platform/FolderListing_windows.h"
#include "platform/Paths.h"

namespace brackwell::win32 {
namespace {

/// To open it for access to its members, however little, is what keeps others from renaming it: a handle that
/// only asks for properties takes no part in sharing.
Handle HoldOne(const std::string& folder, const std::string& path) {
  Handle held(CreateFileW(NativePath(folder).c_str(), FILE_TRAVERSE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                          nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                          nullptr));
  if (!held.IsOpen()) Raise(GetLastError(), path);
  if (!IsFolderItself(held)) throw FileSystemError(FileError::PathNotFound, path);
  return held;
}

}  // namespace

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

Way Roots::HoldWayTo(const std::string& path) const {
  const std::size_t root = LengthOfRoot(path);
  return root < path.size() ? Hold(std::string(ParentPath(path)), root, path) : nullptr;
}

Way Roots::HoldFolder(const std::string& path) const {
  const std::size_t root = LengthOfRoot(path);
  return root < path.size() ? Hold(std::string(WithoutSeparator(path)), root, path) : nullptr;
}

Way Roots::Hold(const std::string& folder, std::size_t root, const std::string& path) const {
  if (folder.size() <= root) return nullptr;
  {
    const std::lock_guard lock(mMutex);
    const Held& last = mLast[path.substr(0, root)];
    if (last.Folder == folder) return last.To;
  }
  std::vector<std::string> folders;
  for (std::string at = folder; at.size() > root; at = ParentPath(at)) folders.push_back(at);
  auto way = std::make_shared<std::vector<Handle>>();
  // From the top, so that each is held before anything is opened through it.
  for (; !folders.empty(); folders.pop_back()) way->push_back(HoldOne(folders.back(), path));
  const std::lock_guard lock(mMutex);
  mLast[path.substr(0, root)] = {folder, way};
  return way;
}

}  // namespace brackwell::win32
