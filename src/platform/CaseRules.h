#pragma once

#include <compare>
#include <string>
#include <string_view>

// Case, one rule for the whole house: one code point maps to one code point, whatever the locale, so a
// text never changes its number of characters. Bytes that are not valid UTF-8 stand for themselves.

namespace brackwell {

std::string Upper(std::string_view text);
std::string Lower(std::string_view text);

/// Every character that Lower maps to the same one as `character`, itself among them.
std::u32string CaseVariants(char32_t character);

/// Compares the upper-cased texts code point by code point, without making them.
std::strong_ordering CompareIgnoreCase(std::string_view a, std::string_view b);

/// As CompareIgnoreCase, with `first` (an ASCII character) before every other character.
std::strong_ordering CompareIgnoreCaseWithFirst(std::string_view a, std::string_view b, char first);

/// The order of every listing: by name, ignoring case; names that differ in case only, by their bytes.
std::strong_ordering OrderOfNames(std::string_view a, std::string_view b);

}  // namespace brackwell
