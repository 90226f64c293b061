#pragma once

#include <string_view>
#include <vector>

#include "platform/Places.h"

namespace brackwell::posix {

/// The volumes in a mount table in the form of /proc/self/mountinfo.
std::vector<Volume> VolumesIn(std::string_view mountTable);

}  // namespace brackwell::posix
