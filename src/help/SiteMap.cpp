#include "help/SiteMap.h"

#include <algorithm>
#include <utility>

#include "help/HelpText.h"

namespace brackwell {
namespace {

constexpr std::size_t MaxEntries = 10'000;
constexpr int MaxDepth = 16;
constexpr std::size_t MaxTitle = 500;

/// Of the same length, unlike what Lower gives.
std::string AsciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

/// The value of an attribute of a tag, given as what stands between "<" and ">".
std::string Attribute(std::string_view tag, std::string_view name) {
  const std::string start = std::string(" ").append(name).append("=\"");
  const std::size_t begin = AsciiLower(tag).find(start);
  if (begin == std::string::npos) return {};
  const std::string_view value = tag.substr(begin + start.size());
  return DecodeEntities(value.substr(0, value.find('"')));
}

/// Builds the entries tag by tag.
class SiteMapReader {
 public:
  void Tag(std::string_view tag) {
    const std::string name = AsciiLower(tag.substr(0, tag.find_first_of(" \t\r\n")));
    if (name == "ul") mDepth = std::min(mDepth + 1, MaxDepth);
    if (name == "/ul") mDepth = std::max(mDepth - 1, -1);
    if (name == "object") mEntry = {};
    if (name == "param") Parameter(tag);
    if (name == "/object") EndOfObject();
  }

  bool IsFull() const { return mEntries.size() >= MaxEntries; }
  std::vector<HelpEntry> Take() { return std::move(mEntries); }

 private:
  void Parameter(std::string_view tag) {
    const std::string name = AsciiLower(Attribute(tag, "name"));
    // An index entry may name several topics; the first counts.
    if (name == "name" && mEntry.Title.empty()) mEntry.Title = Attribute(tag, "value").substr(0, MaxTitle);
    if (name == "local" && mEntry.Topic.empty()) mEntry.Topic = Attribute(tag, "value");
  }

  void EndOfObject() {
    if (mEntry.Title.empty()) return;
    const int deepest = mEntries.empty() ? 0 : mEntries.back().Depth + 1;
    mEntry.Depth = std::clamp(mDepth, 0, deepest);
    mEntries.push_back(std::exchange(mEntry, {}));
  }

  int mDepth = -1;
  HelpEntry mEntry;
  std::vector<HelpEntry> mEntries;
};

}  // namespace

std::vector<HelpEntry> ParseSiteMap(std::string_view html) {
  SiteMapReader reader;
  while (!reader.IsFull()) {
    const std::size_t begin = html.find('<');
    if (begin == std::string_view::npos) break;
    const std::size_t end = html.find('>', begin);
    if (end == std::string_view::npos) break;
    reader.Tag(html.substr(begin + 1, end - begin - 1));
    html.remove_prefix(end + 1);
  }
  return reader.Take();
}

}  // namespace brackwell
