#include "controls/uctSelectDir.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include "controls/BrowseFF.h"
#include "platform/FileSystemObject.h"
#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class uctSelectDir_test : public QObject {
  Q_OBJECT

 private:
  /// Hands the browse dialog, once it is up, to `use`; then chooses what is typed into it, or cancels.
  template <class Use>
  void OnDialog(Use use) {
    QTimer::singleShot(0, this, [this, use] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      QVERIFY(dialog);
      ++mDialogs;
      use(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
  }

  static auto Choose(const QString& path) {
    return [path](QFileDialog& dialog) {
      dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
      static_cast<QDialog&>(dialog).accept();
    };
  }

  static QPushButton* cmdSelect(uctSelectDir& selector) {
    return selector.findChild<QPushButton*>(u"cmdSelect"_s);
  }
  static QLabel* lblDirectory(uctSelectDir& selector) {
    return selector.findChild<QLabel*>(u"lblDirectory"_s);
  }

  std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
  BrowseFF mBrowse;
  QTemporaryDir mFolder;
  int mDialogs = 0;

 private Q_SLOTS:
  void init() { mDialogs = 0; }

  void TitleAndPromptFollowTheHeading() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetCaption(u"Target Directory"_s);
    QCOMPARE(selector.findChild<QLabel*>(u"hdgDirectory"_s)->text(), u"Target Directory"_s);
    OnDialog([](QFileDialog& dialog) {
      QCOMPARE(dialog.windowTitle(), u"Select Folder"_s);
      QCOMPARE(dialog.findChild<QLabel*>(u"Prompt"_s)->text(), u"Select the Target Directory"_s);
    });
    cmdSelect(selector)->click();
    QCOMPARE(mDialogs, 1);
  }

  void APromptOfItsOwnIsAskedAsItIs() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetCaption(u"Folder"_s);
    selector.SetPrompt(u"Select folder to search"_s);
    OnDialog([](QFileDialog& dialog) {
      QCOMPARE(dialog.findChild<QLabel*>(u"Prompt"_s)->text(), u"Select folder to search"_s);
    });
    cmdSelect(selector)->click();
    QCOMPARE(mDialogs, 1);
    QCOMPARE(cmdSelect(selector)->accessibleName(), u"Select folder to search"_s);
  }

  void ChosenFolderEndsInTheSeparator() {
    uctSelectDir selector(*mFiles, mBrowse);
    OnDialog(Choose(mFolder.path()));
    cmdSelect(selector)->click();
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(mFolder.path() + u'/'));
    QCOMPARE(lblDirectory(selector)->text(), selector.Folder());
  }

  void RootKeepsItsSingleSeparator() {
    uctSelectDir selector(*mFiles, mBrowse);
    OnDialog(Choose(QDir::rootPath()));
    cmdSelect(selector)->click();
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(QDir::rootPath()));
  }

  void CancelKeepsTheFolder_data() {
    QTest::addColumn<QString>("folder");
    QTest::newRow("empty") << QString();
    QTest::newRow("no folder") << u"/no/such/folder"_s;
    QTest::newRow("folder") << QDir::tempPath();
  }
  void CancelKeepsTheFolder() {
    QFETCH(QString, folder);
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetFolder(folder);
    OnDialog([](QFileDialog& dialog) { dialog.reject(); });
    cmdSelect(selector)->click();
    QCOMPARE(mDialogs, 1);
    QCOMPARE(selector.Folder(), folder);
  }

  void DialogStartsInTheFolderIfThereIsOne() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetFolder(mFolder.path() + u'/');
    OnDialog([this](QFileDialog& dialog) { QCOMPARE(dialog.directory(), QDir(mFolder.path())); });
    cmdSelect(selector)->click();
    selector.SetFolder(u"/no/such/folder"_s);
    OnDialog([](QFileDialog& dialog) { QCOMPARE(dialog.directory(), QDir::home()); });
    cmdSelect(selector)->click();
    QCOMPARE(mDialogs, 2);
  }

  void DoubleClickOnTheFolderIsAsTheButton() {
    uctSelectDir selector(*mFiles, mBrowse);
    OnDialog(Choose(mFolder.path()));
    QTest::mouseDClick(lblDirectory(selector), Qt::LeftButton);
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(mFolder.path() + u'/'));
  }

  void ButtonKeepsToTheRightEdge() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetCaption(u"Source Directory"_s);
    selector.resize(400, selector.sizeHint().height());
    selector.show();
    const int buttonWidth = cmdSelect(selector)->width();
    const QRect heading = selector.findChild<QLabel*>(u"hdgDirectory"_s)->geometry();
    selector.resize(900, selector.height());
    QCOMPARE(cmdSelect(selector)->width(), buttonWidth);
    QCOMPARE(cmdSelect(selector)->geometry().right() + 1, 900 - 8);
    QCOMPARE(lblDirectory(selector)->geometry().right() + 1, cmdSelect(selector)->x() - 4);
    QCOMPARE(selector.findChild<QLabel*>(u"hdgDirectory"_s)->geometry(), heading);
  }

  void LongFolderIsToldInATipAndTakesNoRoom() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.resize(300, selector.sizeHint().height());
    selector.show();
    const QString longFolder = u"/home/<b>"_s + QString(300, u'x') + u'/';
    const int minimum = selector.minimumSizeHint().width();
    selector.SetFolder(longFolder);
    QCOMPARE(selector.Folder(), longFolder);
    QCOMPARE(selector.minimumSizeHint().width(), minimum);
    QHelpEvent hover(QEvent::ToolTip, QPoint(3, 3), lblDirectory(selector)->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(lblDirectory(selector), &hover);
    QVERIFY(QToolTip::text().contains(longFolder.toHtmlEscaped()));
  }

  void ControlsHaveAccessibleNames() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetCaption(u"Source Directory"_s);
    selector.SetFolder(u"/home/"_s);
    const auto text = [](QWidget* widget, QAccessible::Text kind) {
      return QAccessible::queryAccessibleInterface(widget)->text(kind);
    };
    QCOMPARE(cmdSelect(selector)->text(), u"Select..."_s);
    QCOMPARE(text(cmdSelect(selector), QAccessible::Name), u"Select Source Directory"_s);
    QCOMPARE(text(lblDirectory(selector), QAccessible::Name), u"Source Directory"_s);
    QCOMPARE(text(lblDirectory(selector), QAccessible::Description), u"/home/"_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::uctSelectDir_test)
#include "uctSelectDir_test.moc"
