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

/// Whether a file of that size which begins with these bytes is text in an encoding that is none of the
/// above: UTF-32, or UTF-16 without a mark. UTF-32 may have its mark. Without one, what is looked at are
/// units of two bytes, and of four, in either order: there is a NUL byte; more than half of the units are
/// characters below U+2000 whose upper byte is no white space, as it is in few pairs of 8-bit characters; and
/// of a hundred units at most one is a control character or no character at all, as many are in binary files.
bool IsUnsupportedUnicode(std::string_view begin, std::uint64_t size);

/// The characters of valid UTF-8; nothing for any other text.
std::optional<std::u32string> Decode(std::string_view utf8);

/// Nothing where the encoding cannot hold the character.
std::optional<std::string> Encode(char32_t character, TextEncoding encoding);
std::optional<std::string> Encode(std::u32string_view text, TextEncoding encoding);

/// How many bytes at the front are whole valid characters of UTF-8.
std::size_t ValidUtf8Length(std::string_view bytes);

/// What is not ASCII in a text: characters of UTF-8, and bytes that are part of none.
struct Utf8Tally {
  std::int64_t Characters = 0;
  std::int64_t Strays = 0;
};
/// Adds what begins before `to`, and gives how far it has come; characters may reach beyond.
std::size_t TallyUtf8(std::string_view bytes, std::size_t from, std::size_t to, Utf8Tally& tally);

}  // namespace brackwell
