#pragma once

#include <functional>
#include <string>

namespace brackwell {

class FileSystemObject;
class Progress;
class XmlDocument;

/// Shows the user what went wrong with a stylesheet: a critical message box with the title "XmlApplyXsl". The
/// text is UTF-8, its lines end in CR LF.
using ShowXslError = std::function<void(const std::string& text)>;

/// What the stylesheet at `path` makes of the document, whose properties must be attributes. Where there is
/// no such stylesheet, or it fails, that is told through `showError` and the result is empty. Stylesheets can
/// be anybody's: they reach no other file, no network and no library, and one that does not come to an end or
/// takes too much memory is ended. They may take the parameter "line-end". Lets events run; once `progress`
/// is stopped, the result is empty and nothing is told.
std::string XmlApplyXsl(const FileSystemObject& files, XmlDocument& document, const std::string& path,
                        Progress& progress, const ShowXslError& showError);

}  // namespace brackwell
