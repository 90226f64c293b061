#include "help/SiteMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace brackwell {
namespace {

using testing::AllOf;
using testing::Gt;
using testing::IsEmpty;
using testing::Lt;
using testing::SizeIs;

std::string Entry(const std::string& title, const std::string& topic) {
  return "<LI><OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"" + title +
         "\"><param name=\"Local\" value=\"" + topic + "\"></OBJECT>";
}

/// One entry per line, two blanks for each level.
std::string Outline(const std::vector<HelpEntry>& entries) {
  std::string text;
  for (const HelpEntry& entry : entries)
    text += std::string(2 * static_cast<std::size_t>(entry.Depth), ' ') + entry.Title + " -> " + entry.Topic +
            "\n";
  return text;
}

TEST(SiteMap, ATree) {
  const std::string map = "<html><body><ul>" + Entry("A", "a.html") + "<ul>" + Entry("B &amp; b", "b.html") +
                          "<ul>" + Entry("C", "c.html") + "</ul></ul>" + Entry("D", "d.html") +
                          "</ul></body></html>";
  EXPECT_EQ(Outline(ParseSiteMap(map)),
            "A -> a.html\n"
            "  B & b -> b.html\n"
            "    C -> c.html\n"
            "D -> d.html\n");
}

TEST(SiteMap, ObjectsWithoutATitleAreNone) {
  EXPECT_EQ(Outline(ParseSiteMap("<OBJECT type=\"text/site properties\"><param name=\"ImageType\" "
                                 "value=\"Folder\"></OBJECT><ul>" +
                                 Entry("A", "a.html") + "</ul>")),
            "A -> a.html\n");
}

TEST(SiteMap, OfAKeywordsTopicsTheFirstCounts) {
  EXPECT_EQ(
      Outline(ParseSiteMap("<object><param name=\"Name\" value=\"key\"><param name=\"Name\" value=\"One\">"
                           "<param name=\"Local\" value=\"1.html\"><param name=\"Local\" value=\"2.html\">"
                           "</object>")),
      "key -> 1.html\n");
}

TEST(SiteMap, AChapterMayHaveNoTopic) {
  EXPECT_EQ(Outline(ParseSiteMap("<object><param name=\"Name\" value=\"Chapter\"></object>")),
            "Chapter -> \n");
}

TEST(SiteMap, NoEntryIsDeeperThanOneBelowTheLast) {
  EXPECT_EQ(Outline(ParseSiteMap("<ul><ul><ul>" + Entry("A", "a") + "<ul><ul>" + Entry("B", "b"))),
            "A -> a\n"
            "  B -> b\n");
}

TEST(SiteMap, MoreListsEndThanBegan) {
  EXPECT_EQ(Outline(ParseSiteMap("</ul></ul>" + Entry("A", "a") + "</ul><ul>" + Entry("B", "b"))),
            "A -> a\n"
            "B -> b\n");
}

TEST(SiteMap, DepthAndNumberAreBounded) {
  std::string deep, many;
  for (int i = 0; i < 100'000; ++i) {
    deep += "<ul>" + Entry("x", "y");
    many += Entry("x", "y");
  }
  const std::vector<HelpEntry> nested = ParseSiteMap(deep);
  ASSERT_THAT(nested, SizeIs(Gt(20U)));
  EXPECT_EQ(nested.back().Depth, 16);
  EXPECT_THAT(ParseSiteMap(many), SizeIs(AllOf(Gt(1'000U), Lt(10'000U))));
}

TEST(SiteMap, ATitleWithoutEndIsCut) {
  const std::vector<HelpEntry> entries = ParseSiteMap(Entry(std::string(1'000'000, 'x'), "y"));
  ASSERT_THAT(entries, SizeIs(1));
  EXPECT_EQ(entries[0].Title, std::string(500, 'x'));
}

TEST(SiteMap, WhatMakesNoSense) {
  EXPECT_THAT(ParseSiteMap(""), IsEmpty());
  EXPECT_THAT(ParseSiteMap("<object><param name=\"Name\""), IsEmpty());
  EXPECT_THAT(ParseSiteMap("<param name=\"Name\" value=\"A\">"), IsEmpty());
  EXPECT_THAT(ParseSiteMap("</object></object><object></object>"), IsEmpty());
  EXPECT_THAT(ParseSiteMap(std::string("<\0\xFF\xFE>", 5)), IsEmpty());
  // A character whose lower case has another length in UTF-8.
  EXPECT_EQ(Outline(ParseSiteMap("<object><param \xC4\xB0\xE2\x84\xAA name=\"Name\" value=\"A\"></object>")),
            "A -> \n");
}

}  // namespace
}  // namespace brackwell
