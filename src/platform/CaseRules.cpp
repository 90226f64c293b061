#include "platform/CaseRules.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <unordered_map>

namespace brackwell {
namespace {

constexpr bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Takes one character off the front. A byte that begins no valid sequence comes as a value above all of
/// Unicode.
utf8proc_int32_t Next(const char*& at, const char* end) {
  constexpr utf8proc_int32_t BeyondUnicode = 0x110000;
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(at), end - at, &code);
  if (length <= 0) return BeyondUnicode + static_cast<unsigned char>(*at++);
  at += length;
  return code;
}

utf8proc_int32_t UpperOf(utf8proc_int32_t code) { return code < 0x110000 ? utf8proc_toupper(code) : code; }

template <typename Ascii, typename Other>
std::string Map(std::string_view text, Ascii ascii, Other other) {
  std::string mapped;
  mapped.reserve(text.size());
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    if (IsAscii(*at)) {
      mapped += ascii(*at++);
      continue;
    }
    const char* const begin = at;
    const utf8proc_int32_t code = Next(at, end);
    if (code >= 0x110000) {
      mapped += *begin;
      continue;
    }
    utf8proc_uint8_t bytes[4];
    mapped.append(reinterpret_cast<const char*>(bytes), utf8proc_encode_char(other(code), bytes));
  }
  return mapped;
}

constexpr bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// How many bytes the two have in common at their front, up to where a character begins. Paths mostly differ late, so
/// this is where sorting spends its time: eight bytes at a step.
std::size_t CommonFront(std::string_view a, std::string_view b) {
  const std::size_t length = std::min(a.size(), b.size());
  std::size_t at = 0;
  for (std::uint64_t x = 0, y = 0; at + sizeof x <= length; at += sizeof x) {
    std::memcpy(&x, a.data() + at, sizeof x);
    std::memcpy(&y, b.data() + at, sizeof y);
    if (x != y) break;
  }
  while (at < length && a[at] == b[at]) ++at;
  const auto beginsInside = [at](std::string_view text) { return at < text.size() && IsContinuation(text[at]); };
  if (beginsInside(a) || beginsInside(b)) {
    while (at > 0 && IsContinuation(a[at - 1])) --at;
    if (at > 0) --at;
  }
  return at;
}

/// `rank` gives the place of an ASCII character among all.
template <typename Rank>
std::strong_ordering Compare(std::string_view a, std::string_view b, Rank rank) {
  const std::size_t front = CommonFront(a, b);
  const char* x = a.data() + front;
  const char* y = b.data() + front;
  const char* const xEnd = a.data() + a.size();
  const char* const yEnd = b.data() + b.size();
  while (x != xEnd && y != yEnd) {
    if (*x == *y && IsAscii(*x)) {
      ++x, ++y;
      continue;
    }
    const utf8proc_int32_t left = IsAscii(*x) ? rank(*x++) : UpperOf(Next(x, xEnd));
    const utf8proc_int32_t right = IsAscii(*y) ? rank(*y++) : UpperOf(Next(y, yEnd));
    if (left != right) return left <=> right;
  }
  return (x != xEnd) <=> (y != yEnd);
}

}  // namespace

std::string Upper(std::string_view text) { return Map(text, UpperAscii, utf8proc_toupper); }
std::string Lower(std::string_view text) { return Map(text, LowerAscii, utf8proc_tolower); }

std::u32string CaseVariants(char32_t character) {
  using Classes = std::unordered_map<utf8proc_int32_t, std::u32string>;
  static const Classes mappedElsewhere = [] {
    Classes classes;
    for (utf8proc_int32_t code = 0; code < 0x110000; ++code)
      if (const auto lower = utf8proc_tolower(code); lower != code) classes[lower] += static_cast<char32_t>(code);
    return classes;
  }();
  const auto lower = utf8proc_tolower(static_cast<utf8proc_int32_t>(character));
  std::u32string variants;
  if (utf8proc_tolower(lower) == lower) variants += static_cast<char32_t>(lower);
  if (const auto found = mappedElsewhere.find(lower); found != mappedElsewhere.end()) variants += found->second;
  return variants;
}

std::strong_ordering CompareIgnoreCase(std::string_view a, std::string_view b) {
  return Compare(a, b, [](char c) { return static_cast<utf8proc_int32_t>(UpperAscii(c)); });
}

std::strong_ordering OrderOfNames(std::string_view a, std::string_view b) {
  const auto order = CompareIgnoreCase(a, b);
  return order != 0 ? order : a <=> b;
}

std::strong_ordering CompareIgnoreCaseWithFirst(std::string_view a, std::string_view b, char first) {
  return Compare(a, b,
                 [first](char c) { return c == first ? -1 : static_cast<utf8proc_int32_t>(UpperAscii(c)); });
}

}  // namespace brackwell
