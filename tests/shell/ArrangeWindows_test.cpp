#include "shell/ArrangeWindows.h"

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRegion>
#include <QTest>
#include <QTextEdit>

#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// An area with a number of windows, the last one active.
struct Desk {
  explicit Desk(int count) {
    Area.resize(700, 503);
    Area.show();
    for (int i = 0; i < count; ++i) Open();
  }

  void Open() {
    auto* content = new QLabel;
    content->setMinimumSize(200, 100);
    Open(content);
  }

  void Open(QWidget* content) {
    QMdiSubWindow* window = Area.addSubWindow(content);
    PlaceNewWindow(Area, *window);
    window->show();
    Windows.append(window);
  }

  QRect Whole() const { return {QPoint(0, 0), Area.maximumViewportSize()}; }

  QMdiArea Area;
  QList<QMdiSubWindow*> Windows;
};

/// What the windows cover; nothing where two of them overlap.
QRegion Cover(const QList<QMdiSubWindow*>& windows) {
  QRegion cover;
  for (const QMdiSubWindow* window : windows) {
    if (cover.intersects(window->geometry())) return {};
    cover += window->geometry();
  }
  return cover;
}

}  // namespace

class ArrangeWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void TilesCoverTheAreaWithoutOverlap_data();
  void TilesCoverTheAreaWithoutOverlap();
  void TheActiveWindowIsTheFirstTile();
  void AMaximisedWindowIsTiledToo();
  void MinimisedWindowsStayBelowTheTiles();
  void ManyMinimisedWindowsMakeRows();
  void CascadeShowsEveryTitle();
  void ACascadeOfLargeWindowsShowsEveryTitle();
  void CascadeKeepsTheActiveWindow();
  void NewWindowsAreLargeEnoughAndApart();
  void ANewWindowTakesTheFreePlace();
  void ManyNewWindowsStayInside();
  void BringForwardRestores();
  void BringForwardKeepsAMaximisedWindowMaximised();
  void NothingToArrange();
};

void ArrangeWindowsTest::TilesCoverTheAreaWithoutOverlap_data() {
  QTest::addColumn<int>("count");
  for (const int count : {1, 2, 3, 4, 7, 12}) QTest::addRow("%d", count) << count;
}

void ArrangeWindowsTest::TilesCoverTheAreaWithoutOverlap() {
  QFETCH(int, count);
  Desk desk(count);
  ArrangeWindows(desk.Area, ArrangeMode::TileHorizontally);
  QCOMPARE(Cover(desk.Windows), QRegion(desk.Whole()));
  for (const QMdiSubWindow* window : desk.Windows) QCOMPARE(window->width(), desk.Whole().width());

  ArrangeWindows(desk.Area, ArrangeMode::TileVertically);
  QCOMPARE(Cover(desk.Windows), QRegion(desk.Whole()));
  for (const QMdiSubWindow* window : desk.Windows) QCOMPARE(window->height(), desk.Whole().height());
}

void ArrangeWindowsTest::TheActiveWindowIsTheFirstTile() {
  Desk desk(3);
  desk.Area.setActiveSubWindow(desk.Windows[1]);
  ArrangeWindows(desk.Area, ArrangeMode::TileHorizontally);
  QCOMPARE(desk.Windows[1]->pos(), QPoint(0, 0));
  QCOMPARE(desk.Area.currentSubWindow(), desk.Windows[1]);
  ArrangeWindows(desk.Area, ArrangeMode::TileVertically);
  QCOMPARE(desk.Windows[1]->pos(), QPoint(0, 0));
}

void ArrangeWindowsTest::AMaximisedWindowIsTiledToo() {
  Desk desk(3);
  desk.Windows[2]->showMaximized();
  ArrangeWindows(desk.Area, ArrangeMode::TileVertically);
  QVERIFY(!desk.Windows[2]->isMaximized());
  QCOMPARE(Cover(desk.Windows), QRegion(desk.Whole()));
  QCOMPARE(desk.Area.currentSubWindow(), desk.Windows[2]);
}

void ArrangeWindowsTest::MinimisedWindowsStayBelowTheTiles() {
  Desk desk(4);
  desk.Windows[0]->showMinimized();
  desk.Windows[3]->showMinimized();
  ArrangeWindows(desk.Area, ArrangeMode::TileHorizontally);
  QVERIFY(desk.Windows[0]->isMinimized());
  QVERIFY(desk.Windows[3]->isMinimized());
  QCOMPARE(desk.Windows[0]->geometry().bottomLeft(), desk.Whole().bottomLeft());
  QCOMPARE(desk.Windows[3]->geometry().bottomLeft(),
           desk.Windows[0]->geometry().bottomRight() + QPoint(1, 0));
  const QRect above = desk.Whole().adjusted(0, 0, 0, -desk.Windows[0]->height());
  QCOMPARE(Cover({desk.Windows[1], desk.Windows[2]}), QRegion(above));
}

void ArrangeWindowsTest::ManyMinimisedWindowsMakeRows() {
  Desk desk(8);
  const QRect normal = desk.Windows[7]->geometry();
  for (int i = 0; i < 7; ++i) desk.Windows[i]->showMinimized();
  for (int i = 0; i < 7; ++i) desk.Windows[i]->move(40 * i, 11 * i);
  ArrangeWindows(desk.Area, ArrangeMode::ArrangeIcons);
  const QList<QMdiSubWindow*> icons = desk.Windows.mid(0, 7);
  QVERIFY(!Cover(icons).isEmpty());
  QVERIFY(desk.Whole().contains(Cover(icons).boundingRect()));
  QCOMPARE(Cover(icons).boundingRect().bottomLeft(), desk.Whole().bottomLeft());
  QVERIFY(icons[6]->y() < icons[0]->y());
  QCOMPARE(desk.Windows[7]->geometry(), normal);
}

void ArrangeWindowsTest::CascadeShowsEveryTitle() {
  Desk desk(4);
  ArrangeWindows(desk.Area, ArrangeMode::TileVertically);
  ArrangeWindows(desk.Area, ArrangeMode::Cascade);
  QMap<int, QPoint> places;
  for (const QMdiSubWindow* window : desk.Windows) {
    places.insert(window->y(), window->pos());
    QCOMPARE(window->size(), window->sizeHint());
  }
  QCOMPARE(places.size(), 4);
  const QList<QPoint> inOrder = places.values();
  QCOMPARE(inOrder[0], QPoint(0, 0));
  for (int i = 1; i < 4; ++i) {
    QVERIFY(inOrder[i].x() > inOrder[i - 1].x() + 10);
    QVERIFY(inOrder[i].y() > inOrder[i - 1].y() + 10);
  }
}

void ArrangeWindowsTest::ACascadeOfLargeWindowsShowsEveryTitle() {
  Desk desk(0);
  for (int i = 0; i < 4; ++i) desk.Open(new QTextEdit);
  desk.Area.resize(desk.Windows[0]->sizeHint() + QSize(5, 5));
  ArrangeWindows(desk.Area, ArrangeMode::Cascade);
  QSet<int> tops;
  for (const QMdiSubWindow* window : desk.Windows) {
    tops.insert(window->y());
    QVERIFY(desk.Whole().contains(window->geometry()));
  }
  QCOMPARE(tops.size(), 4);
}

void ArrangeWindowsTest::CascadeKeepsTheActiveWindow() {
  Desk desk(3);
  desk.Area.setActiveSubWindow(desk.Windows[0]);
  ArrangeWindows(desk.Area, ArrangeMode::Cascade);
  QCOMPARE(desk.Area.currentSubWindow(), desk.Windows[0]);
  QVERIFY(desk.Windows[0]->y() > desk.Windows[2]->y());
}

void ArrangeWindowsTest::NewWindowsAreLargeEnoughAndApart() {
  const Desk desk(2);
  QCOMPARE(desk.Windows[0]->pos(), QPoint(0, 0));
  QCOMPARE(desk.Windows[0]->size(), desk.Windows[0]->sizeHint());
  QVERIFY(desk.Windows[1]->x() > 10);
  QVERIFY(desk.Windows[1]->y() > 10);
  QCOMPARE(desk.Windows[1]->size(), desk.Windows[1]->sizeHint());
}

void ArrangeWindowsTest::ANewWindowTakesTheFreePlace() {
  Desk desk(3);
  const QPoint free = desk.Windows[1]->pos();
  desk.Windows.takeAt(1)->close();
  desk.Open();
  QCOMPARE(desk.Windows[2]->pos(), free);
}

void ArrangeWindowsTest::ManyNewWindowsStayInside() {
  const Desk desk(40);
  for (const QMdiSubWindow* window : desk.Windows) QVERIFY(desk.Whole().contains(window->geometry()));
}

void ArrangeWindowsTest::BringForwardRestores() {
  Desk desk(2);
  const QRect before = desk.Windows[0]->geometry();
  desk.Windows[0]->showMinimized();
  desk.Area.setActiveSubWindow(desk.Windows[1]);
  BringForward(desk.Area, *desk.Windows[0]);
  QCOMPARE(desk.Area.currentSubWindow(), desk.Windows[0]);
  QVERIFY(!desk.Windows[0]->isMinimized());
  QCOMPARE(desk.Windows[0]->geometry(), before);
}

void ArrangeWindowsTest::BringForwardKeepsAMaximisedWindowMaximised() {
  Desk desk(2);
  desk.Windows[1]->showMaximized();
  BringForward(desk.Area, *desk.Windows[1]);
  QVERIFY(desk.Windows[1]->isMaximized());
  QCOMPARE(desk.Area.currentSubWindow(), desk.Windows[1]);
}

void ArrangeWindowsTest::NothingToArrange() {
  Desk desk(0);
  for (const ArrangeMode mode : {ArrangeMode::Cascade, ArrangeMode::TileHorizontally,
                                 ArrangeMode::TileVertically, ArrangeMode::ArrangeIcons})
    ArrangeWindows(desk.Area, mode);
  QVERIFY(desk.Area.subWindowList().isEmpty());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::ArrangeWindowsTest)
#include "ArrangeWindows_test.moc"
