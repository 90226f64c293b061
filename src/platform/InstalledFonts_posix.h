#pragma once

#include <string>
#include <vector>

namespace brackwell::posix {

/// A name under which a font can be shown, with its kind in brackets: "DejaVu Sans (TrueType)".
struct InstalledFont {
  std::string Name;
  std::string File;  // of the plainest of its faces
};

/// One for each family name that fontconfig knows a scalable font by, whatever its case; ordered by name.
/// English names where a font has any. It is what fontconfig has loaded for the whole program, brought up to
/// date first, so nothing is read twice.
std::vector<InstalledFont> InstalledFonts();

}  // namespace brackwell::posix
