#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/OwnHive_windows.h"

namespace brackwell {

/// Fonts as the registry tells of them: these and no others, once they are used.
class MadeFonts {
 public:
  void AddFamily(const std::string& file, const std::string& family);
  /// From here on, and for as long as this object lives, the registry has what has been added up to now.
  void Use() const;

 private:
  struct Font {
    std::string File;
    std::string Family;
  };

  std::vector<Font> mFonts;
  mutable std::unique_ptr<OwnHive> mMachine;
};

}  // namespace brackwell
