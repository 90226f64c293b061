// Stylesheets as nobody would write them, one display after the other.

#include <cstdlib>
#include <random>

#include "dirdisplay/DescribedFolder.h"
#include "dirdisplay/XmlDocument.h"

namespace brackwell {
namespace {

/// Makes stylesheets of everything that the language has, right and wrong.
class StylesheetMaker {
 public:
  explicit StylesheetMaker(unsigned seed) : mRandom(seed) {}

  std::string Make() {
    std::string text =
        "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' "
        "xmlns:m='urn:schemas-microsoft-com:xslt' xmlns:s='http://icl.com/saxon' xmlns:x='urn:x'" +
        Any({"", "", " extension-element-prefixes='s'", " extension-element-prefixes='x'",
             " exclude-result-prefixes='m s'"}) +
        "><xsl:output method='" + Any({"text", "html", "xml", "none:"}) + "'/>" +
        Any({"", "<xsl:strip-space elements='*'/>", "<x:data>1</x:data>", "<xsl:decimal-format NaN='?'/>"}) +
        "<xsl:key name='k' match='" + Any({"file", "*", "@*", "folder/file"}) + "' use='" + Expression(2) +
        "'/><xsl:variable name='g'>" + Content(2) + "</xsl:variable><xsl:param name='p' select='" +
        Expression(1) + "'/><xsl:attribute-set name='set'><xsl:attribute name='z'>" + Content(1) +
        "</xsl:attribute></xsl:attribute-set><xsl:template match='/'>" + Content(4) +
        "</xsl:template><xsl:template match='" +
        Any({"file", "@*", "*", "node()", "key(\"k\", 1)", "file[@size &gt; 2]", "["}) + "' mode='m'>" +
        Content(3) + "</xsl:template><xsl:template name='t'><xsl:param name='a' select='" + Expression(1) +
        "'/>" + Content(3) + "</xsl:template></xsl:stylesheet>";
    if (mRandom() % 20 == 0) text.erase(mRandom() % text.size(), 1 + mRandom() % 20);
    return text;
  }

 private:
  std::string Any(std::initializer_list<const char*> choices) {
    return choices.begin()[mRandom() % choices.size()];
  }

  std::string Content(int depth) {
    std::string text;
    for (unsigned count = 1 + mRandom() % 3; count > 0; --count) text += Instruction(depth);
    return text;
  }

  std::string Instruction(int depth) {
    const std::string expression = Expression(2);
    if (depth == 0)
      return Any({"text", " ", "<a b='c'/>", "<xsl:text>&amp;</xsl:text>", "<xsl:value-of select='.'/>"});
    const std::string inner = Content(depth - 1);
    switch (mRandom() % 20) {
      case 0:
        return "<xsl:value-of select='" + expression + "'/>";
      case 1:
        return "<xsl:copy-of select='" + expression + "'/>";
      case 2:
        return "<xsl:for-each select='" + Nodes() + "'><xsl:sort select='" + expression + "' data-type='" +
               Any({"text", "number"}) + "' lang='" + Any({"de", "en_US", "xx"}) + "'/>" + inner +
               "</xsl:for-each>";
      case 3:
        return "<xsl:apply-templates mode='m' select='" + Nodes() + "'/>";
      case 4:
        return "<xsl:call-template name='t'><xsl:with-param name='a'>" + inner +
               "</xsl:with-param></xsl:call-template>";
      case 5:
        return "<xsl:if test='" + expression + "'>" + inner + "</xsl:if>";
      case 6:
        return "<xsl:choose><xsl:when test='" + expression + "'>" + inner +
               "</xsl:when><xsl:otherwise>b</xsl:otherwise></xsl:choose>";
      case 7:
        return "<xsl:variable name='v" + std::to_string(mRandom()) + "'>" + inner + "</xsl:variable>";
      case 8:
        return "<xsl:element name='" + Any({"e", "e{position()}", "{.}", "x:e"}) + "'>" + inner +
               "</xsl:element>";
      case 9:
        return "<xsl:attribute name='" + Any({"a", "x:a", "xmlns", "{.}"}) + "'>" + inner +
               "</xsl:attribute>";
      case 10:
        return "<xsl:copy use-attribute-sets='set'>" + inner + "</xsl:copy>";
      case 11:
        return "<xsl:comment>" + inner + "</xsl:comment>";
      case 12:
        return "<xsl:processing-instruction name='p'>" + inner + "</xsl:processing-instruction>";
      case 13:
        return "<xsl:number value='" + expression + "' format='" + Any({"i", "A", "001"}) + "'/>";
      case 14:
        return "<xsl:number level='any' count='" + Any({"file", "*"}) + "'/>";
      case 15:
        return mRandom() % 8 == 0 ? "<xsl:message terminate='yes'>" + inner + "</xsl:message>" : inner;
      case 16:
        return mRandom() % 8 == 0 ? "<s:output file='out'>" + inner + "</s:output>" : inner;
      case 17:
        return "<x:e y='{" + expression + "}'>" + inner + "</x:e>";
      default:
        return "<p class='{@name}'>" + inner + "</p>";
    }
  }

  std::string Nodes() {
    return Any({"//file", "//@*", "*", "//folder[file]", "m:node-set($g)//*", "key(\"k\", @size)",
                ".//file[2]", "//file|//folder", "/", "s:node-set($p)", "ancestor::*", "document(\"\")//*"});
  }

  std::string Expression(int depth) {
    if (depth == 0) return Any({"1", "@name", ".", "\"text\"", "position()", "last()", "$p", "$none"});
    const std::string inner = Expression(depth - 1);
    switch (mRandom() % 16) {
      case 0:
        return "concat(" + inner + ", " + Expression(depth - 1) + ")";
      case 1:
        return "translate(" + inner + ", \"aeiou\", \"AEIOU\")";
      case 2:
        return "count(" + Nodes() + ")";
      case 3:
        return "sum(//@size) div " + inner;
      case 4:
        return "substring(" + inner + ", 2, 3)";
      case 5:
        return "generate-id(" + Nodes() + ")";
      case 6:
        return "format-number(" + inner + ", \"#,##0.00\")";
      case 7:
        return "string(" + Nodes() + ")";
      case 8:
        return Nodes();
      case 9:
        return "normalize-space(" + inner + ")";
      case 10:
        return "function-available(" + inner + ")";
      case 11:
        return "element-available(" + inner + ")";
      case 12:
        return "name(" + Nodes() + ")";
      case 13:
        return "system-property(\"xsl:vendor\")";
      case 14:
        return mRandom() % 4 == 0 ? "none(" + inner + ")" : inner;
      default:
        return inner + Any({" = ", " + ", " or ", " &gt; "}) + Expression(depth - 1);
    }
  }

  std::mt19937 mRandom;
};

class RandomStylesheets : public DescribedFolder {
 protected:
  /// What is held by the libraries once that many have been applied.
  void Apply(unsigned first, unsigned end) {
    for (unsigned seed = first; seed < end; ++seed) {
      Tree.File("random.xsl", StylesheetMaker(seed).Make());
      XmlDocument document("directory_display", std::size_t{32} << 20);
      Describe(document);
      XmlApplyXsl(*Files, document, Tree.Path("random.xsl"), mQuiet,
                  [this](const std::string& text) { Told.push_back(text); });
    }
  }

 private:
  class Quiet final : public Progress {
    void Message(std::string_view /*text*/) override {}
    void DoEvents() override {}
    bool Stopped() const override { return false; }
  };

  static void Describe(XmlDocument& document) {
    const auto* const name = document.Intern("name");
    const auto* const size = document.Intern("size");
    xmlNode* const shared = document.NewText("3");
    xmlNode* const folder = document.AddElement(document.Root(), nullptr, document.Intern("folder"));
    for (const char* text : {"a.txt", " ", "", "<&>", "\xC3\xBC"}) {
      xmlNode* const file = document.AddElement(folder, nullptr, document.Intern("file"));
      document.AddAttribute(file, name, document.NewText(text));
      document.AddAttribute(file, size, shared);
    }
  }

  Quiet mQuiet;
};

TEST_F(RandomStylesheets, LeaveNothingWithTheLibraries) {
  const char* const wanted = std::getenv("RANDOM_STYLESHEETS");
  const unsigned count = wanted ? static_cast<unsigned>(std::atoi(wanted)) : 1000;
  Apply(0, count);
  const std::ptrdiff_t held = XmlMemory::Held();
  Apply(0, count);
  EXPECT_EQ(XmlMemory::Held(), held);
  EXPECT_GT(Told.size(), 0u);
  EXPECT_LT(Told.size(), 2 * count);
}

}  // namespace
}  // namespace brackwell
