#pragma once

#include <functional>
#include <string>

#include "compare/CompareRow.h"
#include "platform/FileSystemObject.h"

namespace brackwell {

struct FixOptions {
  std::string SourceRoot;  // as they are at the time of fixing
  std::string TargetRoot;
  bool ShowFullPath = false;  // as it was when the rows were made
};

/// The two places of one row's item.
struct FixPaths {
  std::string Source;
  std::string Target;
};

FixPaths PathsOf(const CompareRow& row, const FixOptions& options);

/// What whoever shows the rows wants to know while they are fixed.
struct FixEvents {
  std::function<void(std::size_t row)> Fixing;  // before each copy
  std::function<void(std::size_t row, const FileSystemError& error)> Problem;
  std::function<void(std::size_t row)> Fixed;
  Tick Working;  // often during each copy
};

/// Copies what the ticked boxes of the rows say, in their order, and marks rows whose copies succeeded. A
/// copy that fails is told and the next one done. Gives the number of copies tried.
std::size_t FixSelected(FileSystemObject& files, const FixOptions& options, CompareRows& rows,
                        const FixEvents& events);

}  // namespace brackwell
