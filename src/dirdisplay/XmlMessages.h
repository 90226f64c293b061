#pragma once

#include <libxml/xmlerror.h>

#include <string>
#include <string_view>

namespace brackwell {

/// The libraries tell their errors through functions of the whole program, and on the standard error output
/// where there are none. While one is alive they come here. They nest: events that run meanwhile may begin
/// and end another.
class XmlMessages {
 public:
  XmlMessages();
  ~XmlMessages();
  XmlMessages(const XmlMessages&) = delete;
  XmlMessages& operator=(const XmlMessages&) = delete;

  /// All of them on one line, which is not empty.
  std::string Text() const;

 private:
  static void AddFormatted(void* messages, const char* format, ...);
  static void AddError(void* messages, xmlError* error);
  void Add(std::string_view text);

  const xmlGenericErrorFunc mXslt;
  void* const mXsltContext;
  const xmlGenericErrorFunc mXml;
  void* const mXmlContext;
  const xmlStructuredErrorFunc mXmlStructured;
  void* const mXmlStructuredContext;
  std::string mText;
};

}  // namespace brackwell
