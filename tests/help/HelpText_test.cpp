#include "help/HelpText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DecodeEntities, NamedAndNumbered) {
  EXPECT_EQ(DecodeEntities("a &lt;b&gt; &amp;amp; &quot;c&quot;&#39;s&nbsp;d"), "a <b> &amp; \"c\"'s d");
}

TEST(DecodeEntities, WhatIsNoneStaysAsItIs) {
  for (const char* text : {"&", "&;", "a & b", "&unknown;", "&#0;", "&#999;", "&#x41;", "&#", "&#;", "&lt",
                           "&verylongname;", "&&&"})
    EXPECT_EQ(DecodeEntities(text), text);
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
  for (const char* html : {"", "<", "<>", "<p></p>", "</head>", " \r\n "})
    EXPECT_EQ(PlainText(html), "") << html;
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
