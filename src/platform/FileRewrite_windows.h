#pragma once

#include <memory>
#include <string>

#include "platform/TextFile.h"
#include "platform/Win32.h"

namespace brackwell::win32 {

/// New content for a file that is there. Content and modification time are all of it that changes.
class FileRewrite : public TextWriter {
 public:
  /// Where a copy writes the content itself.
  virtual const Handle& Content() const = 0;
  /// Close for a copy, which has its source's modification time.
  virtual void CloseAsCopy(const LARGE_INTEGER& modified) = 0;
};

/// TextReader::Rewrite for Windows: `file` was opened by `path` and had the properties `opened` then. It is
/// closed for good when the new content is put in place.
std::unique_ptr<FileRewrite> RewriteFile(std::shared_ptr<Handle> file,
                                         const BY_HANDLE_FILE_INFORMATION& opened, const std::string& path,
                                         Tick tick);

}  // namespace brackwell::win32
