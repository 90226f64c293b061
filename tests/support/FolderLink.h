#pragma once

#include <string>

#include "support/TempTree.h"

namespace brackwell {

/// Makes a symbolic link to a folder. False where this user may make none, as on Windows outside its
/// developer mode.
bool MakeFolderLink(const std::string& path, const std::string& target);

/// Makes folders that all link to each other, so that they can be walked in millions of ways, in each of them
/// a file "x.txt" with the text "abc". False where no links can be made.
inline bool MakeEndlessFolder(TempTree& tree, const std::string& name = ".") {
  const std::string names = "abcdefghijkl";
  for (const char from : names) {
    const std::string folder = name + "/" + from;
    tree.File(folder + "/x.txt", "abc");
    for (const char to : names)
      if (to != from && !MakeFolderLink(tree.Path(folder + "/" + to), std::string("../") + to)) return false;
  }
  return true;
}

/// Why a test is skipped that needs one.
inline constexpr char NoLinks[] = "no links can be made here";

}  // namespace brackwell
