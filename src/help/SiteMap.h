#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brackwell {

/// A line of a help file's contents or of its index.
struct HelpEntry {
  int Depth = 0;      // in the contents; an entry is at most one deeper than the one before it
  std::string Title;  // or the keyword
  std::string Topic;  // "welcome.html"; may be empty
  bool operator==(const HelpEntry&) const = default;
};

/// The entries of a site map, the HTML in which contents (.hhc) and index (.hhk) are kept, in their order.
/// Bounded in number and depth whatever the text holds (see HtmlDocument.h); what makes no sense in it is
/// left out.
std::vector<HelpEntry> ParseSiteMap(std::string_view html);

}  // namespace brackwell
