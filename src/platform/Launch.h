#pragma once

#include <string>
#include <string_view>

namespace brackwell {

/// Opens a document with the program that the system associates with it. Gives a code above 32 on success,
/// else the Windows shell's code for the fault: 2 file not found, 3 path not found, 5 access denied, 8 out of
/// memory, 31 no program for this type, 0 any other. Never waits longer than about a second. `ownerWindow` is
/// a native window handle or null.
int OpenDocument(const std::string& path, void* ownerWindow);

/// Whether it begins as an address in the web does.
inline bool IsWebAddress(std::string_view address) {
  return address.starts_with("https://") || address.starts_with("http://");
}

/// Opens a web address ("https://...") in the browser, with the same codes. Anything else is not opened: 2.
int OpenWebAddress(const std::string& address, void* ownerWindow);

/// Starts a program, given by its full path, in a normal window of its own that gets the focus. It runs on
/// when this one ends. False where it cannot be started.
bool StartProgram(const std::string& path);

}  // namespace brackwell
