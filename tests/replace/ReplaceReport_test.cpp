#include "replace/ReplaceReport.h"

#include <gtest/gtest.h>

#include "common/Html.h"

namespace brackwell {
namespace {

ReplaceReport Report(const ReplaceRows& rows) {
  return {.Title = "Find and Replace",
          .Folder = "/home/ann/texts/",
          .Extensions = "txt;htm",
          .Exclude = "bak",
          .Find = "colour",
          .Replace = "color",
          .Headers = {"File", "Replaces"},
          .ColumnWidths = {600, 200},
          .ListWidth = 830,
          .Rows = rows};
}

std::string TableOf(const ReplaceReport& report) {
  const std::string page = ToHtml(report);
  return page.substr(page.find("<table"));
}

TEST(ReplaceReport, PageHasTheBoxesAndTheList) {
  const ReplaceRows rows{{"/home/ann/texts/a.txt", {ReplaceResult::Kind::Replaced, 3}},
                         {"/home/ann/texts/b.htm", {ReplaceResult::Kind::ZeroSize, 0}}};
  EXPECT_EQ(ToHtml(Report(rows)),
            "<html><head><title>Find and Replace</title></head><body>"
            "<p><b>Folder to Search</b>: /home/ann/texts/</p>"
            "<p><b>Search in files with these extensions</b>: txt;htm</p>"
            "<p><b>Exclude files/subfolders that begin with</b>: bak</p>"
            "<p><b>Phrase to find within the files</b>: colour</p>"
            "<p><b>Phrase to replace the found text with</b>: color</p>"
            "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">"
            "<tr><td width=\"72%\" bgcolor=\"silver\" nowrap=\"nowrap\">File</td>"
            "<td width=\"24%\" bgcolor=\"silver\" nowrap=\"nowrap\">Replaces</td></tr>"
            "<tr><td width=\"72%\" nowrap=\"nowrap\">/home/ann/texts/a.txt</td>"
            "<td width=\"24%\" nowrap=\"nowrap\">3 matches replaced&nbsp;</td></tr>"
            "<tr><td width=\"72%\" nowrap=\"nowrap\">/home/ann/texts/b.htm</td>"
            "<td width=\"24%\" nowrap=\"nowrap\">File has 0 size&nbsp;</td></tr>"
            "</table></body></html>");
}

TEST(ReplaceReport, NothingTypedAndNothingFoundMakesAPageToo) {
  const ReplaceRows none;
  EXPECT_EQ(ToHtml({.Title = "Find and Replace",
                    .Headers = {"File", "Replacements"},
                    .ColumnWidths = {75, 25},
                    .ListWidth = 100,
                    .Rows = none}),
            "<html><head><title>Find and Replace</title></head><body>"
            "<p><b>Folder to Search</b>: </p>"
            "<p><b>Search in files with these extensions</b>: </p>"
            "<p><b>Exclude files/subfolders that begin with</b>: </p>"
            "<p><b>Phrase to find within the files</b>: </p>"
            "<p><b>Phrase to replace the found text with</b>: </p>" +
                HtmlStandardTable() +
                "<tr><td width=\"75%\" bgcolor=\"silver\" nowrap=\"nowrap\">File</td>"
                "<td width=\"25%\" bgcolor=\"silver\" nowrap=\"nowrap\">Replacements</td></tr>"
                "</table></body></html>");
}

TEST(ReplaceReport, PhrasesGoInAsTyped) {
  const ReplaceRows none;
  ReplaceReport report = Report(none);
  report.Find = "<b>a & \"b\"</b>";
  report.Replace = "&amp;";
  const std::string page = ToHtml(report);
  EXPECT_NE(page.find("files</b>: <b>a & \"b\"</b></p>"), std::string::npos);
  EXPECT_NE(page.find("text with</b>: &amp;</p>"), std::string::npos);
}

TEST(ReplaceReport, NamesEndNoTag) {
  const ReplaceRows rows{{"/t/<i>\"caf\xe9\"\n.txt", {ReplaceResult::Kind::Found, 1}}};
  EXPECT_NE(TableOf(Report(rows)).find(">/t/&lt;i&gt;&quot;caf\xef\xbf\xbd&quot;\xe2\x90\x8a.txt</td>"),
            std::string::npos);
}

TEST(ReplaceReport, FilesWhoseTurnHasNotComeHaveAnEmptyCell) {
  const ReplaceRows rows{{"/t/a.txt", {}}};
  EXPECT_NE(TableOf(Report(rows)).find("/t/a.txt</td><td width=\"24%\" nowrap=\"nowrap\">&nbsp;</td></tr>"),
            std::string::npos);
}

}  // namespace
}  // namespace brackwell
