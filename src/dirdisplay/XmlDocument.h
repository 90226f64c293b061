#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace brackwell {

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

/// A document of the library's, to be built and read. It may have millions of nodes, so these lie one behind
/// the other in memory of ours and go all at once: the library's way, three allocations for a value, takes
/// half as long again for the whole display. Nothing may therefore take a node out of the document.
class XmlDocument {
 public:
  /// With an empty root element of that name.
  explicit XmlDocument(const std::string& rootName);
  ~XmlDocument();
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  xmlDoc* Get() const { return mDocument; }
  xmlNode* Root() const { return mDocument->children; }

  /// The document's own copy of a text that occurs often. Slow where there are very many.
  const xmlChar* Intern(const std::string& text);

  /// Names must be interned. The new element comes before the child `before`, or last where that is null.
  xmlNode* AddElement(xmlNode* parent, xmlNode* before, const xmlChar* name);
  /// The owner must not have one of that name. Gives the node that holds the text.
  xmlNode* AddAttribute(xmlNode* owner, const xmlChar* name);
  /// To an element without content.
  xmlNode* AddText(xmlNode* owner);

  void SetText(xmlNode* text, std::string_view value);
  static void SetInterned(xmlNode* text, const xmlChar* value) {
    text->content = const_cast<xmlChar*>(value);
  }

 private:
  void* Take(std::size_t size);
  template <typename Node>
  Node* NewNode(xmlElementType type, const xmlChar* name, xmlNode* parent);

  xmlDoc* const mDocument;
  std::vector<std::unique_ptr<std::byte[]>> mBlocks;
  std::byte* mFree = nullptr;
  std::size_t mLeft = 0;
  xmlAttr* mLastAttribute = nullptr;
};

/// Makes a native text one that every document can hold: what is no valid text, or no character of XML,
/// becomes U+FFFD. With `oneLine`, tabs and line breaks become their pictures, since one of them in a name
/// would look like the end of a field or line, and other control characters and separators of lines U+FFFD.
void MakeXmlText(std::string& text, bool oneLine);

}  // namespace brackwell
