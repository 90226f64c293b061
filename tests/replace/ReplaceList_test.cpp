#include "replace/ReplaceList.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>

#include "controls/ListView.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

class ReplaceListTest : public QObject {
  Q_OBJECT

 private:
  using Tester = QAbstractItemModelTester;

  static QString Cell(const ReplaceList& list, int row, int column) {
    return list.index(row, column).data().toString();
  }

  static void Fill(ReplaceList& list, int count) {
    for (int i = 0; i < count; ++i) list.Rows().push_back({"/t/" + std::to_string(i), {}});
  }

  static void GiveResult(ReplaceList& list, std::size_t row, int count) {
    list.Rows()[row].Result = {ReplaceResult::Kind::Found, count};
  }

  /// The ranges of rows told as changed since the last call: "0-3".
  static QStringList TakeTold(QSignalSpy& changed) {
    QStringList ranges;
    for (const QList<QVariant>& signal : changed) {
      const auto first = signal[0].toModelIndex();
      const auto last = signal[1].toModelIndex();
      ranges << u"%1-%2"_s.arg(first.row()).arg(last.row());
      if (first.column() != ReplaceList::ResultColumn || last.column() != ReplaceList::ResultColumn)
        ranges << u"another column"_s;
    }
    changed.clear();
    return ranges;
  }

 private Q_SLOTS:
  void RowsShowWhenTheyArePublished() {
    ReplaceList list;
    const Tester tester(&list, Tester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
    Fill(list, 3);
    QCOMPARE(list.rowCount(), 0);
    list.Publish(0);
    QCOMPARE(list.rowCount(), 3);
    QCOMPARE(Cell(list, 2, ReplaceList::FileColumn), u"/t/2"_s);
    QCOMPARE(Cell(list, 2, ReplaceList::ResultColumn), QString());
    Fill(list, 2);
    list.Publish(0);
    list.Publish(0);
    QCOMPARE(list.rowCount(), 5);
    QCOMPARE(inserted.size(), 2);
  }

  void ALongListShowsItsRowsInLargeBatches() {
    ReplaceList list;
    const Tester tester(&list, Tester::FailureReportingMode::QtTest);
    Fill(list, 1600);
    list.Publish(0);
    QCOMPARE(list.rowCount(), 1600);
    Fill(list, 100);
    list.Publish(0);
    QCOMPARE(list.rowCount(), 1600);
    Fill(list, 1);
    list.Publish(0);
    QCOMPARE(list.rowCount(), 1701);
    Fill(list, 1);
    list.Publish(1);
    QCOMPARE(list.rowCount(), 1702);
    Fill(list, 1);
    list.PublishRows();
    QCOMPARE(list.rowCount(), 1703);
  }

  void ResultsAreToldAsOneRange() {
    ReplaceList list;
    const Tester tester(&list, Tester::FailureReportingMode::QtTest);
    Fill(list, 100);
    list.Publish(0);
    QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
    GiveResult(list, 0, 7);
    list.Publish(1);
    QCOMPARE(Cell(list, 0, ReplaceList::ResultColumn), u"7 matches found"_s);
    QCOMPARE(TakeTold(changed), QStringList{u"0-0"_s});
    for (std::size_t row = 1; row < 50; ++row) GiveResult(list, row, 1);
    list.Publish(50);
    QCOMPARE(TakeTold(changed), QStringList{u"0-49"_s});
    list.Publish(51);  // whose result is still to come
    QCOMPARE(TakeTold(changed), QStringList{u"49-50"_s});
    list.Publish(52);
    QCOMPARE(TakeTold(changed), QStringList{u"50-51"_s});
  }

  void AClearedListBeginsAnew() {
    ReplaceList list;
    const Tester tester(&list, Tester::FailureReportingMode::QtTest);
    Fill(list, 5);
    list.Publish(5);
    list.Clear();
    QCOMPARE(list.rowCount(), 0);
    QVERIFY(list.Rows().empty());
    Fill(list, 2);
    QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
    list.Publish(1);
    QCOMPARE(list.rowCount(), 2);
    QCOMPARE(TakeTold(changed), QStringList{u"0-0"_s});
  }

  void TheSecondHeaderSaysWhatWasDone() {
    ReplaceList list;
    const auto header = [&list](int column) {
      return list.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    };
    QCOMPARE(header(ReplaceList::FileColumn), u"File"_s);
    QCOMPARE(header(ReplaceList::ResultColumn), u"Replacements"_s);
    QSignalSpy changed(&list, &QAbstractItemModel::headerDataChanged);
    list.SetResultHeader(u"Finds"_s);
    QCOMPARE(header(ReplaceList::FileColumn), u"File"_s);
    QCOMPARE(header(ReplaceList::ResultColumn), u"Finds"_s);
    QCOMPARE(changed.size(), 1);
  }

  void NamesAreNoMarkup() {
    ReplaceList list;
    list.Rows().push_back({"/t/<b>caf\xe9\n", {}});
    list.Publish(0);
    QCOMPARE(Cell(list, 0, ReplaceList::FileColumn), u"/t/<b>caf\ufffd\u240a"_s);
    const QString tip = list.index(0, ReplaceList::FileColumn).data(Qt::ToolTipRole).toString();
    QVERIFY(tip.contains(u"/t/&lt;b&gt;caf"_s));
  }

  void AnotherNameOfAFileSaysWhereItsResultIs() {
    ReplaceList list;
    list.Rows().push_back({"/t/<a>", {ReplaceResult::Kind::Replaced, 7}});
    list.Rows().push_back({"/t/b", {ReplaceResult::Kind::Replaced, 0}});
    list.Rows().push_back({"/t/c", {ReplaceResult::Kind::SameFile, 0}});
    list.Publish(3);
    const auto tip = [&](int row, int column) {
      QTextDocument shown;
      shown.setHtml(list.index(row, column).data(Qt::ToolTipRole).toString());
      return shown.toPlainText();
    };
    QCOMPARE(Cell(list, 2, ReplaceList::ResultColumn), u"0 matches replaced"_s);
    QCOMPARE(tip(2, ReplaceList::FileColumn),
             u"/t/c\nSame file as /t/<a> (hard link): see the result there."_s);
    QCOMPARE(tip(2, ReplaceList::ResultColumn), u"Same file as /t/<a> (hard link): see the result there."_s);
    QCOMPARE(tip(1, ReplaceList::FileColumn), u"/t/b"_s);
    QCOMPARE(tip(1, ReplaceList::ResultColumn), QString());
  }

  void HundredsOfThousandsOfRowsComeAndGo() {
    constexpr int Count = 300'000;
    constexpr int Batch = 3'000;
    ReplaceList list;
    ListView view;
    view.setModel(&list);
    view.resize(600, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    for (int rows = Batch; rows <= Count; rows += Batch) {
      Fill(list, Batch);
      list.Publish(0);
      QCoreApplication::processEvents();
    }
    list.PublishRows();
    QCOMPARE(list.rowCount(), Count);
    QCOMPARE(view.verticalScrollBar()->value(), 0);
    view.scrollToBottom();
    const ReplaceRow* first = &list.Rows().front();
    for (int items = Batch; items <= Count; items += Batch) {
      GiveResult(list, static_cast<std::size_t>(items - 1), 1);
      list.Publish(static_cast<std::size_t>(items));
      QCoreApplication::processEvents();
    }
    QCOMPARE(&list.Rows().front(), first);
    QCOMPARE(Cell(list, Count - 1, ReplaceList::ResultColumn), u"1 matches found"_s);
    QVERIFY(view.visualRect(list.index(Count - 1, 0)).isValid());
    list.Clear();
    QCoreApplication::processEvents();
    QCOMPARE(view.verticalScrollBar()->maximum(), 0);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::ReplaceListTest)
#include "ReplaceList_test.moc"
