#include "replace/PhraseSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "common/Text.h"
#include "platform/CaseRules.h"

namespace brackwell {
namespace {

using namespace std::string_literals;
using enum TextEncoding;

std::int64_t Count(std::u32string_view phrase, std::string_view text, TextEncoding encoding = Utf8) {
  return PhraseSearch(phrase, encoding).Count(text, 0, text.size()).Matches;
}

std::string In(TextEncoding encoding, std::u32string_view text) { return Encode(text, encoding).value(); }

TEST(CaseVariants, AreTheCharactersThatLowerMapsToTheSame) {
  const auto sorted = [](char32_t character) {
    std::u32string variants = CaseVariants(character);
    std::ranges::sort(variants);
    return variants;
  };
  EXPECT_EQ(sorted(U'a'), U"Aa");
  EXPECT_EQ(sorted(U'K'), U"Kk\u212A");
  EXPECT_EQ(sorted(U'i'), U"Ii\u0130");
  EXPECT_EQ(sorted(U'\u212B'), U"\u00C5\u00E5\u212B");
  EXPECT_EQ(sorted(U'1'), U"1");
  EXPECT_EQ(sorted(U'\U00010400'), U"\U00010400\U00010428");
}

TEST(PhraseSearch, IgnoresCase) {
  EXPECT_EQ(Count(U"aBc", "AbcABCabcab"), 3);
  EXPECT_EQ(Count(U"\u00C9t\u00C9", "\xC3\xA9T\xC3\x89 \xC3\xA9t\xC3\xA8"), 1);
  EXPECT_EQ(Count(U"@[`{", "`{@["), 0);
  EXPECT_EQ(Count(U"@", "`"), 0);
}

TEST(PhraseSearch, CountsOverlappingPlaces) {
  EXPECT_EQ(Count(U"aa", "aaaa"), 3);
  EXPECT_EQ(Count(U"aa", std::string(1000, 'A')), 999);
  EXPECT_EQ(Count(U"aba", "abababa"), 3);
}

TEST(PhraseSearch, FindsNothingForNothing) {
  EXPECT_EQ(Count(U"", "abc"), 0);
  EXPECT_EQ(Count(U"abc", ""), 0);
  EXPECT_EQ(Count(U"abc", "ab"), 0);
  EXPECT_EQ(Count(U"\u3042", "abc\xE3\x81\x82", CodePage), 0);
}

TEST(PhraseSearch, KnowsCasesOfOtherLengths) {
  EXPECT_EQ(Count(U"kit", "KIT \u212A\u0130t k\u0130T kit"), 4);
  EXPECT_EQ(Count(U"i", "I\u0130i\u0131"), 3);
  EXPECT_EQ(Count(U"\u212A", "kK\u212A"), 3);
  EXPECT_EQ(Count(U"stra\u00DFe", "STRA\u1E9EE strasse"), 1);
  const PhraseSearch search(U"ki", Utf8);
  const std::string text = "--\u212A\u0130--";
  const auto match = search.Find(text, 0, text.size());
  ASSERT_TRUE(match.has_value());
  EXPECT_EQ(match->Begin, 2u);
  EXPECT_EQ(match->End, 7u);
  EXPECT_EQ(search.LongestMatch(), 5u);
}

TEST(PhraseSearch, KnowsTheCodePage) {
  EXPECT_EQ(Count(U"\u0160\u017D\u0178", "\x9A\x9E\xFF\x8A\x8E\x9F", CodePage), 2);
  EXPECT_EQ(Count(U"\u00B5", "\xB5", CodePage), 1);
  EXPECT_EQ(Count(U"\u20AC", "\x80\xE2\x82\xAC", CodePage), 1);
  EXPECT_EQ(Count(U"\u0081", "\x81", CodePage), 1);
  EXPECT_EQ(Count(U"\u212A", "kK", CodePage), 2);
}

TEST(PhraseSearch, KeepsToTheUnitsOfUtf16) {
  for (const TextEncoding encoding : {Utf16Le, Utf16Be}) {
    EXPECT_EQ(Count(U"ab", In(encoding, U"AB ab aB"), encoding), 3);
    EXPECT_EQ(Count(U"\u6161", In(encoding, U"\u0061\u6100\u6161"), encoding), 1);
    EXPECT_EQ(Count(U"\U0001F600", In(encoding, U"\U0001F600\U0001F601"), encoding), 1);
    EXPECT_EQ(Count(U"\U00010400", In(encoding, U"\U00010400\U00010428"), encoding), 2);
    EXPECT_EQ(Count(U"\u212A", In(encoding, U"kK\u212A"), encoding), 3);
  }
  // One byte later it would be there.
  EXPECT_EQ(Count(U"a", "\x01"s + In(Utf16Le, U"a"), Utf16Le), 0);
  EXPECT_EQ(Count(U"a", In(Utf16Le, U"a") + "\x61", Utf16Le), 1);
}

TEST(PhraseSearch, NeverBeginsInsideACharacter) { EXPECT_EQ(Count(U"\u00A9", "\xC3\xA9", Utf8), 0); }

TEST(PhraseSearch, FindsAtEveryDistanceFromEveryBlock) {
  for (std::size_t before = 0; before < 140; ++before)
    for (const std::size_t after : {0, 1, 15, 16, 17, 63, 64, 65, 200}) {
      const std::string text = std::string(before, '-') + "NeEdle" + std::string(after, '-');
      const auto match = PhraseSearch(U"needlE", Utf8).Find(text, 0, text.size());
      ASSERT_TRUE(match.has_value()) << before << ' ' << after;
      ASSERT_EQ(match->Begin, before);
      ASSERT_EQ(match->End, before + 6);
    }
}

TEST(PhraseSearch, KeepsToThePlacesAskedFor) {
  const PhraseSearch search(U"ab", Utf8);
  const std::string text = "abababab";
  EXPECT_EQ(search.Count(text, 0, 8).Matches, 4);
  EXPECT_EQ(search.Count(text, 1, 8).Matches, 3);
  EXPECT_EQ(search.Count(text, 2, 4).Matches, 1);
  EXPECT_EQ(search.Count(text, 3, 4).Matches, 0);
  EXPECT_EQ(search.Count(text, 4, 4).Matches, 0);
  EXPECT_EQ(search.Count(text, 7, 2).Matches, 0);
  EXPECT_EQ(search.Find(text, 1, 8)->Begin, 2u);
  EXPECT_FALSE(search.Find(text, 7, 8).has_value());
}

/// Texts of few characters, so that all phrases occur, against the count that is defined to be right.
TEST(PhraseSearch, CountsWhatANaiveCountCounts) {
  const std::u32string characters =
      U"aAbkK\u212AiI\u0130\u00E9\u00C9\u00DF\u1E9E\u03C9\u2126\U00010400\U00010428 ";
  std::mt19937 random(2);
  const auto any = [&](std::size_t longest) {
    std::u32string text(1 + random() % longest, U' ');
    for (char32_t& each : text) each = characters[random() % characters.size()];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::u32string phrase = any(4);
    const std::u32string text = any(300);
    const auto naive = CountMatches(Lower(In(Utf8, text)), Lower(In(Utf8, phrase)));
    for (const TextEncoding encoding : {Utf8, Utf16Le, Utf16Be})
      ASSERT_EQ(Count(phrase, In(encoding, text), encoding), naive)
          << In(Utf8, phrase) << " in " << In(Utf8, text);
  }
}

TEST(PhraseSearch, LongPhrasesAreFound) {
  std::u32string phrase;
  for (int i = 0; i < 5000; ++i) phrase += U"lorem ipsum "[i % 12];
  EXPECT_EQ(Count(phrase, Upper(In(Utf8, phrase)) + "-"), 1);
  EXPECT_EQ(Count(phrase, In(Utf8, phrase.substr(1))), 0);
}

}  // namespace
}  // namespace brackwell
