#include "common/FormHelpers.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

#include "controls/FlexGrid.h"
#include "controls/ListView.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"

using namespace Qt::StringLiterals;

namespace brackwell {
namespace {

const QColor PaleYellow(255, 255, 204);

QList<int> Widths(const QHeaderView* header) {
  QList<int> widths;
  for (int column = 0; column < header->count(); ++column) widths << header->sectionSize(column);
  return widths;
}

/// A control shown just as wide as asked, in twips.
void ShowWide(QWidget& control, double twips) {
  control.resize(static_cast<int>(std::lround(twips / TwipsPerPixel())), 200);
  control.show();
}

int Pixels(double twips) { return static_cast<int>(twips / TwipsPerPixel()); }

}  // namespace

class FormHelpers_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void SharesAreOfWhatFixedWidthsLeave() {
    QCOMPARE(ColumnWidths(5000, 300, {1500, 0.5, 0.5}), (std::vector<double>{1500, 1600, 1600}));
    QCOMPARE(ColumnWidths(5000, 300, {0.25, 0, 700, 0.25}), (std::vector<double>{1000, 0, 700, 1000}));
  }

  void SharesAreRoundedHalfToEven() {
    QCOMPARE(ColumnWidths(1001, 0, {0.5}), (std::vector<double>{500}));
    QCOMPARE(ColumnWidths(1003, 0, {0.5}), (std::vector<double>{502}));
    QCOMPARE(ColumnWidths(1000.5, 0, {0.5}), (std::vector<double>{500}));
    QCOMPARE(ColumnWidths(1000, 0, {1.5, 0.5}), (std::vector<double>{1.5, 499}));
  }

  void SharesAreNotNormalised() {
    QCOMPARE(ColumnWidths(1000, 0, {0.25, 0.25}), (std::vector<double>{250, 250}));
    QCOMPARE(ColumnWidths(1000, 0, {0.75, 0.75}), (std::vector<double>{750, 750}));
  }

  void OneIsAFixedWidthAndNotAShare() {
    QCOMPARE(ColumnWidths(1000, 0, {1, 0.5}), (std::vector<double>{1, 500}));
  }

  void NothingIsLeftForSharesInANarrowControl() {
    QCOMPARE(ColumnWidths(300, 100, {500, 0.5}), (std::vector<double>{500, 0}));
    QCOMPARE(ColumnWidths(300, 100, {}), (std::vector<double>{}));
  }

  void ScrollBarAllowanceCoversTheScrollBar() {
    const int bar = QScrollBar(Qt::Vertical).sizeHint().width();
    QCOMPARE(ScrollBarAllowance(), static_cast<std::int16_t>(std::nearbyint(bar * TwipsPerPixel() + 85)));
  }

  void ListColumnsAreResized() {
    QStandardItemModel items(1, 3);
    ListView list;
    list.setModel(&items);
    ShowWide(list, 5000);
    ListView_ColumnResize(list, {1500, 0.5, 0.5});
    const int half =
        Pixels(std::nearbyint((list.width() * TwipsPerPixel() - ScrollBarAllowance() - 1500) / 2));
    QCOMPARE(Widths(list.header()), QList<int>({Pixels(1500), half, half}));
  }

  void GridColumnsAreResizedAndHidden() {
    QStandardItemModel items(1, 3);
    FlexGrid grid;
    grid.setModel(&items);
    ShowWide(grid, 6000);
    FlexGrid_ColumnResize(grid, {0, 750, 0.5});
    QVERIFY(grid.isColumnHidden(0));
    QCOMPARE(grid.columnWidth(1), Pixels(750));
    FlexGrid_ColumnResize(grid, {600, 750, 0.5});
    QVERIFY(!grid.isColumnHidden(0));
    QCOMPARE(grid.columnWidth(0), Pixels(600));
  }

  void WholeSharesNeedNoHorizontalScrollBar_data() {
    QTest::addColumn<int>("width");
    for (int width = 400; width < 420; ++width) QTest::newRow(qPrintable(QString::number(width))) << width;
  }
  void WholeSharesNeedNoHorizontalScrollBar() {
    QFETCH(int, width);
    QStandardItemModel items(500, 6);
    FlexGrid grid;
    grid.setModel(&items);
    grid.resize(width, 200);
    grid.show();
    FlexGrid_ColumnResize(grid, {500, 0.5, 500, 0.3, 0.1, 0.1});
    QTRY_VERIFY(!grid.horizontalScrollBar()->isVisible());
    QVERIFY(grid.verticalScrollBar()->isVisible());
  }

  void WrongNumberOfGridWidthsChangesNothing() {
    QStandardItemModel items(1, 3);
    FlexGrid grid;
    grid.setModel(&items);
    const QList<int> before = Widths(grid.horizontalHeader());
    MessageBoxes boxes;
    FlexGrid_ColumnResize(grid, {500, 0.5});
    QCOMPARE(boxes.Shown().size(), std::size_t{1});
    QCOMPARE(
        boxes.Shown()[0].Text,
        u"ERROR: ILLEGAL CALL TO FlexGrid_ColumnResize.  ParamArray size does not match the # of columns."_s);
    QCOMPARE(boxes.Shown()[0].Title, u"FlexGrid_ColumnResize"_s);
    QCOMPARE(boxes.Shown()[0].Icon, QMessageBox::Critical);
    QCOMPARE(Widths(grid.horizontalHeader()), before);
  }

  void WrongNumberOfListWidthsChangesNothing() {
    QStandardItemModel items(1, 2);
    ListView list;
    list.setModel(&items);
    const QList<int> before = Widths(list.header());
    MessageBoxes boxes;
    ListView_ColumnResize(list, {500, 0.5, 0.5});
    QCOMPARE(boxes.Shown().size(), std::size_t{1});
    QCOMPARE(boxes.Shown()[0].Text,
             u"ERROR: ILLEGAL CALL TO ListView_ColumnResize.  ParamArray "
             "size does not match the # of ColumnHeaders."_s);
    QCOMPARE(boxes.Shown()[0].Title, u"ListView_ColumnResize"_s);
    QCOMPARE(boxes.Shown()[0].Icon, QMessageBox::Critical);
    QCOMPARE(Widths(list.header()), before);
  }

  void MeasuresGrowWithALargeFont() {
    QWidget window;
    QFont font = window.font();
    font.setPixelSize(10);
    window.setFont(font);
    QCOMPARE(ForFont(window, QSize(200, 100)), QSize(200, 100));
    font.setPixelSize(40);
    window.setFont(font);
    const double times = window.fontMetrics().height() / 15.0;
    QVERIFY(times > 2);
    QCOMPARE(ForFont(window, 200), 200 * times);
    QCOMPARE(ForFont(window, QSize(200, 100)), QSize(qRound(200 * times), qRound(100 * times)));
  }

  void LockedTextBoxCanStillBeCopiedFrom() {
    QLineEdit line(u"text"_s);
    LockControl(line);
    QVERIFY(line.isEnabled());
    QVERIFY(line.isReadOnly());
    QCOMPARE(line.text(), u"text"_s);
    QCOMPARE(line.palette().color(QPalette::Base), PaleYellow);
    QPlainTextEdit text(u"lines"_s);
    LockControl(text, true);
    QVERIFY(text.isEnabled());
    QVERIFY(text.isReadOnly());
    QCOMPARE(text.toPlainText(), QString());
  }

  void LockedTextIsReadableOnADarkDesktop() {
    QLineEdit line;
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    line.setPalette(dark);
    LockControl(line);
    QCOMPARE(line.palette().color(QPalette::Text), QColor(Qt::black));
  }

  void LockedComboBoxIsDisabled() {
    QComboBox combo;
    combo.addItems({u"a"_s, u"b"_s});
    combo.setCurrentIndex(1);
    LockControl(combo);
    QVERIFY(!combo.isEnabled());
    QCOMPARE(combo.currentIndex(), 1);
    QCOMPARE(combo.palette().color(QPalette::Disabled, QPalette::Base), PaleYellow);
    LockControl(combo, true);
    QCOMPARE(combo.currentIndex(), -1);
  }

  void LockedListBoxStillScrolls() {
    QListWidget list;
    list.addItems({u"a"_s, u"b"_s});
    list.setCurrentRow(1);
    LockControl(list);
    QVERIFY(list.isEnabled());
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(list.palette().color(QPalette::Base), PaleYellow);
    LockControl(list, true);
    QVERIFY(list.selectedItems().isEmpty());
    QCOMPARE(list.currentRow(), -1);
  }

  void LockedCheckBoxAndOptionAreDisabledAndCleared() {
    QCheckBox check;
    check.setChecked(true);
    LockControl(check);
    QVERIFY(!check.isEnabled());
    QVERIFY(check.isChecked());
    LockControl(check, true);
    QVERIFY(!check.isChecked());
  }

  void ChosenOptionOfAGroupIsCleared() {
    QWidget form;
    auto* first = new QRadioButton(&form);
    auto* second = new QRadioButton(&form);
    first->setChecked(true);
    LockControl(*first, true);
    QVERIFY(!first->isEnabled());
    QVERIFY(!first->isChecked());
    second->setChecked(true);
    QVERIFY(!first->isChecked());

    QButtonGroup group;
    group.addButton(first);
    group.addButton(second);
    LockControl(*second, true);
    QVERIFY(!second->isChecked());
    QVERIFY(group.exclusive());
  }

  void LockedLabelAndCaptionAreGreyed() {
    QLabel label(u"label"_s);
    QLabel caption(u"caption"_s);
    QPushButton button;
    const QColor grey = label.palette().color(QPalette::Disabled, QPalette::WindowText);
    LockControl(label, false, &caption);
    QVERIFY(!label.isEnabled());
    QVERIFY(caption.isEnabled());
    QCOMPARE(label.palette().color(QPalette::Active, QPalette::WindowText), grey);
    QCOMPARE(caption.palette().color(QPalette::Active, QPalette::WindowText), grey);
    LockControl(button);
    QVERIFY(!button.isEnabled());
  }

  void FrameLocksItsControlsAndKeepsTheirValues() {
    QGroupBox frame;
    auto* layout = new QVBoxLayout(&frame);
    auto* text = new QLineEdit(u"kept"_s);
    auto* check = new QCheckBox;
    auto* inner = new QFrame;
    auto* deep = new QLineEdit(u"deep"_s, inner);
    auto* label = new QLabel(u"label"_s);
    check->setChecked(true);
    for (QWidget* child : std::initializer_list<QWidget*>{text, check, inner, label})
      layout->addWidget(child);
    LockControl(frame, true);
    QVERIFY(frame.isEnabled());
    QVERIFY(inner->isEnabled());
    QVERIFY(text->isReadOnly());
    QCOMPARE(text->text(), u"kept"_s);
    QVERIFY(!check->isEnabled());
    QVERIFY(check->isChecked());
    QVERIFY(deep->isReadOnly());
    QCOMPARE(deep->text(), u"deep"_s);
    QVERIFY(!label->isEnabled());
  }

  void CheckedItemsAreCounted() {
    QStandardItemModel items(4, 2);
    for (const int row : {0, 3}) items.setData(items.index(row, 0), Qt::Checked, Qt::CheckStateRole);
    items.setData(items.index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
    ListView list;
    QCOMPARE(CountCheckedItems(list), 0);
    list.setModel(&items);
    QCOMPARE(CountCheckedItems(list), 0);
    list.SetCheckboxes(true);
    QCOMPARE(CountCheckedItems(list), 2);
  }

  void MoreCheckedItemsThanFitRaise() {
    QStandardItemModel items(32768, 1);
    for (int row = 0; row < items.rowCount(); ++row) {
      items.setData(items.index(row, 0), Qt::Checked, Qt::CheckStateRole);
    }
    ListView list;
    list.SetCheckboxes(true);
    list.setModel(&items);
    QVERIFY_EXCEPTION_THROWN(CountCheckedItems(list), std::overflow_error);
    items.setData(items.index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
    QCOMPARE(CountCheckedItems(list), 32767);
  }

  void SelectedOptionIsTheLastChosen() {
    QRadioButton a, b, c;
    const std::vector<QRadioButton*> options{&a, &b, &c};
    QCOMPARE(GetSelectedOption(options), -1);
    QCOMPARE(GetSelectedOption({}), -1);
    a.setChecked(true);
    QCOMPARE(GetSelectedOption(options), 0);
    b.setChecked(true);
    QCOMPARE(GetSelectedOption(options), 1);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::FormHelpers_test)
#include "FormHelpers_test.moc"
