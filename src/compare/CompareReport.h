#pragma once

#include <array>
#include <string>

#include "compare/CompareRow.h"

namespace brackwell {

/// The grid as it stands, for printing.
struct CompareReport {
  std::string Title;
  std::string ProgramFolder;             // holds the pictures, in "images"
  std::array<std::string, 4> Headers{};  // of the columns that are printed
  std::array<double, 4> ColumnWidths{};  // in any unit,
  double GridWidth = 0;                  // in the same
  const CompareRows& Rows;
  bool HasEmptyRow = false;  // at the end, as the grid has it before and during a comparison
};

/// The printable page.
std::string ToHtml(const CompareReport& report);

}  // namespace brackwell
