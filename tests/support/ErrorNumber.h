#pragma once

#include "platform/FileSystemError.h"

namespace brackwell {

/// The number of the FileSystemError that `step` raises; 0 where it raises none.
template <typename Step>
int ErrorNumber(Step step) {
  try {
    step();
    return 0;
  } catch (const FileSystemError& error) {
    return error.Number();
  }
}

}  // namespace brackwell
