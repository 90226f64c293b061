#pragma once

#include <memory>
#include <string>

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// TextReader::Rewrite for POSIX: `file` was opened by `path` and had the status `opened` then.
std::unique_ptr<TextWriter> RewriteFile(const Handle& file, const struct stat& opened,
                                        const std::string& path, Tick tick);

}  // namespace brackwell::posix
