#pragma once

#include <string>

namespace brackwell {

/// Opens a document with the program that the system associates with it. Gives a code above 32 on success,
/// else the Windows shell's code for the fault: 2 file not found, 3 path not found, 5 access denied, 8 out of
/// memory, 31 no program for this type, 0 any other. Never waits longer than about a second. `ownerWindow` is
/// a native window handle or null.
int OpenDocument(const std::string& path, void* ownerWindow);

}  // namespace brackwell
