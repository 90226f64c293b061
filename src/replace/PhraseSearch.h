#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "replace/ByteTest.h"
#include "replace/TextEncoding.h"

namespace brackwell {

/// Finds one phrase in text of one encoding, character by character ignoring case, at several gigabytes a
/// second.
class PhraseSearch {
 public:
  struct Match {
    std::size_t Begin, End;  // offsets of bytes
  };
  struct Tally {
    std::int64_t Matches = 0;
    std::int64_t Bytes = 0;  // in all of them together
  };

  /// An empty phrase is nowhere, and neither is one that the encoding cannot hold.
  PhraseSearch(std::u32string_view phrase, TextEncoding encoding);

  /// Bytes of the longest text that is the phrase. With one less of them behind `to`, or the end of the text,
  /// the calls below miss nothing.
  std::size_t LongestMatch() const { return mLongest; }

  /// The first match that begins in [from, to). In UTF-16 `bytes` begin with a whole unit.
  std::optional<Match> Find(std::string_view bytes, std::size_t from, std::size_t to) const;
  /// All matches that begin in [from, to), overlapping ones as well.
  Tally Count(std::string_view bytes, std::size_t from, std::size_t to) const;

 private:
  /// One character of the phrase, in each case. No encoded character begins or ends another, so one at most
  /// fits.
  struct Character {
    struct Variant {
      std::array<char, 4> Bytes;
      std::size_t Length;
    };
    std::vector<Variant> Variants;
    std::size_t Shortest, Longest;
    bool HasOneLength() const { return Shortest == Longest; }
    template <typename Place>
    std::size_t LengthAt(std::size_t room, Place place) const;
  };
  /// A character of the phrase from which on places are looked for.
  struct Anchor {
    std::size_t Index = 0;
    std::array<ByteTest, 2> Tests;
    double Frequency = 2;  // of places that pass both
  };

  std::vector<ByteTest> TestsFrom(std::size_t index) const;
  Anchor ChooseAnchor() const;
  std::optional<Match> MatchAt(std::string_view bytes, std::size_t anchor) const;
  template <bool IsTwofold, typename Candidate>
  void ForEachCandidate(std::string_view bytes, std::size_t from, std::size_t to, Candidate candidate) const;
  template <typename Found>
  void ForEachMatch(std::string_view bytes, std::size_t from, std::size_t to, Found found) const;

  std::vector<Character> mPhrase;
  std::size_t mUnit;  // bytes
  std::size_t mLongest = 0;
  Anchor mAnchor;
  std::size_t mShortestBefore = 0;  // bytes of a match before its anchor
  std::size_t mLongestBefore = 0;
  bool mIsOneByte = false;  // and what passes its test is a match
};

}  // namespace brackwell
