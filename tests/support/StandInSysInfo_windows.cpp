#include "support/StandInSysInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/OwnHive_windows.h"

namespace brackwell {

struct StandInSysInfo::Known {
  void Store(const QString& program) const {
    Machine.Store("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH",
                  QDir::toNativeSeparators(program).toStdString());
  }

  OwnHive Machine{HKEY_LOCAL_MACHINE};
  QTemporaryDir Folder;
};

StandInSysInfo::StandInSysInfo() : mKnown(std::make_unique<Known>()) {}

StandInSysInfo::~StandInSysInfo() = default;

/// The program leaves its mark beside itself.
void StandInSysInfo::Install() {
  const QString program = mKnown->Folder.filePath(QStringLiteral("sysinfo.exe"));
  if (!QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/stand_in_program.exe"), program))
    qFatal("no stand-in");
  mKnown->Store(program);
}

void StandInSysInfo::InstallBroken() {
  const QString program = mKnown->Folder.filePath(QStringLiteral("broken.exe"));
  QFile file(program);
  if (!file.open(QIODevice::WriteOnly)) qFatal("no stand-in");
  file.write("no program");
  file.close();
  mKnown->Store(program);
}

bool StandInSysInfo::HasStarted() const {
  return QFile::exists(mKnown->Folder.filePath(QStringLiteral("sysinfo.exe.started")));
}

}  // namespace brackwell
