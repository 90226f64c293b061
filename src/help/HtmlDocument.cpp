#include "help/HtmlDocument.h"

#include <libxml/HTMLparser.h>

namespace brackwell {
namespace {

/// The parser's time grows with the square of the attributes that one tag has.
constexpr std::size_t MaxBytes = 128 * 1024;

}  // namespace

HtmlDocument ParseHtml(std::string_view html) {
  html = html.substr(0, MaxBytes);
  return HtmlDocument(
      htmlReadMemory(html.data(), static_cast<int>(html.size()), nullptr, "UTF-8",
                     HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET));
}

std::string_view ElementName(const xmlNode& node) {
  return node.type == XML_ELEMENT_NODE ? reinterpret_cast<const char*>(node.name) : std::string_view();
}

std::string Attribute(const xmlNode& element, const char* name) {
  xmlChar* const value = xmlGetProp(&element, reinterpret_cast<const xmlChar*>(name));
  std::string text = value ? reinterpret_cast<const char*>(value) : "";
  xmlFree(value);
  return text;
}

}  // namespace brackwell
