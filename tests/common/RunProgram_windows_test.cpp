#include <QTest>
#include <QWidget>

#include "common/Files.h"
#include "common/RunProgram.h"
#include "platform/Launch.h"
#include "support/IsolatedSettings.h"
#include "support/LongPaths_windows.h"
#include "support/MessageBoxes.h"
#include "support/OwnHive_windows.h"
#include "support/StandInOpener.h"
#include "support/TempTree.h"

// The codes of ShellExecute, and what the user is told of them.

namespace brackwell {

using namespace Qt::StringLiterals;

class RunProgramWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void NamesOfAnyKindAreOpened_data();
  void NamesOfAnyKindAreOpened();
  void PathsBeyondTheOldLimitAreOpened();
  void CodesAreTold_data();
  void CodesAreTold();
};

void RunProgramWindowsTest::NamesOfAnyKindAreOpened_data() {
  QTest::addColumn<QString>("name");
  QTest::newRow("blanks") << u"a long report.htm"_s;
  QTest::newRow("letters") << u"Gr\u00fc\u00dfe \u65e5\u672c.html"_s;
  for (const char16_t c : u"&%'(),;=^!+@#$~{}[]`"_s.toStdU16String())
    QTest::addRow("sign %c", static_cast<char>(c)) << u"a "_s + QChar(c) + u" b.txt"_s;
  QTest::newRow("argument") << u"a %1 b.txt"_s;
  QTest::newRow("two dots") << u"a.b.xml"_s;
}

void RunProgramWindowsTest::NamesOfAnyKindAreOpened() {
  QFETCH(const QString, name);
  const StandInOpener opener;
  const MessageBoxes boxes;
  QWidget form;
  TempTree tree;
  tree.File(name.toStdString());
  RunProgram(&form, tree.Path(name.toStdString()));
  QCOMPARE(opener.Opened().size(), 1);
  QVERIFY2(opener.Opened().front().endsWith(u'/' + name), qPrintable(opener.Opened().front()));
  QVERIFY(boxes.Shown().empty());
}

void RunProgramWindowsTest::PathsBeyondTheOldLimitAreOpened() {
  const StandInOpener opener;
  MessageBoxes boxes;
  TempTree tree;
  const auto files = CreateFileSystemObject();
  tree.Folder("top");
  const std::string folder = MakeFolders(*files, tree.Path("top"), LongFolder);
  WriteTextFile(*files, JoinPath(folder, "a.txt"), true, "text");
  for (const std::string& path : {JoinPath(folder, "a.txt"), folder}) {
    RunProgram(nullptr, path);
    QCOMPARE(boxes.TakeTexts(), QStringList());
    QVERIFY(!opener.Opened().isEmpty());
    const std::string opened = opener.Opened().last().toStdString();
    QVERIFY(files->FileExists(opened) || files->FolderExists(opened));
    QCOMPARE(files->FileExists(opened), files->FileExists(path));
  }
  RemoveTree(*files, tree.Path("top"));
}

void RunProgramWindowsTest::CodesAreTold_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<int>("code");
  QTest::newRow("missing") << u"none.htm"_s << 2;
  QTest::newRow("no extension") << u"none"_s << 31;
  QTest::newRow("unknown extension") << u"a.brackwell-unknown"_s << 31;
  QTest::newRow("type without a program") << u"a.brackwell-bare"_s << 31;
  QTest::newRow("missing program") << u"a.brackwell-gone"_s << 2;
  QTest::newRow("broken program") << u"broken.exe"_s << 11;
}

void RunProgramWindowsTest::CodesAreTold() {
  QFETCH(const QString, name);
  QFETCH(const int, code);
  const OwnHive classes(HKEY_CLASSES_ROOT);
  classes.Store(".brackwell-bare", "", "Brackwell.Bare");
  classes.Store("Brackwell.Bare", "", "A type that nobody opens");
  classes.Store(".brackwell-gone", "", "Brackwell.Gone");
  classes.Store("Brackwell.Gone\\shell\\open\\command", "", "C:\\none\\none.exe \"%1\"");
  classes.Store(".exe", "", "exefile");
  classes.Store("exefile\\shell\\open\\command", "", "\"%1\" %*");
  MessageBoxes boxes;
  QWidget form;
  TempTree tree;
  tree.File("none", "text");
  tree.File("broken.exe", "no program");
  for (const char* ending : {"unknown", "bare", "gone"}) tree.File(std::string("a.brackwell-") + ending);
  const std::string path = tree.Path(name.toStdString());
  QCOMPARE(OpenDocument(path, nullptr), code);
  RunProgram(&form, path);
  const QString message = RunProgramMessage(code);
  QCOMPARE(boxes.TakeTexts(), message.isEmpty() ? QStringList() : QStringList{message});
}

}  // namespace brackwell

QTEST_MAIN(brackwell::RunProgramWindowsTest)
#include "RunProgram_windows_test.moc"
