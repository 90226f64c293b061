#pragma once

#include <string>
#include <vector>

namespace brackwell {

/// The titles of the system's windows that this program shows, in no order.
std::vector<std::string> VisibleWindows();

}  // namespace brackwell
