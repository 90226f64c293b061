#pragma once

#include <array>
#include <string>

#include "replace/ReplaceRow.h"

namespace brackwell {

/// What was searched for and what the list shows of it, for printing.
struct ReplaceReport {
  std::string Title{};
  // The boxes of the window; they go into the page as typed, so a value can hold markup.
  std::string Folder{};
  std::string Extensions{};
  std::string Exclude{};
  std::string Find{};
  std::string Replace{};
  std::array<std::string, 2> Headers{};
  std::array<double, 2> ColumnWidths{};  // in any unit,
  double ListWidth = 0;                  // in the same
  const ReplaceRows& Rows;
};

/// The printable page.
std::string ToHtml(const ReplaceReport& report);

}  // namespace brackwell
