#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Sixteen bytes that are worked on at once: in a vector where the compiler has them, else in two words, which
// takes several times as long. BRACKWELL_PLAIN_BLOCKS asks for the words, so that they can be tested
// everywhere.

namespace brackwell {

#if defined(__GNUC__) && !defined(BRACKWELL_PLAIN_BLOCKS)

using Block = unsigned char __attribute__((vector_size(16)));

/// A byte of ones for each that has the value in the bits of the mask, else of zeros.
inline Block EqualBytes(Block block, unsigned char mask, unsigned char value) {
  return Block((block & mask) == value);
}

/// Adds one to the count in each byte whose flag is a byte of ones. A count goes to 255.
inline Block CountFlags(Block counts, Block flags) { return counts - flags; }

#else

struct Block {
  std::uint64_t Words[2];
};

inline Block operator&(Block a, Block b) { return {{a.Words[0] & b.Words[0], a.Words[1] & b.Words[1]}}; }
inline Block operator|(Block a, Block b) { return {{a.Words[0] | b.Words[0], a.Words[1] | b.Words[1]}}; }

inline Block EqualBytes(Block block, unsigned char mask, unsigned char value) {
  constexpr std::uint64_t Ones = 0x0101'0101'0101'0101;
  constexpr std::uint64_t Low = 0x7F * Ones;
  const auto equal = [&](std::uint64_t word) {
    const std::uint64_t other = (word & mask * Ones) ^ value * Ones;
    // A byte's highest bit is carried into, or set, unless all of the byte is zero; no carry leaves its byte.
    const std::uint64_t isOther = (((other & Low) + Low) | other) & ~Low;
    return ((~isOther & ~Low) >> 7) * 0xFF;
  };
  return {{equal(block.Words[0]), equal(block.Words[1])}};
}

inline Block CountFlags(Block counts, Block flags) {
  constexpr std::uint64_t Ones = 0x0101'0101'0101'0101;
  return {{counts.Words[0] + (flags.Words[0] & Ones), counts.Words[1] + (flags.Words[1] & Ones)}};
}

#endif

inline Block LoadBlock(const char* bytes) {
  Block block;
  std::memcpy(&block, bytes, sizeof block);
  return block;
}

inline bool IsAnySet(Block flags) {
  std::uint64_t words[2];
  std::memcpy(words, &flags, sizeof words);
  return (words[0] | words[1]) != 0;
}

inline unsigned SumOfBytes(Block counts) {
  unsigned char bytes[sizeof(Block)];
  std::memcpy(bytes, &counts, sizeof bytes);
  unsigned sum = 0;
  for (const unsigned char byte : bytes) sum += byte;
  return sum;
}

}  // namespace brackwell
