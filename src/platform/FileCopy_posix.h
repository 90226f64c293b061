#pragma once

#include "platform/CaseTwins_posix.h"
#include "platform/FileSystemObject.h"
#include "platform/Posix.h"

namespace brackwell::posix {

/// FileSystemObject::CopyFile. `twins` goes from file to file.
void CopyOneFile(const Location& source, const Location& target, bool overwrite, const Tick& tick,
                 CaseTwins& twins);
/// FileSystemObject::CopyAsNewFile.
void CopyAsNewFile(const Location& source, const Location& target, const Tick& tick);

}  // namespace brackwell::posix
