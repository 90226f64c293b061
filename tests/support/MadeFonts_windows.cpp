#include "support/MadeFonts_windows.h"

namespace brackwell {

void MadeFonts::AddFamily(const std::string& file, const std::string& family) {
  mFonts.push_back({file, family});
}

void MadeFonts::Use() const {
  mMachine.reset();
  mMachine = std::make_unique<OwnHive>(HKEY_LOCAL_MACHINE);
  for (const Font& font : mFonts)
    mMachine->Store("SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts", font.Family + " (TrueType)",
                    font.File);
}

}  // namespace brackwell
