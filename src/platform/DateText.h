#pragma once

#include <string>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// A date and time as the user's locale writes it in general, local time, the year with four digits; the date
/// alone at midnight.
std::string GeneralDate(DateTime time);

}  // namespace brackwell
