#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dirdisplay/PropertyCatalogue.h"

// The user's choice of properties: which, and in what order. It is kept between runs as two texts.

namespace brackwell {

struct InfoChoice {
  InfoItem Item;
  bool Checked = false;
};
using InfoChoices = std::vector<InfoChoice>;

/// Adds the items of a saved order, "Name|Name;Date Created|DateCreated;", unchecked. What is no item is
/// left out.
void RestoreInfoOrder(InfoChoices& list, std::string_view saved);
/// Adds an item at the end, unchecked, unless there is one with that key (in whatever case) already.
void AddInfoItem(InfoChoices& list, const InfoItem& item);
/// Checks the items whose key stands, with a ";" after it, anywhere in the saved text "Name;Size;", and
/// unchecks all others: "ShortPath;" checks `Path` too. An empty text changes nothing.
void RestoreInfoChecks(InfoChoices& list, std::string_view saved);

/// The saved order, then what a catalogue has besides, with the saved check marks.
InfoChoices RestoreInfoList(std::string_view savedOrder, std::string_view savedChecks,
                            std::span<const InfoItem> catalogue);

std::string InfoOrderText(const InfoChoices& list);
std::string InfoChecksText(const InfoChoices& list);
/// In the order of the list.
std::vector<InfoItem> CheckedItems(const InfoChoices& list);

}  // namespace brackwell
