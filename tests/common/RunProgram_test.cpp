#include "common/RunProgram.h"

#include <QDir>
#include <QTest>
#include <QWidget>

#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"
#include "support/TempTree.h"

namespace brackwell {

using namespace Qt::StringLiterals;

class RunProgramTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void EveryCodeHasItsMessage();
  void AnOpenedDocumentShowsNothing();
  void AFailureIsToldToTheUser();
  void AMissingDocumentIsToldToTheUser();
  void AMissingFolderIsToldToTheUser();
};

void RunProgramTest::EveryCodeHasItsMessage() {
  const QMap<int, QString> messages = {
      {2, u"The specified file was not found."_s},
      {3, u"The specified path was not found."_s},
      {5, u"The operating system denied access to the specified file."_s},
      {8, u"There was not enough memory to complete the operation."_s},
      {26, u"A sharing violation occurred."_s},
      {27, u"The file name association is incomplete or invalid."_s},
      {28, u"The DDE transaction could not be completed because the request timed out."_s},
      {29, u"The DDE transaction failed."_s},
      {30,
       u"The DDE transaction could not be completed because other DDE transactions were being processed."_s},
      {31, u"There is no application associated with the given file name extension."_s},
      {32, u"The specified dynamic-link library was not found."_s},
  };
  for (int code = 0; code <= 40; ++code) QCOMPARE(RunProgramMessage(code), messages.value(code));
}

void RunProgramTest::AnOpenedDocumentShowsNothing() {
  const StandInOpener opener;
  const MessageBoxes boxes;
  QWidget form;
  TempTree tree;
  tree.File("report.htm");
  const QString folder = QDir::fromNativeSeparators(QString::fromStdString(tree.Path()));
  RunProgram(&form, tree.Path("report.htm"));
  QCOMPARE(opener.Opened(), QStringList{folder + u"/report.htm"_s});
  RunProgram(&form, tree.Path());
  QCOMPARE(opener.Opened().last(), folder);
  QVERIFY(boxes.Shown().empty());
}

void RunProgramTest::AFailureIsToldToTheUser() {
  StandInOpener opener;
  opener.OpenNothing();
  const MessageBoxes boxes;
  QWidget form;
  TempTree tree;
  tree.File("report.htm");
  RunProgram(&form, tree.Path("report.htm"));
  QCOMPARE(boxes.Shown().size(), std::size_t{1});
  const ShownBox& box = boxes.Shown().front();
  QCOMPARE(box.Text, u"There is no application associated with the given file name extension."_s);
  QCOMPARE(box.Title, u"Run Program"_s);
  QCOMPARE(box.Icon, QMessageBox::Warning);
  QCOMPARE(box.Buttons, QMessageBox::Ok);
}

void RunProgramTest::AMissingDocumentIsToldToTheUser() {
  const StandInOpener opener;
  MessageBoxes boxes;
  const TempTree tree;
  RunProgram(nullptr, tree.Path("none.htm"));
  QCOMPARE(boxes.TakeTexts(), QStringList{u"The specified file was not found."_s});
  QVERIFY(opener.Opened().isEmpty());
}

void RunProgramTest::AMissingFolderIsToldToTheUser() {
  const StandInOpener opener;
  MessageBoxes boxes;
  const TempTree tree;
  RunProgram(nullptr, tree.Path("none/none.htm"));
  QCOMPARE(boxes.TakeTexts(), QStringList{u"The specified path was not found."_s});
  QVERIFY(opener.Opened().isEmpty());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::RunProgramTest)
#include "RunProgram_test.moc"
