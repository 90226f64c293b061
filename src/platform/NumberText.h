#pragma once

#include <string>

namespace brackwell {

/// What the user's locale writes between a number's whole part and its decimals, "." or ",".
std::string DecimalSeparator();

}  // namespace brackwell
