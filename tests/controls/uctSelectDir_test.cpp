#include "controls/uctSelectDir.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include "common/RecentFolders.h"
#include "common/Settings.h"
#include "controls/BrowseFF.h"
#include "platform/FileSystemObject.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"

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

  /// What a file manager sends when the paths are dropped; the action that was taken, none where refused.
  static Qt::DropAction Drop(uctSelectDir& selector, const QMimeData& data,
                             Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction) {
    QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&selector, &enter);
    if (!enter.isAccepted()) return Qt::IgnoreAction;
    QDragMoveEvent move(QPoint(6, 6), offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&selector, &move);
    if (!move.isAccepted()) return Qt::IgnoreAction;
    QDropEvent drop(QPointF(6, 6), offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&selector, &drop);
    return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
  }
  static Qt::DropAction Drop(uctSelectDir& selector, const QStringList& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) urls << QUrl::fromLocalFile(path);
    data.setUrls(urls);
    return Drop(selector, data);
  }

  static QMenu* Menu(uctSelectDir& selector, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) {
    QWidget* clicked = reason == QContextMenuEvent::Mouse ? lblDirectory(selector) : selector.focusProxy();
    QContextMenuEvent event(reason, QPoint(3, 3), clicked->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(clicked, &event);
    return selector.findChild<QMenu*>();
  }
  static QAction* Item(uctSelectDir& selector, const QString& name) {
    return Menu(selector)->findChild<QAction*>(name);
  }

  std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
  BrowseFF mBrowse;
  QTemporaryDir mFolder;
  int mDialogs = 0;

 private Q_SLOTS:
  void init() {
    mDialogs = 0;
    QApplication::clipboard()->clear();
    for (int number = 0; number < 10; ++number) DeleteSetting(u"General"_s, u"RecentFolder%1"_s.arg(number));
  }

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

  void AFolderCanBeDropped() {
    uctSelectDir selector(*mFiles, mBrowse);
    // Never a move: the file manager would take the folder away.
    QCOMPARE(Drop(selector, QStringList{mFolder.path()}), Qt::LinkAction);
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(mFolder.path() + u'/'));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QDir::rootPath())});
    QCOMPARE(Drop(selector, data, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(QDir::rootPath()));
    QCOMPARE(Drop(selector, data, Qt::MoveAction), Qt::IgnoreAction);
    QCOMPARE(RecentFolders().size(), 2);
  }

  void NothingElseCanBeDropped() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetFolder(u"/before/"_s);
    QFile file(mFolder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(Drop(selector, QStringList{file.fileName()}), Qt::IgnoreAction);
    QCOMPARE(Drop(selector, QStringList{mFolder.path() + u"/none"_s}), Qt::IgnoreAction);
    QCOMPARE(Drop(selector, {mFolder.path(), QDir::rootPath()}), Qt::IgnoreAction);
    QMimeData web;
    web.setUrls({QUrl(u"https://localhost/"_s)});
    QCOMPARE(Drop(selector, web), Qt::IgnoreAction);
    QMimeData text;
    text.setText(mFolder.path());
    QCOMPARE(Drop(selector, text), Qt::IgnoreAction);
    QCOMPARE(selector.Folder(), u"/before/"_s);
    QVERIFY(RecentFolders().isEmpty());
  }

  void NothingIsDroppedBehindAQuestion() {
    uctSelectDir selector(*mFiles, mBrowse);
    OnDialog([&](QFileDialog&) { QCOMPARE(Drop(selector, QStringList{mFolder.path()}), Qt::IgnoreAction); });
    cmdSelect(selector)->click();
    QCOMPARE(selector.Folder(), QString());
    QCOMPARE(mDialogs, 1);
  }

  void TheMenuOpensTheFolder() {
    uctSelectDir selector(*mFiles, mBrowse);
    QVERIFY(!Item(selector, u"mnuOpen"_s)->isEnabled());
    delete selector.findChild<QMenu*>();
    selector.SetFolder(mFolder.path() + u'/');
    const StandInOpener opener;
    Item(selector, u"mnuOpen"_s)->trigger();
    QCOMPARE(opener.Opened().size(), 1);
    QCOMPARE(QDir::cleanPath(opener.Opened()[0]), mFolder.path());
  }

  void AFolderThatIsGoneIsToldWhenItIsOpened() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.SetFolder(u"/no/such/folder/"_s);
    MessageBoxes boxes;
    Item(selector, u"mnuOpen"_s)->trigger();
    QCOMPARE(boxes.TakeTexts(), QStringList{u"The specified path was not found."_s});
  }

  void TheMenuPastes_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("folder") << mFolder.path() << true;
    QTest::newRow("line") << u"  "_s + mFolder.path() + u"/\n"_s << true;
    QTest::newRow("quoted") << u'"' + mFolder.path() + u'"' << true;
    QTest::newRow("address") << QUrl::fromLocalFile(mFolder.path()).toString() << true;
    QTest::newRow("none") << mFolder.path() + u"/none"_s << false;
    QTest::newRow("relative") << u"."_s << false;
    QTest::newRow("nothing") << QString() << false;
  }
  void TheMenuPastes() {
    QFETCH(QString, text);
    QFETCH(bool, isFolder);
    QApplication::clipboard()->setText(text);
    uctSelectDir selector(*mFiles, mBrowse);
    QAction* paste = Item(selector, u"mnuPaste"_s);
    QCOMPARE(paste->isEnabled(), isFolder);
    paste->trigger();
    QCOMPARE(selector.Folder(), isFolder ? QDir::toNativeSeparators(mFolder.path() + u'/') : QString());
  }

  void AFolderCopiedInAFileManagerIsPasted() {
    auto* copied = new QMimeData;
    copied->setUrls({QUrl::fromLocalFile(mFolder.path())});
    QApplication::clipboard()->setMimeData(copied);
    uctSelectDir selector(*mFiles, mBrowse);
    Item(selector, u"mnuPaste"_s)->trigger();
    QCOMPARE(selector.Folder(), QDir::toNativeSeparators(mFolder.path() + u'/'));
  }

  void TheMenuHasTheLastFolders() {
    uctSelectDir selector(*mFiles, mBrowse);
    RememberFolder(u"/gone & lost/"_s);
    OnDialog(Choose(mFolder.path()));
    cmdSelect(selector)->click();
    const QMenu* menu = Menu(selector);
    QStringList captions;
    for (const QAction* item : menu->actions()) captions << item->text();
    QCOMPARE(captions.mid(0, 3), (QStringList{u"&Open"_s, u"&Paste"_s, QString()}));
    QCOMPARE(captions.size(), 5);
    QCOMPARE(captions[3], u"&1 "_s + selector.Folder());
    QCOMPARE(captions[4], u"&2 /gone && lost/"_s);
    menu->findChild<QAction*>(u"mnuRecent(1)"_s)->trigger();
    QCOMPARE(selector.Folder(), u"/gone & lost/"_s);
    QCOMPARE(RecentFolders().first(), u"/gone & lost/"_s);
  }

  void ALongFolderIsShortenedInTheMenu() {
    uctSelectDir selector(*mFiles, mBrowse);
    const QString longFolder = u"/home/"_s + QString(400, u'x') + u"/end/"_s;
    RememberFolder(longFolder);
    QAction* recent = Item(selector, u"mnuRecent(0)"_s);
    QVERIFY(recent->text().startsWith(u"&1 /home/"_s) && recent->text().endsWith(u"/end/"_s));
    QVERIFY(recent->text().size() < 120);
    QVERIFY(recent->toolTip().contains(longFolder));
    recent->trigger();
    QCOMPARE(selector.Folder(), longFolder);
  }

  void TheMenuKeyShowsTheMenuBelowTheFolder() {
    uctSelectDir selector(*mFiles, mBrowse);
    selector.show();
    const QMenu* menu = Menu(selector, QContextMenuEvent::Keyboard);
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(menu->pos(), lblDirectory(selector)->mapToGlobal(lblDirectory(selector)->rect().bottomLeft()));
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
