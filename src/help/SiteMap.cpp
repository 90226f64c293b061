#include "help/SiteMap.h"

#include <algorithm>
#include <utility>

#include "help/HtmlDocument.h"
#include "platform/CaseRules.h"

namespace brackwell {
namespace {

constexpr int MaxDepth = 16;
constexpr std::size_t MaxTitle = 500;

/// Of an index entry that names several topics the first.
HelpEntry EntryOf(const xmlNode& object) {
  HelpEntry entry;
  for (const xmlNode* node = object.children; node; node = node->next) {
    if (ElementName(*node) != "param") continue;
    const std::string name = Lower(Attribute(*node, "name"));
    if (name == "name" && entry.Title.empty()) entry.Title = Attribute(*node, "value").substr(0, MaxTitle);
    if (name == "local" && entry.Topic.empty()) entry.Topic = Attribute(*node, "value");
  }
  return entry;
}

/// Adds the entries of the nodes from this one on and of all that is in them. Outside any list the depth is
/// -1.
void AddEntries(std::vector<HelpEntry>& entries, const xmlNode* node, int depth) {
  for (; node; node = node->next) {
    const std::string_view name = ElementName(*node);
    if (name.empty()) continue;
    if (name == "object") {
      HelpEntry entry = EntryOf(*node);
      const int deepest = std::min(entries.empty() ? 0 : entries.back().Depth + 1, MaxDepth);
      entry.Depth = std::clamp(depth, 0, deepest);
      if (!entry.Title.empty()) entries.push_back(std::move(entry));
    }
    AddEntries(entries, node->children, name == "ul" ? depth + 1 : depth);
  }
}

}  // namespace

std::vector<HelpEntry> ParseSiteMap(std::string_view html) {
  std::vector<HelpEntry> entries;
  if (const HtmlDocument document = ParseHtml(html)) AddEntries(entries, document->children, -1);
  return entries;
}

}  // namespace brackwell
