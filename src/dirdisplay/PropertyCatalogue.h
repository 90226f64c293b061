#pragma once

#include <span>
#include <string>
#include <string_view>

namespace brackwell {

/// A property as the lists offer it: its caption, and the key that names what supplies the value. Lists are
/// restored from the settings, so either may be anything.
struct InfoItem {
  std::string Caption;
  std::string Key;
  bool operator==(const InfoItem&) const = default;
};

/// What is offered of folders and of files, in default order.
std::span<const InfoItem> FolderCatalogue();
std::span<const InfoItem> FileCatalogue();

/// What a key asks for, whatever its case.
enum class InfoKey {
  Unknown,  // has an empty value
  Attributes,
  DateCreated,
  DateLastAccessed,
  DateLastModified,
  Extension,  // of files only
  Files,      // of folders only, as the next
  IsRootFolder,
  Name,
  ParentFolder,
  Path,
  ShortName,
  ShortPath,
  Size,
  Subfolders,  // of folders only
  Type,
};
InfoKey FolderKey(std::string_view key);
InfoKey FileKey(std::string_view key);

/// The name of a property's element or attribute: the caption in lower case, "_" for blanks. Characters that
/// a name may not hold become "_" too, and one that may not begin with what it does gets a "_" before it.
std::string NodeName(std::string_view caption);

}  // namespace brackwell
