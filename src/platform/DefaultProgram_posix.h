#pragma once

#include <string>

// What the desktop says about the programs that open documents. Where the answer cannot be had, it counts as
// unknown: a program may exist, and it is no snap.

namespace brackwell::posix {

/// False only if no installed program opens this file or folder.
bool MayHaveProgram(const std::string& path);

/// False only if no installed program opens this web address.
bool MayHaveBrowser(const std::string& address);

/// The snap whose program opens files of this name, by the name that its own folder in the home has; empty
/// for any other program.
std::string SnapThatOpens(const std::string& fileName);

}  // namespace brackwell::posix
