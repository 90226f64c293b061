#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brackwell {

/// Gives `found` the names of the folders in a folder, in any number of batches and in no order. Folders of
/// its own come first; links to folders follow one by one, since what a link leads to may take long to
/// answer. Needs nothing but its arguments, so it can run on any thread. Raises FileSystemError.
void ListSubFolders(const std::string& path, const std::function<void(std::vector<std::string>)>& found);

}  // namespace brackwell
