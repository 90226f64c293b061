#include "replace/TextEncoding.h"

#include <gtest/gtest.h>

#include <random>

namespace brackwell {
namespace {

using enum TextEncoding;

TextEncoding EncodingOfMark(std::string_view bytes) { return FindByteOrderMark(bytes)->Encoding; }

TEST(FindByteOrderMark, KnowsThree) {
  EXPECT_EQ(EncodingOfMark("\xEF\xBB\xBFx"), Utf8);
  EXPECT_EQ(EncodingOfMark("\xFF\xFE"), Utf16Le);
  EXPECT_EQ(EncodingOfMark("\xFE\xFFxx"), Utf16Be);
  EXPECT_EQ(FindByteOrderMark("\xEF\xBB\xBF")->Length, 3u);
  EXPECT_EQ(FindByteOrderMark("\xFE\xFF")->Length, 2u);
  for (const char* bytes : {"", "\xEF\xBB", "\xFF", "\xFE", "x\xFF\xFE", "+/v8"})
    EXPECT_FALSE(FindByteOrderMark(bytes).has_value()) << bytes;
}

bool IsUnsupported(const std::string& bytes) { return IsUnsupportedUnicode(bytes, bytes.size()); }

std::string Utf32(std::u32string_view text, bool bigEndian) {
  std::string bytes;
  for (const char32_t character : text)
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(character >> (bigEndian ? 24 - 8 * i : 8 * i));
  return bytes;
}

TEST(IsUnsupportedUnicode, KnowsUtf32AndUtf16WithoutAMark) {
  for (const std::u32string_view text :
       {U"x", U"One line,\r\n\ta second one.\r\n", U"\u0100\u0200 na\u00EFve", U"\u0434\u0430, \u03B1",
        U"\u05D0\u05D1 \u0645", U"mostly \u4E2D\u6587\u3002"}) {
    EXPECT_TRUE(IsUnsupported(Encode(text, Utf16Le).value()));
    EXPECT_TRUE(IsUnsupported(Encode(text, Utf16Be).value()));
    EXPECT_TRUE(IsUnsupported(Utf32(text, false)));
    EXPECT_TRUE(IsUnsupported(Utf32(text, true)));
  }
  const std::u32string marked = U"\uFEFF\u4E2D";
  EXPECT_TRUE(IsUnsupported(Utf32(marked, false)));
  EXPECT_TRUE(IsUnsupported(Utf32(marked, true)));
  EXPECT_FALSE(IsUnsupported(Encode(marked + U"text", Utf16Le).value()));
  EXPECT_FALSE(IsUnsupported(Encode(marked + U"text", Utf16Be).value()));
}

TEST(IsUnsupportedUnicode, KnowsThemByTheirBegin) {
  const std::string begin = Encode(std::u32string_view(U"text"), Utf16Le).value();
  EXPECT_TRUE(IsUnsupportedUnicode(begin + "t", 1 << 20));
  EXPECT_FALSE(IsUnsupportedUnicode(begin, 1001));
}

TEST(IsUnsupportedUnicode, LeavesBytesWithNulsAlone) {
  using namespace std::string_literals;
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  std::string records;
  for (int i = 0; i < 100; ++i) records += "1234567\0"s;
  std::string counts;
  for (int i = 0; i < 300; ++i) counts += {static_cast<char>(i % 50), 0, 0, 0};
  std::string samples;
  for (int i = 0; i < 300; ++i)
    samples += {static_cast<char>(i * 37), static_cast<char>(i % 2 == 0 ? 0 : -1)};
  for (const std::string& bytes :
       {""s, "text"s, "\0"s, "x\0x"s, "name\0value\0"s, "a\r\nb\0c\r\n"s, "text" + std::string(100, '\0'),
        std::string(100, '\0'), everyByte, records, counts, samples})
    EXPECT_FALSE(IsUnsupported(bytes)) << testing::PrintToString(bytes);
}

TEST(TallyUtf8, TellsCharactersFromStrayBytes) {
  const std::string bytes =
      std::string(70, 'x') + "\xC3\xA9\xE9 \xF0\x9F\x98\x80\x80\xE2\x82" + std::string(70, 'x');
  Utf8Tally tally;
  EXPECT_EQ(TallyUtf8(bytes, 0, bytes.size(), tally), bytes.size());
  EXPECT_EQ(tally.Characters, 2);
  EXPECT_EQ(tally.Strays, 4);
  EXPECT_EQ(TallyUtf8(bytes, 70, 71, tally), 72u);
  EXPECT_EQ(tally.Characters, 3);
}

TEST(Encode, FollowsEveryEncoding) {
  using namespace std::string_literals;
  const std::u32string text = U"a\u00E9\u20AC";
  EXPECT_EQ(Encode(text, Utf8), "a\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(Encode(text, CodePage), "a\xE9\x80");
  EXPECT_EQ(Encode(text, Utf16Le), "a\0\xE9\0\xAC\x20"s);
  EXPECT_EQ(Encode(text, Utf16Be), "\0a\0\xE9\x20\xAC"s);
  EXPECT_EQ(Encode(U"", Utf16Be), "");
}

TEST(Encode, BeyondTheBasicPlane) {
  EXPECT_EQ(Encode(U'\U0001F600', Utf8), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Encode(U'\U0001F600', Utf16Le), std::string("\x3D\xD8\x00\xDE", 4));
  EXPECT_EQ(Encode(U'\U0001F600', Utf16Be), std::string("\xD8\x3D\xDE\x00", 4));
  EXPECT_EQ(Encode(U'\U0010FFFF', Utf16Be), "\xDB\xFF\xDF\xFF");
  EXPECT_FALSE(Encode(U'\U0001F600', CodePage).has_value());
}

TEST(Encode, TheCodePageHasACharacterForEveryByte) {
  const std::u32string middle =
      U"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
      U"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";
  for (char32_t byte = 0; byte < 0x100; ++byte) {
    const char32_t character = byte >= 0x80 && byte < 0xA0 ? middle[byte - 0x80] : byte;
    EXPECT_EQ(Encode(character, CodePage), std::string(1, static_cast<char>(byte))) << int(byte);
  }
  for (const char32_t character : {U'\u0080', U'\u0082', U'\u009F', U'\u0100', U'\u3042'})
    EXPECT_FALSE(Encode(character, CodePage).has_value()) << int(character);
  EXPECT_FALSE(Encode(U"a\u3042", CodePage).has_value());
}

TEST(Decode, TakesValidTextOnly) {
  EXPECT_EQ(Decode("a\xC3\xA9\xF0\x9F\x98\x80"), U"a\u00E9\U0001F600");
  EXPECT_EQ(Decode(std::string_view("\0", 1)), std::u32string(1, U'\0'));
  EXPECT_EQ(Decode(""), U"");
  for (const char* bytes : {"\xE9", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
    EXPECT_FALSE(Decode(bytes).has_value()) << bytes;
}

/// The rules of the standard, byte by byte.
std::size_t ValidLengthByTheBook(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0; };
  const auto isIn = [](unsigned byte, unsigned low, unsigned high) { return byte >= low && byte <= high; };
  for (std::size_t i = 0;;) {
    if (i == bytes.size()) return i;
    const unsigned lead = at(i);
    std::size_t length = 0;
    if (lead < 0x80) length = 1;
    if (isIn(lead, 0xC2, 0xDF)) length = 2;
    if (isIn(lead, 0xE0, 0xEF)) length = 3;
    if (isIn(lead, 0xF0, 0xF4)) length = 4;
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    bool isValid = length > 0 && (length == 1 || isIn(at(i + 1), low, high));
    for (std::size_t next = 2; next < length; ++next) isValid = isValid && isIn(at(i + next), 0x80, 0xBF);
    if (!isValid) return i;
    i += length;
  }
}

TEST(ValidUtf8Length, IsThatOfTheStandard) {
  std::mt19937 random(1);
  // Bytes at which rules change, and much ASCII between them.
  const std::string edges =
      "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xEC\xED\xEE\xEF\xF0\xF3\xF4\xF5\xFF";
  const std::string ascii(70, 'x');
  for (int round = 0; round < 200000; ++round) {
    std::string bytes = ascii.substr(0, random() % ascii.size());
    for (unsigned i = random() % 6; i > 0; --i) bytes += edges[random() % edges.size()];
    if (random() % 2 == 0) bytes += "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    if (random() % 2 == 0) bytes += ascii;
    ASSERT_EQ(ValidUtf8Length(bytes), ValidLengthByTheBook(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(ValidUtf8Length, EndsBeforeACharacterThatIsNotWhole) {
  EXPECT_EQ(ValidUtf8Length("ab\xF0\x9F\x98"), 2u);
  EXPECT_EQ(ValidUtf8Length("\xC3\xA9\xC3"), 2u);
  EXPECT_EQ(ValidUtf8Length(""), 0u);
}

}  // namespace
}  // namespace brackwell
