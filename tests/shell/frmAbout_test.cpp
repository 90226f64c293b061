#include "shell/frmAbout.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "common/Program.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInSysInfo.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// The dialog, on a system with no system information program but what a test puts there.
struct About {
  About() { Dialog.show(); }

  QLabel* Label(const QString& name) { return Dialog.findChild<QLabel*>(name); }
  QPushButton* Button(const QString& name) { return Dialog.findChild<QPushButton*>(name); }

  StandInSysInfo SysInfo;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  frmAbout Dialog{*Files, nullptr};
};

}  // namespace

class frmAboutTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Texts();
  void VersionsAreNotPadded();
  void EveryControlHasAName();
  void ThePictureIsSharpOnEveryScreen();
  void OkCloses();
  void EnterAndEscapeClose();
  void SystemInformationIsStarted();
  void SystemInformationByItsAccelerator();
  void WithoutOneTheUserIsTold();
  void OneThatCannotBeStartedIsAsGoodAsNone();
};

void frmAboutTest::Texts() {
  About about;
  QCOMPARE(about.Dialog.windowTitle(), u"About Brackwell"_s);
  QCOMPARE(about.Label(u"lblTitle"_s)->text(), u"Brackwell"_s);
  const QStringList version = QString::fromUtf8(ProgramVersion).split(u'.');
  QCOMPARE(about.Label(u"lblVersion"_s)->text(),
           u"Version %1.%2  Build %3"_s.arg(version[0], version[1], version[2]));
  QCOMPARE(about.Label(u"lblDescription"_s)->text(),
           u"A suite of tools for people who manage and edit folders full of files"_s);
  QCOMPARE(about.Button(u"cmdSysInfo"_s)->text(), u"&System Info..."_s);
}

void frmAboutTest::VersionsAreNotPadded() {
  QCOMPARE(frmAbout::VersionText(1, 0, 26), u"Version 1.0  Build 26"_s);
  QCOMPARE(frmAbout::VersionText(12, 3, 1234), u"Version 12.3  Build 1234"_s);
}

void frmAboutTest::EveryControlHasAName() {
  About about;
  QStringList names;
  for (const QWidget* control : about.Dialog.findChildren<QWidget*>())
    names.append(control->objectName() + u": "_s + control->accessibleName());
  names.sort();
  QCOMPARE(names.join(u'\n'),
           uR"(cmdOK: OK
cmdSysInfo: System Info...
imgVem: Brackwell icon
lblDescription: A suite of tools for people who manage and edit folders full of files
lblTitle: Brackwell
lblVersion: )"_s +
               about.Label(u"lblVersion"_s)->text());
}

void frmAboutTest::ThePictureIsSharpOnEveryScreen() {
  About about;
  const QPixmap picture = about.Label(u"imgVem"_s)->pixmap();
  QCOMPARE(picture.deviceIndependentSize(), QSizeF(64, 64));
  QCOMPARE(picture.devicePixelRatio(), about.Dialog.devicePixelRatioF());
}

void frmAboutTest::OkCloses() {
  About about;
  about.Button(u"cmdOK"_s)->click();
  QVERIFY(!about.Dialog.isVisible());
}

void frmAboutTest::EnterAndEscapeClose() {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
    About about;
    QVERIFY(QTest::qWaitForWindowActive(&about.Dialog));
    QTest::keyClick(&about.Dialog, key);
    QVERIFY(!about.Dialog.isVisible());
    QVERIFY(!about.SysInfo.HasStarted());
  }
}

void frmAboutTest::SystemInformationIsStarted() {
  const MessageBoxes boxes;
  About about;
  about.SysInfo.Install();
  about.Button(u"cmdSysInfo"_s)->click();
  QTRY_VERIFY(about.SysInfo.HasStarted());
  QVERIFY(boxes.Shown().empty());
  QVERIFY(about.Dialog.isVisible());
}

void frmAboutTest::SystemInformationByItsAccelerator() {
  About about;
  about.SysInfo.Install();
  QVERIFY(QTest::qWaitForWindowActive(&about.Dialog));
  QTest::keyClick(&about.Dialog, Qt::Key_S, Qt::AltModifier);
  QTRY_VERIFY(about.SysInfo.HasStarted());
}

void frmAboutTest::WithoutOneTheUserIsTold() {
  const MessageBoxes boxes;
  About about;
  about.Button(u"cmdSysInfo"_s)->click();
  QCOMPARE(boxes.Shown().size(), std::size_t{1});
  const ShownBox& box = boxes.Shown().front();
  QCOMPARE(box.Text, u"System Information Is Unavailable At This Time"_s);
  QCOMPARE(box.Title, u"Brackwell"_s);
  QCOMPARE(box.Icon, QMessageBox::NoIcon);
  QCOMPARE(box.Buttons, QMessageBox::Ok);
}

void frmAboutTest::OneThatCannotBeStartedIsAsGoodAsNone() {
  MessageBoxes boxes;
  About about;
  about.SysInfo.InstallBroken();
  about.Button(u"cmdSysInfo"_s)->click();
  QCOMPARE(boxes.TakeTexts(), QStringList(u"System Information Is Unavailable At This Time"_s));
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmAboutTest)
#include "frmAbout_test.moc"
