#include "dirdisplay/XmlApplyXsl.h"

#include <cstddef>
#include <stdexcept>

#include "dirdisplay/DescribedFolder.h"
#include "dirdisplay/XmlDocument.h"

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

TEST_F(XmlApplyXslTest, WhatIsThrownMeanwhileEndsTheTransformation) {
  Stylesheet(
      "<xsl:template match='/'><xsl:for-each select='//file'><xsl:value-of select='@name'/></xsl:for-each>"
      "</xsl:template>");
  struct Thrown {};
  class CountedEvents final : public Progress {
   public:
    void Message(std::string_view /*text*/) override {}
    void DoEvents() override {
      if (++Events == FailAt) throw Thrown();
    }
    bool Stopped() const override { return false; }
    int Events = 0;
    int FailAt = 0;
  };
  XmlDocument document("directory_display");
  for (int i = 0; i < 300; ++i)
    document.AddAttribute(document.AddElement(document.Root(), nullptr, document.Intern("file")),
                          document.Intern("name"), document.NewText(std::to_string(i)));
  const auto apply = [&](CountedEvents& events) {
    return XmlApplyXsl(*Files, document, Tree.Path("program/xml/dir_display_text.xsl"), events,
                       [](const std::string& text) { ADD_FAILURE() << text; });
  };
  CountedEvents whole;
  EXPECT_TRUE(apply(whole).starts_with("012"));
  EXPECT_GT(whole.Events, 5);  // those of the instructions and of the output
  for (int failAt = 1; failAt <= whole.Events; ++failAt) {
    CountedEvents events;
    events.FailAt = failAt;
    EXPECT_THROW(apply(events), Thrown) << failAt;
    EXPECT_EQ(events.Events, failAt);
  }
}

TEST_F(XmlApplyXslTest, WhatIsThrownMeanwhileLeavesTheOutputBefore) {
  Stylesheet("<xsl:template match='/'>new</xsl:template>");
  Tree.File("out/dir_display.txt", "old");
  struct Thrown {};
  OnEvents = [] { throw Thrown(); };
  EXPECT_THROW(Display(), Thrown);
  EXPECT_EQ(Tree.Read("out/dir_display.txt"), "old");
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

// --- Memory

/// Stylesheets that take all the memory that they are given.
class GreedyStylesheets : public XmlApplyXslTest {
 protected:
  GreedyStylesheets() {
    Options.MemoryLimit = std::size_t{64} << 20;
    for (int i = 0; i < 100; ++i) Tree.File("top/" + std::to_string(i));
  }

  /// The one error told.
  void ExpectTooGreedy() {
    EXPECT_EQ(Error(), (Lines{"There was an error in XmlApplyXsl:", "Error: 7",
                              "Description: There is not enough memory to apply the stylesheet.",
                              "XML Error Code: 0", "XML Error Reason: "}));
  }
};

TEST_F(GreedyStylesheets, TextThatDoublesIsEnded) {
  Stylesheet(
      "<xsl:template match='/'><xsl:call-template name='a'><xsl:with-param name='p' select=\"'xxxxxxxx'\"/>"
      "</xsl:call-template></xsl:template>"
      "<xsl:template name='a'><xsl:param name='p'/><xsl:call-template name='a'>"
      "<xsl:with-param name='p' select='concat($p, $p)'/></xsl:call-template></xsl:template>");
  ExpectTooGreedy();
  std::string expression = "'xxxxxxxx'";
  for (int i = 0; i < 10; ++i)
    expression = "concat(" + expression + "," + expression + "," + expression + ")";
  Stylesheet(
      "<xsl:template match='/'><xsl:variable name='a' select=\"" + expression +
      "\"/><xsl:value-of select='concat($a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,"
      "$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,"
      "$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,"
      "$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a,$a)'/>"
      "</xsl:template>");
  ExpectTooGreedy();
}

TEST_F(GreedyStylesheets, TreesThatDoubleAreEnded) {
  std::string variables = "<xsl:variable name='v0'><a><b/><c d='e'>text</c></a></xsl:variable>";
  for (int i = 1; i < 40; ++i) {
    const std::string before = "<xsl:copy-of select='$v" + std::to_string(i - 1) + "'/>";
    variables +=
        "<xsl:variable name='v" + std::to_string(i) + "'><n>" + before + before + "</n></xsl:variable>";
  }
  Stylesheet("<xsl:template match='/'>" + variables + "<xsl:copy-of select='$v39'/></xsl:template>");
  ExpectTooGreedy();
}

TEST_F(GreedyStylesheets, OutputThatGrowsIsEnded) {
  const std::string line(1000, 'x');
  const std::string loops =
      "<xsl:for-each select='//file'><xsl:for-each select='//file'><xsl:for-each select='//file'>";
  const std::string ends = "</xsl:for-each></xsl:for-each></xsl:for-each>";
  Stylesheet("<xsl:template match='/'>" + loops + line + ends + "</xsl:template>");
  ExpectTooGreedy();
  Options.Format = DisplayFormat::Html;
  Tree.File("program/xml/dir_display_html.xsl",
            "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
            "<xsl:template match='/'>" +
                loops + "<p id='{position()}'><b/></p>" + ends + "</xsl:template></xsl:stylesheet>");
  ExpectTooGreedy();
}

TEST_F(GreedyStylesheets, SortsAndKeysOfTooMuchAreEnded) {
  Options.MemoryLimit = std::size_t{3} << 19;
  for (int i = 0; i < 300; ++i) Tree.File("top/" + std::string(100, 'x') + std::to_string(i));
  std::string names = "@name";
  for (int i = 0; i < 30; ++i) names += ", @name";
  Stylesheet("<xsl:key name='k' match='file' use='concat(" + names +
             ")'/><xsl:template match='/'><xsl:for-each select='key(\"k\", \"1\")'>x</xsl:for-each>"
             "</xsl:template>");
  ExpectTooGreedy();
  Stylesheet("<xsl:template match='/'><xsl:for-each select='//file'><xsl:sort select='concat(" + names +
             ")'/>x</xsl:for-each></xsl:template>");
  ExpectTooGreedy();
}

TEST_F(GreedyStylesheets, ALargeStylesheetIsTooMuchItself) {
  Options.MemoryLimit = std::size_t{2} << 20;
  std::string body;
  for (int i = 0; i < 20'000; ++i) body += "<xsl:template match='a" + std::to_string(i) + "'/>";
  Stylesheet(body);
  ExpectTooGreedy();
}

/// Wherever in its work the memory ends.
TEST_F(GreedyStylesheets, AreEndedAtAnyMoment) {
  Stylesheet(
      "<xsl:strip-space elements='*'/><xsl:key name='k' match='file' use='@name'/>"
      "<xsl:variable name='v'><a><xsl:copy-of select='//file[position() &lt; 9]'/></a></xsl:variable>"
      "<xsl:attribute-set name='s'><xsl:attribute name='z'>1</xsl:attribute></xsl:attribute-set>"
      "<xsl:template match='/'><out xsl:use-attribute-sets='s'><xsl:for-each select='//file'>"
      "<xsl:sort select='@name' order='descending' data-type='number'/><xsl:copy>"
      "<xsl:apply-templates select='@*|..'/></xsl:copy></xsl:for-each>"
      "<xsl:for-each select='n:node-set($v)//file' xmlns:n='http://icl.com/saxon'>"
      "<xsl:value-of select=\"concat(@name, generate-id(), format-number(@name, "
      "'#,##0.00'))\"/></xsl:for-each>"
      "<xsl:value-of select=\"count(key('k', '5'))\"/><xsl:number value='17' "
      "format='i'/></out></xsl:template>"
      "<xsl:template match='@*|folder'><xsl:param name='p' select=\"translate(., 'abc', 'xyz')\"/>"
      "<xsl:element name='e{position()}'><xsl:attribute name='q'><xsl:value-of select='$p'/></xsl:attribute>"
      "<xsl:copy-of select='ancestor::*[1]/@*'/><xsl:comment>c</xsl:comment></xsl:element></xsl:template>");
  EXPECT_NE(Display(), "");
  const std::ptrdiff_t held = XmlMemory::Held();
  constexpr std::size_t Document = std::size_t{1} << 20;
  std::size_t ended = 0;
  Options.MemoryLimit = Document + 20'000;  // the document itself has room
  for (std::size_t left = 20'000; Display().empty(); left += left / 50, ++ended) {
    EXPECT_EQ(Told.size(), 1u);
    EXPECT_TRUE(Has(Told[0], "Error: 7\r\nDescription: There is not enough memory")) << Told[0];
    EXPECT_EQ(XmlMemory::Held(), held);
    Options.MemoryLimit = Document + left;
  }
  EXPECT_GT(ended, 100u);
  EXPECT_EQ(XmlMemory::Held(), held);
}

TEST_F(GreedyStylesheets, TheNextDisplayHasMemoryAgain) {
  Stylesheet("<xsl:template match='/'><xsl:for-each select='//@*'><xsl:for-each select='//@*'>" +
             std::string(100'000, 'x') + "</xsl:for-each></xsl:for-each></xsl:template>");
  ExpectTooGreedy();
  Stylesheet("<xsl:template match='/'>good</xsl:template>");
  EXPECT_EQ(Display(), "good");
}

TEST_F(XmlApplyXslTest, NothingStaysWithTheLibraries) {
  const std::string nodeSet = "xmlns:n='http://icl.com/saxon'";
  const Lines bodies = {
      "<xsl:template match='/'>good</xsl:template>",
      "<xsl:template match='/'><xsl:variable name='v'><a/></xsl:variable>"
      "<xsl:value-of select='count(n:node-set($v)/a)' " +
          nodeSet + "/></xsl:template>",
      "<xsl:template match='/'><xsl:for-each select='//@*'><xsl:sort "
      "lang='de'/>x</xsl:for-each></xsl:template>",
      "<xsl:strip-space elements='*'/><xsl:key name='k' match='file' use='@name'/>"
      "<xsl:template match='/'><xsl:value-of select='generate-id(key(\"k\",\"a\"))'/></xsl:template>",
      "<xsl:template match='/'><xsl:value-of select='none()'/></xsl:template>",
      "<xsl:template match='/'><xsl:value-of select='1 +'/></xsl:template>",
      "<xsl:template match='['/>",
      "<xsl:template",
      "<xsl:import href='none'/>",
      "<xsl:template match='/'><xsl:message terminate='yes'>no</xsl:message></xsl:template>",
      "<xsl:template match='/'><xsl:call-template name='a'/></xsl:template>"
      "<xsl:template name='a'><xsl:call-template name='a'/></xsl:template>",
      "<u:data xmlns:u='urn:user'/><xsl:template match='/'>"
      "<u:x xmlns:u='urn:user' xsl:extension-element-prefixes='u'/></xsl:template>",
  };
  Tree.File("top/a");
  const auto displayAll = [&] {
    for (const std::string& body : bodies) {
      Stylesheet(body);
      Display();
    }
  };
  displayAll();  // the libraries' own tables, which stay
  const std::ptrdiff_t held = XmlMemory::Held();
  displayAll();
  EXPECT_EQ(XmlMemory::Held(), held);
}

// --- What only looks like white space, and where it is

TEST_F(XmlApplyXslTest, BlankValuesAreKeptWhereSpaceIsStripped) {
  Tree.File("top/\xE2\x80\x8A");
  Options.FileInfo = {{"Name", "Name"}, {"None", "?"}};
  Stylesheet(
      "<xsl:strip-space elements='*'/><xsl:template match='/'>"
      "<xsl:for-each select='//file/@*'>[<xsl:value-of select='.'/>]</xsl:for-each></xsl:template>");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Display(), "[\xE2\x80\x8A][]");
  XmlDocument document("directory_display");
  document.AddAttribute(document.Root(), document.Intern("name"), document.NewText(" \t "));
  class Quiet final : public Progress {
    void Message(std::string_view /*text*/) override {}
    void DoEvents() override {}
    bool Stopped() const override { return false; }
  } quiet;
  Stylesheet(
      "<xsl:strip-space elements='*'/><xsl:template match='/'>[<xsl:value-of select='*/@name'/>]"
      "</xsl:template>");
  const auto apply = [&] {
    return XmlApplyXsl(*Files, document, Tree.Path("program/xml/dir_display_text.xsl"), quiet,
                       [](const std::string& text) { ADD_FAILURE() << text; });
  };
  EXPECT_EQ(apply(), "[ \t ]");
  document.AddText(document.AddElement(document.Root(), nullptr, document.Intern("name")),
                   document.NewText(" "));
  EXPECT_THROW(apply(), std::logic_error);  // these the library would free
}

// --- Extensions

TEST_F(XmlApplyXslTest, NodeSetsAreMadeOfTreesInEveryDisplay) {
  for (const char* uri : {"http://exslt.org/common", "urn:schemas-microsoft-com:xslt",
                          "http://xmlsoft.org/XSLT/namespace", "http://icl.com/saxon"}) {
    Stylesheet("<xsl:template match='/' xmlns:n='" + std::string(uri) +
               "'><xsl:variable name='v'><a>1</a><a>2</a></xsl:variable>"
               "<xsl:value-of select='sum(n:node-set($v)/a)'/>"
               "<xsl:value-of select=\"function-available('n:node-set')\"/></xsl:template>");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Display(), "3true") << uri;
    EXPECT_EQ(Told, Lines{});
  }
}

TEST_F(XmlApplyXslTest, UnknownExtensionsAreRefusedByName) {
  Stylesheet(
      "<xsl:template match='/'><x:do xmlns:x='urn:x' xsl:extension-element-prefixes='x'>"
      "<xsl:fallback>none</xsl:fallback></x:do></xsl:template>");
  EXPECT_EQ(Description(), "The stylesheet uses an unknown extension: do of urn:x");
  File(
      "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' xmlns='urn:y' "
      "extension-element-prefixes='#default'><xsl:template match='/'><act/></xsl:template></xsl:stylesheet>");
  EXPECT_EQ(Description(), "The stylesheet uses an unknown extension: act of urn:y");
}

TEST_F(XmlApplyXslTest, ExtensionsThatAreOnlyDeclaredAreNoHarm) {
  File(
      "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' xmlns:x='urn:x' "
      "extension-element-prefixes='x'><xsl:output method='text'/><y:data xmlns:y='urn:y'>1</y:data>"
      "<xsl:template match='/'><xsl:value-of select=\"concat(function-available('x:f'), ' ',"
      "element-available('x:e'), ' ', element-available('xsl:copy'), ' ', element-available('xsl:none'), ' ',"
      "element-available('copy'), ' ', function-available('document'))\"/></xsl:template></xsl:stylesheet>");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Display(), "false false true false false true");
  EXPECT_EQ(Told, Lines{});
}

TEST_F(XmlApplyXslTest, UnknownFunctionsAreTold) {
  Stylesheet("<xsl:template match='/' xmlns:x='urn:x'><xsl:value-of select='x:f()'/></xsl:template>");
  EXPECT_NE(Description(), "");
  Stylesheet("<xsl:template match='/'><xsl:value-of select='element-available(1, 2)'/></xsl:template>");
  EXPECT_NE(Description(), "");
}

}  // namespace
}  // namespace brackwell
