#pragma once

#include <memory>
#include <string>

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// New content for a file that is there. Content and modification time are all of it that changes.
class FileRewrite : public TextWriter {
 public:
  /// Where a copy writes the content itself, from the first byte on, so that holes stay holes.
  virtual const Handle& Content() const = 0;
  /// Close for a copy, which has its source's modification time. The disk is not waited for: after a power
  /// cut the source is still there.
  virtual void CloseAsCopy(const timespec& modified) = 0;
};

/// TextReader::Rewrite for POSIX: `file` lies in `folder`, under the last name of `path`, had the status
/// `opened` when it was opened, and has passed CheckReplaceable.
std::unique_ptr<FileRewrite> RewriteFile(Handle file, const struct stat& opened, Handle folder,
                                         const std::string& path, Tick tick);

}  // namespace brackwell::posix
