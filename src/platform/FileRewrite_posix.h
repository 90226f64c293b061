#pragma once

#include <memory>
#include <string>

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// TextReader::Rewrite for POSIX: `file` lies in `folder`, under the last name of `path`, and had the status
/// `opened` when it was opened.
std::unique_ptr<TextWriter> RewriteFile(const Handle& file, const struct stat& opened, const Handle& folder,
                                        const std::string& path, Tick tick);

}  // namespace brackwell::posix
