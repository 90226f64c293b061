#include "replace/FileReplacer.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "common/Text.h"
#include "platform/CaseRules.h"
#include "replace/MemoryFile.h"

namespace brackwell {
namespace {

using namespace std::string_literals;
using enum TextEncoding;

std::int64_t Count(const std::string& content, const std::string& phrase,
                   std::size_t piece = FileReplacer::UsualPiece) {
  MemoryFile file(content);
  return FileReplacer(
             phrase, "", [] {}, piece)
      .CountMatches(file);
}

/// The new content; what went wrong in its place.
std::string Replaced(const std::string& content, const std::string& phrase, const std::string& replacement,
                     std::size_t piece = FileReplacer::UsualPiece) {
  MemoryFile file(content);
  FileReplacer replacer(
      phrase, replacement, [] {}, piece);
  replacer.CountMatches(file);
  const auto problem = replacer.ReplaceText();
  if (!problem) return file.Content;
  EXPECT_EQ(file.Content, content);
  constexpr const char* Problems[] = {"cannot open", "cannot encode", "unsupported"};
  return Problems[static_cast<int>(*problem)];
}

std::string Utf16(std::u32string_view text, TextEncoding encoding = Utf16Le) {
  return Encode(std::u32string(1, U'\uFEFF').append(text), encoding).value();
}

const std::string Utf8Mark = "\xEF\xBB\xBF";

// --- Which encoding

TEST(FileReplacer, ReadsValidUtf8AsSuch) {
  EXPECT_EQ(Count("caf\xC3\xA9 CAF\xC3\x89", "\xC3\xA9"), 2);
  EXPECT_EQ(Replaced("caf\xC3\xA9", "\xC3\xA9", "\xE2\x82\xAC"), "caf\xE2\x82\xAC");
  EXPECT_EQ(Count("caf\xC3\xA9", "\xC3\x83"), 0);  // which these bytes are in the code page
}

TEST(FileReplacer, ReadsAnythingElseAsCodePage1252) {
  EXPECT_EQ(Count("caf\xE9 CAF\xC9", "\xC3\xA9"), 2);
  EXPECT_EQ(Replaced("caf\xE9 \x81", "\xC3\xA9", "\xE2\x82\xAC"), "caf\x80 \x81");
  EXPECT_EQ(Count("\xC3\xA9 \xE9", "\xC3\xA9"), 1);
  EXPECT_EQ(Count("\x81", "\xC2\x81"), 1);
}

TEST(FileReplacer, ObeysMarks) {
  EXPECT_EQ(Count(Utf8Mark + "\xC3\xA9 \xE9", "\xC3\xA9"), 1);
  EXPECT_EQ(Replaced(Utf8Mark + "\xE9x\xFFX", "x", "\xC3\xA9"), Utf8Mark + "\xE9\xC3\xA9\xFF\xC3\xA9");
  for (const TextEncoding encoding : {Utf16Le, Utf16Be}) {
    EXPECT_EQ(Count(Utf16(U"a\u00C9b", encoding), "\xC3\xA9"), 1);
    EXPECT_EQ(Replaced(Utf16(U"a\r\nAb", encoding), "a", "\xF0\x9F\x98\x80"),
              Utf16(U"\U0001F600\r\n\U0001F600b", encoding));
  }
}

TEST(FileReplacer, NeverTakesTheMarkForText) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_EQ(Count(Utf8Mark + "a" + mark, mark), 1);
  EXPECT_EQ(Replaced(Utf8Mark + "a" + mark, mark, ""), Utf8Mark + "a");
  EXPECT_EQ(Count(Utf16(U"\uFEFF"), mark), 1);
}

TEST(FileReplacer, TellsEncodingsApartWhereTheyMatter) {
  // The sign of the kelvin is a k in UTF-8, and three other characters in the code page.
  EXPECT_EQ(Count("k\u212A", "K"), 2);
  EXPECT_EQ(Count("k\u212A\xFF", "K"), 1);
  EXPECT_EQ(Replaced("k\u212A\xFF", "K", "c"), "c\u212A\xFF");
  EXPECT_EQ(Replaced("k\u212A", "K", "c"), "cc");
}

TEST(FileReplacer, RefusesWhatTheEncodingCannotHold) {
  EXPECT_EQ(Replaced("x\xE9", "x", "\u3042"), "cannot encode");
  EXPECT_EQ(Replaced("x", "x", "\u3042"), "\u3042");
  EXPECT_EQ(Replaced("x\xE9", "x", "\xC2\x80"), "cannot encode");
  EXPECT_EQ(Replaced("x\xE9", "x", "\xC2\x81"), "\x81\xE9");
  EXPECT_EQ(Replaced("x", "x", "\xFF"), "cannot encode");
}

TEST(FileReplacer, PutsNoSecondEncodingIntoTextThatIsMostlyUtf8) {
  const std::string text = "gr\u00FCn x \u20AC";
  EXPECT_EQ(Replaced(text + "\xFC", "x", "\u00FC"), "cannot encode");
  EXPECT_EQ(Replaced(text + "\xFC", "x", "y"), "gr\u00FCn y \u20AC\xFC");
  EXPECT_EQ(Replaced("x \u00FC \xFC", "x", "\u00FC"), "\xFC \u00FC \xFC");  // as many of either
  EXPECT_EQ(Replaced("x \xFC\xFC\u00FC\xE4", "x", "\u00FC"), "\xFC \xFC\xFC\u00FC\xE4");
  const std::string ascii(3 * FileReplacer::UsualPiece, '-');
  EXPECT_EQ(Replaced("\xFC" + ascii + text, "x", "\u00FC"), "cannot encode");
}

TEST(FileReplacer, CountsWhatLiesAcrossPiecesOnce) {
  std::string text = "x\xFF\xFF";
  for (int i = 0; i < 3; ++i) text += "\u20AC";
  for (std::size_t piece = 1; piece < 20; ++piece) {
    EXPECT_EQ(Replaced(text, "x", "\u00FC", piece), "cannot encode") << piece;
    EXPECT_EQ(Replaced(text + "\xFF", "x", "\u00FC", piece), "\xFC" + text.substr(1) + "\xFF") << piece;
  }
}

TEST(FileReplacer, LeavesUnicodeThatItDoesNotKnow) {
  for (const TextEncoding encoding : {Utf16Le, Utf16Be}) {
    const std::string text = Encode(std::u32string_view(U"One text,\r\nand \u0100nother."), encoding).value();
    EXPECT_EQ(Count(text, "x"), 1);  // as ever
    EXPECT_EQ(Replaced(text, "x", "y"), "unsupported");
    EXPECT_EQ(Replaced(Utf16(U"x", encoding), "x", "y"), Utf16(U"y", encoding));
  }
  const std::string mark = "\xFF\xFE\0\0"s;
  EXPECT_EQ(Replaced(mark + "x\0\0\0y\0\0\0"s, "x", "y"), "unsupported");
  EXPECT_EQ(Replaced("\0\0\xFE\xFF\0\0\0x"s, "x", "y"), "unsupported");
}

TEST(FileReplacer, DecidesByTheWholeFile) {
  const std::string ascii(3 * FileReplacer::UsualPiece, '-');
  EXPECT_EQ(Count("\xC3\xA9" + ascii, "\xC3\xA9"), 1);
  EXPECT_EQ(Count("\xC3\xA9" + ascii + "\xFF", "\xC3\xA9"), 0);
  EXPECT_EQ(Replaced("x" + ascii + "\xFF", "x", "\xC3\xA9"), "\xE9" + ascii + "\xFF");
  EXPECT_EQ(Replaced("x" + ascii + "\xC3\xBF", "x", "\xC3\xA9"), "\xC3\xA9" + ascii + "\xC3\xBF");
}

// --- What stays

TEST(FileReplacer, LeavesAllOtherBytes) {
  EXPECT_EQ(Replaced("x\r\nx\rx\nx\0x\x1A"s, "x", "yy"), "yy\r\nyy\ryy\nyy\0yy\x1A"s);
  EXPECT_EQ(Replaced(Utf16(U"xX") + "x", "x", "y"), Utf16(U"yy") + "x");
  const std::string loneSurrogates = "\x00\xD8\x00\xDC\x00\xDC\x00\xD8"s;
  EXPECT_EQ(Replaced(Utf16(U"x") + loneSurrogates + "x\0"s, "x", ""), Utf16(U"") + loneSurrogates);
  EXPECT_EQ(Replaced(Utf8Mark + "\xC3x\xED\xA0\x80x\xF0\x9F", "X", "y"),
            Utf8Mark + "\xC3y\xED\xA0\x80y\xF0\x9F");
}

TEST(FileReplacer, ReplacesWholeCharactersOfOtherLengths) {
  EXPECT_EQ(Replaced("a\u212A\u0130\u1E9Eb", "ki\u00DF", "-"), "a-b");
  EXPECT_EQ(Replaced("\u212A\u212Ak", "kk", "-"), "-k");
}

TEST(FileReplacer, FindsNothingForNoText) {
  EXPECT_EQ(Count("abc", ""), 0);
  EXPECT_EQ(Count("\xFF\xFF", "\xFF"), 0);
  EXPECT_EQ(Count("", "x"), 0);
}

// --- Pieces

TEST(FileReplacer, TicksBetweenPieces) {
  int ticks = 0;
  MemoryFile file(std::string(10 * FileReplacer::UsualPiece, 'x'));
  FileReplacer replacer("X", "y", [&ticks] { ++ticks; });
  EXPECT_EQ(replacer.CountMatches(file), static_cast<std::int64_t>(file.Content.size()));
  EXPECT_GE(ticks, 8);
  EXPECT_FALSE(replacer.ReplaceText().has_value());
  EXPECT_TRUE(file.Content == std::string(file.Content.size(), 'y'));
  EXPECT_GE(ticks, 16);
}

TEST(FileReplacer, CountingEndsWhereATickThrows) {
  struct Enough {};
  MemoryFile file(std::string(10 * FileReplacer::UsualPiece, 'x'));
  FileReplacer replacer("x", "", [ticks = 0]() mutable {
    if (++ticks == 2) throw Enough();
  });
  EXPECT_THROW(replacer.CountMatches(file), Enough);
}

TEST(FileReplacer, LeavesOutWhatAFileHasLostMeanwhile) {
  class Shrinking final : public TextReader {
   public:
    std::uint64_t Size() const override { return 1000; }
    std::optional<FileIdentity> SharedIdentity() const override { return std::nullopt; }
    std::size_t Read(char* buffer, std::size_t size) override {
      return std::exchange(mText, "").copy(buffer, size);
    }
    std::string ReadAll() override { return {}; }
    void Rewind() override {}
    std::unique_ptr<TextWriter> Rewrite(Tick /*tick*/) override { return nullptr; }

   private:
    std::string mText = "xx";
  };
  Shrinking file;
  EXPECT_EQ(FileReplacer("x", "", [] {}).CountMatches(file), 2);
}

// --- Any text, any phrase

/// The characters of a text as the definition has them: how each stands in the file, and what it is in lower
/// case.
struct Character {
  std::string Bytes;
  std::string Lower;
};

std::vector<Character> Characters(std::string_view text, TextEncoding encoding) {
  std::vector<Character> characters;
  while (!text.empty()) {
    std::size_t length = encoding == Utf16Le || encoding == Utf16Be ? 2 : 1;
    std::string utf8;
    if (encoding == Utf8) {
      length = 4;
      while (length > 1 && !(Decode(text.substr(0, length)) && Decode(text.substr(0, length))->size() == 1))
        --length;
      utf8 = text.substr(0, length);
    } else {
      // By trying all: the tests of the encodings make sure of Encode.
      static const auto known = [] {
        std::array<std::vector<std::pair<std::string, char32_t>>, TextEncodingCount> all;
        for (const TextEncoding each : {CodePage, Utf16Le, Utf16Be})
          for (char32_t character = 0; character < 0x10450; ++character)
            if (const auto bytes = Encode(character, each);
                bytes && (character < 0xD800 || character >= 0xE000))
              all[static_cast<std::size_t>(each)].emplace_back(*bytes, character);
        for (auto& each : all) std::ranges::sort(each);
        return all;
      }();
      const auto& table = known[static_cast<std::size_t>(encoding)];
      for (const std::size_t size : {4, 2, 1}) {
        const auto found =
            std::ranges::lower_bound(table, std::pair(std::string(text.substr(0, size)), U'\0'));
        if (found == table.end() || found->first != text.substr(0, size)) continue;
        length = size;
        utf8 = Encode(found->second, Utf8).value();
        break;
      }
    }
    length = std::min(length, text.size());
    characters.push_back({std::string(text.substr(0, length)), utf8.empty() ? "\xFF" : Lower(utf8)});
    text.remove_prefix(length);
  }
  return characters;
}

bool StandsAt(const std::vector<Character>& text, std::size_t at, const std::vector<Character>& phrase) {
  for (std::size_t i = 0; i < phrase.size(); ++i)
    if (at + i >= text.size() || text[at + i].Lower != phrase[i].Lower) return false;
  return true;
}

std::string ReplacedByTheBook(const std::vector<Character>& text, const std::vector<Character>& phrase,
                              const std::string& replacement) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const bool stands = StandsAt(text, at, phrase);
    result += stands ? replacement : text[at].Bytes;
    at += stands ? phrase.size() : 1;
  }
  return result;
}

class AnyText : public testing::TestWithParam<TextEncoding> {
 protected:
  std::size_t Below(std::size_t limit) { return mRandom() % limit; }

  /// What stands before the text, and behind it, so that a file is of the encoding. A mark with zeros behind
  /// it would be that of another.
  std::string Front() const {
    return GetParam() == Utf8 ? Utf8Mark : GetParam() == CodePage ? "" : Utf16(U".", GetParam());
  }
  std::string Back() const { return GetParam() == CodePage ? "\xFF" : ""; }

  /// Some of the characters, and some bytes that are none.
  std::string Text(std::u32string_view characters, std::size_t longest) {
    std::string text;
    const std::size_t length = Below(longest);
    while (text.size() < length) {
      if (Below(20) == 0)
        text += static_cast<char>(Below(256));
      else if (const auto bytes = Encode(characters[Below(characters.size())], GetParam()))
        text += *bytes;
      if (GetParam() != Utf8 && GetParam() != CodePage && text.size() % 2 != 0 && Below(10) != 0)
        text += static_cast<char>(Below(256));
    }
    return text;
  }

  std::mt19937 mRandom{3};
};

TEST_P(AnyText, IsCountedAndReplacedByTheBook) {
  const std::u32string characters =
      U"aAbkK\u212AiI\u0130\u00E9\u00C9\u0160\u0161\u00DF\u1E9E\u03C9\u2126\u20AC\U00010400\U00010428 \n\0"s;
  for (int round = 0; round < 2000; ++round) {
    std::u32string find(1 + Below(3), U' ');
    for (char32_t& each : find) each = characters[Below(characters.size())];
    const std::string phrase = Encode(find, Utf8).value();
    const std::string text = Text(characters, 400) + Back();
    const auto content = Characters(text, GetParam());
    const auto wanted = Characters(phrase, Utf8);
    std::int64_t naive = 0;
    for (std::size_t at = 0; at < content.size(); ++at) naive += StandsAt(content, at, wanted);
    const std::size_t piece = Below(2) == 0 ? 16 + Below(50) : FileReplacer::UsualPiece;
    ASSERT_EQ(Count(Front() + text, phrase, piece), naive)
        << phrase << " in " << testing::PrintToString(text);
    if (naive == 0) continue;
    ASSERT_EQ(Replaced(Front() + text, phrase, "1\xC3\xA9", piece),
              Front() + ReplacedByTheBook(content, wanted, Encode(U"1\u00E9", GetParam()).value()));
  }
}

TEST_P(AnyText, ReplacedAndBackIsTheSame) {
  for (int round = 0; round < 2000; ++round) {
    const std::string text = Front() + Text(U"123\u00A7\u20AC\u00E9abc\r\n\0"s, 400) + Back();
    for (const auto& [x, y] : {std::pair("12"s, "\u00A4\u00A4"s), std::pair("\u00A7"s, "\u00B6x"s),
                               std::pair("\u20AC1"s, "\u00B1"s), std::pair("3"s, "3\u00A4"s)}) {
      if (Count(text, y) > 0 || Count(text, x) == 0) continue;
      const std::size_t piece = 16 + Below(50);
      ASSERT_EQ(Replaced(Replaced(text, x, y, piece), y, x, piece), text) << x << ' ' << y;
    }
  }
}

std::string NameOf(const testing::TestParamInfo<TextEncoding>& info) {
  constexpr std::array Names{"Utf8", "CodePage", "Utf16Le", "Utf16Be"};
  return Names[static_cast<std::size_t>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Encodings, AnyText, testing::Values(Utf8, CodePage, Utf16Le, Utf16Be), NameOf);

}  // namespace
}  // namespace brackwell
