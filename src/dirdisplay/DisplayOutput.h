#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "dirdisplay/DirectoryScan.h"
#include "dirdisplay/XmlApplyXsl.h"

namespace brackwell {

/// The numbers are those of the window's options and of the stored setting.
enum class DisplayFormat { Text = 0, Html = 1, Xml = 2 };

struct DisplayOptions : ScanOptions {
  std::string Folder;  // exactly as the window shows it
  DisplayFormat Format = DisplayFormat::Text;
  int XmlType = 0;                   // the setting; the XML format alone heeds it: 1 writes attributes
  std::string TextDelimiter = "\t";  // the setting as it is stored: "CHR-9", or the delimiter itself
  std::string ProgramFolder;         // where the stylesheets' folder "xml" is; without separator at its end
  std::optional<std::size_t> MemoryLimit;  // bytes that it may take; usually XmlMemory::UsualLimit()
};

/// Describes a folder as the options say and writes the description into the temporary folder, over the one
/// before. Gives the path of the file, to be opened; nothing where the user stopped it, and then no file is
/// touched. A stylesheet that fails is told through `showError`, and the file is then empty. Throws
/// FileSystemError with the path for what cannot be read or written, std::bad_alloc where a description is
/// too large for the memory that is free, std::system_error where no thread can be had to read the folder;
/// the file of a run before is then whole. Lets events run all the time, so the same window must not start
/// another run meanwhile.
std::optional<std::string> DisplayDirectory(FileSystemObject& files, const DisplayOptions& options,
                                            Progress& progress, const ShowXslError& showError);

/// The text that a stored delimiter stands for: "CHR-" and a number is the character of that code, all else
/// is itself.
std::string DelimiterText(std::string_view setting);

}  // namespace brackwell
