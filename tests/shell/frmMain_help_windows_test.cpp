#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <QTest>

#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/VisibleWindows_windows.h"

// The help of the program as the system's own viewer shows it.

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

using Titles = std::vector<std::string>;

const Titles OneHelpWindow{"Brackwell Help"};

QString HelpFilePath() { return QCoreApplication::applicationDirPath() + u"/Brackwell.chm"_s; }

}  // namespace

class frmMainHelpWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup() { QFile::remove(HelpFilePath()); }

  void TheSystemsViewerShowsIt_data();
  void TheSystemsViewerShowsIt();
  void AMissingFileIsTold();
  void ADamagedFileIsTold();
};

void frmMainHelpWindowsTest::init() {
  QFile::remove(HelpFilePath());
  QVERIFY(QFile::copy(QStringLiteral(BRACKWELL_PROGRAM_FOLDER) + u"/Brackwell.chm"_s, HelpFilePath()));
}

void frmMainHelpWindowsTest::TheSystemsViewerShowsIt_data() {
  QTest::addColumn<QString>("item");
  for (const char* item : {"mnuHelp_Contents", "mnuHelp_Search", "HelpKey"})
    QTest::newRow(item) << QString::fromLatin1(item);
}

void frmMainHelpWindowsTest::TheSystemsViewerShowsIt() {
  QFETCH(const QString, item);
  const MessageBoxes boxes;
  {
    frmMain main(ToolTable());
    main.show();
    main.findChild<QAction*>(item)->trigger();
    QCOMPARE(VisibleWindows(), OneHelpWindow);
    main.close();
  }
  QCOMPARE(VisibleWindows(), Titles());
  QVERIFY(boxes.Shown().empty());
}

void frmMainHelpWindowsTest::AMissingFileIsTold() {
  QVERIFY(QFile::remove(HelpFilePath()));
  MessageBoxes boxes;
  frmMain main(ToolTable());
  main.show();
  for (const QString& item : {u"mnuHelp_Contents"_s, u"mnuHelp_Search"_s, u"HelpKey"_s}) {
    main.findChild<QAction*>(item)->trigger();
    QCOMPARE(boxes.TakeTexts(), QStringList{u"Cannot find help file."_s});
    QCOMPARE(boxes.Shown().back().Title, u"Brackwell Help"_s);
    QCOMPARE(boxes.Shown().back().Icon, QMessageBox::Critical);
  }
  QCOMPARE(VisibleWindows(), Titles());
}

void frmMainHelpWindowsTest::ADamagedFileIsTold() {
  QFile file(HelpFilePath());
  QVERIFY(file.resize(file.size() / 2));
  MessageBoxes boxes;
  frmMain main(ToolTable());
  main.show();
  for (const QString& item : {u"mnuHelp_Contents"_s, u"mnuHelp_Search"_s, u"HelpKey"_s}) {
    main.findChild<QAction*>(item)->trigger();
    const QStringList told = boxes.TakeTexts();
    QCOMPARE(told.size(), 1);
    QVERIFY2(told.front().startsWith(u"The help file is damaged: "_s), qPrintable(told.front()));
    QVERIFY2(told.front().endsWith(u"\\Brackwell.chm"_s), qPrintable(told.front()));
  }
  QCOMPARE(VisibleWindows(), Titles());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmMainHelpWindowsTest)
#include "frmMain_help_windows_test.moc"
