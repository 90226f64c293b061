#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/Win32.h"

namespace brackwell::win32 {

/// Folders held open: for as long as it lives nobody can rename or delete one of them, so none can make way
/// for a link. Null where none has to be held.
using Way = std::shared_ptr<const std::vector<Handle>>;

/// The folders that a run stays in: see FileSystemObject::Within. The way that was used last below each root
/// is held until the next one is, or until the run ends. Two things cannot be prevented by that. An empty
/// folder can be turned into a link without giving up its name, which leads a call on a member that it is to
/// have elsewhere. And the item at the end of the way is not held: callers look whether it is a link, and one
/// that is put there between that look and the call is followed.
class Roots {
 public:
  explicit Roots(const std::vector<std::string>& paths = {});

  /// Whether the path leads below a root.
  bool IsBelow(const std::string& path) const { return LengthOfRoot(path) < path.size(); }
  /// Holds the folders between a root and the item. Throws PathNotFound where one of them is a link, or may
  /// be one, or is gone; PermissionDenied where it may not be held.
  Way HoldWayTo(const std::string& path) const;
  /// The same, and the folder `path` itself, unless it is a root.
  Way HoldFolder(const std::string& path) const;

 private:
  struct Held {
    std::string Folder;
    Way To;
  };

  std::size_t LengthOfRoot(const std::string& path) const;
  Way Hold(const std::string& folder, std::size_t root, const std::string& path) const;

  std::vector<std::string> mPaths;  // without separators at their ends
  mutable std::mutex mMutex;
  mutable std::map<std::string, Held, std::less<>> mLast;  // by root: most calls are about the same folder
};

}  // namespace brackwell::win32
