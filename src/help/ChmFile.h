#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "help/HelpSearch.h"
#include "help/SiteMap.h"
#include "platform/ChmObjects.h"

namespace brackwell {

/// A compiled help file, read into memory as a whole: its pages and pictures, its contents, its index and its
/// full-text search.
class ChmFile {
 public:
  /// Nothing for a file that is no compiled help file with contents, or is damaged.
  static std::optional<ChmFile> Open(const std::string& path);

  /// A page, picture or other object by its name; null where there is none.
  const std::string* Find(std::string_view name) const;
  /// The names of all pages.
  std::vector<std::string> Topics() const;

  /// At least one entry, and the first one's topic is there.
  const std::vector<HelpEntry>& Contents() const { return mContents; }
  const std::vector<HelpEntry>& Index() const { return mIndex; }
  std::vector<HelpHit> Search(std::string_view query) const { return mSearch.Search(query); }

 private:
  explicit ChmFile(ChmObjects objects);
  std::vector<HelpEntry> ReadSiteMap(std::string_view ending) const;

  ChmObjects mObjects;
  std::vector<HelpEntry> mContents;
  std::vector<HelpEntry> mIndex;
  HelpSearch mSearch;
};

}  // namespace brackwell
