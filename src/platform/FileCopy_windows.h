#pragma once

#include <string>

#include "platform/FileSystemObject.h"

namespace brackwell::win32 {

/// FileSystemObject::CopyFile.
void CopyOneFile(const std::string& source, const std::string& target, bool overwrite, const Tick& tick);
/// FileSystemObject::CopyAsNewFile.
void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick);

}  // namespace brackwell::win32
