#include "dirdisplay/XmlApplyXsl.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/variables.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "common/Progress.h"
#include "dirdisplay/XmlDocument.h"
#include "dirdisplay/XmlMessages.h"
#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

/// The number by which scripts know a failure without a number of its own.
constexpr int UnspecifiedFailure = -2147467259;

/// What a stylesheet may take before it is taken for one that does not end: instructions, and steps in its
/// expressions, for any document and for each element of it.
constexpr unsigned long Operations = 10'000'000;
constexpr unsigned long OperationsPerElement = 1000;
constexpr unsigned long MostOperations = 4'000'000'000;

/// The library has told why.
struct TransformError {};

/// While one is alive no document leads to another file.
class NoOtherFiles {
 public:
  NoOtherFiles() {
    xmlSetExternalEntityLoader([](auto...) -> xmlParserInput* { return nullptr; });
  }
  ~NoOtherFiles() { xmlSetExternalEntityLoader(mBefore); }
  NoOtherFiles(const NoOtherFiles&) = delete;
  NoOtherFiles& operator=(const NoOtherFiles&) = delete;

 private:
  const xmlExternalEntityLoader mBefore = xmlGetExternalEntityLoader();
};

/// While one is alive no stylesheet reaches a file or the network. They nest.
class NothingElse {
 public:
  NothingElse() {
    xsltSecurityPrefs* const preferences = Require(xsltNewSecurityPrefs());
    for (const auto option : {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY,
                              XSLT_SECPREF_READ_NETWORK, XSLT_SECPREF_WRITE_NETWORK})
      xsltSetSecurityPrefs(preferences, option, xsltSecurityForbid);
    xsltSetDefaultSecurityPrefs(preferences);
  }
  ~NothingElse() { xsltSetDefaultSecurityPrefs(mBefore); }
  NothingElse(const NothingElse&) = delete;
  NothingElse& operator=(const NothingElse&) = delete;

 private:
  xsltSecurityPrefs* const mBefore = xsltGetDefaultSecurityPrefs();
};

xmlDoc* ParseStylesheet(const FileSystemObject& files, const std::string& path) {
  const std::string text = files.OpenTextFile(path)->ReadAll();
  // Entities of its own are what makes a stylesheet readable; the parser itself sees to it that they do not
  // grow beyond measure.
  xmlDoc* const document =
      xmlCtxtReadMemory(Require(xmlNewParserCtxt()), text.data(), static_cast<int>(text.size()), path.c_str(),
                        nullptr, XML_PARSE_NOENT | XML_PARSE_NOCDATA | XML_PARSE_NONET);
  if (!document) throw TransformError();
  return document;
}

xsltStylesheet* LoadStylesheet(const FileSystemObject& files, const std::string& path) {
  const NoOtherFiles noOtherFiles;
  xsltStylesheet* const stylesheet = xsltParseStylesheetDoc(ParseStylesheet(files, path));
  if (!stylesheet || stylesheet->errors != 0) throw TransformError();
  return stylesheet;
}

/// Lets events run while the library is at work, and takes what it writes. The library must not be left by an
/// exception, so one that comes meanwhile ends its work and is raised afterwards.
class Events {
 public:
  Events(const XmlMemory& memory, Progress& progress) : mMemory(memory), mProgress(progress) {}

  /// The library's debugger is the one who is called at every instruction.
  void Watch(xsltTransformContext& context) {
    static void (*callbacks[])() = {reinterpret_cast<void (*)()>(AtInstruction), nullptr, nullptr};
    xsltSetDebuggerCallbacks(3, callbacks);
    context._private = this;
    context.debugStatus = XSLT_DEBUG_RUN;
  }

  static int Write(void* events, const char* bytes, int length) {
    auto& self = *static_cast<Events*>(events);
    return self.GoesOnAfter({bytes, static_cast<std::size_t>(length)}) ? length : -1;
  }

  void RaiseError() const {
    if (mError) std::rethrow_exception(mError);
  }
  void Reserve(std::size_t size) { mWritten.reserve(size); }
  std::string TakeWritten() { return std::move(mWritten); }

 private:
  static void AtInstruction(xmlNode* /*instruction*/, xmlNode* /*node*/, xsltTemplate* /*matched*/,
                            xsltTransformContext* context) {
    if (context->state == XSLT_STATE_STOPPED) return;
    auto& events = *static_cast<Events*>(context->_private);
    if (events.mMemory.IsTooMuch()) {
      xsltTransformError(context, nullptr, nullptr, "The stylesheet takes too much memory.\n");
      context->state = XSLT_STATE_STOPPED;
    } else if (++events.mInstructions % 64 == 0 && !events.GoesOnAfter({})) {
      context->state = XSLT_STATE_STOPPED;
    }
  }

  bool GoesOnAfter(std::string_view written) try {
    if (mError) return false;
    mWritten += written;
    mProgress.DoEvents();
    return !mProgress.Stopped();
  } catch (...) {
    mError = std::current_exception();
    return false;
  }

  const XmlMemory& mMemory;
  Progress& mProgress;
  unsigned mInstructions = 0;
  std::string mWritten;
  std::exception_ptr mError;
};

void LimitOperations(xsltTransformContext& context, unsigned long elements) {
  context.opLimit =
      std::min(elements, (MostOperations - Operations) / OperationsPerElement) * OperationsPerElement +
      Operations;
  context.xpathCtxt->opLimit = context.opLimit;
}

void Serialize(xmlDoc* result, xsltStylesheet* stylesheet, Events& events) {
  // Text is text; its encoding is the program's affair.
  const auto* const method = reinterpret_cast<const char*>(stylesheet->method);
  const bool isText = method && std::string_view(method) == "text";
  xmlCharEncodingHandler* encoder = nullptr;
  if (!isText && stylesheet->encoding)
    encoder = xmlFindCharEncodingHandler(reinterpret_cast<const char*>(stylesheet->encoding));
  xmlOutputBuffer* const buffer = Require(xmlOutputBufferCreateIO(Events::Write, nullptr, &events, encoder));
  xsltSaveResultTo(buffer, result, stylesheet);
  xmlOutputBufferClose(buffer);
}

std::string ApplyStylesheet(const XmlDocument& document, xsltStylesheet* stylesheet, Progress& progress) {
  xsltTransformContext* const context = Require(xsltNewTransformContext(stylesheet, document.Get()));
  LimitOperations(*context, static_cast<unsigned long>(document.Elements()));
  Events events(document.Memory(), progress);
  events.Watch(*context);
  const char* parameters[] = {"line-end", LineEnd, nullptr};
  xsltQuoteUserParams(context, parameters);
  xmlDoc* const result =
      xsltApplyStylesheetUser(stylesheet, document.Get(), nullptr, nullptr, nullptr, context);
  events.RaiseError();
  if (progress.Stopped()) return {};
  if (!result || context->state == XSLT_STATE_STOPPED) throw TransformError();
  events.Reserve(document.Memory().Used() / 8);  // costs nothing where it is not needed, and growing would
  Serialize(result, stylesheet, events);
  events.RaiseError();
  return events.TakeWritten();
}

std::string ErrorText(int number, const std::string& description) {
  return "There was an error in XmlApplyXsl:\r\n"
         "Error: " +
         std::to_string(number) +
         "\r\n"
         "Description: " +
         description +
         "\r\n"
         // The document was built, not read, so there is never an error of its own.
         "XML Error Code: 0\r\n"
         "XML Error Reason: \r\n";
}

}  // namespace

std::string XmlApplyXsl(const FileSystemObject& files, const XmlDocument& document, const std::string& path,
                        Progress& progress, const ShowXslError& showError) {
  std::string error;
  {
    const NothingElse nothingElse;
    const XmlMessages messages;
    try {
      xsltStylesheet* const stylesheet = LoadStylesheet(files, path);
      return ApplyStylesheet(document, stylesheet, progress);
    } catch (const FileSystemError& failed) {
      error = ErrorText(failed.Number(), failed.what());
    } catch (const TransformError&) {
      error = ErrorText(UnspecifiedFailure, messages.Text());
    }
  }
  showError(error);
  return {};
}

}  // namespace brackwell
