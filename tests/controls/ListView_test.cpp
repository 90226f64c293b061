#include "controls/ListView.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTest>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

namespace {

class Paints : public QObject {
 public:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++Count;
    return false;
  }

  int Count = 0;
};

}  // namespace

class ListView_test : public QObject {
  Q_OBJECT

 private:
  static void Fill(QStandardItemModel& items) {
    for (const QString& name : {u"a"_s, u"b"_s}) {
      auto* item = new QStandardItem(name);
      item->setCheckable(true);
      items.appendRow({item, new QStandardItem(u"new"_s)});
    }
  }

 private Q_SLOTS:
  void SpaceTogglesTheItemFromAnyColumn() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    list.setProperty("Checkboxes", true);
    list.setCurrentIndex(items.index(1, 1));
    QTest::keyClick(&list, Qt::Key_Space);
    QCOMPARE(items.item(1)->checkState(), Qt::Checked);
    QCOMPARE(items.item(0)->checkState(), Qt::Unchecked);
    QTest::keyClick(&list, Qt::Key_Space);
    QCOMPARE(items.item(1)->checkState(), Qt::Unchecked);
  }

  void AClickOnTheBoxToggles() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    list.SetCheckboxes(true);
    list.show();
    const QRect row = list.visualRect(items.index(0, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(row.left() + 10, row.center().y()));
    QCOMPARE(items.item(0)->checkState(), Qt::Checked);
  }

  void WithoutCheckBoxesNothingToggles() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    list.show();
    list.setCurrentIndex(items.index(0, 0));
    QTest::keyClick(&list, Qt::Key_Space);
    const QRect row = list.visualRect(items.index(0, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(row.left() + 10, row.center().y()));
    QCOMPARE(items.item(0)->checkState(), Qt::Unchecked);
  }

  void CheckBoxesShowOnlyWhenAskedFor() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    const QImage without = list.grab().toImage();
    list.SetCheckboxes(true);
    QVERIFY(list.grab().toImage() != without);
  }

  void AWarningInTheFirstRowMovesNoRow() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    const QRect before = list.visualRect(items.index(1, 1));
    items.item(0, 1)->setData(true, ListView::WarningRole);
    list.doItemsLayout();
    QCOMPARE(list.visualRect(items.index(1, 1)), before);
    QVERIFY(before.height() >= list.style()->pixelMetric(QStyle::PM_SmallIconSize));
  }

  void RowsThatChangeTogetherArePaintedAnew() {
    QStandardItemModel items;
    Fill(items);
    ListView list;
    list.setModel(&items);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    const QImage before = list.grab().toImage();
    {
      const QSignalBlocker silence(items);
      items.item(0, 1)->setText(u"other"_s);
      items.item(1, 1)->setText(u"texts"_s);
    }
    Paints paints;
    list.viewport()->installEventFilter(&paints);
    Q_EMIT items.dataChanged(items.index(0, 1), items.index(1, 1));
    QTRY_VERIFY(paints.Count > 0);
    QVERIFY(list.grab().toImage() != before);
  }

  void HeadingsGoOnToTheEdge() {
    QStandardItemModel items;
    Fill(items);
    items.setHorizontalHeaderLabels({u"a"_s, u"b"_s});
    ListView list;
    list.setModel(&items);
    list.resize(500, 100);
    list.show();
    const QImage headings = list.header()->grab().toImage();
    const int end = list.header()->length();
    QVERIFY(end + 40 < headings.width());
    for (int y = 0; y < headings.height(); ++y)
      QCOMPARE(headings.pixelColor(end + 20, y), headings.pixelColor(end - 20, y));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::ListView_test)
#include "ListView_test.moc"
