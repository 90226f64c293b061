#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <utility>
#include <vector>

#include "shell/TestTools.h"
#include "shell/frmMain.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// The main window with tools of which a test knows everything.
struct Shell {
  explicit Shell(std::vector<Tool> tools = TestTools()) : Main(std::move(tools)) {
    Main.resize(900, 700);
    Main.show();
  }

  void Choose(const QString& item) { Main.findChild<QAction*>(item)->trigger(); }

  QMdiSubWindow* Open(const QString& key) {
    Main.findChild<QToolButton*>(key)->click();
    return Main.findChild<QMdiArea*>()->currentSubWindow();
  }

  BusyTool* OpenBusy() { return qobject_cast<BusyTool*>(Open(u"Busy"_s)->widget()); }

  /// Whether one can print now, asked of the button and the menu item; "?" where they disagree.
  QString Print() {
    const bool item = Main.findChild<QAction*>(u"mnuFile_Print"_s)->isEnabled();
    const bool button = Main.findChild<QToolButton*>(u"Print"_s)->isEnabled();
    if (item != button) return u"?"_s;
    return item ? u"on"_s : u"off"_s;
  }

  frmMain Main;
};

}  // namespace

class frmMainToolsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void EnableTakesAnyButton();
  void PrintWithoutWindows();
  void PrintGoesToTheActiveWindow();
  void AWindowThatCannotPrintIsSkipped();
  void AFailingPrintIsSilent();
  void PrintFollowsTheActiveWindow();
  void AWindowThatTakesTheFocusAsItIsMadeIsActive();
  void AMinimisedWindowIsNotActive();
  void AClosedWindowIsNotActive();
  void AnotherProgramsWindowChangesNothing();
  void ActivationIsToldOnce();
  void AFailingUnloadClosesAllTheSame();
  void ClosingUnloadsEveryTool();
  void ExitIsClosing();
  void ClosingWaitsForARun();
  void ClosingWaitsForNestedRuns();
  void ClosingABusyWindowWaits();
  void CloseAllWaitsForARun();
  void ARunThatEndsByItselfClosesNothing();
  void ADialogKeepsTheProgramOpen();
};

void frmMainToolsTest::init() { toolLog.clear(); }

void frmMainToolsTest::EnableTakesAnyButton() {
  Shell shell;
  shell.Main.tlbMain_ENABLE(u"Plain"_s, false);
  QVERIFY(!shell.Main.findChild<QToolButton*>(u"Plain"_s)->isEnabled());
  QCOMPARE(shell.Print(), u"off"_s);
  shell.Main.tlbMain_ENABLE(u"print"_s, true);
  QCOMPARE(shell.Print(), u"on"_s);
  shell.Main.tlbMain_ENABLE(u"Print"_s, false);
  QCOMPARE(shell.Print(), u"off"_s);
  shell.Main.tlbMain_ENABLE(u"None"_s, true);
  QCOMPARE(shell.Print(), u"off"_s);
}

void frmMainToolsTest::PrintWithoutWindows() {
  const MessageBoxes boxes;
  Shell shell;
  shell.Main.tlbMain_ENABLE(u"Print"_s, true);
  shell.Choose(u"mnuFile_Print"_s);
  QCOMPARE(toolLog, QStringList());
  QVERIFY(boxes.Shown().empty());
}

void frmMainToolsTest::PrintGoesToTheActiveWindow() {
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  shell.Open(u"Plain"_s);
  shell.Open(u"Printing"_s);
  toolLog.clear();
  shell.Choose(u"mnuFile_Print"_s);
  QCOMPARE(toolLog, QStringList(u"PrintData"_s));
  QVERIFY(busyWhilePrinting);
  QVERIFY(!QGuiApplication::overrideCursor());
  QTest::mouseClick(shell.Main.findChild<QToolButton*>(u"Print"_s), Qt::LeftButton);
  QTest::keySequence(&shell.Main, QKeySequence(u"Ctrl+P"_s));
  QCOMPARE(toolLog, QStringList({u"PrintData"_s, u"PrintData"_s, u"PrintData"_s}));
}

void frmMainToolsTest::AWindowThatCannotPrintIsSkipped() {
  const MessageBoxes boxes;
  Shell shell;
  shell.Open(u"Printing"_s);
  shell.Open(u"Plain"_s);
  toolLog.clear();
  shell.Main.tlbMain_ENABLE(u"Print"_s, true);
  shell.Choose(u"mnuFile_Print"_s);
  QCOMPARE(toolLog, QStringList());
  QVERIFY(boxes.Shown().empty());
}

void frmMainToolsTest::AFailingPrintIsSilent() {
  const MessageBoxes boxes;
  Shell shell;
  shell.Open(u"Failing"_s);
  shell.Main.tlbMain_ENABLE(u"Print"_s, true);
  shell.Choose(u"mnuFile_Print"_s);
  QCOMPARE(toolLog, QStringList(u"PrintData fails"_s));
  QVERIFY(boxes.Shown().empty());
  QVERIFY(shell.Main.isVisible());
}

void frmMainToolsTest::PrintFollowsTheActiveWindow() {
  Shell shell;
  QCOMPARE(shell.Print(), u"off"_s);
  QMdiSubWindow* printing = shell.Open(u"Printing"_s);
  QCOMPARE(shell.Print(), u"on"_s);
  shell.Open(u"Plain"_s);
  QCOMPARE(shell.Print(), u"off"_s);
  shell.Main.findChild<QMdiArea*>()->setActiveSubWindow(printing);
  QCOMPARE(shell.Print(), u"on"_s);
  shell.Open(u"Printing"_s);
  QCOMPARE(shell.Print(), u"on"_s);
}

void frmMainToolsTest::AWindowThatTakesTheFocusAsItIsMadeIsActive() {
  Shell shell(
      {{.Key = u"DirCompare"_s, .ToolTip = u"Focusing"_s, .Create = [](Services& services) -> ToolWindow* {
          auto* tool = new PrintingTool(services);
          (new QLineEdit(tool))->setFocus();
          return tool;
        }}});
  shell.Main.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  shell.Open(u"DirCompare"_s);
  QCOMPARE(shell.Print(), u"on"_s);
}

void frmMainToolsTest::AMinimisedWindowIsNotActive() {
  Shell shell;
  QMdiSubWindow* printing = shell.Open(u"Printing"_s);
  printing->showMinimized();
  QCOMPARE(shell.Print(), u"off"_s);
  printing->showNormal();
  QCOMPARE(shell.Print(), u"on"_s);
}

void frmMainToolsTest::AClosedWindowIsNotActive() {
  Shell shell;
  shell.Open(u"Plain"_s);
  QMdiSubWindow* first = shell.Open(u"Printing"_s);
  shell.Open(u"Printing"_s)->close();
  QCOMPARE(shell.Main.findChild<QMdiArea*>()->currentSubWindow(), first);
  QCOMPARE(shell.Print(), u"on"_s);
  shell.Choose(u"mnuWindow_CloseAll"_s);
  QCOMPARE(shell.Print(), u"off"_s);
}

void frmMainToolsTest::AnotherProgramsWindowChangesNothing() {
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  shell.Open(u"Printing"_s);
  QWidget other;
  other.show();
  other.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&other));
  QCOMPARE(shell.Print(), u"on"_s);
  shell.Choose(u"mnuFile_Print"_s);
  QCOMPARE(toolLog, QStringList(u"PrintData"_s));
}

void frmMainToolsTest::ActivationIsToldOnce() {
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  QMdiSubWindow* plain = shell.Open(u"Plain"_s);
  plain->showMaximized();
  plain->showNormal();
  QCOMPARE(toolLog, QStringList(u"activate Plain"_s));
  shell.Open(u"Printing"_s);
  QCOMPARE(toolLog, QStringList({u"activate Plain"_s, u"deactivate Plain"_s}));
}

void frmMainToolsTest::AFailingUnloadClosesAllTheSame() {
  Shell shell;
  QMdiSubWindow* failing = shell.Open(u"Failing"_s);
  shell.Choose(u"mnuFile_Close"_s);
  QVERIFY(failing->isHidden());
  shell.Open(u"Failing"_s);
  QVERIFY(shell.Main.close());
  QCOMPARE(toolLog, QStringList({u"unload fails"_s, u"unload fails"_s}));
}

void frmMainToolsTest::ClosingUnloadsEveryTool() {
  Shell shell;
  shell.Open(u"Plain"_s);
  shell.Open(u"Printing"_s)->showMinimized();
  shell.Open(u"Busy"_s);
  toolLog.clear();
  QVERIFY(shell.Main.close());
  QVERIFY(!shell.Main.isVisible());
  toolLog.removeIf([](const QString& line) { return !line.startsWith(u"unload"_s); });
  toolLog.sort();
  QCOMPARE(toolLog, QStringList({u"unload Busy"_s, u"unload Plain"_s, u"unload Printing"_s}));
}

void frmMainToolsTest::ExitIsClosing() {
  Shell shell;
  shell.Open(u"Printing"_s);
  shell.Choose(u"mnuFile_Exit"_s);
  QVERIFY(!shell.Main.isVisible());
  QCOMPARE(toolLog, QStringList(u"unload Printing"_s));
}

void frmMainToolsTest::ClosingWaitsForARun() {
  Shell shell;
  shell.Open(u"Printing"_s);
  BusyTool* busy = shell.OpenBusy();
  QList<bool> closed;
  QTimer::singleShot(0, &shell.Main, [&] {
    closed.append(shell.Main.close());
    closed.append(shell.Main.close());
    closed.append(shell.Main.isHidden());
  });
  busy->Work();
  QCOMPARE(closed, QList<bool>({false, false, false}));
  QCOMPARE(toolLog, QStringList(u"run ended"_s));
  QTRY_VERIFY(shell.Main.isHidden());
  toolLog.sort();
  QCOMPARE(toolLog, QStringList({u"run ended"_s, u"unload Busy"_s, u"unload Printing"_s}));
}

void frmMainToolsTest::ClosingWaitsForNestedRuns() {
  Shell shell;
  BusyTool* outer = shell.OpenBusy();
  BusyTool* inner = shell.OpenBusy();
  QTimer::singleShot(0, inner, [&] {
    QTimer::singleShot(0, &shell.Main, [&] { shell.Main.close(); });
    inner->Work();
    toolLog << (shell.Main.isHidden() ? u"too early"_s : u"still open"_s);
  });
  outer->Work();
  QCOMPARE(toolLog, QStringList({u"run ended"_s, u"still open"_s, u"run ended"_s}));
  QTRY_VERIFY(shell.Main.isHidden());
  QCOMPARE(toolLog.mid(3), QStringList({u"unload Busy"_s, u"unload Busy"_s}));
}

void frmMainToolsTest::ClosingABusyWindowWaits() {
  Shell shell;
  BusyTool* busy = shell.OpenBusy();
  QTimer::singleShot(0, &shell.Main, [&] {
    shell.Choose(u"mnuFile_Close"_s);
    toolLog << u"asked"_s;
  });
  busy->Work();
  QCOMPARE(toolLog, QStringList({u"asked"_s, u"run ended"_s}));
  QTRY_VERIFY(toolLog.contains(u"unload Busy"_s));
  QVERIFY(shell.Main.isVisible());
}

void frmMainToolsTest::CloseAllWaitsForARun() {
  Shell shell;
  shell.Open(u"Printing"_s);
  BusyTool* busy = shell.OpenBusy();
  QTimer::singleShot(0, &shell.Main, [&] { shell.Choose(u"mnuWindow_CloseAll"_s); });
  busy->Work();
  QCOMPARE(toolLog, QStringList({u"unload Printing"_s, u"run ended"_s}));
  QTRY_COMPARE(toolLog, QStringList({u"unload Printing"_s, u"run ended"_s, u"unload Busy"_s}));
  QVERIFY(shell.Main.isVisible());
}

void frmMainToolsTest::ARunThatEndsByItselfClosesNothing() {
  Shell shell;
  BusyTool* busy = shell.OpenBusy();
  QTimer::singleShot(0, busy, &BusyTool::StopRun);
  busy->Work();
  QTest::qWait(20);
  QVERIFY(shell.Main.isVisible());
  QCOMPARE(toolLog, QStringList(u"run ended"_s));
}

void frmMainToolsTest::ADialogKeepsTheProgramOpen() {
  Shell shell;
  shell.Open(u"Printing"_s);
  bool closed = true;
  QTimer::singleShot(0, &shell.Main, [&] {
    closed = shell.Main.close();
    qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
  });
  shell.Choose(u"mnuTools_Options"_s);
  QVERIFY(!closed);
  QCOMPARE(toolLog, QStringList());
  QVERIFY(shell.Main.close());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmMainToolsTest)
#include "frmMain_tools_test.moc"
