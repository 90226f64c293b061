#pragma once

#include <QString>
#include <QTemporaryDir>

// Include this in every test that shows windows. Before anything else runs it gives the test a store of
// settings of its own, empty and thrown away afterwards, and a platform without a display.

namespace brackwell {

class IsolatedSettings {
 public:
  IsolatedSettings() {
    qputenv("XDG_CONFIG_HOME", mFolder.path().toLocal8Bit());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  }

  /// The file in which the program's settings are kept.
  QString FileName() const { return mFolder.filePath(QStringLiteral("Brackwell/Brackwell.conf")); }

 private:
  QTemporaryDir mFolder;
};

inline const IsolatedSettings isolatedSettings;

}  // namespace brackwell
