#include "compare/CompareReport.h"

#include <gtest/gtest.h>

#include "platform/Paths.h"

namespace brackwell {
namespace {

const std::string Table =
    "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">";

const std::string Header =
    "<html><head><title>Directory Comparison</title></head><body>" + Table +
    "<tr><td width=\"3%\" bgcolor=\"silver\" align=\"center\" nowrap=\"nowrap\">Folder / Filename&nbsp;</td>"
    "<td width=\"47%\" bgcolor=\"silver\" align=\"left\" nowrap=\"nowrap\">Folder / Filename&nbsp;</td>"
    "<td width=\"3%\" bgcolor=\"silver\" align=\"center\" nowrap=\"nowrap\">Comparison Result&nbsp;</td>"
    "<td width=\"28%\" bgcolor=\"silver\" align=\"left\" nowrap=\"nowrap\">Comparison Result&nbsp;</td></tr>";
const std::string Footer = "</table></body></html>";

std::string Picture(const std::string& key) {
  return "<img src=\"" + JoinPath(JoinPath("programs", "images"), "ico" + key + ".gif") +
         "\" border=\"0\"></td>";
}

std::string Row(const std::string& icon, const std::string& name, const std::string& result,
                const std::string& message) {
  return "<tr><td width=\"3%\" bgcolor=\"white\" align=\"center\" nowrap=\"nowrap\">" + Picture(icon) +
         "<td width=\"47%\" bgcolor=\"white\" align=\"left\" nowrap=\"nowrap\">" + name + "&nbsp;</td>" +
         "<td width=\"3%\" bgcolor=\"white\" align=\"center\" nowrap=\"nowrap\">" + Picture(result) +
         "<td width=\"28%\" bgcolor=\"white\" align=\"left\" nowrap=\"nowrap\">" + message +
         "&nbsp;</td></tr>";
}

std::string PageOf(const CompareRows& rows, bool hasEmptyRow = false) {
  return ToHtml(
      {.Title = "Directory Comparison",
       .ProgramFolder = "programs",
       .Headers = {"Folder / Filename", "Folder / Filename", "Comparison Result", "Comparison Result"},
       .ColumnWidths = {33, 470, 33, 282},
       .GridWidth = 1000,
       .Rows = rows,
       .HasEmptyRow = hasEmptyRow});
}

TEST(CompareReport, BeforeAnyComparisonThereIsAnEmptyRow) {
  const auto cell = [](const char* width, const char* align) {
    return std::string("<td width=\"") + width + "\" bgcolor=\"white\" align=\"" + align +
           "\" nowrap=\"nowrap\">&nbsp;</td>";
  };
  EXPECT_EQ(PageOf({}, true), Header + "<tr>" + cell("3%", "center") + cell("47%", "left") +
                                  cell("3%", "center") + cell("28%", "left") + "</tr>" + Footer);
  EXPECT_EQ(PageOf({}), Header + Footer);
}

TEST(CompareReport, EveryRowHasItsPicturesAndTexts) {
  CompareRows rows{
      MakeRow(ResultKind::SourceFileMissingInTarget, "a.txt"), MakeRow(ResultKind::FolderSame, "sub"),
      MakeRow(ResultKind::TargetFileMissingInSource, "t"), MakeRow(ResultKind::SizesDiffer, "z")};
  MarkFixed(rows[3]);
  EXPECT_EQ(PageOf(rows),
            Header + Row("File", "a.txt", "ArrowRedR", "Source file was not found in target folder") +
                Row("FolderOpen", "sub", "ArrowGreenDbl", "") +
                Row("File", "t", "ArrowRedL", "Target file was not found in source folder") +
                Row("File", "z", "Checkmark", "Source and target files are different size (FIXED)") + Footer);
}

TEST(CompareReport, AHostileNameIsOnlyAName) {
  EXPECT_EQ(
      PageOf({MakeRow(ResultKind::FileSame, "<script>alert(\"x\")</script>\xff")}),
      Header +
          Row("File", "&lt;script&gt;alert(&quot;x&quot;)&lt;/script&gt;\xef\xbf\xbd", "ArrowGreenDbl", "") +
          Footer);
}

}  // namespace
}  // namespace brackwell
