#include "help/HelpText.h"

#include <algorithm>
#include <array>
#include <utility>

#include "help/HtmlDocument.h"
#include "platform/CaseRules.h"

namespace brackwell {
namespace {

/// Whether the words before and behind the element can be one.
bool IsInline(std::string_view name) {
  constexpr std::array<std::string_view, 8> names{"a", "b", "code", "em", "i", "span", "strong", "u"};
  return std::ranges::find(names, name) != names.end();
}

void AppendText(std::string& text, std::string_view piece) {
  constexpr std::string_view noBreak = "\u00A0";
  while (!piece.empty()) {
    const bool isNoBreak = piece.starts_with(noBreak);
    const std::string_view character = piece.substr(0, isNoBreak ? noBreak.size() : 1);
    if (!isNoBreak && std::string_view(" \t\r\n").find(character) == std::string_view::npos)
      text += character;
    else if (!text.empty() && !text.ends_with(' '))
      text += ' ';
    piece.remove_prefix(character.size());
  }
}

/// Of the nodes from this one on and of all that is in them.
void AppendText(std::string& text, const xmlNode* node) {
  for (; node; node = node->next) {
    if (node->type == XML_TEXT_NODE) AppendText(text, reinterpret_cast<const char*>(node->content));
    const std::string_view name = ElementName(*node);
    if (name.empty() || name == "head") continue;
    if (!IsInline(name)) AppendText(text, " ");
    AppendText(text, node->children);
    if (!IsInline(name)) AppendText(text, " ");
  }
}

std::string TextFrom(const xmlNode* node) {
  std::string text;
  AppendText(text, node);
  if (text.ends_with(' ')) text.pop_back();
  return text;
}

/// Null where there is none from this node on.
const xmlNode* FindTitle(const xmlNode* node) {
  for (; node; node = node->next) {
    if (ElementName(*node) == "title") return node;
    if (node->type != XML_ELEMENT_NODE) continue;
    if (const xmlNode* title = FindTitle(node->children)) return title;
  }
  return nullptr;
}

/// A letter or digit of ASCII, or a byte of any other character.
bool IsWordByte(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::string PlainText(std::string_view html) {
  const HtmlDocument document = ParseHtml(html);
  return TextFrom(document ? document->children : nullptr);
}

std::string PageTitle(std::string_view html) {
  const HtmlDocument document = ParseHtml(html);
  const xmlNode* title = FindTitle(document ? document->children : nullptr);
  return TextFrom(title ? title->children : nullptr);
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
