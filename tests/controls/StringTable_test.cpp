#include "controls/StringTable.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class StringTable_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void ShowsItsTextsUnderItsCaptions() {
    StringTable table;
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Fatal);
    table.SetContent({{QString(), u"Name"_s}, {u"Size"_s, u"The size"_s}}, {{u"a"_s, u"1"_s}, {u"<b>"_s}});
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(table.columnCount(), 2);
    QCOMPARE(table.headerData(0, Qt::Horizontal).toString(), u"Name"_s);
    QCOMPARE(table.headerData(1, Qt::Horizontal).toString(), u"The size"_s);
    QCOMPARE(table.headerData(0, Qt::Horizontal, StringTable::KeyRole).toString(), QString());
    QCOMPARE(table.headerData(1, Qt::Horizontal, StringTable::KeyRole).toString(), u"Size"_s);
    QCOMPARE(table.index(0, 1).data().toString(), u"1"_s);
    QCOMPARE(table.index(1, 0).data().toString(), u"<b>"_s);
    QCOMPARE(table.index(1, 1).data().toString(), QString());
  }

  void NewContentReplacesTheOld() {
    StringTable table;
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Fatal);
    table.SetContent({{u"A"_s, u"a"_s}, {u"B"_s, u"b"_s}}, {{u"1"_s}, {u"2"_s}});
    table.SetContent({{u"C"_s, u"c"_s}}, {});
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(table.columnCount(), 1);
    QCOMPARE(table.headerData(0, Qt::Horizontal).toString(), u"c"_s);
    QVERIFY(!table.headerData(1, Qt::Horizontal).isValid());
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::StringTable_test)
#include "StringTable_test.moc"
