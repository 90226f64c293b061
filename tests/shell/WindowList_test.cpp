#include "shell/WindowList.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>

#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

struct Desk {
  Desk() {
    Menu.setObjectName(u"mnuWindow"_s);
    Menu.addAction(u"&Cascade"_s);
    new WindowList(Menu, Area);
    Area.resize(600, 400);
    Area.show();
  }

  QMdiSubWindow* Open(const QString& caption) {
    QMdiSubWindow* window = Area.addSubWindow(new QWidget);
    window->setWindowTitle(caption);
    window->show();
    return window;
  }

  /// What the menu shows when it is opened, the ticked entry marked by a star.
  QString Shown() {
    Q_EMIT Menu.aboutToShow();
    QStringList lines;
    for (const QAction* action : Menu.actions())
      lines.append(action->isSeparator() ? u"-"_s : action->text() + (action->isChecked() ? u" *"_s : u""_s));
    return lines.join(u'\n');
  }

  QMdiArea Area;
  QMenu Menu;
};

}  // namespace

class WindowListTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void NoWindowsNoSeparator();
  void TheActiveWindowIsTicked();
  void WindowsOfOneCaptionAreToldApart();
  void NineCanBeChosenByDigitAndAllAreThere();
  void CaptionsAreShownAsTheyAre();
  void ChoosingActivatesAndRestores();
  void ClosedWindowsAreGone();
};

void WindowListTest::NoWindowsNoSeparator() { QCOMPARE(Desk().Shown(), u"&Cascade"_s); }

void WindowListTest::TheActiveWindowIsTicked() {
  Desk desk;
  QMdiSubWindow* first = desk.Open(u"Font Sample"_s);
  desk.Open(u"Find and Replace"_s);
  QCOMPARE(desk.Shown(), u"&Cascade\n-\n&1 Font Sample\n&2 Find and Replace *"_s);
  desk.Area.setActiveSubWindow(first);
  QCOMPARE(desk.Shown(), u"&Cascade\n-\n&1 Font Sample *\n&2 Find and Replace"_s);
}

void WindowListTest::WindowsOfOneCaptionAreToldApart() {
  QCOMPARE(WindowListTexts({u"A"_s, u"B"_s, u"A"_s, u"A"_s}),
           QStringList({u"&1 A:1"_s, u"&2 B"_s, u"&3 A:2"_s, u"&4 A:3"_s}));
}

void WindowListTest::NineCanBeChosenByDigitAndAllAreThere() {
  QStringList captions;
  for (int i = 1; i <= 11; ++i) captions.append(QString(u'a').repeated(i));
  const QStringList texts = WindowListTexts(captions);
  QCOMPARE(texts.size(), 11);
  QCOMPARE(texts[8], u"&9 aaaaaaaaa"_s);
  QCOMPARE(texts[9], u"10 aaaaaaaaaa"_s);
  QCOMPARE(texts[10], u"11 aaaaaaaaaaa"_s);
}

void WindowListTest::CaptionsAreShownAsTheyAre() {
  QCOMPARE(WindowListTexts({u"Salt & Pepper %1"_s}), QStringList(u"&1 Salt && Pepper %1"_s));
}

void WindowListTest::ChoosingActivatesAndRestores() {
  Desk desk;
  QMdiSubWindow* first = desk.Open(u"First"_s);
  desk.Open(u"Second"_s);
  first->showMinimized();
  desk.Shown();
  desk.Menu.findChild<QAction*>(u"mnuWindow_List1"_s)->trigger();
  QCOMPARE(desk.Area.currentSubWindow(), first);
  QVERIFY(!first->isMinimized());
}

void WindowListTest::ClosedWindowsAreGone() {
  Desk desk;
  QMdiSubWindow* first = desk.Open(u"First"_s);
  desk.Open(u"Second"_s)->close();
  QCOMPARE(desk.Shown(), u"&Cascade\n-\n&1 First *"_s);
  first->close();
  QCOMPARE(desk.Shown(), u"&Cascade"_s);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::WindowListTest)
#include "WindowList_test.moc"
