#include "support/IsolatedSettings.h"

#include "support/OwnHive_windows.h"

namespace brackwell {

struct IsolatedSettings::Store {
  OwnHive User{HKEY_CURRENT_USER};
};

IsolatedSettings::IsolatedSettings() : mStore(std::make_unique<Store>()) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // The platform without a display knows no fonts of the system's.
  if (!qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) qputenv("QT_QPA_FONTDIR", qgetenv("windir") + "\\Fonts");
  // As the program has it on this system.
  qputenv("QT_STYLE_OVERRIDE", "Fusion");
  // Else what a test prints goes to the debugger.
  qputenv("QT_FORCE_STDERR_LOGGING", "1");
}

IsolatedSettings::~IsolatedSettings() = default;

void IsolatedSettings::Clear() const { mStore->User.Clear(); }

QString IsolatedSettings::Place() const {
  return QStringLiteral("HKEY_CURRENT_USER\\Software\\Brackwell\\Brackwell");
}

}  // namespace brackwell
