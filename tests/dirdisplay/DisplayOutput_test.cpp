#include "dirdisplay/DisplayOutput.h"

#include <algorithm>

#include "dirdisplay/DescribedFolder.h"
#include "support/FailingFileSystem.h"

namespace brackwell {
namespace {

class DisplayOutputTest : public DescribedFolder {
 protected:
  /// A stylesheet of the test's own.
  void Stylesheet(const std::string& name, const std::string& body) {
    Options.ProgramFolder = Tree.Path("program");
    Tree.File("program/xml/" + name,
              "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>" + body +
                  "</xsl:stylesheet>");
  }

  void MakeSmallTree() {
    Tree.File("top/b.txt", "12345");
    Tree.File("top/sub/a & {c}", "123");
    Tree.Folder("top/sub/empty");
    Tree.File("top/sub/\xC3\xBC.cpp", "1");
    Options.FolderInfo = {{"Full Name", "Path"}, {"Size", "Size"}};
    Options.FileInfo = {{"Size", "Size"}, {"Name", "Name"}, {"my Own field", "?"}};
  }
};

TEST_F(DisplayOutputTest, TextHasALineForEachFolderAndFile) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(
      SplitLines(Display()),
      (Lines{"Directory of ~/top", "", "Folder\tFull Name\tSize", "  File\tSize\tName\tMy Own Field",
             "Folder\t~/top\t9", "  File\t5\tb.txt\t", "  Folder\t~/top/sub\t4", "    File\t3\ta & {c}\t",
             "    File\t1\t\xC3\xBC.cpp\t", "    Folder\t~/top/sub/empty\t0"}));
}

TEST_F(DisplayOutputTest, TextEndsEachLineAsTheSystemDoes) {
  Options.Format = DisplayFormat::Text;
  Options.FolderInfo = {{"Name", "Name"}};
  const std::string end = LineEnd;
  EXPECT_EQ(Display(), "Directory of ~/top" + end + end + "Folder\tName" + end + "Folder\ttop" + end);
}

TEST_F(DisplayOutputTest, TextWithoutFolderDataHasFilesOnly) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Text;
  Options.IncludeFolders = false;
  Options.FileInfo = {{"Name", "Name"}};
  EXPECT_EQ(SplitLines(Display()), (Lines{"Directory of ~/top", "", "  File\tName", "  File\tb.txt",
                                          "    File\ta & {c}", "    File\t\xC3\xBC.cpp"}));
}

TEST_F(DisplayOutputTest, TextOfFoldersOnly) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Text;
  Options.IncludeFiles = false;
  EXPECT_EQ(SplitLines(Display()),
            (Lines{"Directory of ~/top", "", "Folder\tFull Name\tSize", "Folder\t~/top\t9",
                   "  Folder\t~/top/sub\t4", "    Folder\t~/top/sub/empty\t0"}));
}

TEST_F(DisplayOutputTest, TextTakesTheDelimiter) {
  Options.Format = DisplayFormat::Text;
  Options.FolderInfo = {{"Name", "Name"}, {"Size", "Size"}};
  const auto last = [this](const std::string& setting) {
    Options.TextDelimiter = setting;
    return SplitLines(Display()).back();
  };
  EXPECT_EQ(last("CHR-124"), "Folder|top|0");
  EXPECT_EQ(last(";"), "Folder;top;0");
  EXPECT_EQ(last(" <-> "), "Folder <-> top <-> 0");
  EXPECT_EQ(last(""), "Foldertop0");
  EXPECT_EQ(last("DELIM-TBD"), "FolderDELIM-TBDtopDELIM-TBD0");
}

TEST(DelimiterText, IsTheCharacterOfACode) {
  EXPECT_EQ(DelimiterText("CHR-9"), "\t");
  EXPECT_EQ(DelimiterText("CHR-44"), ",");
  EXPECT_EQ(DelimiterText("CHR-0"), std::string(1, '\0'));
  EXPECT_EQ(DelimiterText("CHR-233"), "\xC3\xA9");
  EXPECT_EQ(DelimiterText("CHR-8364"), "\xE2\x82\xAC");
  EXPECT_EQ(DelimiterText("CHR-128512"), "\xF0\x9F\x98\x80");
  EXPECT_EQ(DelimiterText("CHR-009"), "\t");
}

TEST(DelimiterText, IsItselfWhereThereIsNoSuchCode) {
  for (const char* setting : {"", "\t", ";", "||", "CHR", "CHR-", "CHR-x", "CHR-9x", "CHR- 9", "CHR--9",
                              "chr-9", " CHR-9", "CHR-55296", "CHR-1114112", "CHR-99999999999999999999"})
    EXPECT_EQ(DelimiterText(setting), setting);
}

TEST_F(DisplayOutputTest, HtmlIsACompletePage) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Html;
  const std::string page = Display();
  EXPECT_TRUE(
      page.starts_with("<!DOCTYPE html>\n<html><head><meta http-equiv=\"Content-Type\" "
                       "content=\"text/html; charset=US-ASCII\"><title>Directory of ~/top</title>"))
      << page;
  EXPECT_TRUE(page.ends_with("</body></html>\n")) << page;
  EXPECT_NE(page.find("prefers-color-scheme: dark"), std::string::npos);
  EXPECT_NE(page.find("@media print"), std::string::npos);
  EXPECT_EQ(page.find("<script"), std::string::npos);
  EXPECT_NE(page.find("\n.folder :nth-child(3) { text-align: right;"), std::string::npos);
  EXPECT_NE(page.find("\ntr:not(.folder) :nth-child(2) { text-align: right;"), std::string::npos);
  EXPECT_NE(page.find("\n.folder :nth-child(2) { overflow-wrap: anywhere; min-width: "), std::string::npos);
  EXPECT_TRUE(std::ranges::all_of(page, [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
}

TEST_F(DisplayOutputTest, HtmlHasARowForEachFolderAndFile) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Html;
  std::string page = Display();
  page.erase(0, page.find("<body>"));
  EXPECT_EQ(page,
            "<body><h1>Directory of ~/top</h1><p>3 folders, 3 files</p><table>"
            "<thead><tr class=\"folder\"><th scope=\"col\">Folder</th><th scope=\"col\">Full Name</th>"
            "<th scope=\"col\">Size</th><td colspan=\"1\"></td></tr>"
            "<tr><th scope=\"col\">File</th><th scope=\"col\">Size</th>"
            "<th scope=\"col\">Name</th><th scope=\"col\">My Own Field</th></tr></thead>\n"
            "<tbody style=\"--level:0\"><tr class=\"folder\"><th scope=\"rowgroup\">Folder</th><td>~/top</td>"
            "<td>9</td><td colspan=\"1\"></td></tr>\n"
            "<tr><td>File</td><td>5</td><td>b.txt</td><td></td></tr></tbody>\n"
            "<tbody style=\"--level:1\"><tr class=\"folder\"><th scope=\"rowgroup\">Folder</th>"
            "<td>~/top/sub</td><td>4</td><td colspan=\"1\"></td></tr>\n"
            "<tr><td>File</td><td>3</td><td>a &amp; {c}</td><td></td></tr>\n"
            "<tr><td>File</td><td>1</td><td>&#252;.cpp</td><td></td></tr></tbody>\n"
            "<tbody style=\"--level:2\"><tr class=\"folder\"><th scope=\"rowgroup\">Folder</th>"
            "<td>~/top/sub/empty</td><td>0</td><td colspan=\"1\"></td></tr></tbody></table></body></html>\n");
}

TEST_F(DisplayOutputTest, HtmlFillsTheShorterRowOfHeadings) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Html;
  Options.FileInfo = {};
  const std::string page = Display();
  EXPECT_NE(page.find("<tr><th scope=\"col\">File</th><td colspan=\"2\"></td></tr></thead>"),
            std::string::npos)
      << page;
  EXPECT_NE(page.find("<td>~/top</td><td>9</td></tr>"), std::string::npos);
}

TEST_F(DisplayOutputTest, HtmlWithoutFolderDataHasFilesOnly) {
  MakeSmallTree();
  Options.Format = DisplayFormat::Html;
  Options.IncludeFolders = false;
  Options.FileInfo = {{"Name", "Name"}};
  std::string page = Display();
  page.erase(0, page.find("<p>"));
  EXPECT_EQ(
      page,
      "<p>3 folders, 3 files</p><table><thead><tr><th scope=\"col\">File</th><th scope=\"col\">Name</th></tr>"
      "</thead>\n<tbody style=\"--level:0\">\n<tr><td>File</td><td>b.txt</td></tr></tbody>\n"
      "<tbody style=\"--level:1\">\n<tr><td>File</td><td>a &amp; {c}</td></tr>\n"
      "<tr><td>File</td><td>&#252;.cpp</td></tr></tbody></table></body></html>\n");
}

TEST_F(DisplayOutputTest, TextAndHtmlAreOfTheAttributeStyleWhateverTheSetting) {
  Stylesheet("dir_display_text.xsl",
             "<xsl:output method='text'/><xsl:template match='/'><xsl:value-of select="
             "\"concat(*/@style, ' ', */@path, ' ', */folder/@full_name)\"/></xsl:template>");
  Stylesheet("dir_display_html.xsl",
             "<xsl:output method='html'/><xsl:template match='/'><p><xsl:value-of select='*/@style'/></p>"
             "</xsl:template>");
  for (const int type : {0, 1, 2}) {
    Options.XmlType = type;
    Options.Format = DisplayFormat::Text;
    EXPECT_EQ(Display(), "attribute ~/top ~/top");
    Options.Format = DisplayFormat::Html;
    EXPECT_EQ(Display(), "<p>attribute</p>\n");
  }
}

TEST_F(DisplayOutputTest, OtherXmlTypesKeepBothTests) {
  Options.XmlType = 2;
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder>",
                               "<full_name>~/top</full_name>", "</folder>"}));
}

TEST_F(DisplayOutputTest, ATextWithoutTheMarkerIsWrittenUnchanged) {
  Stylesheet("dir_display_text.xsl",
             "<xsl:output method='text'/><xsl:template match='/'>delim-tbd DELIM\n-TBD\r</xsl:template>");
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(Display(), "delim-tbd DELIM\n-TBD\n");  // as a parser reads it
}

TEST_F(DisplayOutputTest, GoesIntoTheTemporaryFolderOverTheOneBefore) {
  Options.FolderInfo = {{"Name", "Name"}};
  for (const auto format : {DisplayFormat::Text, DisplayFormat::Html, DisplayFormat::Xml}) {
    Options.Format = format;
    const std::string first = Display();
    EXPECT_EQ(Display(), first);
  }
  EXPECT_EQ(Tree.List("out"), (Lines{"dir_display.html", "dir_display.txt", "dir_display.xml"}));
  Tree.File("out/dir_display.xml", "something much longer than what is to come, and to be gone afterwards");
  Options.XmlType = 1;
  EXPECT_TRUE(Display().ends_with("><folder name=\"top\"/></directory_display>\n"));
}

TEST_F(DisplayOutputTest, AnErrorInTheWalkLeavesTheOutputBefore) {
  Tree.File("out/dir_display.xml", "old");
  Tree.File("top/a");
  FailingFileSystem failing(2, FileError::DeviceError);
  EXPECT_TRUE(Display(failing).starts_with("57 ~/top"));
  EXPECT_EQ(Tree.Read("out/dir_display.xml"), "old");
}

TEST_F(DisplayOutputTest, AnErrorInWritingLeavesTheOutputBefore) {
  for (const auto& [format, name] :
       {std::pair(DisplayFormat::Text, "txt"), std::pair(DisplayFormat::Html, "html"),
        std::pair(DisplayFormat::Xml, "xml")}) {
    Options.Format = format;
    const std::string output = std::string("out/dir_display.") + name;
    Tree.File(output, "old");
    FailingFileSystem counting;
    Display(counting);
    Tree.File(output, "old");
    for (int call = counting.Calls() - 2; call <= counting.Calls(); ++call) {
      FailingFileSystem failing(call);
      EXPECT_EQ(Display(failing), "61 ~/" + output);
      EXPECT_EQ(Tree.Read(output), "old");
    }
  }
  EXPECT_EQ(Tree.List("out"), (Lines{"dir_display.html", "dir_display.txt", "dir_display.xml"}));
}

TEST_F(DisplayOutputTest, ATemporaryFolderThatIsNotThereIsToldBeforeTheWork) {
  Tree.File("top/file");
  const OwnTempFolder missing(Tree.Path("none"));
  for (const auto format : {DisplayFormat::Text, DisplayFormat::Html, DisplayFormat::Xml}) {
    Options.Format = format;
    FailingFileSystem files;
    EXPECT_TRUE(Display(files).starts_with("76 ~/none"));
    EXPECT_EQ(files.Calls(), 1);
  }
}

TEST_F(DisplayOutputTest, TheTemporaryFolderIsDescribedWithoutTheFileToBe) {
  Options.Folder = Tree.Path("out");
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"element\" path=\"~/out\">", "<folder>",
                               "<full_name>~/out</full_name>", "</folder>"}));
}

}  // namespace
}  // namespace brackwell
