#pragma once

#include "platform/FileSystemObject.h"
#include "support/TempTree.h"

namespace brackwell {

/// Waits for the next tick of the file system's clock, so that changes made afterwards have a later change
/// time than those made before.
inline void LetTimePass() {
  TempTree tree;
  tree.Folder("clock");
  const auto folder = CreateFileSystemObject()->GetFolder(tree.Path("clock"));
  const auto start = folder->State().ChangeTicks;
  while (folder->State().ChangeTicks == start) tree.SetModified("clock", 0);
}

}  // namespace brackwell
