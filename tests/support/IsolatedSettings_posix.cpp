#include "support/IsolatedSettings.h"

#include <QFile>
#include <QTemporaryDir>

namespace brackwell {

struct IsolatedSettings::Store {
  QTemporaryDir Folder;
};

IsolatedSettings::IsolatedSettings() : mStore(std::make_unique<Store>()) {
  qputenv("XDG_CONFIG_HOME", mStore->Folder.path().toLocal8Bit());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
}

IsolatedSettings::~IsolatedSettings() = default;

void IsolatedSettings::Clear() const { QFile::remove(Place()); }

QString IsolatedSettings::Place() const {
  return mStore->Folder.filePath(QStringLiteral("Brackwell/Brackwell.conf"));
}

}  // namespace brackwell
