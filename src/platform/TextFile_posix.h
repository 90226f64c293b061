#pragma once

#include <memory>
#include <string>

#include "platform/TextFile.h"

namespace brackwell::posix {

/// FileSystemObject::OpenTextFile for POSIX.
std::unique_ptr<TextReader> OpenText(const std::string& path);

}  // namespace brackwell::posix
