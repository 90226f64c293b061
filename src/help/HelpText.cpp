#include "help/HelpText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/CaseRules.h"

namespace brackwell {
namespace {

constexpr std::string_view Blanks = " \t\r\n";

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> NamedEntities{
    {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", " "}}};
constexpr std::size_t LongestEntity = 10;  // without "&" and ";"

/// The character of an ASCII code, as "#39"; pages are ASCII and need no others.
std::optional<std::string> NumberedEntity(std::string_view entity) {
  unsigned code = 0;
  const auto [end, error] = std::from_chars(entity.data() + 1, entity.data() + entity.size(), code);
  if (error != std::errc() || end != entity.data() + entity.size() || code == 0 || code > 127)
    return std::nullopt;
  return std::string(1, static_cast<char>(code));
}

std::optional<std::string> Entity(std::string_view entity) {
  if (entity.starts_with('#')) return NumberedEntity(entity);
  for (const auto& [name, text] : NamedEntities)
    if (entity == name) return std::string(text);
  return std::nullopt;
}

/// "/p" of "</p>"; in lower case.
std::string TagName(std::string_view tag) {
  const std::size_t begin = tag.starts_with('/') ? 1 : 0;
  return Lower(tag.substr(0, tag.find_first_of(" \t\r\n/>", begin)));
}

/// Whether the words before and behind the tag can be one.
bool IsInline(std::string name) {
  if (name.starts_with('/')) name.erase(0, 1);
  constexpr std::array<std::string_view, 8> names{"a", "b", "code", "em", "i", "span", "strong", "u"};
  return std::ranges::find(names, name) != names.end();
}

void AppendText(std::string& text, std::string_view piece) {
  for (const char c : piece) {
    if (Blanks.find(c) == std::string_view::npos)
      text += c;
    else if (!text.ends_with(' '))
      text += ' ';
  }
}

/// Behind "</head>"; a page without a head is all body.
std::string_view Body(std::string_view html) {
  const std::size_t end = html.find("</head>");
  return end == std::string_view::npos ? html : html.substr(end);
}

/// A letter or digit of ASCII, or a byte of any other character.
bool IsWordByte(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::string DecodeEntities(std::string_view html) {
  std::string text;
  for (;;) {
    const std::size_t begin = html.find('&');
    text += html.substr(0, begin);
    if (begin == std::string_view::npos) return text;
    html.remove_prefix(begin + 1);
    const std::size_t end = html.substr(0, LongestEntity + 1).find(';');
    const auto character =
        end == std::string_view::npos || end == 0 ? std::nullopt : Entity(html.substr(0, end));
    text += character.value_or("&");
    if (character) html.remove_prefix(end + 1);
  }
}

std::string PlainText(std::string_view html) {
  html = Body(html);
  std::string text;
  while (!html.empty()) {
    const std::size_t begin = html.find('<');
    AppendText(text, DecodeEntities(html.substr(0, begin)));
    if (begin == std::string_view::npos) break;
    const std::size_t end = html.find('>', begin);
    if (end == std::string_view::npos) break;
    if (!IsInline(TagName(html.substr(begin + 1, end - begin - 1)))) AppendText(text, " ");
    html.remove_prefix(end + 1);
  }
  if (text.starts_with(' ')) text.erase(0, 1);
  if (text.ends_with(' ')) text.pop_back();
  return text;
}

std::string PageTitle(std::string_view html) {
  constexpr std::string_view open = "<title>";
  const std::size_t begin = html.find(open);
  if (begin == std::string_view::npos) return {};
  html.remove_prefix(begin + open.size());
  return DecodeEntities(html.substr(0, html.find('<')));
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : Lower(text)) {
    if (IsWordByte(c)) {
      word += c;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  if (!word.empty()) words.push_back(std::move(word));
  return words;
}

}  // namespace brackwell
