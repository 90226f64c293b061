#include "dirdisplay/PropertyCatalogue.h"

#include <libxml/tree.h>
#include <utf8proc.h>

#include <algorithm>
#include <utility>

#include "platform/CaseRules.h"

namespace brackwell {
namespace {

using KeyName = std::pair<std::string_view, InfoKey>;

InfoKey FindKey(std::string_view key, std::span<const KeyName> names) {
  const std::string upper = Upper(key);
  const auto found = std::ranges::find(names, std::string_view(upper), &KeyName::first);
  return found == names.end() ? InfoKey::Unknown : found->second;
}

/// Whether a name without colons may hold this character anywhere but at its front.
bool MayBeInName(const std::string& character) {
  return xmlValidateNCName(reinterpret_cast<const xmlChar*>(("_" + character).c_str()), 0) == 0;
}

}  // namespace

std::span<const InfoItem> FolderCatalogue() {
  static const InfoItem items[] = {
      {"Full Name", "Path"},
      {"Date Created", "DateCreated"},
      {"Date Last Accessed", "DateLastAccessed"},
      {"Date Last Modified", "DateLastModified"},
      {"File Quantity", "Files"},
      {"Is Root", "IsRootFolder"},
      {"Parent Folder", "ParentFolder"},
      {"Short Name", "ShortName"},
      {"Short Path", "ShortPath"},
      {"Size", "Size"},
      {"Subfolder Quantity", "Subfolders"},
      {"Type", "Type"},
  };
  return items;
}

std::span<const InfoItem> FileCatalogue() {
  static const InfoItem items[] = {
      {"Name", "Name"},
      {"Date Created", "DateCreated"},
      {"Date Last Accessed", "DateLastAccessed"},
      {"Date Last Modified", "DateLastModified"},
      {"Path", "Path"},
      {"Short Name", "ShortName"},
      {"Short Path", "ShortPath"},
      {"Size", "Size"},
      {"Type", "Type"},
      {"Extension", "Extension"},
  };
  return items;
}

InfoKey FolderKey(std::string_view key) {
  static constexpr KeyName Names[] = {
      {"ATTRIBUTES", InfoKey::Attributes},
      {"DATECREATED", InfoKey::DateCreated},
      {"DATELASTACCESSED", InfoKey::DateLastAccessed},
      {"DATELASTMODIFIED", InfoKey::DateLastModified},
      {"FILES", InfoKey::Files},
      {"ISROOTFOLDER", InfoKey::IsRootFolder},
      {"NAME", InfoKey::Name},
      {"PARENTFOLDER", InfoKey::ParentFolder},
      {"PATH", InfoKey::Path},
      {"SHORTNAME", InfoKey::ShortName},
      {"SHORTPATH", InfoKey::ShortPath},
      {"SIZE", InfoKey::Size},
      {"SUBFOLDERS", InfoKey::Subfolders},
      {"TYPE", InfoKey::Type},
  };
  return FindKey(key, Names);
}

InfoKey FileKey(std::string_view key) {
  static constexpr KeyName Names[] = {
      {"ATTRIBUTES", InfoKey::Attributes},
      {"DATECREATED", InfoKey::DateCreated},
      {"DATELASTACCESSED", InfoKey::DateLastAccessed},
      {"DATELASTMODIFIED", InfoKey::DateLastModified},
      {"EXTENSION", InfoKey::Extension},
      {"NAME", InfoKey::Name},
      {"PARENTFOLDER", InfoKey::ParentFolder},
      {"PATH", InfoKey::Path},
      {"SHORTNAME", InfoKey::ShortName},
      {"SHORTPATH", InfoKey::ShortPath},
      {"SIZE", InfoKey::Size},
      {"TYPE", InfoKey::Type},
  };
  return FindKey(key, Names);
}

std::string NodeName(std::string_view caption) {
  std::string lower = Lower(caption);
  std::ranges::replace(lower, ' ', '_');
  std::string name;
  for (std::size_t at = 0; at < lower.size();) {
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(lower.data() + at),
                                         static_cast<utf8proc_ssize_t>(lower.size() - at), &code);
    const std::string character = lower.substr(at, length > 0 ? static_cast<std::size_t>(length) : 1);
    name += length > 0 && code != 0 && MayBeInName(character) ? character : "_";
    at += character.size();
  }
  // Names that begin with "xml" mean something of their own.
  const bool mayBegin = xmlValidateNCName(reinterpret_cast<const xmlChar*>(name.c_str()), 0) == 0;
  return mayBegin && !name.starts_with("xml") ? name : "_" + name;
}

}  // namespace brackwell
