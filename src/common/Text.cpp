#include "common/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "platform/CaseRules.h"

namespace brackwell {

std::string GetFileExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string() : Upper(name.substr(dot + 1));
}

std::int32_t CountMatches(std::string_view text, std::string_view search) {
  if (search.empty()) return 0;
  std::int64_t count = 0;
  for (std::size_t at = text.find(search); at != std::string_view::npos; at = text.find(search, at + 1))
    ++count;
  if (count > std::numeric_limits<std::int32_t>::max()) throw std::overflow_error("Overflow");
  return static_cast<std::int32_t>(count);
}

std::string NullToEmpty(const std::optional<std::string>& value) { return value.value_or(std::string()); }

std::string TidyList(std::string_view text) {
  std::string tidy(text);
  std::erase(tidy, ' ');
  if (tidy.ends_with(';')) tidy.pop_back();
  return tidy;
}

std::vector<std::string> SplitList(std::string_view tidyList) {
  std::vector<std::string> items;
  if (tidyList.empty()) return items;
  for (std::size_t begin = 0;;) {
    const std::size_t end = tidyList.find(';', begin);
    items.emplace_back(tidyList.substr(begin, end - begin));
    if (end == std::string_view::npos) return items;
    begin = end + 1;
  }
}

std::string ShownText(std::string_view native) {
  constexpr utf8proc_int32_t FirstControlPicture = 0x2400;
  constexpr utf8proc_int32_t PictureOfDelete = 0x2421;
  constexpr utf8proc_int32_t Replacement = 0xFFFD;
  const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7F; };
  if (std::ranges::all_of(native, isPlain)) return std::string(native);

  std::string shown;
  for (std::size_t at = 0; at < native.size();) {
    utf8proc_int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(native.data() + at),
                                         static_cast<utf8proc_ssize_t>(native.size() - at), &code);
    at += length > 0 ? static_cast<std::size_t>(length) : 1;
    if (length <= 0) code = Replacement;
    if (code < 0x20) code += FirstControlPicture;
    if (code == 0x7F) code = PictureOfDelete;
    utf8proc_uint8_t bytes[4];
    shown.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(utf8proc_encode_char(code, bytes)));
  }
  return shown;
}

std::string ReplaceRoot(std::string_view path, std::string_view from, std::string_view to) {
  if (from.empty() || !path.starts_with(from)) return std::string(path);
  std::string replaced;
  replaced.reserve(to.size() + path.size() - from.size());
  replaced = to;
  replaced += path.substr(from.size());
  return replaced;
}

}  // namespace brackwell
