#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>

namespace brackwell {

struct FreeHtml {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using HtmlDocument = std::unique_ptr<xmlDoc, FreeHtml>;

/// Parses HTML in UTF-8 that may be anybody's: it fetches nothing, and both size and nesting are bounded, so
/// that it may be walked by recursion. What is wrong is repaired as well as possible; null if nothing is
/// left.
HtmlDocument ParseHtml(std::string_view html);

/// The name of an element, in lower case; empty for any other node.
std::string_view ElementName(const xmlNode& node);

/// The value of an attribute, given in lower case; empty if there is none.
std::string Attribute(const xmlNode& element, const char* name);

}  // namespace brackwell
