#pragma once

#include <memory>
#include <string>

#include "platform/TextFile.h"

namespace brackwell::win32 {

/// FileSystemObject::OpenTextFile for Windows.
std::unique_ptr<TextReader> OpenText(const std::string& path);

}  // namespace brackwell::win32
