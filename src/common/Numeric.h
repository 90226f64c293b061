#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// What counts as a number where a user types one. The rule is that of the classic run time under English
// settings, and the same on every system whatever the user's locale:
//
// - digits 0 to 9, with one "." and with "," between or behind the digits before it, which mean nothing:
//   "1.5", ".5", "1.", "1,000", and "1,5", which is 15;
// - an exponent, written with e or d: "1e2", "1D-2";
// - one sign in front or behind, or brackets for a minus: "-3", "3-", "(3)";
// - one "$" in front or behind;
// - blanks anywhere but among digits: " 7", "- 3";
// - or "&H" and hexadecimal, "&O" and octal digits, which have no sign: "&H1F".
//
// What exceeds a double is no number. What is too small for one is 0.

namespace brackwell {

bool IsNumeric(std::string_view text);

/// The value; nothing for a text that is not numeric.
std::optional<double> ParseNumber(std::string_view text);

/// The value as a whole number, halves rounded to the even neighbour; nothing for a text that is not numeric
/// or whose number does not fit.
std::optional<std::int32_t> ParseWholeNumber(std::string_view text);

}  // namespace brackwell
