#include "dirdisplay/XmlExtensions.h"

#include <libxslt/extensions.h>

#include <cstdlib>

#include "dirdisplay/DescribedFolder.h"
#include "support/OwnFolders.h"

namespace brackwell {
namespace {

/// libxslt finds a library that leaves a mark where it is asked for an extension of that namespace.
class LoadedLibraries : public DescribedFolder {
 protected:
  LoadedLibraries() {
    Options.Format = DisplayFormat::Text;
    Options.ProgramFolder = Tree.Path("program");
  }

  static bool IsLoaded() { return std::getenv("MARKING_MODULE_LOADED") != nullptr; }
  static constexpr const char* Namespace = "http://example.org/mark";

  const OwnVariable mModules{"LIBXSLT_PLUGINS_PATH", MODULE_FOLDER};
};

TEST_F(LoadedLibraries, NoStylesheetLoadsOne) {
  const std::string inTemplate[] = {
      "<xsl:value-of select='m:f()'/>",
      "<xsl:value-of select=\"function-available('m:f')\"/>",
      "<xsl:value-of select=\"element-available('m:f')\"/>",
      "<xsl:value-of select=\"element-available(concat('m', ':f'))\"/>",
      "<xsl:if test='false()'><m:e/></xsl:if>",
      "<m:e/>",
      "<m:e xsl:extension-element-prefixes='m'/>",
      "<a xsl:extension-element-prefixes='m'><m:e/></a>",
      "<xsl:variable name='a' select='m:f()'/>",
      "<xsl:for-each select='//*[m:f()]'/>",
      "<xsl:attribute name='m:a'/>",
  };
  for (const std::string& body : inTemplate) {
    for (const char* attributes : {"", " extension-element-prefixes='m'"}) {
      for (const char* top : {"", "<m:top/>", "<xsl:variable name='v' select='m:f()'/>",
                              "<xsl:key name='k' match='*' use='m:f()'/>"}) {
        Tree.File("program/xml/dir_display_text.xsl",
                  "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' xmlns:m='" +
                      std::string(Namespace) + "'" + attributes + ">" + top + "<xsl:template match='/'>" +
                      body + "</xsl:template></xsl:stylesheet>");
        Display();
        ASSERT_FALSE(IsLoaded()) << attributes << top << body;
      }
    }
  }
  Tree.File("program/xml/dir_display_text.xsl",
            "<m:e xsl:version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' xmlns:m='" +
                std::string(Namespace) + "' xsl:extension-element-prefixes='m'/>");
  Display();
  EXPECT_FALSE(IsLoaded());
  // Asked itself, libxslt loads it; else all this has shown nothing.
  xsltExtModuleFunctionLookup(BAD_CAST "f", BAD_CAST Namespace);
  if (!IsLoaded()) GTEST_SKIP() << "This libxslt loads no libraries at all.";
}

}  // namespace
}  // namespace brackwell
