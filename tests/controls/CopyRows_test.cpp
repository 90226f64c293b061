#include "controls/CopyRows.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QStandardItemModel>
#include <QTest>

#include "controls/FlexGrid.h"
#include "controls/ListView.h"
#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {
namespace {

/// Rows of a name and a number; a picture in front of them, which is read out as "file".
class Rows : public QAbstractTableModel {
 public:
  explicit Rows(int count) : mCount(count) {}
  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : mCount; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
  QVariant data(const QModelIndex& index, int role) const override {
    ++mAsked;
    if (index.column() == 0) return role == Qt::AccessibleTextRole ? u"file"_s : QVariant();
    if (role != Qt::DisplayRole) return {};
    return index.column() == 1 ? u"name"_s : QVariant(index.row());
  }

  int TimesAsked() const { return mAsked; }

 private:
  const int mCount;
  mutable int mAsked = 0;
};

QString Clipboard() { return QGuiApplication::clipboard()->text(); }

void PressCopy(QWidget& list) { QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier); }

void ClickRow(QAbstractItemView& view, int row, Qt::KeyboardModifiers modifiers = {}) {
  const QRect cell = view.visualRect(view.model()->index(row, 1));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, cell.center());
}

}  // namespace

class CopyRows_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { QGuiApplication::clipboard()->setText(u"before"_s); }

  void AListOfOneSelectionGivesItsRow() {
    Rows rows(5);
    ListView list;
    list.setModel(&rows);
    list.show();
    ClickRow(list, 2);
    PressCopy(list);
    QCOMPARE(Clipboard(), u"file\tname\t2"_s);
  }

  void AListOfManyGivesAllFromTheTop() {
    Rows rows(9);
    ListView list;
    list.setModel(&rows);
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    list.show();
    ClickRow(list, 4);
    ClickRow(list, 0, Qt::ControlModifier);
    ClickRow(list, 2, Qt::ControlModifier);
    PressCopy(list);
    QCOMPARE(Clipboard(), u"file\tname\t0\nfile\tname\t2\nfile\tname\t4"_s);
  }

  void AGridGivesTheWholeRowsOfItsCells() {
    Rows rows(9);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.show();
    grid.selectionModel()->select(rows.index(3, 1), QItemSelectionModel::Select);
    grid.selectionModel()->select(rows.index(3, 2), QItemSelectionModel::Select);
    grid.selectionModel()->select({rows.index(2, 0), rows.index(4, 0)}, QItemSelectionModel::Select);
    PressCopy(grid);
    QCOMPARE(Clipboard(), u"file\tname\t2\nfile\tname\t3\nfile\tname\t4"_s);
  }

  void WithoutASelectionTheCurrentRowIsCopied() {
    Rows rows(3);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.setCurrentIndex(rows.index(1, 2));
    grid.clearSelection();
    PressCopy(grid);
    QCOMPARE(Clipboard(), u"file\tname\t1"_s);
  }

  void WhatWouldEndACellIsShownByItsPicture() {
    QStandardItemModel rows;
    rows.appendRow({new QStandardItem(u"a\tb\r\nc"_s), new QStandardItem(u"d"_s)});
    ListView list;
    list.setModel(&rows);
    list.setCurrentIndex(rows.index(0, 0));
    PressCopy(list);
    QCOMPARE(Clipboard(), u"a\u2409b\u240d\u240ac\td"_s);
  }

  void RowsWithoutTextAreLeftOut() {
    QStandardItemModel rows;
    for (const QString& name : {u"a"_s, QString(), u"c"_s})
      rows.appendRow({new QStandardItem(name), new QStandardItem});
    FlexGrid grid;
    grid.setModel(&rows);
    grid.selectAll();
    PressCopy(grid);
    QCOMPARE(Clipboard(), u"a\t\nc\t"_s);
    grid.setCurrentIndex(rows.index(1, 0));
    PressCopy(grid);
    QCOMPARE(Clipboard(), u"a\t\nc\t"_s);
  }

  void AnEmptyListLeavesTheClipboard() {
    ListView list;
    PressCopy(list);
    Rows none(0);
    list.setModel(&none);
    PressCopy(list);
    QCOMPARE(Clipboard(), u"before"_s);
  }

  void EachOfAMillionRowsIsAskedForAFewTimes() {
    constexpr int Count = 1'000'000;
    Rows rows(Count);
    FlexGrid grid;
    grid.setModel(&rows);
    grid.selectAll();
    const int before = rows.TimesAsked();
    QCOMPARE(SelectedRowsText(grid).count(u'\n'), Count - 1);
    QVERIFY2(rows.TimesAsked() - before <= 4 * Count, qPrintable(QString::number(rows.TimesAsked())));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::CopyRows_test)
#include "CopyRows_test.moc"
