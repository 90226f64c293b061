#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/FileSystemObject.h"
#include "platform/Posix.h"

namespace brackwell::posix {

/// Raises PathNotFound where there is no folder.
std::unique_ptr<Folder> OpenListing(const Location& location, const Tick& tick);

/// Looks `name` up in the open folder `folder`; nothing where there is none or none can be seen.
std::optional<FileStatus> FindAt(int folder, const char* name);

/// Reads all properties of `name` in the open folder `folder` (AT_EMPTY_PATH: of the folder itself).
ItemProperties PropertiesAt(int folder, const char* name, const std::string& path);

ItemKind KindOf(mode_t mode);

}  // namespace brackwell::posix
