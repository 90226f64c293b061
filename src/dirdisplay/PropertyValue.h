#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "dirdisplay/PropertyCatalogue.h"
#include "platform/FileSystemObject.h"

namespace brackwell {

/// A property as it is typed, or nothing.
using PropertyValue = std::variant<std::monostate, bool, std::uint64_t, DateTime, std::string>;

/// The value as text: dates in the user's general format, "True" and "False", plain numbers.
std::string ToText(PropertyValue value);

/// An open folder of which properties are asked, one after the other.
struct FolderItem {
  const FileSystemObject& Files;
  Folder& Object;
  std::optional<ItemDetails> Details = {};  // read when first needed
};

/// A listed file.
struct FileItem {
  const FileSystemObject& Files;
  std::string_view FolderPath;
  std::string_view Name;
  ItemDetails Details = {};
};

/// A folder's property; nothing for one that cannot be read. Sizes are nothing too: they take a walk.
PropertyValue GetFolderProperty(FolderItem& folder, InfoKey key);

/// Whether a file's property is one of its Details.
bool NeedsDetails(InfoKey key);
PropertyValue GetFileProperty(const FileItem& file, InfoKey key);

}  // namespace brackwell
