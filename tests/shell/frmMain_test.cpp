#include "shell/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QHelpEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

#include "common/Settings.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// The main window with the real tools.
struct Shell {
  Shell() {
    Main.resize(900, 700);
    Main.show();
  }

  void Choose(const QString& item) { Main.findChild<QAction*>(item)->trigger(); }
  QToolButton* Button(const QString& key) { return Main.findChild<QToolButton*>(key); }

  QList<QMdiSubWindow*> Windows() {
    QList<QMdiSubWindow*> windows = Main.findChild<QMdiArea*>()->subWindowList();
    windows.removeIf([](const QMdiSubWindow* window) { return window->isHidden(); });
    return windows;
  }

  QString Captions() {
    QStringList captions;
    for (const QMdiSubWindow* window : Windows()) captions.append(window->windowTitle());
    return captions.join(u'\n');
  }

  frmMain Main{ToolTable()};
};

/// A menu bar as an indented text.
QString Outline(const QMenuBar* bar) {
  QStringList lines;
  for (const QAction* top : bar->actions()) {
    const auto* menu = qobject_cast<QMenu*>(top->menu());
    lines.append(menu->objectName() + u' ' + menu->title());
    for (const QAction* item : menu->actions())
      lines.append(u"  "_s + item->objectName() + u' ' + (item->isSeparator() ? u"-"_s : item->text()));
  }
  return lines.join(u'\n');
}

/// Closes the modal dialog that is about to open and notes its caption.
void AnswerDialog(QString& caption) {
  QTimer::singleShot(0, qApp, [&caption] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    caption = dialog->objectName() + u' ' + dialog->windowTitle();
    dialog->reject();
  });
}

}  // namespace

class frmMainTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void Caption();
  void Menus();
  void Toolbar();
  void ToolTips();
  void ButtonsHaveThePicturesOfTheirKeys();
  void EveryControlHasAName();
  void ItFollowsADarkPalette();
  void NoToolIsOpenAtStart();
  void MaximisedAtStart_data();
  void MaximisedAtStart();
  void MenuAndButtonOpenTheSame_data();
  void MenuAndButtonOpenTheSame();
  void ManyWindowsOfOneTool();
  void OneWindowOfASingleTool();
  void ASingleToolThatWasClosedOpensAgain();
  void ASingleToolComesBackFromMinimised();
  void ChildMaximized();
  void ChildMaximizedIsNotANumber();
  void ANewWindowBesideAMaximisedOne();
  void WindowsHaveTheirToolsPicture();
  void CloseClosesTheActiveWindow();
  void CloseAllKeepsTheMainWindow();
  void ArrangeItems();
  void TheListOfWindows();
  void Shortcuts();
  void AnAcceleratorOfTheActiveWindowComesBeforeTheMenus();
  void MissingHelpFile();
  void TheHelpKey();
  void Dialogs();
};

void frmMainTest::init() {
  for (const QString& key : {u"AppMaximized"_s, u"ChildMaximized"_s}) DeleteSetting(u"General"_s, key);
}

void frmMainTest::Caption() {
  Shell shell;
  QCOMPARE(shell.Main.windowTitle(), u"Brackwell"_s);
}

void frmMainTest::Menus() {
  Shell shell;
  QCOMPARE(Outline(shell.Main.menuBar()),
           uR"(mnuFile &File
  mnuFile_Print &Print...
  mnuFile_Close &Close...
  mnuFile_Sep1 -
  mnuFile_Exit E&xit
mnuTools &Tools
  mnuTools_Compare &Compare directories...
  mnuTools_DirDisplay &Directory display...
  mnuTools_DriveInfo Dri&ve info...
  mnuTools_Replace Find and &replace...
  mnuTools_FontDisplay &Font sample...
  mnuTools_RenameImages Rename &images...
  mnuTools_Sep1 -
  mnuTools_Options &Options...
mnuWindow &Window
  mnuWindow_TileH Tile &Horizontally
  mnuWindow_TileV Tile &Vertically
  mnuWindow_Cascade &Cascade
  mnuWindow_Arrange &Arrange
  mnuWindow_CloseAll Clos&e All
mnuHelp &Help
  mnuHelp_Contents &Contents
  mnuHelp_Search &Search
  mnuHelp_Sep1 -
  mnuHelp_About &About...)"_s);
  for (const QAction* item : shell.Main.findChildren<QAction*>(QRegularExpression(u"^mnu.+_"_s)))
    QCOMPARE(item->isEnabled(), item->objectName() != u"mnuFile_Print"_s);
}

void frmMainTest::Toolbar() {
  Shell shell;
  const auto* tlbMain = shell.Main.findChild<QToolBar*>(u"tlbMain"_s);
  QStringList lines;
  for (QAction* action : tlbMain->actions()) {
    const auto* button = qobject_cast<QToolButton*>(tlbMain->widgetForAction(action));
    lines.append(button
                     ? u"%1|%2|%3|%4"_s.arg(button->objectName(), button->toolTip(), button->accessibleName(),
                                            button->isEnabled() ? u"on"_s : u"off"_s)
                     : u"-"_s);
  }
  QCOMPARE(lines.join(u'\n'),
           uR"(Print||Print|off
-
DirCompare|Compare directory contents|Compare directory contents|on
DirDisplay|Display and print folder contents|Display and print folder contents|on
FontDisplay|Sample text in multiple fonts|Sample text in multiple fonts|on
Replace|Find and replace|Find and replace|on
RenImages|Rename image files|Rename image files|on
Drive|Display disk drive information|Display disk drive information|on)"_s);
  QCOMPARE(tlbMain->toolButtonStyle(), Qt::ToolButtonIconOnly);
}

void frmMainTest::ToolTips() {
  Shell shell;
  const auto shown = [&shell](const QString& key) {
    QToolTip::hideText();
    QToolButton* button = shell.Button(key);
    QHelpEvent event(QEvent::ToolTip, QPoint(4, 4), button->mapToGlobal(QPoint(4, 4)));
    QApplication::sendEvent(button, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
  };
  QCOMPARE(shown(u"DirCompare"_s), u"Compare directory contents"_s);
  QToolTip::hideText();
  QTRY_VERIFY(!QToolTip::isVisible());
  QCOMPARE(shown(u"Print"_s), QString());
  shell.Main.tlbMain_ENABLE(u"Print"_s, true);
  QCOMPARE(shown(u"Print"_s), QString());
}

void frmMainTest::ButtonsHaveThePicturesOfTheirKeys() {
  Shell shell;
  for (const QString& key : {u"Print"_s, u"DirCompare"_s, u"DirDisplay"_s, u"FontDisplay"_s, u"Replace"_s,
                             u"RenImages"_s, u"Drive"_s}) {
    QCOMPARE(shell.Main.Images().MatchPicture(shell.Button(key)->icon()), key);
    QCOMPARE(shell.Button(key)->iconSize(), QSize(16, 16));
  }
}

void frmMainTest::EveryControlHasAName() {
  Shell shell;
  QVERIFY(!shell.Main.menuBar()->accessibleName().isEmpty());
  QVERIFY(!shell.Main.findChild<QToolBar*>(u"tlbMain"_s)->accessibleName().isEmpty());
  QVERIFY(!shell.Main.findChild<QMdiArea*>()->accessibleName().isEmpty());
}

void frmMainTest::ItFollowsADarkPalette() {
  Shell shell;
  const QPalette before = QApplication::palette();
  const QPalette dark(QColor(45, 45, 48));
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  QCOMPARE(shell.Main.findChild<QMdiArea*>()->background().color(), dark.color(QPalette::Dark));
  QApplication::setPalette(before);
}

void frmMainTest::NoToolIsOpenAtStart() {
  Shell shell;
  QCOMPARE(shell.Captions(), QString());
  QVERIFY(!shell.Main.Images().isVisible());
}

void frmMainTest::MaximisedAtStart_data() {
  QTest::addColumn<QString>("stored");
  QTest::addColumn<bool>("maximised");
  QTest::newRow("nothing") << QString() << false;
  QTest::newRow("1") << u"1"_s << true;
  QTest::newRow("0") << u"0"_s << false;
  QTest::newRow("2") << u"2"_s << false;
  QTest::newRow("no number") << u"yes"_s << false;
}

void frmMainTest::MaximisedAtStart() {
  QFETCH(QString, stored);
  QFETCH(bool, maximised);
  if (!stored.isNull()) SaveSetting(u"General"_s, u"AppMaximized"_s, stored);
  frmMain main(ToolTable());
  main.show();
  QCOMPARE(main.isMaximized(), maximised);
}

void frmMainTest::MenuAndButtonOpenTheSame_data() {
  QTest::addColumn<QString>("key");
  QTest::addColumn<QString>("item");
  QTest::addColumn<QString>("caption");
  QTest::newRow("compare") << u"DirCompare"_s << u"mnuTools_Compare"_s << u"Directory Comparison"_s;
  QTest::newRow("display") << u"DirDisplay"_s << u"mnuTools_DirDisplay"_s << u"Directory Display"_s;
  QTest::newRow("fonts") << u"FontDisplay"_s << u"mnuTools_FontDisplay"_s << u"Font Sample"_s;
  QTest::newRow("replace") << u"Replace"_s << u"mnuTools_Replace"_s << u"Find and Replace"_s;
  QTest::newRow("rename") << u"RenImages"_s << u"mnuTools_RenameImages"_s << u"Rename Image Files"_s;
  QTest::newRow("drives") << u"Drive"_s << u"mnuTools_DriveInfo"_s << u"Disk Drive Information"_s;
}

void frmMainTest::MenuAndButtonOpenTheSame() {
  QFETCH(QString, key);
  QFETCH(QString, item);
  QFETCH(QString, caption);
  Shell byMenu;
  byMenu.Choose(item);
  QCOMPARE(byMenu.Captions(), caption);
  Shell byButton;
  QTest::mouseClick(byButton.Button(key), Qt::LeftButton);
  QCOMPARE(byButton.Captions(), caption);
}

void frmMainTest::ManyWindowsOfOneTool() {
  Shell shell;
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Choose(u"mnuTools_Compare"_s);
  QCOMPARE(shell.Captions(), u"Directory Comparison\nDirectory Comparison"_s);
  QVERIFY(shell.Windows()[0]->widget() != shell.Windows()[1]->widget());
  shell.Windows()[0]->close();
  QCOMPARE(shell.Captions(), u"Directory Comparison"_s);
}

void frmMainTest::OneWindowOfASingleTool() {
  Shell shell;
  shell.Choose(u"mnuTools_DriveInfo"_s);
  QMdiSubWindow* drives = shell.Windows()[0];
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Choose(u"mnuTools_DriveInfo"_s);
  QCOMPARE(shell.Captions(), u"Disk Drive Information\nDirectory Comparison"_s);
  QCOMPARE(shell.Main.findChild<QMdiArea*>()->currentSubWindow(), drives);
}

void frmMainTest::ASingleToolThatWasClosedOpensAgain() {
  Shell shell;
  shell.Choose(u"mnuTools_FontDisplay"_s);
  shell.Windows()[0]->close();
  shell.Choose(u"mnuTools_FontDisplay"_s);
  QCOMPARE(shell.Captions(), u"Font Sample"_s);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCOMPARE(shell.Captions(), u"Font Sample"_s);
}

void frmMainTest::ASingleToolComesBackFromMinimised() {
  Shell shell;
  shell.Choose(u"mnuTools_DriveInfo"_s);
  QMdiSubWindow* drives = shell.Windows()[0];
  drives->showMinimized();
  shell.Choose(u"mnuTools_DriveInfo"_s);
  QCOMPARE(shell.Windows(), QList<QMdiSubWindow*>{drives});
  QVERIFY(!drives->isMinimized());
}

void frmMainTest::ChildMaximized() {
  SaveSetting(u"General"_s, u"ChildMaximized"_s, u"1"_s);
  const QMap<QString, bool> maximised = {{u"DirCompare"_s, false}, {u"DirDisplay"_s, false},
                                         {u"Drive"_s, false},      {u"FontDisplay"_s, true},
                                         {u"Replace"_s, true},     {u"RenImages"_s, true}};
  for (const QString& key : maximised.keys()) {
    Shell shell;
    shell.Button(key)->click();
    QCOMPARE(shell.Windows()[0]->isMaximized(), maximised[key]);
  }
}

void frmMainTest::ChildMaximizedIsNotANumber() {
  SaveSetting(u"General"_s, u"ChildMaximized"_s, u"always"_s);
  Shell shell;
  shell.Choose(u"mnuTools_Replace"_s);
  QVERIFY(!shell.Windows()[0]->isMaximized());
}

void frmMainTest::ANewWindowBesideAMaximisedOne() {
  Shell shell;
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Windows()[0]->showMaximized();
  shell.Choose(u"mnuTools_Replace"_s);
  QMdiSubWindow* opened = shell.Windows()[1];
  QVERIFY(opened->isMaximized());
  QCOMPARE(shell.Main.findChild<QMdiArea*>()->currentSubWindow(), opened);
  opened->showNormal();
  QCOMPARE(opened->size(), opened->sizeHint());
}

void frmMainTest::WindowsHaveTheirToolsPicture() {
  Shell shell;
  shell.Choose(u"mnuTools_Replace"_s);
  QCOMPARE(shell.Main.Images().MatchPicture(shell.Windows()[0]->windowIcon()), u"Replace"_s);
}

void frmMainTest::CloseClosesTheActiveWindow() {
  Shell shell;
  shell.Choose(u"mnuFile_Close"_s);
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Choose(u"mnuTools_Replace"_s);
  shell.Choose(u"mnuFile_Close"_s);
  QCOMPARE(shell.Captions(), u"Directory Comparison"_s);
  shell.Windows()[0]->showMinimized();
  shell.Choose(u"mnuFile_Close"_s);
  QCOMPARE(shell.Captions(), QString());
}

void frmMainTest::CloseAllKeepsTheMainWindow() {
  Shell shell;
  for (const QString& key : {u"DirCompare"_s, u"DirCompare"_s, u"Drive"_s}) shell.Button(key)->click();
  shell.Windows()[1]->showMinimized();
  shell.Choose(u"mnuWindow_CloseAll"_s);
  QCOMPARE(shell.Captions(), QString());
  QVERIFY(shell.Main.isVisible());
  QCOMPARE(shell.Main.Images().imlIcons16.size(), std::size_t{18});
}

void frmMainTest::ArrangeItems() {
  Shell shell;
  shell.Main.resize(1300, 900);
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Choose(u"mnuTools_Replace"_s);
  const QSize space = shell.Main.findChild<QMdiArea*>()->maximumViewportSize();
  const auto sizes = [&shell] {
    return QList<QSize>{shell.Windows()[0]->size(), shell.Windows()[1]->size()};
  };
  shell.Choose(u"mnuWindow_TileH"_s);
  QCOMPARE(sizes()[0].width(), space.width());
  QCOMPARE(sizes()[0].height() + sizes()[1].height(), space.height());
  shell.Choose(u"mnuWindow_TileV"_s);
  QCOMPARE(sizes()[0].height(), space.height());
  QCOMPARE(sizes()[0].width() + sizes()[1].width(), space.width());
  shell.Choose(u"mnuWindow_Cascade"_s);
  QCOMPARE(sizes()[0], shell.Windows()[0]->sizeHint());
  shell.Windows()[0]->showMinimized();
  shell.Windows()[0]->move(100, 100);
  shell.Choose(u"mnuWindow_Arrange"_s);
  QCOMPARE(shell.Windows()[0]->geometry().bottomLeft(), QPoint(0, space.height() - 1));
}

void frmMainTest::TheListOfWindows() {
  Shell shell;
  shell.Choose(u"mnuTools_Compare"_s);
  shell.Choose(u"mnuTools_Compare"_s);
  auto* menu = shell.Main.findChild<QMenu*>(u"mnuWindow"_s);
  Q_EMIT menu->aboutToShow();
  QStringList entries;
  for (const QAction* action : menu->actions().mid(5))
    entries.append((action->isSeparator() ? u"-"_s : action->text()) +
                   (action->isChecked() ? u"*"_s : u""_s));
  QCOMPARE(entries.join(u'\n'), u"-\n&1 Directory Comparison:1\n&2 Directory Comparison:2*"_s);
  menu->actions()[6]->trigger();
  QCOMPARE(shell.Main.findChild<QMdiArea*>()->currentSubWindow(), shell.Windows()[0]);
  QCOMPARE(shell.Captions(), u"Directory Comparison\nDirectory Comparison"_s);
}

void frmMainTest::Shortcuts() {
  for (const QKeySequence& close : {QKeySequence(u"Ctrl+F4"_s), QKeySequence(u"Ctrl+W"_s)}) {
    Shell shell;
    QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
    shell.Choose(u"mnuTools_Compare"_s);
    QTest::keySequence(&shell.Main, close);
    QCOMPARE(shell.Captions(), QString());
    shell.Choose(u"mnuTools_Compare"_s);
    shell.Windows()[0]->showMaximized();
    QTest::keySequence(&shell.Main, close);
    QCOMPARE(shell.Captions(), QString());
  }
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  QTest::keySequence(&shell.Main, QKeySequence(u"Ctrl+Q"_s));
  QVERIFY(!shell.Main.isVisible());
}

void frmMainTest::AnAcceleratorOfTheActiveWindowComesBeforeTheMenus() {
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  shell.Choose(u"mnuTools_Compare"_s);
  auto* mnuFile = shell.Main.findChild<QMenu*>(u"mnuFile"_s);
  auto* cmdFix = shell.Main.findChild<QPushButton*>(u"cmdFix"_s);
  MessageBoxes boxes;
  cmdFix->show();
  QTest::keyClick(shell.Main.focusWidget(), Qt::Key_F, Qt::AltModifier);
  QTRY_COMPARE(boxes.Shown().size(), std::size_t{1});
  QCOMPARE(boxes.TakeTexts(), QStringList(u"0 files/folders have been fixed."_s));
  QVERIFY(cmdFix->isHidden());
  QVERIFY(!mnuFile->isVisible());
  shell.Main.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  QTest::keyClick(shell.Main.focusWidget(), Qt::Key_F, Qt::AltModifier);
  QVERIFY(mnuFile->isVisible());
}

void frmMainTest::MissingHelpFile() {
  const StandInOpener opener;
  Shell shell;
  for (const QString& item : {u"mnuHelp_Contents"_s, u"mnuHelp_Search"_s}) {
    const MessageBoxes boxes;
    shell.Choose(item);
    QCOMPARE(boxes.Shown().size(), std::size_t{1});
    const ShownBox& box = boxes.Shown().front();
    QCOMPARE(box.Text, u"Cannot find help file."_s);
    QCOMPARE(box.Title, u"Brackwell Help"_s);
    QCOMPARE(box.Icon, QMessageBox::Critical);
    QCOMPARE(box.Buttons, QMessageBox::Ok);
  }
  QVERIFY(opener.Opened().isEmpty());
}

void frmMainTest::TheHelpKey() {
  Shell shell;
  QVERIFY(QTest::qWaitForWindowActive(&shell.Main));
  MessageBoxes boxes;
  QTest::keySequence(&shell.Main, QKeySequence(u"F1"_s));
  QCOMPARE(boxes.TakeTexts(), QStringList(u"Cannot find help file."_s));
}

void frmMainTest::Dialogs() {
  Shell shell;
  QString caption;
  AnswerDialog(caption);
  shell.Choose(u"mnuTools_Options"_s);
  QCOMPARE(caption, u"frmOptions Options"_s);
  AnswerDialog(caption);
  shell.Choose(u"mnuHelp_About"_s);
  QCOMPARE(caption, u"frmAbout About Brackwell"_s);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmMainTest)
#include "frmMain_test.moc"
