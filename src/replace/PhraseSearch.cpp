#include "replace/PhraseSearch.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/CaseRules.h"
#include "replace/ByteBlock.h"

namespace brackwell {
namespace {

/// Takes the first flag (a byte of ones) out of a word, and gives its place in memory.
std::size_t TakeFirst(std::uint64_t& flags) {
  constexpr bool IsLittle = std::endian::native == std::endian::little;
  const std::size_t place = (IsLittle ? std::countr_zero(flags) : std::countl_zero(flags)) / 8;
  flags &= ~(std::uint64_t{0xFF} << 8 * (IsLittle ? place : 7 - place));
  return place;
}

/// A byte of ones for each of the sixteen from `at` on whose byte at the test's offset passes.
template <bool IsTwofold>
Block Passing(const ByteTest& test, const char* at) {
  const Block block = LoadBlock(at + test.Offset);
  const Block one = EqualBytes(block, test.Masks[0], test.Values[0]);
  if constexpr (!IsTwofold) return one;
  return one | EqualBytes(block, test.Masks[1], test.Values[1]);
}

/// How many of the bytes pass.
std::int64_t CountPassing(const ByteTest& test, std::string_view bytes) {
  constexpr std::size_t MostOfAByte = 255;
  std::int64_t count = 0;
  std::size_t at = 0;
  for (std::size_t blocks = bytes.size() / sizeof(Block); blocks > 0;) {
    Block counts{};
    const std::size_t step = std::min(blocks, MostOfAByte);
    for (std::size_t i = 0; i < step; ++i, at += sizeof(Block))
      counts = CountFlags(counts, Passing<true>(test, &bytes[at]));
    count += SumOfBytes(counts);
    blocks -= step;
  }
  for (; at < bytes.size(); ++at) count += test.Passes(bytes[at]);
  return count;
}

}  // namespace

PhraseSearch::PhraseSearch(std::u32string_view phrase, TextEncoding encoding)
    : mUnit(encoding == TextEncoding::Utf16Le || encoding == TextEncoding::Utf16Be ? 2 : 1) {
  for (const char32_t each : phrase) {
    Character character{{}, 4, 0};
    for (const char32_t variant : CaseVariants(each)) {
      const auto encoded = Encode(variant, encoding);
      if (!encoded) continue;
      auto& added = character.Variants.emplace_back(Character::Variant{{}, encoded->size()});
      encoded->copy(added.Bytes.data(), encoded->size());
      character.Shortest = std::min(character.Shortest, encoded->size());
      character.Longest = std::max(character.Longest, encoded->size());
    }
    if (character.Variants.empty()) {
      mPhrase.clear();
      mLongest = 0;
      return;
    }
    mLongest += character.Longest;
    mPhrase.push_back(std::move(character));
  }
  if (mPhrase.empty()) return;
  mAnchor = ChooseAnchor();
  mIsOneByte = mLongest == 1 && mAnchor.Tests[0].Count() == mPhrase[0].Variants.size();
  for (std::size_t i = 0; i < mAnchor.Index; ++i) {
    mShortestBefore += mPhrase[i].Shortest;
    mLongestBefore += mPhrase[i].Longest;
  }
}

/// A test for each byte of a match whose distance from the character `index` is always the same.
std::vector<ByteTest> PhraseSearch::TestsFrom(std::size_t index) const {
  constexpr std::size_t FarEnough = 32;
  std::vector<ByteTest> tests;
  for (std::size_t offset = 0; index < mPhrase.size() && offset < FarEnough; ++index) {
    const Character& character = mPhrase[index];
    const std::size_t known = character.HasOneLength() ? character.Longest : 1;
    for (std::size_t i = 0; i < known; ++i) {
      std::vector<unsigned char> bytes;
      for (const auto& variant : character.Variants)
        bytes.push_back(static_cast<unsigned char>(variant.Bytes[i]));
      tests.push_back(ByteTest::For(offset + i, bytes));
    }
    if (!character.HasOneLength()) break;
    offset += known;
  }
  return tests;
}

/// Where the two rarest bytes are.
PhraseSearch::Anchor PhraseSearch::ChooseAnchor() const {
  constexpr std::size_t FarEnough = 256;
  Anchor best;
  for (std::size_t index = 0; index < std::min(mPhrase.size(), FarEnough); ++index) {
    const auto tests = TestsFrom(index);
    std::vector<double> frequencies;
    for (const ByteTest& test : tests) frequencies.push_back(test.Frequency());
    for (std::size_t i = 0; i < tests.size(); ++i)
      for (std::size_t j = i + (tests.size() > 1 ? 1 : 0); j < tests.size(); ++j) {
        const double frequency = frequencies[i] * (i == j ? 1 : frequencies[j]);
        if (frequency < best.Frequency) best = {index, {tests[i], tests[j]}, frequency};
      }
  }
  return best;
}

/// The length of the variant that stands where `place` has it, in `room` bytes; 0 for none.
template <typename Place>
std::size_t PhraseSearch::Character::LengthAt(std::size_t room, Place place) const {
  for (const Variant& variant : Variants) {
    if (variant.Length > room) continue;
    const char* const bytes = place(variant.Length);
    std::size_t same = 0;
    while (same < variant.Length && bytes[same] == variant.Bytes[same]) ++same;
    if (same == variant.Length) return same;
  }
  return 0;
}

std::optional<PhraseSearch::Match> PhraseSearch::MatchAt(std::string_view bytes, std::size_t anchor) const {
  std::size_t end = anchor;
  for (std::size_t i = mAnchor.Index; i < mPhrase.size(); ++i) {
    const std::size_t length =
        mPhrase[i].LengthAt(bytes.size() - end, [&](std::size_t) { return &bytes[end]; });
    if (length == 0) return std::nullopt;
    end += length;
  }
  std::size_t begin = anchor;
  for (std::size_t i = mAnchor.Index; i-- > 0;) {
    const std::size_t length =
        mPhrase[i].LengthAt(begin, [&](std::size_t size) { return &bytes[begin - size]; });
    if (length == 0) return std::nullopt;
    begin -= length;
  }
  return Match{begin, end};
}

/// Calls `candidate` for the places from `from` on, before `to`, that pass the tests; it returns false to end
/// it.
template <bool IsTwofold, typename Candidate>
void PhraseSearch::ForEachCandidate(std::string_view bytes, std::size_t from, std::size_t to,
                                    Candidate candidate) const {
  const ByteTest first = mAnchor.Tests[0];
  const ByteTest second = mAnchor.Tests[1];
  constexpr std::size_t Step = 4 * sizeof(Block);
  const std::size_t reach = std::max(first.Offset, second.Offset);
  std::size_t at = from;
  for (; at < to && at + reach + Step <= bytes.size(); at += Step) {
    Block flags[4];
    for (std::size_t i = 0; i < 4; ++i) {
      const char* const here = bytes.data() + at + i * sizeof(Block);
      flags[i] = Passing<IsTwofold>(first, here) & Passing<IsTwofold>(second, here);
    }
    if (!IsAnySet(flags[0] | flags[1] | flags[2] | flags[3])) [[likely]]
      continue;
    for (std::size_t i = 0; i < Step / sizeof(std::uint64_t); ++i) {
      std::uint64_t word;
      std::memcpy(&word, reinterpret_cast<const char*>(flags) + i * sizeof word, sizeof word);
      while (word != 0) {
        const std::size_t place = at + i * sizeof word + TakeFirst(word);
        if (place >= to || !candidate(place)) return;
      }
    }
  }
  for (; at < to && at + reach < bytes.size(); ++at)
    if (first.Passes(bytes[at + first.Offset]) && second.Passes(bytes[at + second.Offset]) && !candidate(at))
      return;
}

/// Calls `found` for each match that begins in [from, to), in order; it returns false to end it.
template <typename Found>
void PhraseSearch::ForEachMatch(std::string_view bytes, std::size_t from, std::size_t to, Found found) const {
  if (mPhrase.empty()) return;
  const std::size_t last = std::min(bytes.size(), to + mLongestBefore);
  const auto candidate = [&](std::size_t place) {
    if (place % mUnit != 0) return true;
    const auto match = MatchAt(bytes, place);
    return !match || match->Begin < from || match->Begin >= to || found(*match);
  };
  if (mAnchor.Tests[0].IsTwofold() || mAnchor.Tests[1].IsTwofold())
    ForEachCandidate<true>(bytes, from + mShortestBefore, last, candidate);
  else
    ForEachCandidate<false>(bytes, from + mShortestBefore, last, candidate);
}

std::optional<PhraseSearch::Match> PhraseSearch::Find(std::string_view bytes, std::size_t from,
                                                      std::size_t to) const {
  std::optional<Match> first;
  ForEachMatch(bytes, from, to, [&](const Match& match) {
    first = match;
    return false;
  });
  return first;
}

PhraseSearch::Tally PhraseSearch::Count(std::string_view bytes, std::size_t from, std::size_t to) const {
  if (mIsOneByte) {
    const std::int64_t count = from < to ? CountPassing(mAnchor.Tests[0], bytes.substr(from, to - from)) : 0;
    return {count, count};
  }
  Tally tally;
  ForEachMatch(bytes, from, to, [&](const Match& match) {
    ++tally.Matches;
    tally.Bytes += static_cast<std::int64_t>(match.End - match.Begin);
    return true;
  });
  return tally;
}

}  // namespace brackwell
