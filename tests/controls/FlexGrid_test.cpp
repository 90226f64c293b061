#include "controls/FlexGrid.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {
namespace {

const QColor Mark(255, 0, 255);

QIcon Picture() {
  QPixmap pixmap(16, 16);
  pixmap.fill(Mark);
  return QIcon(pixmap);
}

/// Two icon columns beside two text columns and one box column, as a results grid has them.
class Rows : public QAbstractTableModel {
 public:
  explicit Rows(int count) : mCount(count), mPicture(Picture()) {}
  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : mCount; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
  QVariant headerData(int section, Qt::Orientation, int role) const override {
    return role == Qt::DisplayRole ? QVariant(section < 2 ? u"Folder / Filename"_s : u"Fix Target"_s)
                                   : QVariant();
  }
  QVariant data(const QModelIndex& index, int role) const override {
    ++mAsked;
    if (index.column() == 0 && role == Qt::DecorationRole) return mPicture;
    if (index.column() == 0 && role == Qt::AccessibleTextRole) return u"Folder"_s;
    if (index.column() == 1 && role == Qt::DisplayRole) return QString::number(index.row());
    return {};
  }

  int TimesAsked() const { return mAsked; }

 private:
  int mCount;
  QIcon mPicture;
  mutable int mAsked = 0;
};

/// The part of a picture that has the colour.
QRect Area(const QImage& image, const QColor& colour) {
  QRect area;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) == colour) area |= QRect(x, y, 1, 1);
    }
  }
  return area;
}

}  // namespace

class FlexGrid_test : public QObject {
  Q_OBJECT

 private:
  static QPoint Cell(const FlexGrid& grid, int row, int column) {
    return grid.visualRect(grid.model()->index(row, column)).center();
  }

  static void Click(FlexGrid& grid, int row, int column, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(grid.viewport(), button, {}, Cell(grid, row, column));
  }

  /// What a window system sends for a double click.
  static void DoubleClick(FlexGrid& grid, int row, int column, Qt::MouseButton button = Qt::LeftButton) {
    const QPoint place = Cell(grid, row, column);
    QTest::mouseClick(grid.viewport(), button, {}, place);
    QTest::mouseDClick(grid.viewport(), button, {}, place);
  }

 private Q_SLOTS:
  void AClickIsToldOnce() {
    Rows rows(5);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.show();
    QSignalSpy clicks(&grid, &FlexGrid::CellClicked);
    QSignalSpy activations(&grid, &FlexGrid::CellActivated);
    Click(grid, 2, 1);
    QCOMPARE(clicks.takeFirst(), QList<QVariant>({2, 1}));
    Click(grid, 3, 0, Qt::RightButton);
    QVERIFY(clicks.isEmpty());
    QVERIFY(activations.isEmpty());
  }

  void ADoubleClickIsOneClickAndOneActivation() {
    Rows rows(5);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.show();
    QSignalSpy clicks(&grid, &FlexGrid::CellClicked);
    QSignalSpy activations(&grid, &FlexGrid::CellActivated);
    DoubleClick(grid, 1, 2);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(activations.count(), 1);
    QCOMPARE(activations.takeFirst(), QList<QVariant>({1, 2}));
    DoubleClick(grid, 1, 2, Qt::RightButton);
    QVERIFY(activations.isEmpty());
  }

  void KeysClickAndActivateTheCurrentCell() {
    Rows rows(5);
    FlexGrid grid;
    grid.setModel(&rows);
    QSignalSpy clicks(&grid, &FlexGrid::CellClicked);
    QSignalSpy activations(&grid, &FlexGrid::CellActivated);
    QTest::keyClick(&grid, Qt::Key_Space);
    QVERIFY(clicks.isEmpty());
    grid.setCurrentIndex(rows.index(0, 0));
    QTest::keyClick(&grid, Qt::Key_Down);
    QTest::keyClick(&grid, Qt::Key_Right);
    QTest::keyClick(&grid, Qt::Key_Space);
    QCOMPARE(clicks.takeFirst(), QList<QVariant>({1, 1}));
    QTest::keyClick(&grid, Qt::Key_Return);
    QTest::keyClick(&grid, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(activations.count(), 2);
    QCOMPARE(activations.takeFirst(), QList<QVariant>({1, 1}));
    QVERIFY(clicks.isEmpty());
  }

  void AKeyHeldDownCountsOnce() {
    Rows rows(5);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.setCurrentIndex(rows.index(2, 2));
    QSignalSpy clicks(&grid, &FlexGrid::CellClicked);
    for (const bool isRepeat : {false, true, true}) {
      QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, isRepeat);
      QApplication::sendEvent(&grid, &press);
    }
    QCOMPARE(clicks.count(), 1);
  }

  void TabLeavesTheGrid() {
    Rows rows(5);
    QWidget window;
    FlexGrid grid(&window);
    grid.setModel(&rows);
    FlexGrid other(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_Tab);
    QVERIFY(other.hasFocus());
  }

  void PicturesAreCentred() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.setColumnWidth(0, 60);
    grid.show();
    const QRect cell = grid.visualRect(rows.index(0, 0));
    const QRect picture = Area(grid.viewport()->grab(cell).toImage(), Mark);
    QCOMPARE(picture.size(), QSize(16, 16));
    QVERIFY(std::abs(picture.left() - (cell.width() - 1 - picture.right())) <= 1);
    QVERIFY(std::abs(picture.top() - (cell.height() - 1 - picture.bottom())) <= 1);
  }

  void EqualHeadersAreDrawnAsOne() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    for (int column = 0; column < 3; ++column) grid.setColumnWidth(column, 100);
    grid.resize(400, 200);
    grid.show();
    const auto header = [&grid](int left, int width) {
      return grid.horizontalHeader()->viewport()->grab(QRect(left, 0, width, 40)).toImage();
    };
    // The same header over one column as wide as both is the same picture.
    const QImage merged = header(0, 200);
    grid.setColumnHidden(0, true);
    grid.setColumnWidth(1, 200);
    QCOMPARE(merged, header(0, 200));
  }

  void AHeaderTooLongForItsColumnsIsShortened() {
    QStandardItemModel rows(2, 1);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.setColumnWidth(0, 80);
    grid.show();
    const auto header = [&grid, &rows](const QString& text) {
      rows.setHorizontalHeaderLabels({text});
      return grid.horizontalHeader()->viewport()->grab().toImage();
    };
    QCOMPARE(header(u"Fix "_s + QString(100, u'x')), header(u"Fix "_s + QString(50, u'x')));
  }

  void ResizingAColumnRedrawsTheWholeHeader() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.resize(600, 200);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    const QImage before = grid.horizontalHeader()->viewport()->grab(QRect(0, 0, 100, 20)).toImage();
    grid.setColumnWidth(1, 300);
    QCoreApplication::processEvents();
    QVERIFY(grid.horizontalHeader()->viewport()->grab(QRect(0, 0, 100, 20)).toImage() != before);
  }

  void HorizontalScrollBarShowsOnlyWhenNeeded() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.resize(400, 200);
    grid.show();
    for (int column = 0; column < 3; ++column) grid.setColumnWidth(column, 150);
    QTRY_VERIFY(grid.horizontalScrollBar()->isVisible());
    for (int column = 0; column < 3; ++column) grid.setColumnWidth(column, 120);
    QTRY_VERIFY(!grid.horizontalScrollBar()->isVisible());
  }

  void RowsFollowTheFont() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    const int before = grid.rowHeight(0);
    QFont large = grid.font();
    large.setPointSize(30);
    grid.setFont(large);
    QVERIFY(grid.rowHeight(0) > before);
    QVERIFY(grid.rowHeight(0) >= QFontMetrics(large).height());
  }

  void PictureCellsAreAccessible() {
    Rows rows(2);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.show();
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&grid);
    QVERIFY(table && table->tableInterface());
    QCOMPARE(table->tableInterface()->cellAt(1, 0)->text(QAccessible::Name), u"Folder"_s);
    QCOMPARE(table->tableInterface()->cellAt(1, 1)->text(QAccessible::Name), u"1"_s);
  }

  void ElideModeIsPerColumn() {
    FlexGrid grid;
    grid.SetColumnElide(1, Qt::ElideMiddle);
    QCOMPARE(grid.ColumnElide(1), Qt::ElideMiddle);
    QCOMPARE(grid.ColumnElide(0), Qt::ElideRight);
  }

  void OfAMillionRowsOnlyThoseThatShowAreAskedFor() {
    Rows rows(1'000'000);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.resize(600, 400);
    grid.show();
    grid.scrollToBottom();
    grid.grab();
    QVERIFY(grid.indexAt(QPoint(5, grid.viewport()->height() - 30)).row() > 999'000);
    QVERIFY2(rows.TimesAsked() < 2'000, qPrintable(QString::number(rows.TimesAsked())));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::FlexGrid_test)
#include "FlexGrid_test.moc"
