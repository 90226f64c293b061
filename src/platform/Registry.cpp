#include "platform/Registry.h"

#include <charconv>

namespace brackwell {
namespace {

constexpr std::uint32_t RegDword = 4;

/// "&h" and the digits of all bytes, the highest first.
std::string HexNumber(std::string_view lowestByteFirst) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text = "&h";
  for (auto byte = lowestByteFirst.rbegin(); byte != lowestByteFirst.rend(); ++byte) {
    const auto bits = static_cast<unsigned char>(*byte);
    text += digits[bits >> 4];
    text += digits[bits & 15];
  }
  return text;
}

std::string Decimal(std::string_view hexNumber) {
  std::uint32_t number = 0;
  std::from_chars(hexNumber.data() + 2, hexNumber.data() + hexNumber.size(), number, 16);
  return std::to_string(number);
}

}  // namespace

std::string KeyValueText(std::uint32_t type, std::string_view data) {
  if (type == RegDword) return Decimal(HexNumber(data.substr(0, 4)));
  if (data.ends_with('\0')) data.remove_suffix(1);
  return std::string(data);
}

}  // namespace brackwell
