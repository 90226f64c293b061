#include "fonts/FontSample.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

namespace brackwell {
namespace {

int CharacterCount(const std::string& text) {
  return static_cast<int>(utf8proc_decompose(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                             static_cast<utf8proc_ssize_t>(text.size()), nullptr, 0, {}));
}

TEST(CleanFontName, WhatStandsBeforeTheBracket) {
  EXPECT_EQ(CleanFontName("Arial Bold (TrueType)"), "Arial Bold");
  EXPECT_EQ(CleanFontName("Name (A) (B)"), "Name");
  EXPECT_EQ(CleanFontName("Cambria & Cambria Math (TrueType)"), "Cambria & Cambria Math");
  EXPECT_EQ(CleanFontName("  Wide   (TrueType)"), "Wide");
  EXPECT_EQ(CleanFontName("(TrueType)"), "");
  EXPECT_EQ(CleanFontName("Modern("), "Modern");
}

TEST(CleanFontName, ANameWithoutBracketsIsLeftAsItIs) {
  EXPECT_EQ(CleanFontName("Courier 10,12,15"), "Courier 10,12,15");
  EXPECT_EQ(CleanFontName(" blanks stay "), " blanks stay ");
  EXPECT_EQ(CleanFontName("Odd) Name"), "Odd) Name");
  EXPECT_EQ(CleanFontName(""), "");
}

TEST(PresetText, ASentence) { EXPECT_EQ(PresetText("QBF"), "The quick brown fox jumps over the lazy dog"); }

TEST(PresetText, TheCharactersOfAscii) {
  const std::string text = PresetText("ASC127");
  EXPECT_EQ(
      text,
      " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"
      "\x7f");
  EXPECT_EQ(text.size(), 96U);
}

TEST(PresetText, TheCharactersOfCodePage1252) {
  const std::string text = PresetText("ASC255");
  EXPECT_EQ(CharacterCount(text), 224);
  EXPECT_TRUE(text.starts_with(PresetText("ASC127") + "\xe2\x82\xac\xc2\x81\xe2\x80\x9a"));
  EXPECT_NE(text.find("\xc2\x8f\xc2\x90\xe2\x80\x98\xe2\x80\x99"), std::string::npos);
  EXPECT_NE(text.find("\xc5\x93\xc2\x9d\xc5\xbe\xc5\xb8\xc2\xa0\xc2\xa1"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\xc3\xbe\xc3\xbf"));
}

TEST(PresetText, TheUpperCodeIsTakenFromTheKey) {
  EXPECT_EQ(PresetText("ASC040"), " !\"#$%&'(");
  EXPECT_EQ(PresetText("032"), " ");
  EXPECT_EQ(PresetText("ASC999"), PresetText("ASC255"));
  for (const char* key : {"", "ABC", "31", "X"}) EXPECT_EQ(PresetText(key), "") << key;
}

TEST(PrepareSample, EachBlankIsKept) {
  EXPECT_EQ(PrepareSample("a b"), "a&nbsp;b");
  EXPECT_EQ(PrepareSample("   "), "&nbsp;&nbsp;&nbsp;");
}

TEST(PrepareSample, EachLineEndBreaksTheLineOnce) {
  EXPECT_EQ(PrepareSample("one\r\ntwo"), "one<br>two");
  EXPECT_EQ(PrepareSample("one\rtwo"), "one<br>two");
  EXPECT_EQ(PrepareSample("one\ntwo"), "one<br>two");
  EXPECT_EQ(PrepareSample("\r\r\n\n\n\r"), "<br><br><br><br><br>");
}

TEST(PrepareSample, AllElseIsMarkup) {
  EXPECT_EQ(PrepareSample("<b>&lt;\"';\t</b>"), "<b>&lt;\"';\t</b>");
  EXPECT_EQ(PrepareSample(""), "");
}

TEST(FontSamplePage, ToTheCharacter) {
  EXPECT_EQ(ToHtml({.Title = "Font Sample",
                    .Fonts = {"Arial", "DejaVu Sans"},
                    .Text = "ABC abc\n<i>1</i>",
                    .Size = "12"}),
            "<html><head><title>Font Sample</title></head><body>"
            "<p><span style=\"font-family:Arial;font-size:10pt\">Arial</span><br>"
            "<span style=\"font-family:Arial;font-size=12pt;\">ABC&nbsp;abc<br><i>1</i></span></p>"
            "<p><span style=\"font-family:Arial;font-size:10pt\">DejaVu Sans</span><br>"
            "<span style=\"font-family:DejaVu Sans;font-size=12pt;\">ABC&nbsp;abc<br><i>1</i></span></p>"
            "</body></html>");
}

TEST(FontSamplePage, EveryStyleInItsOrder) {
  EXPECT_EQ(ToHtml({.Title = "",
                    .Fonts = {"A"},
                    .Text = "x",
                    .Size = "-3",
                    .Bold = true,
                    .Italic = true,
                    .Underline = true,
                    .Strikethru = true}),
            "<html><head></head><body>"
            "<p><span style=\"font-family:Arial;font-size:10pt\">A</span><br>"
            "<span style=\"font-family:A;font-size=-3pt;font-weight:bold;font-style:italic;"
            "text-decoration: underline;text-decoration: line-through;\">x</span></p></body></html>");
}

/// What follows "font-family:" up to the text.
std::string StylesOf(const FontSample& sample) {
  const std::string page = ToHtml(sample);
  const std::size_t start = page.rfind("font-family:");
  return page.substr(start, page.rfind("\">") - start);
}

TEST(FontSamplePage, EachStyleByItself) {
  EXPECT_EQ(StylesOf({.Fonts = {"A"}, .Text = "x", .Size = "1e2"}), "font-family:A;font-size=1e2pt;");
  EXPECT_EQ(StylesOf({.Fonts = {"A"}, .Text = "x", .Size = "9", .Bold = true}),
            "font-family:A;font-size=9pt;font-weight:bold;");
  EXPECT_EQ(StylesOf({.Fonts = {"A"}, .Text = "x", .Size = "9", .Italic = true}),
            "font-family:A;font-size=9pt;font-style:italic;");
  EXPECT_EQ(StylesOf({.Fonts = {"A"}, .Text = "x", .Size = "9", .Underline = true}),
            "font-family:A;font-size=9pt;text-decoration: underline;");
  EXPECT_EQ(StylesOf({.Fonts = {"A"}, .Text = "x", .Size = "9", .Strikethru = true}),
            "font-family:A;font-size=9pt;text-decoration: line-through;");
}

TEST(FontSamplePage, WithoutFontsItIsEmpty) {
  EXPECT_EQ(ToHtml({.Title = "T", .Fonts = {}, .Text = "x", .Size = "12"}),
            "<html><head><title>T</title></head><body></body></html>");
}

/// The label of a font, a "|", and the value of its style.
std::string Shown(const std::string& font) {
  const std::string page = ToHtml({.Title = "", .Fonts = {font}, .Text = "x", .Size = "1"});
  const std::string beforeLabel =
      "<html><head></head><body><p><span style=\"font-family:Arial;font-size:10pt\">";
  const std::string between = "</span><br><span style=\"font-family:";
  const std::string after = ";font-size=1pt;\">x</span></p></body></html>";
  EXPECT_TRUE(page.starts_with(beforeLabel) && page.ends_with(after)) << page;
  const std::string names = page.substr(beforeLabel.size(), page.size() - beforeLabel.size() - after.size());
  const std::size_t label = names.find(between);
  return names.substr(0, label).append(1, '|').append(names, label + between.size());
}

TEST(FontSamplePage, NamesEndNoTagNoAttributeAndNoStyle) {
  EXPECT_EQ(Shown("</span><script>x"), "&lt;/span&gt;&lt;script&gt;x|&lt;/span&gt;&lt;script&gt;x");
  EXPECT_EQ(Shown("a\"b"), "a&quot;b|a&quot;b");
  EXPECT_EQ(Shown("a;background:url(x)"), "a;background:url(x)|a\\3b background:url(x)");
  EXPECT_EQ(Shown("a&#59background:url(x)"), "a&amp;#59background:url(x)|a&amp;#59background:url(x)");
  EXPECT_EQ(Shown("a&lt;b"), "a&amp;lt;b|a&amp;lt\\3b b");
}

TEST(FontSamplePage, UsualNamesStandAsTheyAre) {
  for (const char* name : {"Cambria & Cambria Math", "Courier 10,12,15", "Rock'n Roll", "@Batang", "R&", "&"})
    EXPECT_EQ(Shown(name), std::string(name).append("|").append(name));
}

TEST(FontSamplePage, BrokenNamesStayOnePlace) {
  EXPECT_EQ(Shown("a\nb\x7f"),
            "a\xe2\x90\x8a"
            "b\xe2\x90\xa1|a\xe2\x90\x8a"
            "b\xe2\x90\xa1");
  EXPECT_EQ(Shown("\xff"), "\xef\xbf\xbd|\xef\xbf\xbd");
  EXPECT_EQ(Shown(""), "|");
}

}  // namespace
}  // namespace brackwell
