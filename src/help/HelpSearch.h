#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brackwell {

struct HelpHit {
  std::string Topic;
  std::string Title;
  bool operator==(const HelpHit&) const = default;
};

/// Full-text search in the pages of a help file.
class HelpSearch {
 public:
  /// Pages are searched in the order in which they are added, which decides between equally good ones.
  void AddPage(std::string topic, std::string_view html);

  /// The pages in which every word of the query begins some word, best first: a word of the title counts more
  /// than many in the text. Nothing for a query without words.
  std::vector<HelpHit> Search(std::string_view query) const;

 private:
  struct Page {
    HelpHit Hit;
    std::vector<std::string> TitleWords;
    std::vector<std::string> TextWords;  // sorted
  };
  /// 0 where a word is missing.
  static std::size_t Score(const Page& page, const std::vector<std::string>& query);

  std::vector<Page> mPages;
};

}  // namespace brackwell
