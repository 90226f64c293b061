#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace brackwell {

/// For as long as it lives, documents are handed to a script of this object's instead of the desktop's
/// opener.
class StandInOpener {
 public:
  StandInOpener() : mPath(qgetenv("PATH")) {
    ExitWith(0);
    qputenv("PATH", mFolder.path().toLocal8Bit() + ':' + mPath);
  }
  ~StandInOpener() { qputenv("PATH", mPath); }
  StandInOpener(const StandInOpener&) = delete;
  StandInOpener& operator=(const StandInOpener&) = delete;

  void ExitWith(int code) {
    QFile script(mFolder.filePath(QStringLiteral("xdg-open")));
    if (!script.open(QIODevice::WriteOnly)) qFatal("no stand-in");
    script.write("#!/bin/sh\necho \"$1\" >> '" + Log().toLocal8Bit() + "'\nexit " + QByteArray::number(code) +
                 "\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  /// The documents handed over so far, one URI per line.
  QString Opened() const {
    QFile log(Log());
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
  }

 private:
  QString Log() const { return mFolder.filePath(QStringLiteral("opened")); }

  QTemporaryDir mFolder;
  QByteArray mPath;
};

}  // namespace brackwell
