#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/TempTree.h"

namespace brackwell {

/// A TrueType font of the characters 32 to 126, each of them a box.
struct MadeFont {
  /// A text of the font's table of names, in UTF-8.
  struct Name {
    std::uint16_t Id;  // 1 family, 2 style, 4 full name, 16 typographic family
    std::string Text;
    std::uint16_t Language = 0x409;  // English, as Windows numbers them
  };
  static constexpr std::uint16_t Family = 1, Style = 2, TypographicFamily = 16;
  static constexpr std::uint16_t German = 0x407;

  std::vector<Name> Names;
  std::uint16_t Weight = 400;
  std::uint16_t BoxHeight = 700;  // of 1000 that the font is high

  std::string File() const;
};

/// A folder of fonts, and a configuration by which fontconfig knows these and no others.
class MadeFonts {
 public:
  MadeFonts();
  ~MadeFonts();
  MadeFonts(const MadeFonts&) = delete;
  MadeFonts& operator=(const MadeFonts&) = delete;

  /// Adds a file under this name to the folder; gives its path.
  std::string Add(const std::string& file, const std::string& content);
  std::string Add(const std::string& file, const MadeFont& font) { return Add(file, font.File()); }
  std::string AddFamily(const std::string& file, const std::string& family) {
    return Add(file, MadeFont{.Names = {{MadeFont::Family, family}, {MadeFont::Style, "Regular"}}});
  }

  /// From here on fontconfig, in this process and those that it starts, knows what is in the folder now.
  void Use() const;

 private:
  TempTree mTree;
};

}  // namespace brackwell
