#include "compare/CompareReport.h"

#include "common/Html.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

constexpr std::string_view NoText = "&nbsp;";  // so that an empty cell still draws its border

/// Cell alignments of the four columns, as the grid codes them.
constexpr std::array<std::int16_t, 4> Alignments{3, 0, 3, 0};

class Page {
 public:
  explicit Page(const CompareReport& report)
      : mImagePrefix("<img src=\"" + JoinPath(JoinPath(report.ProgramFolder, "images"), "ico")) {
    for (std::size_t column = 0; column < Alignments.size(); ++column) {
      const std::string width = HtmlPercent(report.ColumnWidths[column], report.GridWidth);
      mHeaderCells[column] = HtmlTd(width, "silver", HtmlAlign(Alignments[column]), true);
      mCells[column] = HtmlTd(width, "white", HtmlAlign(Alignments[column]), true);
    }
    mHtml = "<html>" + HtmlHead(report.Title) + "<body>" + HtmlStandardTable();
  }

  void AddHeader(const std::array<std::string, 4>& headers) {
    mHtml += "<tr>";
    for (std::size_t column = 0; column < headers.size(); ++column)
      AddText(mHeaderCells[column], headers[column]);
    mHtml += "</tr>";
  }

  void AddRow(const CompareRow& row) {
    mHtml += "<tr>";
    AddPicture(mCells[0], ItemIcon(row));
    AddText(mCells[1], HtmlName(row.Name));
    AddPicture(mCells[2], ResultIcon(row));
    AddText(mCells[3], ResultMessage(row));
    mHtml += "</tr>";
  }

  void AddEmptyRow() {
    mHtml += "<tr>";
    for (const std::string& cell : mCells) AddText(cell, {});
    mHtml += "</tr>";
  }

  std::string Finish() { return std::move(mHtml) + "</table></body></html>"; }

 private:
  void AddText(const std::string& cell, std::string_view text) {
    mHtml += cell;
    mHtml += text;
    mHtml += NoText;
    mHtml += "</td>";
  }

  void AddPicture(const std::string& cell, std::string_view key) {
    mHtml += cell;
    mHtml += mImagePrefix;
    mHtml += key;
    mHtml += ".gif\" border=\"0\"></td>";
  }

  const std::string mImagePrefix;
  std::array<std::string, 4> mHeaderCells;
  std::array<std::string, 4> mCells;
  std::string mHtml;
};

}  // namespace

std::string ToHtml(const CompareReport& report) {
  Page page(report);
  page.AddHeader(report.Headers);
  for (const CompareRow& row : report.Rows) page.AddRow(row);
  if (report.HasEmptyRow) page.AddEmptyRow();
  return page.Finish();
}

}  // namespace brackwell
