#pragma once

#include <string>

// The system's own viewer of compiled help files. Each call is false where there is none, and then shows
// nothing. It runs inside this program, in a window of its own that no other owns.

namespace brackwell {

/// The help file at its table of contents.
bool ShowHelpContents(const std::string& helpFile);
/// The help file at its full-text search, nothing searched yet.
bool ShowHelpSearch(const std::string& helpFile);
/// The help file at one of its topics, "welcome.html".
bool ShowHelpTopic(const std::string& helpFile, const std::string& topic);

/// Closes the viewer where it is open. Call it before the program ends.
void CloseHelp();

}  // namespace brackwell
