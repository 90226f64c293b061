#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// Writes `text` as it is. Raises FileAlreadyExists where there is such a file and it is not to be
/// overwritten, and whatever else the folder refuses; an older file is then still whole.
void WriteTextFile(FileSystemObject& files, const std::string& path, bool overwrite, std::string_view text);

/// The bytes of all files in and below a folder; a link counts as itself. Raises for what cannot be read.
std::uint64_t FolderSize(const FileSystemObject& files, const std::string& path, const Tick& tick = {});

/// Whether `error` says no more than that the folder at `path`, somewhere below `root`, has gone or become
/// something else since it was listed, as a second look confirms. Where the root is gone too, as with a drive
/// that was taken out, that is no reason to go on.
bool IsGoneFolder(const FileSystemObject& files, const FileSystemError& error, const std::string& path,
                  const std::string& root);

}  // namespace brackwell
