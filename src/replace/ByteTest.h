#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace brackwell {

/// Lets certain bytes pass, and seldom others: by two comparisons, which do for both cases of a letter and
/// for the bytes of a few characters beyond ASCII.
struct ByteTest {
  std::size_t Offset = 0;  // of the byte from where a phrase is looked for
  std::array<unsigned char, 2> Masks{};
  std::array<unsigned char, 2> Values{};

  static ByteTest For(std::size_t offset, const std::vector<unsigned char>& bytes);

  bool Passes(char byte) const;
  /// False where the second comparison adds nothing.
  bool IsTwofold() const { return Masks[0] != Masks[1] || Values[0] != Values[1]; }
  /// How many of the 256 bytes pass.
  std::size_t Count() const;
  /// How often a byte of the files that people search passes, roughly, from 0 to 1.
  double Frequency() const;
};

}  // namespace brackwell
