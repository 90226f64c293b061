#pragma once

#include <string>

#include "platform/FolderListing_windows.h"

namespace brackwell::win32 {

/// A file or link that makes way for what takes its place, for where that takes two steps: nothing takes the
/// place of what is made as a folder, nor does that take the place of anything. It waits under a name beside
/// its own, and goes back there if it is dropped before Remove. A program that is killed in between leaves it
/// under that name, for the next one that replaces the same target to delete.
class SetAside {
 public:
  /// Throws.
  SetAside(const std::string& path, const Found& item);
  ~SetAside();
  SetAside(const SetAside&) = delete;
  SetAside& operator=(const SetAside&) = delete;

  /// Call it once the new item is in place.
  void Remove();

 private:
  const std::string mPath;
  const std::string mAside;
  const Found mItem;
  bool mIsSuperseded = false;
};

/// Whether the item is a link that the system keeps as a folder, whatever it leads to.
bool IsMadeAsFolder(const Found& link);

/// Deletes a file or a link. False on failure, as GetLastError says.
bool Remove(const std::string& path, const Found& item);

}  // namespace brackwell::win32
