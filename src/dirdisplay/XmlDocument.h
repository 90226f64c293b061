#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "dirdisplay/XmlMemory.h"

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
/// the other: the library's way, three allocations for a value, takes half as long again for the whole
/// display. Nothing may therefore take a node out of the document.
///
/// What the library takes on this thread while a document is there counts as the document's: see XmlMemory.
/// Where that is too much, building it throws std::bad_alloc.
class XmlDocument {
 public:
  /// With an empty root element of that name.
  explicit XmlDocument(const std::string& rootName, std::size_t memoryLimit = XmlMemory::UsualLimit());
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  xmlDoc* Get() const { return mDocument.get(); }
  xmlNode* Root() const { return mDocument->children; }
  std::size_t Elements() const { return mElements; }
  /// Elements have texts in them, rather than attributes.
  bool HasTexts() const { return mHasTexts; }
  XmlMemory& Memory() { return mMemory; }

  /// The document's own copy of a name.
  const xmlChar* Intern(const std::string& text);

  /// Names must be interned. The new element comes before the child `before`, or last where that is null.
  xmlNode* AddElement(xmlNode* parent, xmlNode* before, const xmlChar* name);
  /// A node with the document's own copy of the text, in no place yet.
  xmlNode* NewText(std::string_view value);
  void SetText(xmlNode* text, std::string_view value) { text->content = Copy(value); }
  /// To an element without content. A text that is elsewhere already is there as well.
  void AddText(xmlNode* owner, xmlNode* text);
  /// The owner must not have an attribute of that name. Attributes may share a text.
  void AddAttribute(xmlNode* owner, const xmlChar* name, xmlNode* text);

 private:
  struct Freeing {
    void operator()(xmlDoc* document) const;
  };

  xmlChar* Copy(std::string_view text);
  void* Take(std::size_t size);
  void AddPiece(std::size_t size);
  template <typename Node>
  Node* NewNode(xmlElementType type, const xmlChar* name, xmlNode* parent);

  XmlMemory mMemory;
  std::vector<std::unique_ptr<std::byte[]>> mPieces;
  std::byte* mFree = nullptr;  // in the last piece
  std::size_t mLeft = 0;
  const std::unique_ptr<xmlDoc, Freeing> mDocument;
  std::size_t mElements = 1;
  bool mHasTexts = false;
  xmlAttr* mLastAttribute = nullptr;
};

/// Makes a native text one that every document can hold: what is no valid text, or no character of XML,
/// becomes U+FFFD. With `oneLine`, tabs and line breaks become their pictures, since one of them in a name
/// would look like the end of a field or line, and other control characters and separators of lines U+FFFD.
void MakeXmlText(std::string& text, bool oneLine);

}  // namespace brackwell
