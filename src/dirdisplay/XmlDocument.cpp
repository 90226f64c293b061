#include "dirdisplay/XmlDocument.h"

#include <utf8proc.h>

#include <algorithm>

namespace brackwell {
namespace {

constexpr bool IsPlain(char c) { return static_cast<signed char>(c) >= 0x20; }

constexpr utf8proc_int32_t XmlCharacter(utf8proc_int32_t code, bool oneLine) {
  constexpr utf8proc_int32_t FirstControlPicture = 0x2400;
  constexpr utf8proc_int32_t Replacement = 0xFFFD;
  if (code == '\t' || code == '\n' || code == '\r') return oneLine ? code + FirstControlPicture : code;
  return code < 0x20 || code == 0xFFFE || code == 0xFFFF ? Replacement : code;
}

}  // namespace

void MakeXmlText(std::string& text, bool oneLine) {
  const std::size_t plain = static_cast<std::size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
  if (plain == text.size()) return;
  std::string result = text.substr(0, plain);
  for (std::size_t at = plain; at < text.size();) {
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at),
                                         static_cast<utf8proc_ssize_t>(text.size() - at), &code);
    at += length > 0 ? static_cast<std::size_t>(length) : 1;
    utf8proc_uint8_t bytes[4];
    const auto size = utf8proc_encode_char(XmlCharacter(length > 0 ? code : 0, oneLine), bytes);
    result.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  }
  text = std::move(result);
}

}  // namespace brackwell
