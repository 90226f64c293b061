#pragma once

#include "platform/CodePage.h"

namespace brackwell::win32 {

/// The code page of that number, or 1252 in its place.
UpperHalf ReadCodePage(unsigned number);

}  // namespace brackwell::win32
