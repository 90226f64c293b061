#pragma once

#include <cstdint>
#include <string>

#include "platform/FileSystemObject.h"

namespace brackwell::posix {

/// FileSystemObject::CopyFile.
void CopyOneFile(const std::string& source, const std::string& target, bool overwrite, const Tick& tick);

}  // namespace brackwell::posix
