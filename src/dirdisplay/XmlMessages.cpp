#include "dirdisplay/XmlMessages.h"

#include <libxml/globals.h>
#include <libxslt/xsltutils.h>

#include <cstdarg>
#include <cstdio>

namespace brackwell {

XmlMessages::XmlMessages()
    : mXslt(xsltGenericError),
      mXsltContext(xsltGenericErrorContext),
      mXml(xmlGenericError),
      mXmlContext(xmlGenericErrorContext),
      mXmlStructured(xmlStructuredError),
      mXmlStructuredContext(xmlStructuredErrorContext) {
  xsltSetGenericErrorFunc(this, AddFormatted);
  xmlSetGenericErrorFunc(this, AddFormatted);
  xmlSetStructuredErrorFunc(this, AddError);
}

XmlMessages::~XmlMessages() {
  xsltSetGenericErrorFunc(mXsltContext, mXslt);
  xmlSetGenericErrorFunc(mXmlContext, mXml);
  xmlSetStructuredErrorFunc(mXmlStructuredContext, mXmlStructured);
}

std::string XmlMessages::Text() const {
  const std::size_t end = mText.find_last_not_of(' ');
  return end == std::string::npos ? "The transformation failed." : mText.substr(0, end + 1);
}

void XmlMessages::AddFormatted(void* messages, const char* format, ...) {
  char text[1000];
  va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  static_cast<XmlMessages*>(messages)->Add(text);
}

void XmlMessages::AddError(void* messages, xmlError* error) {
  if (error->message) static_cast<XmlMessages*>(messages)->Add(error->message);
}

void XmlMessages::Add(std::string_view text) {
  constexpr std::size_t Longest = 1000;  // a message box should fit on the screen
  for (const char c : text)
    if (mText.size() < Longest) mText += c == '\n' || c == '\r' || c == '\t' ? ' ' : c;
}

}  // namespace brackwell
