#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include "common/Settings.h"
#include "shell/OptionsDialog.h"
#include "support/FullDisk_posix.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"

// The options dialog where the settings' file cannot be written.

namespace brackwell {

namespace {

QByteArray ReadStore() {
  QFile file(isolatedSettings.Place());
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

class frmOptionsPosixTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { isolatedSettings.Clear(); }

  void AFullDiskIsTold();
  void ASettingsFolderThatCannotBeMadeIsTold();
};

void frmOptionsPosixTest::AFullDiskIsTold() {
  SaveSetting(u"General"_s, u"AppMaximized"_s, u"0"_s);
  const QByteArray before = ReadStore();
  const MessageBoxes boxes;
  Options options;
  options.Button(u"chkAppMax"_s)->click();
  {
    const FullDisk full;
    options.Ok();
  }
  QCOMPARE(boxes.Shown().size(), std::size_t{1});
  const QString text =
      u"The settings could not be saved in\n%1\n\n"
      "Please make sure that it can be written and that the disk is not full."_s;
  Expect(boxes.Shown().front(), QMessageBox::Critical, text.arg(isolatedSettings.Place()));
  QVERIFY(options.Dialog.isVisible());
  QCOMPARE(ReadStore(), before);
  QVERIFY(!Options().IsChosen(u"chkAppMax"_s));

  options.Ok();
  QVERIFY(!options.Dialog.isVisible());
  QVERIFY(Options().IsChosen(u"chkAppMax"_s));
}

void frmOptionsPosixTest::ASettingsFolderThatCannotBeMadeIsTold() {
  const QString folder = QFileInfo(isolatedSettings.Place()).path();
  QVERIFY(QDir(folder).removeRecursively());
  QFile inTheWay(folder);
  QVERIFY(inTheWay.open(QIODevice::WriteOnly));
  MessageBoxes boxes;
  Options options;
  options.Button(u"chkAppMax"_s)->click();
  options.Ok();
  QVERIFY(inTheWay.remove());
  const QStringList texts = boxes.TakeTexts();
  QCOMPARE(texts.size(), 1);
  QVERIFY2(texts[0].contains(isolatedSettings.Place()), qPrintable(texts[0]));
  QVERIFY(options.Dialog.isVisible());
  options.Button(u"cmdCancel"_s)->click();
  QCOMPARE(Options().State(), AsDesigned);
  QCOMPARE(ReadStore(), QByteArray());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmOptionsPosixTest)
#include "frmOptions_posix_test.moc"
