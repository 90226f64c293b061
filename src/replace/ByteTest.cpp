#include "replace/ByteTest.h"

#include <string_view>

namespace brackwell {
namespace {

/// All that matters is which bytes are the rare ones.
double FrequencyOf(unsigned char byte) {
  constexpr std::string_view FromTheCommonest =
      " etaoinsrlhdcumpfg\n_y.b,vw-/()0\"=1*x;:k2>'<\tT#SACEI3RPNLDq4j5OMF86z79B&{}[]";
  if (byte == 0) return 0.3;  // every other byte of much text in UTF-16
  const std::size_t rank = FromTheCommonest.find(static_cast<char>(byte));
  if (rank == std::string_view::npos) return 0.001;
  return 0.8 / (8.0 + static_cast<double>(rank * rank) / 4);
}

}  // namespace

ByteTest ByteTest::For(std::size_t offset, const std::vector<unsigned char>& bytes) {
  // Two cases of an ASCII letter differ in one bit; what is beyond ASCII has little in common with them.
  ByteTest test{.Offset = offset};
  std::array<bool, 2> isUsed{};
  for (const unsigned char byte : bytes) {
    const std::size_t half = byte < 0x80 ? 0 : 1;
    if (!isUsed[half]) {
      test.Masks[half] = 0xFF;
      test.Values[half] = byte;
      isUsed[half] = true;
    }
    test.Masks[half] &= static_cast<unsigned char>(~(byte ^ test.Values[half]));
    test.Values[half] &= test.Masks[half];
  }
  const std::size_t used = isUsed[0] ? 0 : 1;
  if (isUsed[0] != isUsed[1]) {
    test.Masks[1 - used] = test.Masks[used];
    test.Values[1 - used] = test.Values[used];
  }
  return test;
}

bool ByteTest::Passes(char byte) const {
  const auto value = static_cast<unsigned char>(byte);
  return (value & Masks[0]) == Values[0] || (value & Masks[1]) == Values[1];
}

std::size_t ByteTest::Count() const {
  std::size_t count = 0;
  for (int byte = 0; byte < 0x100; ++byte) count += Passes(static_cast<char>(byte));
  return count;
}

double ByteTest::Frequency() const {
  double frequency = 0;
  for (int byte = 0; byte < 0x100; ++byte)
    if (Passes(static_cast<char>(byte))) frequency += FrequencyOf(static_cast<unsigned char>(byte));
  return frequency;
}

}  // namespace brackwell
