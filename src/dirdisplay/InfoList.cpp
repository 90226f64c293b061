#include "dirdisplay/InfoList.h"

#include <algorithm>

#include "common/Text.h"
#include "platform/CaseRules.h"

namespace brackwell {

void RestoreInfoOrder(InfoChoices& list, std::string_view saved) {
  if (saved.ends_with(';')) saved.remove_suffix(1);
  for (const std::string& piece : SplitList(saved)) {
    const std::size_t bar = piece.find('|');
    if (bar != std::string::npos) AddInfoItem(list, {piece.substr(0, bar), piece.substr(bar + 1)});
  }
}

void AddInfoItem(InfoChoices& list, const InfoItem& item) {
  const bool isThere = std::ranges::any_of(
      list, [&](const InfoChoice& choice) { return CompareIgnoreCase(choice.Item.Key, item.Key) == 0; });
  if (!isThere) list.push_back({.Item = item});
}

void RestoreInfoChecks(InfoChoices& list, std::string_view saved) {
  if (saved.empty()) return;
  for (InfoChoice& choice : list)
    choice.Checked = saved.find(choice.Item.Key + ';') != std::string_view::npos;
}

InfoChoices RestoreInfoList(std::string_view savedOrder, std::string_view savedChecks,
                            std::span<const InfoItem> catalogue) {
  InfoChoices list;
  RestoreInfoOrder(list, savedOrder);
  for (const InfoItem& item : catalogue) AddInfoItem(list, item);
  RestoreInfoChecks(list, savedChecks);
  return list;
}

std::string InfoOrderText(const InfoChoices& list) {
  std::string text;
  for (const InfoChoice& choice : list) text += choice.Item.Caption + '|' + choice.Item.Key + ';';
  return text;
}

std::string InfoChecksText(const InfoChoices& list) {
  std::string text;
  for (const InfoItem& item : CheckedItems(list)) text += item.Key + ';';
  return text;
}

std::vector<InfoItem> CheckedItems(const InfoChoices& list) {
  std::vector<InfoItem> items;
  for (const InfoChoice& choice : list)
    if (choice.Checked) items.push_back(choice.Item);
  return items;
}

}  // namespace brackwell
