#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The fragments of which report pages are built. Values go in as they are; names of files and folders, which
// may hold anything on POSIX, go through HtmlName first.

namespace brackwell {

/// "<head>", a title unless it is empty, "</head>".
std::string HtmlHead(std::string_view title);

/// Opens a table; an empty argument leaves its attribute out.
std::string HtmlTable(std::string_view width, std::string_view border, std::string_view borderColor,
                      std::string_view cellPadding, std::string_view cellSpacing);

/// Opens the table that all reports share.
std::string HtmlStandardTable();

/// Opens a cell; an empty argument leaves its attribute out.
std::string HtmlTd(std::string_view width, std::string_view backgroundColor, std::string_view align,
                   bool noWrap);

/// The alignment of a grid's code: left for 0 to 2, center for 3 to 5, right for 6 to 8, else empty.
std::string_view HtmlAlign(std::int16_t alignment);

/// A share of a whole as whole per cent, halves to the even neighbour: "33%".
std::string HtmlPercent(double part, double whole);

/// A native name as it is shown, unable to end a tag or an attribute.
std::string HtmlName(std::string_view nativeName);

/// A list as its headers, the widths of its columns and of the whole list, and its rows of cells.
struct ListTable {
  std::vector<std::string> Headers;
  std::vector<double> ColumnWidths;
  double Width = 0;
  std::vector<std::vector<std::string>> Rows;
};

/// The table of a list and the end of the page.
std::string ListView_ToHtml(const ListTable& list);

/// The page with every character outside ASCII as a numeric reference, so that it reads right whatever
/// encoding a browser takes it for. Bytes that are no text become U+FFFD.
std::string HtmlToAscii(std::string_view page);

}  // namespace brackwell
