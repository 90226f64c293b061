#include "fonts/FontSample.h"

#include <utf8proc.h>

#include <algorithm>
#include <charconv>

#include "common/Html.h"
#include "platform/CodePage.h"

namespace brackwell {
namespace {

constexpr int FirstCode = 32;
constexpr int LastCode = 255;

/// The character of the system's code page; 0 for a code that has none.
char32_t FromCodePage(int code) {
  return code < 128 ? static_cast<char32_t>(code) : SystemCodePage()[static_cast<std::size_t>(code - 128)];
}

std::string CharactersUpTo(int lastCode) {
  std::string text;
  for (int code = FirstCode; code <= std::min(lastCode, LastCode); ++code) {
    const char32_t character = FromCodePage(code);
    if (character == 0) continue;
    utf8proc_uint8_t bytes[4];
    const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  }
  return text;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool CanBeginReference(char c) {
  return c == '#' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// As HtmlName, and no "&" begins a character reference. The "&" between the names of two faces stays.
std::string MarkupName(std::string_view name) {
  std::string plain;
  for (std::size_t i = 0; i < name.size(); ++i) {
    plain += name[i];
    if (name[i] == '&' && i + 1 < name.size() && CanBeginReference(name[i + 1])) plain += "amp;";
  }
  return HtmlName(plain);
}

/// The name as the value of a style: no ";" in it begins another style.
std::string StyleName(std::string_view name) {
  std::string value;
  for (const char c : name)
    if (c == ';')
      value += "\\3b ";
    else
      value += c;
  return MarkupName(value);
}

/// The styles that follow the name of the font, the same for all.
std::string CommonStyles(const FontSample& sample) {
  std::string styles = ";font-size=" + sample.Size + "pt;";
  if (sample.Bold) styles += "font-weight:bold;";
  if (sample.Italic) styles += "font-style:italic;";
  if (sample.Underline) styles += "text-decoration: underline;";
  if (sample.Strikethru) styles += "text-decoration: line-through;";
  return styles;
}

}  // namespace

std::string CleanFontName(std::string_view valueName) {
  const std::size_t bracket = valueName.find('(');
  return std::string(bracket == std::string_view::npos ? valueName : Trimmed(valueName.substr(0, bracket)));
}

std::string PresetText(std::string_view key) {
  if (key == "QBF") return "The quick brown fox jumps over the lazy dog";
  const std::string_view digits = key.substr(key.size() - std::min<std::size_t>(key.size(), 3));
  int lastCode = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), lastCode);
  return CharactersUpTo(lastCode);
}

std::string PrepareSample(std::string_view text) {
  std::string prepared;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool endsPair = text[i] == '\n' && i > 0 && text[i - 1] == '\r';
    if (text[i] == ' ')
      prepared += "&nbsp;";
    else if (text[i] != '\r' && text[i] != '\n')
      prepared += text[i];
    else if (!endsPair)
      prepared += "<br>";
  }
  return prepared;
}

std::string ToHtml(const FontSample& sample) {
  const std::string afterName = CommonStyles(sample) + "\">" + PrepareSample(sample.Text) + "</span></p>";
  std::string page = "<html>" + HtmlHead(sample.Title) + "<body>";
  for (const std::string& font : sample.Fonts) {
    page += "<p><span style=\"font-family:Arial;font-size:10pt\">" + MarkupName(font) + "</span><br>";
    page += "<span style=\"font-family:" + StyleName(font) + afterName;
  }
  return page + "</body></html>";
}

}  // namespace brackwell
