#pragma once

#include <string>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// Sets the modification time of a file or folder; raises.
void SetModificationTime(const std::string& path, DateTime time);

}  // namespace brackwell
