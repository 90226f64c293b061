#pragma once

#include "platform/FileSystemObject.h"
#include "platform/Posix.h"

namespace brackwell::posix {

/// FileSystemObject::CopyFile.
void CopyOneFile(const Location& source, const Location& target, bool overwrite, const Tick& tick);
/// FileSystemObject::CopyAsNewFile.
void CopyAsNewFile(const Location& source, const Location& target, const Tick& tick);

}  // namespace brackwell::posix
