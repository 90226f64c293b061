#pragma once

#include <string>
#include <string_view>

namespace brackwell {

class FileSystemObject;

/// Writes `text` as it is. Raises FileAlreadyExists where there is such a file and it is not to be
/// overwritten, and whatever else the folder refuses; an older file is then still whole.
void WriteTextFile(FileSystemObject& files, const std::string& path, bool overwrite, std::string_view text);

}  // namespace brackwell
