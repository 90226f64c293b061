#include "help/HelpSearch.h"

#include <algorithm>
#include <utility>

#include "help/HelpText.h"

namespace brackwell {
namespace {

constexpr std::size_t TitleScore = 100;
constexpr std::size_t MostTextScore = 20;  // of one word

bool IsInTitle(const std::vector<std::string>& words, const std::string& prefix) {
  return std::ranges::any_of(words, [&](const std::string& word) { return word.starts_with(prefix); });
}

/// How many of the sorted words begin with it.
std::size_t CountInText(const std::vector<std::string>& words, const std::string& prefix) {
  const auto begin = std::ranges::lower_bound(words, prefix);
  const auto end =
      std::find_if_not(begin, words.end(), [&](const std::string& word) { return word.starts_with(prefix); });
  return static_cast<std::size_t>(end - begin);
}

}  // namespace

void HelpSearch::AddPage(std::string topic, std::string_view html) {
  std::string title = PageTitle(html);
  Page page{.Hit = {.Topic = std::move(topic), .Title = title},
            .TitleWords = Words(title),
            .TextWords = Words(PlainText(html))};
  std::ranges::sort(page.TextWords);
  mPages.push_back(std::move(page));
}

std::size_t HelpSearch::Score(const Page& page, const std::vector<std::string>& query) {
  std::size_t score = 0;
  for (const std::string& word : query) {
    const std::size_t inTitle = IsInTitle(page.TitleWords, word) ? TitleScore : 0;
    const std::size_t inText = std::min(CountInText(page.TextWords, word), MostTextScore);
    if (inTitle + inText == 0) return 0;
    score += inTitle + inText;
  }
  return score;
}

std::vector<HelpHit> HelpSearch::Search(std::string_view query) const {
  const std::vector<std::string> words = Words(query);
  std::vector<std::pair<std::size_t, const Page*>> found;
  for (const Page& page : mPages)
    if (const std::size_t score = Score(page, words)) found.emplace_back(score, &page);
  std::ranges::stable_sort(found, std::ranges::greater{}, [](const auto& hit) { return hit.first; });

  std::vector<HelpHit> hits;
  for (const auto& [score, page] : found) hits.push_back(page->Hit);
  return hits;
}

}  // namespace brackwell
