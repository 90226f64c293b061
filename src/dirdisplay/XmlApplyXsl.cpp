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
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "common/Progress.h"
#include "dirdisplay/XmlDocument.h"
#include "dirdisplay/XmlExtensions.h"
#include "dirdisplay/XmlMessages.h"
#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

/// The numbers by which scripts know a failure without a number of its own, and one for want of memory.
constexpr int UnspecifiedFailure = -2147467259;
constexpr int OutOfMemory = 7;

/// What a stylesheet may take before it is taken for one that does not end: instructions, and steps in its
/// expressions, for any document and for each element of it.
constexpr unsigned long Operations = 10'000'000;
constexpr unsigned long OperationsPerElement = 1000;
constexpr unsigned long MostOperations = 4'000'000'000;

/// Where there is no description, the library has told why.
struct TransformError {
  std::string Description = {};
};

template <auto Free>
struct FreeWith {
  template <typename Made>
  void operator()(Made* made) const {
    Free(made);
  }
};
template <typename Made, auto Free>
using Owned = std::unique_ptr<Made, FreeWith<Free>>;
using OwnedDocument = Owned<xmlDoc, xmlFreeDoc>;
using OwnedStylesheet = Owned<xsltStylesheet, xsltFreeStylesheet>;
using OwnedContext = Owned<xsltTransformContext, xsltFreeTransformContext>;

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
    for (const auto option : {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY,
                              XSLT_SECPREF_READ_NETWORK, XSLT_SECPREF_WRITE_NETWORK})
      xsltSetSecurityPrefs(mPreferences.get(), option, xsltSecurityForbid);
    xsltSetDefaultSecurityPrefs(mPreferences.get());
  }
  ~NothingElse() { xsltSetDefaultSecurityPrefs(mBefore); }
  NothingElse(const NothingElse&) = delete;
  NothingElse& operator=(const NothingElse&) = delete;

 private:
  const Owned<xsltSecurityPrefs, xsltFreeSecurityPrefs> mPreferences{Require(xsltNewSecurityPrefs())};
  xsltSecurityPrefs* const mBefore = xsltGetDefaultSecurityPrefs();
};

OwnedDocument ParseStylesheet(const FileSystemObject& files, const std::string& path, XmlMemory& memory) {
  const std::string text = files.OpenTextFile(path)->ReadAll();
  memory.Claim(3 * text.size());  // with the parser's copy, which it would lose if it could not grow
  const Owned<xmlParserCtxt, xmlFreeParserCtxt> parser{Require(xmlNewParserCtxt())};
  // Entities of its own are what makes a stylesheet readable; the parser itself sees to it that they do not
  // grow beyond measure.
  OwnedDocument document{xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()),
                                           path.c_str(), nullptr,
                                           XML_PARSE_NOENT | XML_PARSE_NOCDATA | XML_PARSE_NONET)};
  if (!document) throw TransformError();
  return document;
}

OwnedStylesheet LoadStylesheet(const FileSystemObject& files, const std::string& path, XmlMemory& memory) {
  const NoOtherFiles noOtherFiles;
  OwnedDocument document = ParseStylesheet(files, path, memory);
  if (const auto unknown = UnknownExtension(*document))
    throw TransformError{"The stylesheet uses an unknown extension: " + *unknown};
  OwnedStylesheet stylesheet{xsltParseStylesheetDoc(document.get())};
  if (!stylesheet) throw TransformError();
  static_cast<void>(document.release());  // it is the stylesheet's now
  if (stylesheet->errors != 0) throw TransformError();
  return stylesheet;
}

/// Lets events run while the library is at work, and takes what it writes. The library must not be left by an
/// exception, so one that comes meanwhile ends its work and is raised afterwards.
class Events {
 public:
  Events(XmlMemory& memory, Progress& progress) : mMemory(memory), mProgress(progress) {}

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
    if (events.IsTime() && !events.GoesOnAfter({})) context->state = XSLT_STATE_STOPPED;
  }

  /// Most instructions take no time, but few can take much where their values are large.
  bool IsTime() {
    constexpr std::size_t Much = std::size_t{8} << 20;
    const std::size_t used = mMemory.Used();
    const bool hasGrown = used > mUsed + Much;
    if (hasGrown) mUsed = used;
    return ++mInstructions % 64 == 0 || hasGrown;
  }

  bool GoesOnAfter(std::string_view written) try {
    if (mError) return false;
    mMemory.Claim(written.size());
    mWritten += written;
    mProgress.DoEvents();
    return !mProgress.Stopped();
  } catch (...) {
    mError = std::current_exception();
    return false;
  }

  XmlMemory& mMemory;
  Progress& mProgress;
  unsigned mInstructions = 0;
  std::size_t mUsed = 0;
  std::string mWritten;
  std::exception_ptr mError;
};

void LimitOperations(xsltTransformContext& context, unsigned long elements) {
  context.opLimit =
      std::min(elements, (MostOperations - Operations) / OperationsPerElement) * OperationsPerElement +
      Operations;
  context.xpathCtxt->opLimit = context.opLimit;
}

/// Ends the transformation where there is no more memory: in its next instruction, or the next step of an
/// expression.
class EndWithoutMemory {
 public:
  EndWithoutMemory(XmlMemory& memory, xsltTransformContext& context) : mMemory(memory) {
    mMemory.OnExhausted = [&context] {
      context.state = XSLT_STATE_STOPPED;
      context.xpathCtxt->opCount = context.xpathCtxt->opLimit;
    };
  }
  ~EndWithoutMemory() { mMemory.OnExhausted = {}; }
  EndWithoutMemory(const EndWithoutMemory&) = delete;
  EndWithoutMemory& operator=(const EndWithoutMemory&) = delete;

 private:
  XmlMemory& mMemory;
};

OwnedDocument Transform(const XmlDocument& document, xsltStylesheet* stylesheet,
                        xsltTransformContext* context) {
  const char* parameters[] = {"line-end", LineEnd, nullptr};
  xsltQuoteUserParams(context, parameters);
  return OwnedDocument{
      xsltApplyStylesheetUser(stylesheet, document.Get(), nullptr, nullptr, nullptr, context)};
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

std::string ApplyStylesheet(XmlDocument& document, xsltStylesheet* stylesheet, Progress& progress) {
  XmlMemory& memory = document.Memory();
  Events events(memory, progress);
  const OwnedContext context{Require(xsltNewTransformContext(stylesheet, document.Get()))};
  LimitOperations(*context, static_cast<unsigned long>(document.Elements()));
  KeepToKnownExtensions(*context);
  events.Watch(*context);
  const EndWithoutMemory endWithoutMemory(memory, *context);
  const OwnedDocument result = Transform(document, stylesheet, context.get());
  events.RaiseError();
  if (progress.Stopped()) return {};
  if (!result || context->state == XSLT_STATE_STOPPED) throw TransformError();
  events.Reserve(memory.Used() / 8);  // costs nothing where it is not needed, and growing would
  Serialize(result.get(), stylesheet, events);
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

std::string WithoutMemory() {
  return ErrorText(OutOfMemory, "There is not enough memory to apply the stylesheet.");
}

}  // namespace

std::string XmlApplyXsl(const FileSystemObject& files, XmlDocument& document, const std::string& path,
                        Progress& progress, const ShowXslError& showError) {
  // Texts between elements can be white space, which a stylesheet can have removed, and the library would
  // free them.
  if (document.HasTexts()) throw std::logic_error("Only documents of attributes can be transformed.");
  std::string error;
  {
    const NothingElse nothingElse;
    const XmlMessages messages;
    try {
      const OwnedStylesheet stylesheet = LoadStylesheet(files, path, document.Memory());
      std::string result = ApplyStylesheet(document, stylesheet.get(), progress);
      if (!document.Memory().IsExhausted()) return result;
      error = WithoutMemory();
    } catch (const FileSystemError& failed) {
      error = ErrorText(failed.Number(), failed.what());
    } catch (const TransformError& failed) {
      if (document.Memory().IsExhausted())
        error = WithoutMemory();
      else
        error =
            ErrorText(UnspecifiedFailure, failed.Description.empty() ? messages.Text() : failed.Description);
    } catch (const std::bad_alloc&) {
      error = WithoutMemory();
    }
  }
  showError(error);
  return {};
}

}  // namespace brackwell
