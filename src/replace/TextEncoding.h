#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The encodings of text files. Which one a file has: what its byte order mark says; without one UTF-8 where
// all of it is valid UTF-8, else the code page.

namespace brackwell {

enum class TextEncoding : std::uint8_t {
  Utf8,
  CodePage,  // the system's, of 8 bits
  Utf16Le,
  Utf16Be,
};
inline constexpr std::size_t TextEncodingCount = 4;

struct ByteOrderMark {
  TextEncoding Encoding;
  std::size_t Length;  // bytes
};

/// The mark that a file of these first bytes begins with.
std::optional<ByteOrderMark> FindByteOrderMark(std::string_view bytes);

/// The characters of valid UTF-8; nothing for any other text.
std::optional<std::u32string> Decode(std::string_view utf8);

/// Nothing where the encoding cannot hold the character.
std::optional<std::string> Encode(char32_t character, TextEncoding encoding);
std::optional<std::string> Encode(std::u32string_view text, TextEncoding encoding);

/// How many bytes at the front are whole valid characters of UTF-8.
std::size_t ValidUtf8Length(std::string_view bytes);

}  // namespace brackwell
