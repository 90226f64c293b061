#pragma once

// Fonts of a test's own, in the place of those that are installed.

#ifdef _WIN32
#include "support/MadeFonts_windows.h"
#else
#include "support/MadeFonts_posix.h"
#endif
