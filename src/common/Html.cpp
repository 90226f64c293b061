#include "common/Html.h"

#include <utf8proc.h>

#include <cmath>

#include "common/Text.h"

namespace brackwell {
namespace {

void AddAttribute(std::string& tag, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  tag += ' ';
  tag += name;
  tag += "=\"";
  tag += value;
  tag += '"';
}

}  // namespace

std::string HtmlHead(std::string_view title) {
  std::string head = "<head>";
  if (!title.empty()) {
    head += "<title>";
    head += title;
    head += "</title>";
  }
  return head + "</head>";
}

std::string HtmlTable(std::string_view width, std::string_view border, std::string_view borderColor,
                      std::string_view cellPadding, std::string_view cellSpacing) {
  std::string tag = "<table";
  AddAttribute(tag, "width", width);
  AddAttribute(tag, "border", border);
  AddAttribute(tag, "bordercolor", borderColor);
  AddAttribute(tag, "cellpadding", cellPadding);
  AddAttribute(tag, "cellspacing", cellSpacing);
  return tag + ">";
}

std::string HtmlStandardTable() { return HtmlTable("100%", "1", "black", "2", "0"); }

std::string HtmlTd(std::string_view width, std::string_view backgroundColor, std::string_view align,
                   bool noWrap) {
  std::string tag = "<td";
  AddAttribute(tag, "width", width);
  AddAttribute(tag, "bgcolor", backgroundColor);
  AddAttribute(tag, "align", align);
  if (noWrap) AddAttribute(tag, "nowrap", "nowrap");
  return tag + ">";
}

std::string_view HtmlAlign(std::int16_t alignment) {
  if (alignment < 0 || alignment > 8) return {};
  constexpr std::string_view names[] = {"left", "center", "right"};
  return names[alignment / 3];
}

std::string HtmlPercent(double part, double whole) {
  // nearbyint rounds halves to the even neighbour.
  return std::to_string(whole > 0 ? static_cast<std::int16_t>(std::nearbyint(part / whole * 100)) : 0) + "%";
}

std::string HtmlName(std::string_view nativeName) {
  std::string escaped;
  for (const char c : ShownText(nativeName)) switch (c) {
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  return escaped;
}

std::string ListView_ToHtml(const ListTable& list) {
  std::vector<std::string> widths;
  for (const double width : list.ColumnWidths) widths.push_back(HtmlPercent(width, list.Width));
  std::string html = HtmlStandardTable() + "<tr>";
  for (std::size_t i = 0; i < list.Headers.size(); ++i)
    html += HtmlTd(widths[i], "silver", {}, true) + list.Headers[i] + "</td>";
  html += "</tr>";
  std::vector<std::string> opened;
  for (const std::string& width : widths) opened.push_back(HtmlTd(width, {}, {}, true));
  for (const std::vector<std::string>& row : list.Rows) {
    html += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
      html += opened[i];
      html += row[i];
      if (i > 0) html += "&nbsp;";  // so that an empty cell still draws its border
      html += "</td>";
    }
    html += "</tr>";
  }
  return html + "</table></body></html>";
}

std::string HtmlToAscii(std::string_view page) {
  std::string ascii;
  ascii.reserve(page.size());
  for (std::size_t at = 0; at < page.size();) {
    if (static_cast<unsigned char>(page[at]) < 0x80) {
      ascii += page[at++];
      continue;
    }
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(page.data() + at),
                                         static_cast<utf8proc_ssize_t>(page.size() - at), &code);
    ascii += "&#" + std::to_string(length > 0 ? code : 0xFFFD) + ";";
    at += length > 0 ? static_cast<std::size_t>(length) : 1;
  }
  return ascii;
}

}  // namespace brackwell
