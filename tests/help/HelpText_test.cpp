#include "help/HelpText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST(PlainText, EntitiesAreTheirCharacters) {
  EXPECT_EQ(PlainText("a &lt;b&gt; &amp;amp; &quot;c&quot;&#39;s&nbsp;d"), "a <b> &amp; \"c\"'s d");
  EXPECT_EQ(PlainText("&Auml;&#x41;&#8364;"), "\u00C4A\u20AC");
}

TEST(PlainText, WhatIsNoEntityStaysAsItIs) {
  for (const char* text : {"&", "&;", "a & b", "&unknown;", "&verylongname;", "&&&"})
    EXPECT_EQ(PlainText(text), text);
}

TEST(PlainText, WithoutHeadAndTags) {
  EXPECT_EQ(
      PlainText("<html><head><title>T</title></head><body><h1>A</h1><p>b <b>c</b>d\n e</p></body></html>"),
      "A b cd e");
}

TEST(PlainText, CellsAndLinesAreApart) {
  EXPECT_EQ(PlainText("<tr><td>a</td><td>b</td></tr><br>c<img src=\"x\" />d"), "a b c d");
}

TEST(PlainText, AnUnfinishedTagEndsIt) { EXPECT_EQ(PlainText("a <b"), "a"); }

TEST(PlainText, NothingOfNothing) {
  for (const char* html : {"", "<", "<p></p>", "</head>", " \r\n "}) EXPECT_EQ(PlainText(html), "") << html;
}

std::string Repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(PlainText, HoweverLargeItIsReadInPart) {
  const std::string text = PlainText("<p>" + Repeated("word ", 1'000'000));
  EXPECT_TRUE(text.starts_with("word word word"));
  EXPECT_LT(text.size(), 200'000U);
}

TEST(PlainText, HoweverDeepItComesToAnEnd) {
  for (const char* tag :
       {"<b>", "<ul><li>", "<table><tr><td>", "<object>", "<x>", "</x>", "<p><", "<!--", "<![CDATA["}) {
    const std::string text = PlainText("<p>first</p>" + Repeated(tag, 100'000) + "last");
    EXPECT_TRUE(text.starts_with("first")) << tag << text;
    EXPECT_FALSE(text.ends_with("last")) << tag;
  }
}

TEST(PlainText, WhateverTheBytesItComesToAnEnd) {
  EXPECT_TRUE(PlainText(std::string("a\0b", 3)).starts_with("a"));
  EXPECT_TRUE(PlainText("a caf\xE9 b").starts_with("a caf"));
  EXPECT_TRUE(PlainText("<meta charset=\"utf-16\"><p>a b").starts_with("a"));
  EXPECT_TRUE(PlainText("<?xml version=\"1.0\" encoding=\"no such\"?><p>a b").starts_with("a"));
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  for (const char* before : {"", "<", "<p ", "<p a=\"", "&", "&#", "<!", "<?", "<title>", "<script>"}) {
    PlainText(before + Repeated(all, 100));
    PageTitle(before + Repeated(all, 100));
  }
}

TEST(PlainText, NothingIsFetched) {
  EXPECT_THAT(PlainText("<!DOCTYPE html [<!ENTITY file SYSTEM \"file:///etc/passwd\">]><p>a&file;b"),
              EndsWith("a&file;b"));
}

TEST(PlainText, ScriptsAndStylesAreNotShown) {
  EXPECT_EQ(PlainText("<p>a</p><script>var x = 1;</script><style>p {}</style><p>b</p>"), "a b");
}

TEST(PageTitle, ItsCharacters) {
  EXPECT_EQ(PageTitle("<head><title>Find &amp; replace</title></head>"), "Find & replace");
  EXPECT_EQ(PageTitle("<head></head>"), "");
  EXPECT_EQ(PageTitle("<title>never ends"), "never ends");
}

TEST(Words, RunsOfLettersAndDigitsInLowerCase) {
  EXPECT_THAT(Words("Find-and Replace: UTF-8, \xC3\x84rger!"),
              ElementsAre("find", "and", "replace", "utf", "8", "\xC3\xA4rger"));
  EXPECT_THAT(Words(" ... "), IsEmpty());
}

}  // namespace
}  // namespace brackwell
