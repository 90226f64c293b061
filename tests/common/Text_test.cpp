#include "common/Text.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

using List = std::vector<std::string>;

TEST(GetFileExtension, IsWhatFollowsTheLastDotInUpperCase) {
  EXPECT_EQ(GetFileExtension("report.final.Txt"), "TXT");
  EXPECT_EQ(GetFileExtension(".profile"), "PROFILE");
  EXPECT_EQ(GetFileExtension("README"), "");
  EXPECT_EQ(GetFileExtension("name."), "");
  EXPECT_EQ(GetFileExtension("/a.b/file"), "B/FILE");
}

TEST(CountMatches, CountsOverlappingPlaces) {
  EXPECT_EQ(CountMatches("aaaa", "aa"), 3);
  EXPECT_EQ(CountMatches("aaa", "aa"), 2);
  EXPECT_EQ(CountMatches("abcABC", "abc"), 1);
  EXPECT_EQ(CountMatches("", "a"), 0);
  EXPECT_EQ(CountMatches("a", ""), 0);
  EXPECT_EQ(CountMatches("a", "ab"), 0);
  EXPECT_EQ(CountMatches(std::string_view("a\0a\0a", 5), std::string_view("a\0a", 3)), 2);
}

TEST(NullToEmpty, GivesAnEmptyTextForNone) {
  EXPECT_EQ(NullToEmpty(std::nullopt), "");
  EXPECT_EQ(NullToEmpty("x"), "x");
}

TEST(TidyList, DropsBlanksAndOneSemicolonAtTheEnd) {
  EXPECT_EQ(TidyList(" tmp ; bak;"), "tmp;bak");
  EXPECT_EQ(TidyList("a;;"), "a;");
  EXPECT_EQ(TidyList("; "), "");
  EXPECT_EQ(TidyList("a\tb"), "a\tb");
}

TEST(SplitList, KeepsEmptyItemsBetweenSemicolons) {
  EXPECT_EQ(SplitList("tmp;bak"), (List{"tmp", "bak"}));
  EXPECT_EQ(SplitList("a;;b"), (List{"a", "", "b"}));
  EXPECT_EQ(SplitList("a;"), (List{"a", ""}));
  EXPECT_EQ(SplitList(";"), (List{"", ""}));
  EXPECT_EQ(SplitList(""), List{});
}

TEST(ShownText, KeepsTextAsItIs) {
  EXPECT_EQ(ShownText("a <b> & \"c\" \xc3\xa4"), "a <b> & \"c\" \xc3\xa4");
  EXPECT_EQ(ShownText(""), "");
}

TEST(ShownText, ShowsWhatIsNoTextAndWhatWouldBreakTheLine) {
  EXPECT_EQ(ShownText("caf\xe9!"), "caf\xef\xbf\xbd!");
  EXPECT_EQ(ShownText("a\nb\tc\x7f"), "a\u240ab\u2409c\u2421");
}

TEST(ReplaceRoot, TouchesTheFrontOnly) {
  EXPECT_EQ(ReplaceRoot("/a/x/a/", "/a/", "/b/"), "/b/x/a/");
  EXPECT_EQ(ReplaceRoot("/x/y", "/", "/copy/"), "/copy/x/y");
  EXPECT_EQ(ReplaceRoot("/x/y", "/", "/copy"), "/copyx/y");
  EXPECT_EQ(ReplaceRoot("/x/y", "/y", "/z"), "/x/y");
  EXPECT_EQ(ReplaceRoot("/A/y", "/a", "/z"), "/A/y");
  EXPECT_EQ(ReplaceRoot("/x", "", "/z"), "/x");
}

}  // namespace
}  // namespace brackwell
