#include "support/StandInOpener.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include "support/OwnHive_windows.h"
// After the one above, which it needs.
#include <tlhelp32.h>

namespace brackwell {

namespace {

constexpr int LongEnough = 30'000;  // milliseconds

const std::wstring StandIn = L"stand_in_program.exe";

/// Whether one that this program has started still runs.
bool IsOpening() {
  const win32::Handle processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32FirstW(processes.Get(), &process); more;
       more = Process32NextW(processes.Get(), &process))
    if (process.th32ParentProcessID == GetCurrentProcessId() && process.szExeFile == StandIn) return true;
  return false;
}

std::string Quoted(const QString& path) { return '"' + QDir::toNativeSeparators(path).toStdString() + '"'; }

}  // namespace

struct StandInOpener::Known {
  QString Log() const { return Folder.filePath(QStringLiteral("opened")); }

  OwnHive Classes{HKEY_CLASSES_ROOT};
  QTemporaryDir Folder;
};

StandInOpener::StandInOpener() : mKnown(std::make_unique<Known>()) {
  const QString program = QCoreApplication::applicationDirPath() + u'/' + QString::fromStdWString(StandIn);
  if (!QFile::exists(program)) qFatal("no stand-in");
  const std::string command = Quoted(program) + ' ' + Quoted(mKnown->Log()) + " \"%1\"";
  const std::string type = "Brackwell.StandIn";
  mKnown->Classes.Store(type + "\\shell\\open\\command", "", command);
  for (const char* extension : {".htm", ".html", ".txt", ".xml"}) mKnown->Classes.Store(extension, "", type);
  mKnown->Classes.Store("Folder\\shell\\open\\command", "", command);
  mKnown->Classes.Store("https", "URL Protocol", "");
  mKnown->Classes.Store("https\\shell\\open\\command", "", command);
}

StandInOpener::~StandInOpener() = default;

void StandInOpener::OpenNothing() { mKnown->Classes.Clear(); }

/// Programs are started and not waited for.
QStringList StandInOpener::Opened() const {
  QElapsedTimer time;
  for (time.start(); IsOpening() && !time.hasExpired(LongEnough);) Sleep(5);
  QStringList opened;
  QFile log(mKnown->Log());
  if (!log.open(QIODevice::ReadOnly)) return opened;
  for (const QString& line : QString::fromUtf8(log.readAll()).split(u'\n', Qt::SkipEmptyParts))
    opened << QDir::fromNativeSeparators(line);
  return opened;
}

}  // namespace brackwell
