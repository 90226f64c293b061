#pragma once

#include <memory>

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// FileSystemObject::OpenTextFile for POSIX.
std::unique_ptr<TextReader> OpenText(Location&& location);

}  // namespace brackwell::posix
