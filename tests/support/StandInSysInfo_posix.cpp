#include "support/StandInSysInfo.h"

#include <QFile>
#include <QTemporaryDir>

namespace brackwell {

struct StandInSysInfo::Known {
  /// The only program in PATH.
  void Install(const QByteArray& interpreter) const {
    QFile script(Folder.filePath(QStringLiteral("kinfocenter")));
    if (!script.open(QIODevice::WriteOnly)) qFatal("no stand-in");
    script.write("#!" + interpreter + "\necho started > '" + Mark().toLocal8Bit() + "'\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  QString Mark() const { return Folder.filePath(QStringLiteral("started")); }

  QTemporaryDir Folder;
  QByteArray Path = qgetenv("PATH");
};

StandInSysInfo::StandInSysInfo() : mKnown(std::make_unique<Known>()) {
  qputenv("PATH", mKnown->Folder.path().toLocal8Bit());
}

StandInSysInfo::~StandInSysInfo() { qputenv("PATH", mKnown->Path); }

void StandInSysInfo::Install() { mKnown->Install("/bin/sh"); }

void StandInSysInfo::InstallBroken() { mKnown->Install("/no/such/interpreter"); }

bool StandInSysInfo::HasStarted() const { return QFile::exists(mKnown->Mark()); }

}  // namespace brackwell
