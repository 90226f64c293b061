#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/FileSystemObject.h"
#include "platform/Roots_windows.h"
#include "platform/Win32.h"

namespace brackwell::win32 {

/// Raises PathNotFound where there is no folder. The listing looks members up by path, so it keeps `way`.
std::unique_ptr<Folder> OpenListing(const std::string& path, const Tick& tick, Way way);

/// What one look-up tells. A link is what IsLinkTag says, whatever it leads to.
struct Found {
  BY_HANDLE_FILE_INFORMATION Information{};  // its volume and index only where a link was followed
  bool IsLink = false;

  bool IsFolder() const { return !IsLink && (Information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  std::uint64_t Size() const;
};

/// What is at `path` itself, a link not followed; nothing where there is none or none can be seen.
std::optional<Found> FindItem(const std::string& path);
/// The same, but a link counts as what it leads to, if anything.
std::optional<Found> FindFollowing(const std::string& path);
/// What is at `path` itself. Raises; `missing` is the error where there is none.
Found GetItem(const std::string& path, FileError missing);
/// The same. Gives the system's error code, or 0.
DWORD LookUp(const std::string& path, Found& found);

/// Whether what was opened by FILE_FLAG_OPEN_REPARSE_POINT is a folder and, as far as can be known, no link.
bool IsFolderItself(const Handle& opened);

ItemDetails DetailsOf(const Found& found);
ItemProperties PropertiesOf(const Found& found, const std::string& path);

}  // namespace brackwell::win32
