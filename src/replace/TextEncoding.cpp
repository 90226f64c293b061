#include "replace/TextEncoding.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>

#include "platform/CodePage.h"

namespace brackwell {
namespace {

std::optional<std::string> ToCodePage(char32_t character) {
  const auto byte = [](std::size_t value) { return std::string(1, static_cast<char>(value)); };
  if (character < 0x80) return byte(character);
  const UpperHalf& page = SystemCodePage();
  const auto found = std::ranges::find(page, character);
  if (found == page.end()) return std::nullopt;
  return byte(0x80 + static_cast<std::size_t>(found - page.begin()));
}

std::string ToUtf8(char32_t character) {
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes);
  return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

std::string ToUtf16(char32_t character, bool bigEndian) {
  std::string bytes;
  const auto append = [&](char32_t unit) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  };
  constexpr char32_t FirstOfTwo = 0x10000;
  if (character < FirstOfTwo) {
    append(character);
  } else {
    append(0xD800 + ((character - FirstOfTwo) >> 10));
    append(0xDC00 + ((character - FirstOfTwo) & 0x3FF));
  }
  return bytes;
}

/// How many bytes at the front are ASCII, give or take what is left of a step.
std::size_t SkipAscii(std::string_view bytes) {
  std::uint64_t words[4];
  std::size_t at = 0;
  for (; at + sizeof words <= bytes.size(); at += sizeof words) {
    std::memcpy(words, bytes.data() + at, sizeof words);
    if ((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080) break;
  }
  return at;
}

}  // namespace

std::optional<ByteOrderMark> FindByteOrderMark(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return ByteOrderMark{TextEncoding::Utf8, 3};
  if (bytes.starts_with("\xFF\xFE")) return ByteOrderMark{TextEncoding::Utf16Le, 2};
  if (bytes.starts_with("\xFE\xFF")) return ByteOrderMark{TextEncoding::Utf16Be, 2};
  return std::nullopt;
}

std::optional<std::u32string> Decode(std::string_view utf8) {
  std::u32string text;
  while (!utf8.empty()) {
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(utf8.data()),
                                         static_cast<utf8proc_ssize_t>(utf8.size()), &code);
    if (length <= 0) return std::nullopt;
    text += static_cast<char32_t>(code);
    utf8.remove_prefix(static_cast<std::size_t>(length));
  }
  return text;
}

std::optional<std::string> Encode(char32_t character, TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::Utf8:
      return ToUtf8(character);
    case TextEncoding::CodePage:
      return ToCodePage(character);
    case TextEncoding::Utf16Le:
      return ToUtf16(character, false);
    case TextEncoding::Utf16Be:
      return ToUtf16(character, true);
  }
  return std::nullopt;
}

std::optional<std::string> Encode(std::u32string_view text, TextEncoding encoding) {
  std::string bytes;
  for (const char32_t character : text) {
    const auto encoded = Encode(character, encoding);
    if (!encoded) return std::nullopt;
    bytes += *encoded;
  }
  return bytes;
}

std::size_t ValidUtf8Length(std::string_view bytes) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    at += SkipAscii(bytes.substr(at));
    // Text that is not ASCII seldom comes alone: some characters one by one before the next leap.
    for (const std::size_t next = at + 64; at < bytes.size() && at < next;) {
      if (static_cast<signed char>(bytes[at]) >= 0) {
        ++at;
        continue;
      }
      utf8proc_int32_t code = 0;
      const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data() + at),
                                           static_cast<utf8proc_ssize_t>(bytes.size() - at), &code);
      if (length <= 0) return at;
      at += static_cast<std::size_t>(length);
    }
  }
  return at;
}

}  // namespace brackwell
