#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dirdisplay/PropertyCatalogue.h"

namespace brackwell {

class FileSystemObject;
class Progress;

/// The numbers are those of the window's options and of the stored setting.
enum class DisplayFormat { Text = 0, Html = 1, Xml = 2 };

struct DisplayOptions {
  std::string Folder;  // exactly as the window shows it
  DisplayFormat Format = DisplayFormat::Text;
  int XmlType = 0;                   // the setting; the XML format alone heeds it: 1 writes attributes
  std::string TextDelimiter = "\t";  // the setting as it is stored: "CHR-9", or the delimiter itself

  bool IncludeFolders = true;
  bool IncludeSubfolders = true;
  bool IncludeFiles = true;
  std::vector<InfoItem> FolderInfo;  // what is ticked, in the order of the list
  std::vector<InfoItem> FileInfo;

  std::string ProgramFolder;  // where the stylesheets' folder "xml" is; without separator at its end
};

/// Shows the user what went wrong with a stylesheet: a critical message box with the title "XmlApplyXsl". The
/// text is UTF-8, its lines end in CR LF.
using ShowXslError = std::function<void(const std::string& text)>;

/// Describes a folder as the options say and writes the description into the temporary folder, over the one
/// before. Gives the path of the file, to be opened; nothing where the user stopped it, and then no file is
/// touched. A stylesheet that fails is told through `showError`, and the file is then empty. Raises
/// FileSystemError with the path for what cannot be read or written; the file of a run before is then whole.
/// Lets events run all the time, so the same window must not start another run meanwhile.
std::optional<std::string> DisplayDirectory(FileSystemObject& files, const DisplayOptions& options,
                                            Progress& progress, const ShowXslError& showError);

/// The file into which a format is written.
std::string OutputPath(DisplayFormat format);

}  // namespace brackwell
