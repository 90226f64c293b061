#pragma once

#include <filesystem>
#include <string>

#include "support/TempTree.h"

namespace brackwell {

/// Makes folders with so many files "….txt", each with the text "abc", that no run through them ends between
/// two paintings. A folder's files are names of one file: that is quicker to make.
inline void MakeLargeFolder(TempTree& tree, const std::string& name) {
  constexpr int Folders = 200;
  constexpr int FilesInEach = 300;
  for (int folder = 0; folder < Folders; ++folder) {
    const std::string place = name + "/" + std::to_string(folder) + "/";
    tree.File(place + "0.txt", "abc");
    const std::filesystem::path first = tree.Path(place + "0.txt");
    for (int file = 1; file < FilesInEach; ++file)
      std::filesystem::create_hard_link(first, first.parent_path() / (std::to_string(file) + ".txt"));
  }
}

}  // namespace brackwell
