#include "common/Html.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

TEST(HtmlHead, HoldsATitleUnlessItIsEmpty) {
  EXPECT_EQ(HtmlHead(""), "<head></head>");
  EXPECT_EQ(HtmlHead("Directory Comparison"), "<head><title>Directory Comparison</title></head>");
}

TEST(HtmlTable, LeavesOutWhatIsEmpty) {
  EXPECT_EQ(HtmlTable("", "", "", "", ""), "<table>");
  EXPECT_EQ(HtmlTable("", "1", "", "", "0"), "<table border=\"1\" cellspacing=\"0\">");
  EXPECT_EQ(HtmlStandardTable(),
            "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">");
}

TEST(HtmlTd, LeavesOutWhatIsEmpty) {
  EXPECT_EQ(HtmlTd("", "", "", false), "<td>");
  EXPECT_EQ(HtmlTd("50%", "", "right", false), "<td width=\"50%\" align=\"right\">");
  EXPECT_EQ(HtmlTd("5%", "silver", "left", true),
            "<td width=\"5%\" bgcolor=\"silver\" align=\"left\" nowrap=\"nowrap\">");
}

TEST(HtmlAlign, KnowsTheCodesOfTheGrid) {
  for (const std::int16_t code : {0, 1, 2}) EXPECT_EQ(HtmlAlign(code), "left");
  for (const std::int16_t code : {3, 4, 5}) EXPECT_EQ(HtmlAlign(code), "center");
  for (const std::int16_t code : {6, 7, 8}) EXPECT_EQ(HtmlAlign(code), "right");
  for (const std::int16_t code : {-1, 9, 10}) EXPECT_EQ(HtmlAlign(code), "");
}

TEST(HtmlPercent, RoundsHalvesToTheEvenNeighbour) {
  EXPECT_EQ(HtmlPercent(1, 3), "33%");
  EXPECT_EQ(HtmlPercent(25, 1000), "2%");
  EXPECT_EQ(HtmlPercent(35, 1000), "4%");
  EXPECT_EQ(HtmlPercent(5, 0), "0%");
}

TEST(HtmlName, CannotEndATagOrAnAttribute) {
  EXPECT_EQ(HtmlName("<script>\"x\" & y.txt"), "&lt;script&gt;&quot;x&quot; & y.txt");
  EXPECT_EQ(HtmlName("a\xff\n"), "a\xef\xbf\xbd\u240a");
}

TEST(HtmlToAscii, WritesEveryOtherCharacterAsANumber) {
  EXPECT_EQ(HtmlToAscii("<td>plain &nbsp;</td>"), "<td>plain &nbsp;</td>");
  EXPECT_EQ(HtmlToAscii("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"), "&#228;&#8364;&#128512;");
  EXPECT_EQ(HtmlToAscii("a\xe4z\xc3"), "a&#65533;z&#65533;");
}

TEST(ListViewToHtml, IsTheTableAndTheEndOfThePage) {
  const ListTable list{.Headers = {"Filename", "Result"},
                       .ColumnWidths = {300, 100},
                       .Width = 420,
                       .Rows = {{"/a/b.txt", "3 matches found"}, {"/a/c.txt", ""}}};
  EXPECT_EQ(ListView_ToHtml(list),
            "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">"
            "<tr><td width=\"71%\" bgcolor=\"silver\" nowrap=\"nowrap\">Filename</td>"
            "<td width=\"24%\" bgcolor=\"silver\" nowrap=\"nowrap\">Result</td></tr>"
            "<tr><td width=\"71%\" nowrap=\"nowrap\">/a/b.txt</td>"
            "<td width=\"24%\" nowrap=\"nowrap\">3 matches found&nbsp;</td></tr>"
            "<tr><td width=\"71%\" nowrap=\"nowrap\">/a/c.txt</td>"
            "<td width=\"24%\" nowrap=\"nowrap\">&nbsp;</td></tr>"
            "</table></body></html>");
}

TEST(ListViewToHtml, AnEmptyListIsItsHeader) {
  EXPECT_EQ(ListView_ToHtml({.Headers = {"A"}, .ColumnWidths = {50}, .Width = 50, .Rows = {}}),
            "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">"
            "<tr><td width=\"100%\" bgcolor=\"silver\" nowrap=\"nowrap\">A</td></tr></table></body></html>");
}

}  // namespace
}  // namespace brackwell
