#pragma once

#include <string>

#include "platform/FileSystemObject.h"

// For paths of more than 260 characters, where the means of the standard library end.

namespace brackwell {

/// Below whatever folder, it makes the path longer than that.
inline const std::string LongFolder =
    "a folder with a rather long name, as they come from titles of letters\\"
    "and in it another one that somebody has named after everything in it\\"
    "so that the path, of which the system once took 260 characters alone\\"
    "is longer than that before the file in it has been named at all";

/// The longest name that there is.
inline const std::string LongName = std::string(251, 'n') + ".txt";

/// Makes all folders of `below`, and gives the path of the last.
std::string MakeFolders(FileSystemObject& files, const std::string& top, const std::string& below);

/// Also where names are such as the standard library would change.
void RemoveTree(const FileSystemObject& files, const std::string& path);

}  // namespace brackwell
