#pragma once

#include <memory>
#include <string>

#include "platform/TextFile.h"
#include "platform/Win32.h"

namespace brackwell::win32 {

/// TextReader::Rewrite for Windows: `file` was opened by `path` and had the properties `opened` then. It is
/// closed for good when the new content is put in place.
std::unique_ptr<TextWriter> RewriteFile(std::shared_ptr<Handle> file,
                                        const BY_HANDLE_FILE_INFORMATION& opened, const std::string& path,
                                        Tick tick);

}  // namespace brackwell::win32
