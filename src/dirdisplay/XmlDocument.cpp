#include "dirdisplay/XmlDocument.h"

#include <libxml/parserInternals.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace brackwell {
namespace {

constexpr bool IsPlain(char c) { return static_cast<signed char>(c) >= 0x20; }

/// Ends a line for some programs. Browsers take the number of a control character for one of code page 1252.
constexpr bool MayBreakLine(utf8proc_int32_t code) {
  return (code >= 0x80 && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

constexpr utf8proc_int32_t XmlCharacter(utf8proc_int32_t code, bool oneLine) {
  constexpr utf8proc_int32_t FirstControlPicture = 0x2400;
  constexpr utf8proc_int32_t Replacement = 0xFFFD;
  if (code == '\t' || code == '\n' || code == '\r') return oneLine ? code + FirstControlPicture : code;
  if (oneLine && MayBreakLine(code)) return Replacement;
  return code < 0x20 || code == 0xFFFE || code == 0xFFFF ? Replacement : code;
}

}  // namespace

XmlDocument::XmlDocument(const std::string& rootName, std::size_t memoryLimit)
    : mMemory(memoryLimit), mDocument(Require(xmlNewDoc(nullptr))) {
  mDocument->dict = Require(xmlDictCreate());
  mDocument->children = mDocument->last =
      NewNode<xmlNode>(XML_ELEMENT_NODE, Intern(rootName), reinterpret_cast<xmlNode*>(mDocument.get()));
}

/// The nodes are not the library's to free.
void XmlDocument::Freeing::operator()(xmlDoc* document) const {
  document->children = document->last = nullptr;
  xmlFreeDoc(document);
}

const xmlChar* XmlDocument::Intern(const std::string& text) {
  return Require(xmlDictLookup(mDocument->dict, XmlChars(text), static_cast<int>(text.size())));
}

xmlNode* XmlDocument::AddElement(xmlNode* parent, xmlNode* before, const xmlChar* name) {
  auto* const element = NewNode<xmlNode>(XML_ELEMENT_NODE, name, parent);
  element->prev = before ? before->prev : parent->last;
  element->next = before;
  (element->prev ? element->prev->next : parent->children) = element;
  (before ? before->prev : parent->last) = element;
  ++mElements;
  return element;
}

xmlNode* XmlDocument::NewText(std::string_view value) {
  auto* const text = NewNode<xmlNode>(XML_TEXT_NODE, xmlStringText, nullptr);
  SetText(text, value);
  return text;
}

void XmlDocument::AddText(xmlNode* owner, xmlNode* text) {
  if (text->parent) {
    auto* const twin = NewNode<xmlNode>(XML_TEXT_NODE, xmlStringText, nullptr);
    twin->content = text->content;
    text = twin;
  }
  text->parent = owner;
  owner->children = owner->last = text;
  mHasTexts = true;
}

void XmlDocument::AddAttribute(xmlNode* owner, const xmlChar* name, xmlNode* text) {
  auto* const attribute = NewNode<xmlAttr>(XML_ATTRIBUTE_NODE, name, owner);
  xmlAttr* last = mLastAttribute && mLastAttribute->parent == owner ? mLastAttribute : owner->properties;
  while (last && last->next) last = last->next;
  attribute->prev = last;
  (last ? last->next : owner->properties) = attribute;
  mLastAttribute = attribute;
  // Nobody asks a text of an attribute where it stands.
  attribute->children = attribute->last = text;
}

xmlChar* XmlDocument::Copy(std::string_view text) {
  auto* const copy = static_cast<xmlChar*>(Take(text.size() + 1));
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = 0;
  return copy;
}

/// Aligned for a pointer.
void* XmlDocument::Take(std::size_t size) {
  size = (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
  if (size > mLeft) AddPiece(size);
  mLeft -= size;
  return std::exchange(mFree, mFree + size);
}

void XmlDocument::AddPiece(std::size_t size) {
  constexpr std::size_t UsualSize = std::size_t{1} << 20;
  size = std::max(size, UsualSize);
  mMemory.Claim(size);
  mPieces.push_back(std::make_unique_for_overwrite<std::byte[]>(size));
  mFree = mPieces.back().get();
  mLeft = size;
}

template <typename Node>
Node* XmlDocument::NewNode(xmlElementType type, const xmlChar* name, xmlNode* parent) {
  auto* const node = new (Take(sizeof(Node))) Node{};
  node->type = type;
  node->name = name;
  node->parent = parent;
  node->doc = mDocument.get();
  return node;
}

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
