#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "common/FormHelpers.h"
#include "controls/HelpPage.h"
#include "controls/HelpWindow.h"
#include "shell/HelpTopics.h"
#include "shell/frmMain.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// The main window, with the built help file beside the program or whatever a test puts there.
struct Shell {
  Shell() {
    Main.resize(900, 700);
    Main.show();
    if (!QTest::qWaitForWindowActive(&Main)) qFatal("no window");
  }

  void Choose(const QString& item) { Main.findChild<QAction*>(item)->trigger(); }
  void PressF1() { QTest::keySequence(&Main, QKeySequence(u"F1"_s)); }

  /// Hands the dialog that is about to show to `use`, then closes it.
  template <typename Use>
  void InDialog(Use use) {
    QTimer::singleShot(0, &Main, [use] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog || !QTest::qWaitFor([&] { return QApplication::activeWindow() == dialog; }))
        qFatal("no dialog");
      use(*dialog);
      dialog->reject();
    });
  }

  QList<HelpWindow*> HelpWindows() const {
    QList<HelpWindow*> windows;
    for (QWidget* window : QApplication::topLevelWidgets())
      if (auto* help = qobject_cast<HelpWindow*>(window); help && help->isVisible()) windows << help;
    return windows;
  }

  QString Topic() const {
    return HelpWindows().isEmpty() ? QString() : HelpWindows()[0]->findChild<HelpPage*>()->Topic();
  }
  int Tab() const { return HelpWindows()[0]->findChild<QTabWidget*>(u"sstHelp"_s)->currentIndex(); }

  MessageBoxes Boxes;
  frmMain Main{ToolTable()};
};

QString HelpFilePath() { return QCoreApplication::applicationDirPath() + u"/Brackwell.chm"_s; }

}  // namespace

class frmMainHelpTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanupTestCase();

  void ContentsAndSearch();
  void F1WithoutATool();
  void F1PerWindow_data();
  void F1PerWindow();
  void F1InADialog_data();
  void F1InADialog();
  void ADialogKeepsTheKeyboard();
  void TheMessageOfADialogKeepsTheKeyboard();
  void HelpIsReadBesideADialog();
  void AMissingFileIsToldInFrontOfTheDialog();
  void ASecondF1UsesTheSameWindow();
  void AClosedWindowComesBack();
  void ClosingTheMainWindowClosesIt();
  void TheMainWindowStaysUsable();
  void ADamagedFile();
  void AMissingFile();
  void AFileThatGoesAwayLater();
};

void frmMainHelpTest::init() {
  QFile::remove(HelpFilePath());
  QVERIFY(QFile::copy(QStringLiteral(BRACKWELL_HELP_FILE), HelpFilePath()));
}

void frmMainHelpTest::cleanupTestCase() { QFile::remove(HelpFilePath()); }

void frmMainHelpTest::ContentsAndSearch() {
  Shell shell;
  const StandInOpener opener;
  shell.Choose(u"mnuHelp_Contents"_s);
  QCOMPARE(shell.HelpWindows().size(), 1);
  QCOMPARE(shell.Tab(), 0);
  QCOMPARE(shell.Topic(), u"welcome.html"_s);
  shell.Choose(u"mnuHelp_Search"_s);
  QCOMPARE(shell.HelpWindows().size(), 1);
  QCOMPARE(shell.Tab(), 2);
  QVERIFY(opener.Opened().isEmpty());
  QVERIFY(shell.Boxes.Shown().empty());
}

void frmMainHelpTest::F1WithoutATool() {
  Shell shell;
  shell.PressF1();
  QCOMPARE(shell.Topic(), u"welcome.html"_s);
}

void frmMainHelpTest::F1PerWindow_data() {
  QTest::addColumn<QString>("key");
  QTest::addColumn<QString>("topic");
  QTest::newRow("compare") << u"DirCompare"_s << u"compare.html"_s;
  QTest::newRow("display") << u"DirDisplay"_s << u"directory-display.html"_s;
  QTest::newRow("fonts") << u"FontDisplay"_s << u"fonts.html"_s;
  QTest::newRow("replace") << u"Replace"_s << u"replace.html"_s;
  QTest::newRow("rename") << u"RenImages"_s << u"rename.html"_s;
  QTest::newRow("drives") << u"Drive"_s << u"drives.html"_s;
}

void frmMainHelpTest::F1PerWindow() {
  QFETCH(QString, key);
  QFETCH(QString, topic);
  Shell shell;
  shell.Main.findChild<QToolButton*>(key)->click();
  shell.PressF1();
  QCOMPARE(shell.Topic(), topic);
}

void frmMainHelpTest::F1InADialog_data() {
  QTest::addColumn<QString>("item");
  QTest::addColumn<QString>("dialog");
  QTest::addColumn<QString>("topic");
  QTest::newRow("options") << u"mnuTools_Options"_s << u"frmOptions"_s << u"options.html"_s;
  QTest::newRow("about") << u"mnuHelp_About"_s << u"frmAbout"_s << u"main-window.html"_s;
}

void frmMainHelpTest::F1InADialog() {
  QFETCH(QString, item);
  QFETCH(QString, dialog);
  QFETCH(QString, topic);
  Shell shell;
  QString seen;
  shell.InDialog([&](QDialog& shown) {
    QTest::keySequence(&shown, QKeySequence(u"F1"_s));
    seen = shown.objectName() + u' ' + shell.Topic();
  });
  shell.Choose(item);
  QCOMPARE(seen, dialog + u' ' + topic);
}

void frmMainHelpTest::HelpIsReadBesideADialog() {
  Shell shell;
  QString seen;
  shell.InDialog([&](QDialog& shown) {
    QTest::keySequence(&shown, QKeySequence(u"F1"_s));
    HelpWindow* help = shell.HelpWindows().value(0);
    if (!help || !QTest::qWaitForWindowActive(help)) return;
    auto* larger = help->findChild<QToolButton*>(u"cmdLarger"_s);
    const int zoom = help->findChild<HelpPage*>()->Zoom();
    // By way of the window system: what is blocked hears nothing.
    QTest::mouseClick(help->windowHandle(), Qt::LeftButton, {}, larger->mapTo(help, larger->rect().center()));
    const bool heard = help->findChild<HelpPage*>()->Zoom() == zoom + 1;
    auto* button = shell.Main.findChild<QToolButton*>(u"Drive"_s);
    QTest::mouseClick(shell.Main.windowHandle(), Qt::LeftButton, {},
                      button->mapTo(&shell.Main, button->rect().center()));
    const bool isBlocked = !shell.Main.findChild<QMdiArea*>()->currentSubWindow();
    seen = (heard ? u"help heard, "_s : u"help deaf, "_s) + (isBlocked ? u"main blocked"_s : u"main heard"_s);
    help->close();
  });
  shell.Choose(u"mnuTools_Options"_s);
  QCOMPARE(seen, u"help heard, main blocked"_s);
}

void frmMainHelpTest::ADialogKeepsTheKeyboard() {
  Shell shell;
  bool hasKeyboard = false;
  shell.InDialog([&](QDialog& shown) {
    shell.Main.activateWindow();  // as a click on it does under some window managers
    const auto isAt = [](const QWidget& window) {
      return QTest::qWaitFor([&] { return QGuiApplication::focusWindow() == window.windowHandle(); });
    };
    hasKeyboard = isAt(shell.Main) && isAt(shown);
  });
  shell.Choose(u"mnuTools_Options"_s);
  QVERIFY(hasKeyboard);
}

void frmMainHelpTest::TheMessageOfADialogKeepsTheKeyboard() {
  Shell shell;
  bool hasKeyboard = false;
  shell.InDialog([&](QDialog& shown) {
    QDialog box(&shown);  // messages are answered at once here
    box.open();
    const auto isAt = [](const QWidget& window) {
      return QTest::qWaitFor([&] { return QGuiApplication::focusWindow() == window.windowHandle(); });
    };
    const bool isFirst = isAt(box);
    shell.Main.activateWindow();
    hasKeyboard = isFirst && isAt(shell.Main) && isAt(box);
  });
  shell.Choose(u"mnuTools_Options"_s);
  QVERIFY(hasKeyboard);
}

void frmMainHelpTest::AMissingFileIsToldInFrontOfTheDialog() {
  QVERIFY(QFile::remove(HelpFilePath()));
  Shell shell;
  shell.InDialog([](QDialog& shown) { QTest::keySequence(&shown, QKeySequence(u"F1"_s)); });
  shell.Choose(u"mnuHelp_About"_s);
  QCOMPARE(shell.Boxes.TakeTexts(), QStringList{u"Cannot find help file."_s});
}

void frmMainHelpTest::ASecondF1UsesTheSameWindow() {
  Shell shell;
  shell.Main.findChild<QToolButton*>(u"DirCompare"_s)->click();
  shell.PressF1();
  HelpWindow* first = shell.HelpWindows().value(0);
  shell.Main.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  shell.Main.findChild<QToolButton*>(u"Drive"_s)->click();
  shell.PressF1();
  QCOMPARE(shell.HelpWindows(), QList<HelpWindow*>{first});
  QCOMPARE(shell.Topic(), u"drives.html"_s);
  QTRY_VERIFY(first->isActiveWindow());
}

void frmMainHelpTest::AClosedWindowComesBack() {
  Shell shell;
  shell.PressF1();
  HelpWindow* first = shell.HelpWindows().value(0);
  first->close();
  QVERIFY(shell.HelpWindows().isEmpty());
  shell.Choose(u"mnuHelp_Contents"_s);
  QCOMPARE(shell.HelpWindows(), QList<HelpWindow*>{first});
  first->showMinimized();
  shell.Choose(u"mnuHelp_Contents"_s);
  QVERIFY(!first->isMinimized());
}

void frmMainHelpTest::ClosingTheMainWindowClosesIt() {
  Shell shell;
  shell.PressF1();
  QCOMPARE(shell.HelpWindows().size(), 1);
  shell.Main.close();
  QVERIFY(shell.HelpWindows().isEmpty());
}

void frmMainHelpTest::TheMainWindowStaysUsable() {
  Shell shell;
  shell.PressF1();
  QVERIFY(!QApplication::activeModalWidget());
  QVERIFY(!shell.HelpWindows()[0]->parentWidget());
  shell.HelpWindows()[0]->close();
  QVERIFY(shell.Main.isVisible());
}

void frmMainHelpTest::ADamagedFile() {
  QFile file(HelpFilePath());
  QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(file.size() / 2));
  file.close();
  Shell shell;
  for (const QString& item : {u"mnuHelp_Contents"_s, u"mnuHelp_Search"_s, u"HelpKey"_s}) {
    shell.Choose(item);
    QCOMPARE(shell.Boxes.TakeTexts(), QStringList{u"The help file is damaged: "_s + HelpFilePath()});
    QCOMPARE(shell.Boxes.Shown().back().Title, u"Brackwell Help"_s);
    QCOMPARE(shell.Boxes.Shown().back().Icon, QMessageBox::Critical);
    QVERIFY(shell.HelpWindows().isEmpty());
  }
}

void frmMainHelpTest::AMissingFile() {
  QVERIFY(QFile::remove(HelpFilePath()));
  Shell shell;
  for (const QString& item : {u"mnuHelp_Contents"_s, u"mnuHelp_Search"_s, u"HelpKey"_s}) {
    shell.Choose(item);
    QCOMPARE(shell.Boxes.TakeTexts(), QStringList{u"Cannot find help file."_s});
    QVERIFY(shell.HelpWindows().isEmpty());
  }
}

void frmMainHelpTest::AFileThatGoesAwayLater() {
  Shell shell;
  shell.PressF1();
  QVERIFY(QFile::remove(HelpFilePath()));
  shell.Choose(u"mnuHelp_Contents"_s);
  QCOMPARE(shell.Boxes.TakeTexts(), QStringList{u"Cannot find help file."_s});
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmMainHelpTest)
#include "frmMain_help_test.moc"
