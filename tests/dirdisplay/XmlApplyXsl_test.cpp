#include "dirdisplay/XmlApplyXsl.h"

#include <new>

#include "dirdisplay/DescribedFolder.h"

namespace brackwell {
namespace {

/// What stylesheets of others' may do to the display of text.
class XmlApplyXslTest : public DescribedFolder {
 protected:
  XmlApplyXslTest() {
    Options.Format = DisplayFormat::Text;
    Options.ProgramFolder = Tree.Path("program");
    Tree.Folder("program/xml");
    Tree.File("secret", "<secret>told</secret>");
  }

  void File(const std::string& content) { Tree.File("program/xml/dir_display_text.xsl", content); }
  void Stylesheet(const std::string& body, const std::string& prologue = {}) {
    File(prologue +
         "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
         "<xsl:output method='text'/>" +
         body + "</xsl:stylesheet>");
  }

  /// The one error told, its lines; the output must be empty.
  Lines Error() {
    EXPECT_EQ(Display(), "");
    if (Told.size() != 1) return {std::to_string(Told.size()) + " errors"};
    Lines lines;
    for (std::size_t at = 0, end; (end = Told[0].find("\r\n", at)) != std::string::npos; at = end + 2)
      lines.push_back(Told[0].substr(at, end - at));
    EXPECT_TRUE(Told[0].ends_with("\r\n"));
    return lines;
  }

  /// The description of the one error.
  std::string Description() {
    const Lines lines = Error();
    if (lines.size() != 5) return "not five lines: " + lines.front();
    EXPECT_EQ(lines[0], "There was an error in XmlApplyXsl:");
    EXPECT_EQ(lines[1], "Error: -2147467259");
    EXPECT_EQ(lines[3], "XML Error Code: 0");
    EXPECT_EQ(lines[4], "XML Error Reason: ");
    EXPECT_TRUE(lines[2].starts_with("Description: "));
    return lines[2].substr(13);
  }

  static bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }
};

TEST_F(XmlApplyXslTest, TellsOfAMissingStylesheetLineByLine) {
  EXPECT_EQ(Error(), (Lines{"There was an error in XmlApplyXsl:", "Error: 53",
                            "Description: File not found: ~/program/xml/dir_display_text.xsl",
                            "XML Error Code: 0", "XML Error Reason: "}));
  EXPECT_EQ(Tree.List("out"), Lines{"dir_display.txt"});
}

TEST_F(XmlApplyXslTest, TellsOfWhatIsNoXml) {
  File("");
  EXPECT_NE(Description(), "");
  File("<xsl:stylesheet");
  EXPECT_NE(Description(), "");
  File("<a><b></a>");
  EXPECT_TRUE(Has(Description(), "mismatch")) << Description();
}

TEST_F(XmlApplyXslTest, TellsOfWhatIsNoStylesheet) {
  File("<html/>");
  EXPECT_TRUE(Has(Description(), "stylesheet")) << Description();
  Stylesheet("<xsl:template match='['/>");
  EXPECT_NE(Description(), "");
  Stylesheet("<xsl:template match='/'><xsl:value-of select='1 +'/></xsl:template>");
  EXPECT_NE(Description(), "");
}

TEST_F(XmlApplyXslTest, TellsOfFailuresWhileItRuns) {
  Stylesheet(
      "<xsl:template match='/'>some<xsl:message terminate='yes'>No\nmore</xsl:message></xsl:template>");
  EXPECT_EQ(Description(), "No more");
  Stylesheet("<xsl:template match='/'><xsl:call-template name='none'/></xsl:template>");
  EXPECT_NE(Description(), "");
  Stylesheet("<xsl:template match='/'><xsl:value-of select='none()'/></xsl:template>");
  EXPECT_NE(Description(), "");
}

TEST_F(XmlApplyXslTest, ErrorsOfOneRunAreForgottenInTheNext) {
  File("<html/>");
  const std::string first = Description();
  EXPECT_EQ(Description(), first);
  Stylesheet("<xsl:template match='/'>good</xsl:template>");
  EXPECT_EQ(Display(), "good");
  EXPECT_EQ(Told, Lines{});
}

TEST_F(XmlApplyXslTest, MessagesAreNoErrors) {
  Stylesheet("<xsl:template match='/'><xsl:message>by the way</xsl:message>good</xsl:template>");
  EXPECT_EQ(Display(), "good");
  EXPECT_EQ(Told, Lines{});
}

TEST_F(XmlApplyXslTest, EntitiesOfItsOwnAreKnown) {
  Stylesheet("<xsl:template match='/'>a&nbsp;b</xsl:template>",
             "<!DOCTYPE xsl:stylesheet [<!ENTITY nbsp '&#160;'>]>");
  EXPECT_EQ(Display(),
            "a\xC2\xA0"
            "b");
}

TEST_F(XmlApplyXslTest, OtherFilesAreNotRead) {
  Stylesheet("<xsl:template match='/'>&secret;</xsl:template>",
             "<!DOCTYPE xsl:stylesheet [<!ENTITY secret SYSTEM '" + Tree.Path("secret") + "'>]>");
  EXPECT_FALSE(Has(Display(), "told"));
  Stylesheet("<xsl:template match='/'><xsl:value-of select=\"document('" + Tree.Path("secret") +
             "')\"/></xsl:template>");
  EXPECT_FALSE(Has(Display(), "told"));
  Stylesheet("<xsl:template match='/'><xsl:value-of select=\"document('../../secret')\"/></xsl:template>");
  EXPECT_FALSE(Has(Display(), "told"));
  Tree.File("program/xml/other.xsl",
            "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
            "<xsl:template match='/'>told</xsl:template></xsl:stylesheet>");
  for (const char* element : {"include", "import"}) {
    Stylesheet("<xsl:" + std::string(element) + " href='other.xsl'/>");
    EXPECT_NE(Description(), "");
  }
  for (const char* uri : {"http://localhost/x", "file:///etc/passwd", "ftp://localhost/x"}) {
    Stylesheet("<xsl:template match='/'><xsl:value-of select=\"document('" + std::string(uri) +
               "')\"/></xsl:template>");
    EXPECT_EQ(Display(), "");
  }
}

TEST_F(XmlApplyXslTest, OtherFilesAreNotWritten) {
  for (const char* element : {"exsl:document href", "xt:document href", "saxon:output file"}) {
    const std::string name = element;
    Stylesheet(
        "<xsl:template match='/' xmlns:exsl='http://exslt.org/common' xmlns:xt='http://www.jclark.com/xt' "
        "xmlns:saxon='http://icl.com/saxon' extension-element-prefixes='exsl xt saxon'><" +
        name + "='" + Tree.Path("made/written") + "' method='text'>x</" + name.substr(0, name.find(' ')) +
        "></xsl:template>");
    Display();
    EXPECT_FALSE(Tree.Exists("made"));
  }
}

TEST_F(XmlApplyXslTest, EndlessRecursionIsEnded) {
  Stylesheet(
      "<xsl:template match='/'><xsl:call-template name='a'/></xsl:template>"
      "<xsl:template name='a'><xsl:call-template name='a'/></xsl:template>");
  EXPECT_TRUE(Has(Description(), "recursion")) << Description();
}

TEST_F(XmlApplyXslTest, WorkThatGrowsBeyondMeasureIsEnded) {
  std::string loops = "<xsl:value-of select='1'/>";
  for (int i = 0; i < 60; ++i) loops = "<xsl:for-each select='//@*'>" + loops + "</xsl:for-each>";
  Stylesheet("<xsl:template match='/'>" + loops + "</xsl:template>");
  EXPECT_TRUE(Has(Description(), "limit")) << Description();
  std::string expression = "1";
  for (int i = 0; i < 40; ++i) expression = "count(//@*[" + expression + "])";
  Stylesheet("<xsl:template match='/'><xsl:value-of select='" + expression + "'/></xsl:template>");
  EXPECT_NE(Description(), "");
}

TEST_F(XmlApplyXslTest, EntitiesThatGrowBeyondMeasureAreRefused) {
  std::string entities = "<!ENTITY a0 '0123456789'>";
  for (int i = 1; i < 10; ++i) {
    const std::string inner = "&a" + std::to_string(i - 1) + ";";
    entities += "<!ENTITY a" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) entities += inner;
    entities += "'>";
  }
  Stylesheet("<xsl:template match='/'>&a9;</xsl:template>", "<!DOCTYPE xsl:stylesheet [" + entities + "]>");
  EXPECT_NE(Description(), "");
}

TEST_F(XmlApplyXslTest, AStylesheetThatTakesLongIsStopped) {
  for (int i = 0; i < 50; ++i) Tree.File("top/" + std::to_string(i));
  Stylesheet(
      "<xsl:template match='/'><xsl:for-each select='//file'><xsl:for-each select='//file'>"
      "<xsl:for-each select='//file'>x</xsl:for-each></xsl:for-each></xsl:for-each></xsl:template>");
  int events = 0;
  OnEvents = [&] { Stop = ++events >= 200; };
  EXPECT_EQ(Display(), "stopped");
  EXPECT_EQ(events, 200);
  EXPECT_EQ(Told, Lines{});
}

TEST_F(XmlApplyXslTest, WhatIsRaisedMeanwhileEndsTheRun) {
  for (int i = 0; i < 300; ++i) Tree.File("top/" + std::to_string(i));
  Stylesheet(
      "<xsl:template match='/'><xsl:for-each select='//file'><xsl:value-of select='@name'/></xsl:for-each>"
      "</xsl:template>");
  const std::string whole = Display();
  int events = 0;
  int failAt = 300;  // the scan's last event, or an earlier one where the machine is busy and the scan waits
  OnEvents = [&] {
    if (++events == failAt) throw std::bad_alloc();
  };
  const auto fails = [&] {
    events = 0;
    try {
      EXPECT_EQ(Display(), whole);
      EXPECT_LT(events, failAt);
      return false;
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(Tree.Read("out/dir_display.txt"), whole);
      EXPECT_EQ(Told, Lines{});
      return true;
    }
  };
  while (fails()) ++failAt;
  EXPECT_GT(failAt, 300 + 5);  // past those of the instructions and of the output
}

TEST_F(XmlApplyXslTest, ARunWithinARunDisturbsNeither) {
  for (int i = 0; i < 100; ++i) Tree.File("top/" + std::to_string(i));
  Stylesheet(
      "<xsl:template match='/'><xsl:for-each select='//file'><xsl:for-each select='//file'>x</xsl:for-each>"
      "</xsl:for-each>"
      "<xsl:message terminate='yes'>outer</xsl:message></xsl:template>");
  Tree.Folder("inner");
  DisplayOptions inner = Options;
  inner.Folder = Tree.Path("inner");
  inner.Format = DisplayFormat::Html;
  Tree.File("program/xml/dir_display_html.xsl", "<broken/>");
  int events = 0;
  Lines told;
  OnEvents = [&] {
    if (++events != 150) return;  // in the midst of the transformation
    class Quiet final : public Progress {
      void Message(std::string_view /*text*/) override {}
      void DoEvents() override {}
      bool Stopped() const override { return false; }
    } quiet;
    DisplayDirectory(*Files, inner, quiet, [&](const std::string& text) { told.push_back(text); });
  };
  const std::string outer = Description();
  EXPECT_EQ(outer, "outer");
  ASSERT_EQ(told.size(), 1u);
  EXPECT_TRUE(Has(told[0], "stylesheet"));
}

}  // namespace
}  // namespace brackwell
