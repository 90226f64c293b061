#pragma once

#include <array>

namespace brackwell {

/// The characters that the bytes from 0x80 on stand for; 0 where one stands for none.
using UpperHalf = std::array<char32_t, 128>;

/// Code page 1252, that of Western Europe. Its unused bytes stand for the control characters of their number.
inline constexpr UpperHalf CodePage1252 = [] {
  constexpr std::array<char32_t, 32> Beginning{
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  UpperHalf page{};
  for (char32_t i = 0; i < page.size(); ++i) page[i] = i < Beginning.size() ? Beginning[i] : 0x80 + i;
  return page;
}();

/// The 8-bit code page that text without Unicode has on this system: 1252 where there is none, or none of
/// which every byte is a character.
const UpperHalf& SystemCodePage();

}  // namespace brackwell
