#include "common/MsgBox.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include "common/Busy.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class MsgBox_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void ShowsTextIconTitleAndOk_data() {
    QTest::addColumn<MsgIcon>("icon");
    QTest::addColumn<QMessageBox::Icon>("shown");
    QTest::newRow("none") << MsgIcon::None << QMessageBox::NoIcon;
    QTest::newRow("critical") << MsgIcon::Critical << QMessageBox::Critical;
    QTest::newRow("question") << MsgIcon::Question << QMessageBox::Question;
    QTest::newRow("exclamation") << MsgIcon::Exclamation << QMessageBox::Warning;
    QTest::newRow("information") << MsgIcon::Information << QMessageBox::Information;
  }
  void ShowsTextIconTitleAndOk() {
    QFETCH(MsgIcon, icon);
    MessageBoxes boxes;
    MsgBox(nullptr, u"Please select the source folder."_s, icon, u"Directory Comparison"_s);
    QCOMPARE(boxes.Shown().size(), std::size_t{1});
    QTEST(boxes.Shown()[0].Icon, "shown");
    QCOMPARE(boxes.Shown()[0].Text, u"Please select the source folder."_s);
    QCOMPARE(boxes.Shown()[0].Title, u"Directory Comparison"_s);
    QCOMPARE(boxes.Shown()[0].Buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
  }

  void MarkupInTheTextIsShownAsItIs() {
    QTimer::singleShot(0, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      QVERIFY(box);
      QCOMPARE(box->textFormat(), Qt::PlainText);
      box->accept();
    });
    MsgBox(nullptr, u"<b>a & b</b>"_s, MsgIcon::None, u"t"_s);
  }

  void QuestionsGiveTheAnswer() {
    MessageBoxes boxes;
    boxes.AnswerNext(QMessageBox::Yes);
    QVERIFY(MsgBoxYesNo(nullptr, u"1"_s, MsgIcon::Question, u"t"_s));
    boxes.AnswerNext(QMessageBox::No);
    QVERIFY(!MsgBoxYesNo(nullptr, u"2"_s, MsgIcon::Question, u"t"_s));
    boxes.AnswerNext(QMessageBox::Ok);
    QVERIFY(MsgBoxOkCancel(nullptr, u"3"_s, MsgIcon::Question, u"t"_s));
    boxes.AnswerNext(QMessageBox::Cancel);
    QVERIFY(!MsgBoxOkCancel(nullptr, u"4"_s, MsgIcon::Question, u"t"_s));
    QCOMPARE(boxes.TakeTexts(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
    QCOMPARE(boxes.TakeTexts(), QStringList());
  }

  void TheHourglassRestsWhileABoxShows() {
    const BusyPointer outer;
    const BusyPointer inner;
    QTimer::singleShot(0, [] {
      QVERIFY(!QApplication::overrideCursor());
      qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->accept();
    });
    MsgBox(nullptr, u"text"_s, MsgIcon::Exclamation, u"t"_s);
    QVERIFY(QApplication::overrideCursor());
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  }

  void TheHourglassNestsAndEnds() {
    {
      const BusyPointer outer;
      { const BusyPointer inner; }
      QVERIFY(QApplication::overrideCursor());
    }
    QVERIFY(!QApplication::overrideCursor());
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::MsgBox_test)
#include "MsgBox_test.moc"
