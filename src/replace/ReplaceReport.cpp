#include "replace/ReplaceReport.h"

#include "common/Html.h"

namespace brackwell {
namespace {

std::string Paragraph(std::string_view caption, std::string_view value) {
  std::string paragraph = "<p><b>";
  paragraph += caption;
  paragraph += "</b>: ";
  paragraph += value;
  return paragraph + "</p>";
}

ListTable ToTable(const ReplaceReport& report) {
  ListTable table{.Headers = {report.Headers.begin(), report.Headers.end()},
                  .ColumnWidths = {report.ColumnWidths.begin(), report.ColumnWidths.end()},
                  .Width = report.ListWidth,
                  .Rows = {}};
  table.Rows.reserve(report.Rows.size());
  for (const ReplaceRow& row : report.Rows)
    table.Rows.push_back({HtmlName(row.Path), ResultText(row.Result)});
  return table;
}

}  // namespace

std::string ToHtml(const ReplaceReport& report) {
  return "<html>" + HtmlHead(report.Title) + "<body>" + Paragraph("Folder to Search", report.Folder) +
         Paragraph("Search in files with these extensions", report.Extensions) +
         Paragraph("Exclude files/subfolders that begin with", report.Exclude) +
         Paragraph("Phrase to find within the files", report.Find) +
         Paragraph("Phrase to replace the found text with", report.Replace) +
         ListView_ToHtml(ToTable(report));
}

}  // namespace brackwell
