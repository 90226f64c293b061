#include "support/StandInOpener.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

namespace brackwell {

struct StandInOpener::Known {
  /// The opener of the desktop, found before any real one.
  void Install(int exitCode) const {
    QFile script(Folder.filePath(QStringLiteral("xdg-open")));
    if (!script.open(QIODevice::WriteOnly)) qFatal("no stand-in");
    script.write("#!/bin/sh\necho \"$1\" >> '" + Log().toLocal8Bit() + "'\nexit " +
                 QByteArray::number(exitCode) + "\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  QString Log() const { return Folder.filePath(QStringLiteral("opened")); }

  QTemporaryDir Folder;
  QByteArray Path = qgetenv("PATH");
};

StandInOpener::StandInOpener() : mKnown(std::make_unique<Known>()) {
  mKnown->Install(0);
  qputenv("PATH", mKnown->Folder.path().toLocal8Bit() + ':' + mKnown->Path);
}

StandInOpener::~StandInOpener() { qputenv("PATH", mKnown->Path); }

void StandInOpener::OpenNothing() { mKnown->Install(3); }

QStringList StandInOpener::Opened() const {
  QStringList opened;
  QFile log(mKnown->Log());
  if (!log.open(QIODevice::ReadOnly)) return opened;
  for (const QString& line : QString::fromUtf8(log.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
    const QUrl address(line);
    opened << (address.isLocalFile() ? address.toLocalFile() : line);
  }
  return opened;
}

}  // namespace brackwell
