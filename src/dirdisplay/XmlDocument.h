#pragma once

#include <libxml/tree.h>

#include <memory>
#include <new>
#include <string>
#include <string_view>

// What the sources of the directory display share to handle documents of libxml2.

namespace brackwell {

struct XmlDocumentDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlDocumentDeleter>;

/// The library gives nothing where there is no memory left.
template <typename Made>
Made* Require(Made* made) {
  if (!made) throw std::bad_alloc();
  return made;
}

/// Valid for as long as `text` is.
inline const xmlChar* XmlChars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

/// Makes a native text one that every document can hold: what is no valid text, or no character of XML,
/// becomes U+FFFD. With `oneLine`, tabs and line breaks become their pictures, since one of them in a name
/// would look like the end of a field or line.
void MakeXmlText(std::string& text, bool oneLine);

}  // namespace brackwell
