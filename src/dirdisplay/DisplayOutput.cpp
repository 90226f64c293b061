#include "dirdisplay/DisplayOutput.h"

#include <libxml/xmlsave.h>
#include <utf8proc.h>

#include <charconv>
#include <exception>
#include <functional>
#include <new>

#include "common/Files.h"
#include "common/Progress.h"
#include "dirdisplay/XmlDocument.h"
#include "dirdisplay/XmlMessages.h"
#include "platform/TempFolder.h"

namespace brackwell {
namespace {

constexpr std::string_view DelimiterMarker = "DELIM-TBD";
constexpr std::string_view CodePrefix = "CHR-";

/// Ends a run from wherever it is.
struct StoppedByUser {};

std::string OutputName(DisplayFormat format) {
  switch (format) {
    case DisplayFormat::Text:
      return "dir_display.txt";
    case DisplayFormat::Html:
      return "dir_display.html";
    case DisplayFormat::Xml:
      break;
  }
  return "dir_display.xml";
}

/// Builds the document that describes the folder.
class Description {
 public:
  Description(const FileSystemObject& files, const DisplayOptions& options, Progress& progress)
      : mDocument("directory_display", options.MemoryLimit.value_or(XmlMemory::UsualLimit())) {
    const bool isXml = options.Format == DisplayFormat::Xml;
    const int xmlType = isXml ? options.XmlType : 1;
    std::string path = options.Folder;
    MakeXmlText(path, !isXml);
    AddAttribute("style", xmlType == 0 ? "element" : "attribute");
    AddAttribute("path", path);
    DirectoryScan scan(files, options, mDocument, !isXml, progress);
    if (!scan.AddFolderNode(options.Folder, mDocument.Root(), xmlType)) throw StoppedByUser{};
  }

  XmlDocument& Document() { return mDocument; }

 private:
  void AddAttribute(const char* name, const std::string& value) {
    mDocument.AddAttribute(mDocument.Root(), mDocument.Intern(name), mDocument.NewText(value));
  }

  XmlDocument mDocument;
};

std::string Transformed(const FileSystemObject& files, const DisplayOptions& options, const char* stylesheet,
                        Progress& progress, const ShowXslError& showError) {
  Description description(files, options, progress);
  std::string result =
      XmlApplyXsl(files, description.Document(), options.ProgramFolder + stylesheet, progress, showError);
  if (progress.Stopped()) throw StoppedByUser{};
  return result;
}

/// Writes a file in pieces of a size that is worth a call of the system, and lets events run in between.
class PieceWriter {
 public:
  PieceWriter(TextWriter& file, Progress& progress) : mFile(file), mProgress(progress) {}

  void Add(std::string_view bytes) {
    constexpr std::size_t PieceSize = 256 * 1024;
    mPiece += bytes;
    if (mPiece.size() >= PieceSize) Flush();
  }

  void Flush() {
    mFile.Write(mPiece);
    mPiece.clear();
    mProgress.DoEvents();
    if (mProgress.Stopped()) throw StoppedByUser{};
  }

 private:
  TextWriter& mFile;
  Progress& mProgress;
  std::string mPiece;
};

/// Puts the delimiter in the place of each marker.
void WriteDelimited(std::string_view text, std::string_view delimiter, PieceWriter& writer) {
  for (std::size_t at = text.find(DelimiterMarker); at != std::string_view::npos;
       at = text.find(DelimiterMarker)) {
    writer.Add(text.substr(0, at));
    writer.Add(delimiter);
    text.remove_prefix(at + DelimiterMarker.size());
  }
  writer.Add(text);
}

class DocumentSaver {
 public:
  explicit DocumentSaver(PieceWriter& writer) : mWriter(writer) {}

  void Save(XmlDocument& document) {
    const XmlMessages messages;  // the error of the file says all
    xmlSaveCtxt* const context = Require(xmlSaveToIO(Write, nullptr, this, "UTF-8", 0));
    xmlSaveDoc(context, document.Get());
    xmlSaveClose(context);
    if (mError) std::rethrow_exception(mError);
    if (document.Memory().IsExhausted()) throw std::bad_alloc();
  }

 private:
  /// The library must not be left by an exception.
  static int Write(void* saver, const char* bytes, int length) {
    auto& self = *static_cast<DocumentSaver*>(saver);
    if (self.mError) return -1;
    try {
      self.mWriter.Add({bytes, static_cast<std::size_t>(length)});
      return length;
    } catch (...) {
      self.mError = std::current_exception();
      return -1;
    }
  }

  PieceWriter& mWriter;
  std::exception_ptr mError;
};

/// Finds out before the work whether the file can be written. Nothing of it stays meanwhile: the folder that
/// is described may be the one that it lies in.
void TryToCreate(FileSystemObject& files, const std::string& path) { files.CreateTextFile(path, true); }

/// Appears once `write` has written all of it.
void WriteFile(FileSystemObject& files, const std::string& path, Progress& progress,
               const std::function<void(PieceWriter&)>& write) {
  const auto file = files.CreateTextFile(path, true);
  PieceWriter writer(*file, progress);
  write(writer);
  writer.Flush();
  file->Close();
}

void WriteOutput(FileSystemObject& files, const DisplayOptions& options, const std::string& path,
                 Progress& progress, const ShowXslError& showError) {
  switch (options.Format) {
    case DisplayFormat::Text: {
      const std::string text = Transformed(files, options, "/xml/dir_display_text.xsl", progress, showError);
      const std::string delimiter = DelimiterText(options.TextDelimiter);
      WriteFile(files, path, progress, [&](PieceWriter& writer) { WriteDelimited(text, delimiter, writer); });
      break;
    }
    case DisplayFormat::Html:
      WriteTextFile(files, path, true,
                    Transformed(files, options, "/xml/dir_display_html.xsl", progress, showError));
      break;
    case DisplayFormat::Xml: {
      Description description(files, options, progress);
      WriteFile(files, path, progress,
                [&](PieceWriter& writer) { DocumentSaver(writer).Save(description.Document()); });
      break;
    }
  }
}

}  // namespace

std::optional<std::string> DisplayDirectory(FileSystemObject& files, const DisplayOptions& options,
                                            Progress& progress, const ShowXslError& showError) try {
  std::string path = ReportPath(OutputName(options.Format));
  TryToCreate(files, path);
  WriteOutput(files, options, path, progress, showError);
  return path;
} catch (const StoppedByUser&) {
  return std::nullopt;
}

std::string DelimiterText(std::string_view setting) {
  if (!setting.starts_with(CodePrefix)) return std::string(setting);
  const std::string_view number = setting.substr(CodePrefix.size());
  utf8proc_int32_t code = -1;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), code);
  const bool isCode = error == std::errc() && end == number.data() + number.size();
  if (!isCode || !utf8proc_codepoint_valid(code)) return std::string(setting);
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(code, bytes);
  return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

}  // namespace brackwell
