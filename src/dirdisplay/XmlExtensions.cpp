#include "dirdisplay/XmlExtensions.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>
#include <libxslt/extensions.h>
#include <libxslt/extra.h>
#include <libxslt/functions.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltutils.h>

#include <memory>
#include <set>
#include <sstream>
#include <string_view>

namespace brackwell {
namespace {

std::string_view View(const xmlChar* text) {
  return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

struct XmlFree {
  void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlFree>;

bool IsKnownElement(std::string_view uri, std::string_view name) {
  return (uri == View(XSLT_LIBXSLT_NAMESPACE) && name == "debug") ||
         (uri == View(XSLT_SAXON_NAMESPACE) && name == "output") ||
         (uri == View(XSLT_XALAN_NAMESPACE) && name == "write") ||
         (uri == View(XSLT_XT_NAMESPACE) && name == "document");
}

/// The last two are those that most stylesheets have it from.
bool HasNodeSet(std::string_view uri) {
  return uri == View(XSLT_LIBXSLT_NAMESPACE) || uri == View(XSLT_SAXON_NAMESPACE) ||
         uri == View(XSLT_XT_NAMESPACE) || uri == "http://exslt.org/common" ||
         uri == "urn:schemas-microsoft-com:xslt";
}

bool IsXslt(const xmlNode& element) { return element.ns && View(element.ns->href) == View(XSLT_NAMESPACE); }

/// Calls `visit` for an element and all below it. The parser lets none lie very deep.
template <typename Visit>
void ForEachElement(xmlNode* element, const Visit& visit) {
  visit(*element);
  for (xmlNode* child = xmlFirstElementChild(element); child; child = xmlNextElementSibling(child))
    ForEachElement(child, visit);
}

XmlText ExtensionPrefixes(xmlNode& element) {
  const auto* const name = BAD_CAST "extension-element-prefixes";
  return XmlText(IsXslt(element) ? xmlGetNoNsProp(&element, name)
                                 : xmlGetNsProp(&element, name, XSLT_NAMESPACE));
}

/// Those of the whole stylesheet: the library does not ask where they were declared either. The default one
/// is empty.
std::set<std::string> ExtensionPrefixesIn(xmlNode* root) {
  std::set<std::string> all;
  ForEachElement(root, [&all](xmlNode& element) {
    std::istringstream prefixes{std::string(View(ExtensionPrefixes(element).get()))};
    for (std::string prefix; prefixes >> prefix;) all.insert(prefix == "#default" ? std::string() : prefix);
  });
  return all;
}

xmlXPathFunction FindFunction(void* /*context*/, const xmlChar* name, const xmlChar* uri) {
  return View(name) == "node-set" && HasNodeSet(View(uri)) ? xsltFunctionNodeSet : nullptr;
}

bool IsElementAvailable(const xsltTransformContext& transform, xmlXPathContext& context,
                        const xmlChar* qualifiedName) {
  xmlChar* split = nullptr;
  const XmlText local(xmlSplitQName2(qualifiedName, &split));
  const XmlText prefix(split);
  const xmlNs* const usual =
      local ? nullptr : xmlSearchNs(transform.inst->doc, transform.inst, nullptr);  // without a prefix
  const xmlChar* const uri = local ? xmlXPathNsLookup(&context, prefix.get()) : usual ? usual->href : nullptr;
  const xmlChar* const name = local ? local.get() : qualifiedName;
  if (!uri) return false;
  return xmlHashLookup2(transform.extElements, name, uri) || IsKnownElement(View(uri), View(name));
}

void ElementAvailable(xmlXPathParserContext* parser, int count) {
  if (count != 1) return xmlXPathErr(parser, XPATH_INVALID_ARITY);
  const XmlText name(xmlXPathPopString(parser));
  const xsltTransformContext* const transform = xsltXPathGetTransformContext(parser);
  const bool isAvailable =
      name && transform && transform->inst && IsElementAvailable(*transform, *parser->context, name.get());
  xmlXPathReturnBoolean(parser, isAvailable ? 1 : 0);
}

}  // namespace

std::optional<std::string> UnknownExtension(xmlDoc& stylesheet) {
  xmlNode* const root = xmlDocGetRootElement(&stylesheet);
  if (!root) return std::nullopt;
  const std::set<std::string> prefixes = ExtensionPrefixesIn(root);
  std::optional<std::string> unknown;
  ForEachElement(root, [&](const xmlNode& element) {
    if (unknown || !element.ns || IsXslt(element)) return;
    const std::string_view uri = View(element.ns->href);
    if (!prefixes.contains(std::string(View(element.ns->prefix))) || IsKnownElement(uri, View(element.name)))
      return;
    unknown = std::string(View(element.name)) + " of " + std::string(uri);
  });
  return unknown;
}

void KeepToKnownExtensions(xsltTransformContext& context) {
  xmlXPathRegisterFuncLookup(context.xpathCtxt, FindFunction, nullptr);
  const auto* const name = BAD_CAST "element-available";
  xmlXPathRegisterFunc(context.xpathCtxt, name, nullptr);
  xmlXPathRegisterFunc(context.xpathCtxt, name, ElementAvailable);
}

}  // namespace brackwell
