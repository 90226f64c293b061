#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "platform/NameCounts.h"
#include "platform/Posix.h"

namespace brackwell::posix {

/// Tells two files of one folder whose names differ in case only, and which a disk that ignores case takes
/// for one: the copy of the second would replace that of the first. Remembers the names of the last source
/// folder, so that it is read once for all its files.
class CaseTwins {
 public:
  /// Throws FileAlreadyExists where `target`, which is there, in the open folder `targetFolder`, is the copy
  /// of another file beside `source`.
  void Check(const Location& source, const Location& target, const Handle& targetFolder);

 private:
  bool HasTwin(const std::string& name, const Handle& folder, const std::string& path);

  struct stat mFolder {};
  std::optional<NameCounts> mNames;
};

}  // namespace brackwell::posix
