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

/// The length in bytes of the character of UTF-8 at `at`; 0 where there is none.
std::size_t CharacterLength(std::string_view bytes, std::size_t at) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data() + at),
                                       static_cast<utf8proc_ssize_t>(bytes.size() - at), &code);
  return length > 0 ? static_cast<std::size_t>(length) : 0;
}

bool IsAscii(char byte) { return static_cast<signed char>(byte) >= 0; }

bool IsSpace(std::uint32_t character) { return character >= 0x09 && character <= 0x0D; }

/// Of text, which holds no other control characters than those that part words and lines.
bool IsTextCharacter(std::uint32_t character) {
  const bool isControl = character < 0x20 && !IsSpace(character);
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  return !isControl && !isSurrogate && character < 0xFFFE;
}

/// The rule of IsUnsupportedUnicode, for units of one size and order.
bool IsTextOfUnits(std::string_view bytes, std::size_t unitSize, bool bigEndian) {
  const std::size_t units = bytes.size() / unitSize;
  std::size_t low = 0;
  std::size_t others = 0;
  for (std::size_t unit = 0; unit < units; ++unit) {
    std::uint32_t character = 0;
    for (std::size_t i = 0; i < unitSize; ++i) {
      const std::size_t from = bigEndian ? i : unitSize - 1 - i;
      character = character << 8 | static_cast<unsigned char>(bytes[unit * unitSize + from]);
    }
    if (character < 0x2000 && !IsSpace(character >> 8)) ++low;
    if (!IsTextCharacter(character)) ++others;
  }
  return low > units / 2 && others <= units / 100;
}

}  // namespace

std::optional<ByteOrderMark> FindByteOrderMark(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return ByteOrderMark{TextEncoding::Utf8, 3};
  if (bytes.starts_with("\xFF\xFE")) return ByteOrderMark{TextEncoding::Utf16Le, 2};
  if (bytes.starts_with("\xFE\xFF")) return ByteOrderMark{TextEncoding::Utf16Be, 2};
  return std::nullopt;
}

bool IsUnsupportedUnicode(std::string_view begin, std::uint64_t size) {
  using namespace std::string_view_literals;
  if (begin.starts_with("\xFF\xFE\0\0"sv) || begin.starts_with("\0\0\xFE\xFF"sv)) return true;
  if (FindByteOrderMark(begin) || begin.find('\0') == std::string_view::npos) return false;
  for (const std::size_t unitSize : {2, 4})
    for (const bool bigEndian : {false, true})
      if (size % unitSize == 0 && IsTextOfUnits(begin, unitSize, bigEndian)) return true;
  return false;
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
      const std::size_t length = IsAscii(bytes[at]) ? 1 : CharacterLength(bytes, at);
      if (length == 0) return at;
      at += length;
    }
  }
  return at;
}

std::size_t TallyUtf8(std::string_view bytes, std::size_t from, std::size_t to, Utf8Tally& tally) {
  while (from < to) {
    from += SkipAscii(bytes.substr(from, to - from));
    for (const std::size_t next = from + 64; from < to && from < next;) {
      if (IsAscii(bytes[from])) {
        ++from;
        continue;
      }
      const std::size_t length = CharacterLength(bytes, from);
      ++(length > 0 ? tally.Characters : tally.Strays);
      from += std::max<std::size_t>(length, 1);
    }
  }
  return from;
}

}  // namespace brackwell
