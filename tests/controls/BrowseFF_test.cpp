#include "controls/BrowseFF.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class BrowseFF_test : public QObject {
  Q_OBJECT

 private:
  /// Shows the dialog and hands it, once it is up, to `use`, which has to end it.
  template <class Use>
  bool ShowAnd(Use use) {
    QTimer::singleShot(0, this, [use] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      QVERIFY(dialog);
      use(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
    return mBrowse.Show(&mWindow);
  }

  static void Type(QFileDialog& dialog, const QString& path) {
    dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
  }

  static void PressOpen(QFileDialog& dialog) {
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    QAbstractButton* open = buttons->button(QDialogButtonBox::Open);
    QVERIFY(open);
    QVERIFY(open->isEnabled());
    open->click();
  }

  QTemporaryDir mFolder;
  QWidget mWindow;
  BrowseFF mBrowse;

 private Q_SLOTS:
  void initTestCase() { mWindow.show(); }

  void init() {
    QDir(mFolder.path()).mkpath(u"sub/inner"_s);
    mBrowse = BrowseFF();
    mBrowse.StartFolder = mFolder.path() + u'/';
  }

  void ShowsTitleAndPrompt() {
    mBrowse.Title = u"Select Folder"_s;
    mBrowse.Prompt = u"Select the <b>Source Directory"_s;
    ShowAnd([](QFileDialog& dialog) {
      QCOMPARE(dialog.windowTitle(), u"Select Folder"_s);
      auto* prompt = dialog.findChild<QLabel*>(u"Prompt"_s);
      QCOMPARE(prompt->text(), u"Select the <b>Source Directory"_s);
      QVERIFY(prompt->isVisible());
      QVERIFY(prompt->geometry().bottom() <
              dialog.findChild<QTreeView*>(u"treeView"_s)->mapTo(&dialog, QPoint()).y());
    });
  }

  void StartsInTheStartFolder() {
    ShowAnd([this](QFileDialog& dialog) { QCOMPARE(dialog.directory(), QDir(mFolder.path())); });
  }

  void StartsAtHomeWithoutOne() {
    mBrowse.StartFolder.clear();
    ShowAnd([](QFileDialog& dialog) { QCOMPARE(dialog.directory(), QDir::home()); });
  }

  void TheFolderShownCanBeChosen() {
    QVERIFY(ShowAnd([](QFileDialog& dialog) { PressOpen(dialog); }));
    QCOMPARE(mBrowse.Folder(), QDir::toNativeSeparators(mFolder.path()));
  }

  void ATypedPathIsTaken_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("folder");
    const QString sub = mFolder.filePath(u"sub"_s);
    QTest::newRow("relative") << u"sub"_s << sub;
    QTest::newRow("absolute") << sub << sub;
    QTest::newRow("separator at the end") << sub + u'/' << sub;
    QTest::newRow("separators at the end") << sub + u"//"_s << sub;
    if (QDir::separator() == u'/') {  // elsewhere nobody knows that name of it
      QTest::newRow("home") << u"~"_s << QDir::homePath();
      QTest::newRow("home with separator") << u"~/"_s << QDir::homePath();
    }
    QTest::newRow("root") << QDir::rootPath() << QDir::rootPath();
  }
  void ATypedPathIsTaken() {
    QFETCH(QString, typed);
    QFETCH(QString, folder);
    QVERIFY(ShowAnd([&](QFileDialog& dialog) {
      Type(dialog, typed);
      PressOpen(dialog);
    }));
    QCOMPARE(mBrowse.Folder(), QDir::toNativeSeparators(folder));
  }

  void DoubleClickEntersAFolder() {
    QVERIFY(ShowAnd([this](QFileDialog& dialog) {
      auto* list = dialog.findChild<QAbstractItemView*>(u"listView"_s);
      if (!list->isVisible()) list = dialog.findChild<QAbstractItemView*>(u"treeView"_s);
      QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 1);
      const QPoint place = list->visualRect(list->model()->index(0, 0, list->rootIndex())).center();
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
      QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
      QTRY_COMPARE(dialog.directory(), QDir(mFolder.filePath(u"sub"_s)));
      PressOpen(dialog);
    }));
    QCOMPARE(mBrowse.Folder(), QDir::toNativeSeparators(mFolder.filePath(u"sub"_s)));
  }

  void CancelKeepsTheFormerFolder() {
    QVERIFY(ShowAnd([](QFileDialog& dialog) { PressOpen(dialog); }));
    QVERIFY(!ShowAnd([](QFileDialog& dialog) { dialog.reject(); }));
    QCOMPARE(mBrowse.Folder(), QDir::toNativeSeparators(mFolder.path()));
  }

  void AlwaysShowsWhollyOnTheScreen_data() {
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");
    QTest::newRow("corner") << 0 << 0;
    QTest::newRow("beyond the lower right") << 100000 << 100000;
    QTest::newRow("beyond the upper left") << -5000 << -5000;
    QTest::newRow("near the lower right") << 780 << 580;
  }
  void AlwaysShowsWhollyOnTheScreen() {
    QFETCH(int, left);
    QFETCH(int, top);
    mBrowse.Left = left;
    mBrowse.Top = top;
    ShowAnd([](QFileDialog& dialog) {
      QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(dialog.frameGeometry()));
    });
  }

  void ShowsWhereAsked() {
    mBrowse.Left = 30;
    mBrowse.Top = 20;
    ShowAnd([](QFileDialog& dialog) { QCOMPARE(dialog.pos(), QPoint(30, 20)); });
  }

  void SideBarOffersThePlacesOfTheUser() {
    ShowAnd([](QFileDialog& dialog) {
      const QList<QUrl> places = dialog.sidebarUrls();
      QVERIFY(places.contains(QUrl::fromLocalFile(QDir::homePath())));
      QVERIFY(places.contains(QUrl::fromLocalFile(QDir::rootPath())));
    });
  }

  void SideBarLeavesOutDrivesWithoutAMedium() {
    if (!qEnvironmentVariableIsSet("BRACKWELL_MADE_DRIVES")) QSKIP("this machine has drives of its own");
    ShowAnd([](QFileDialog& dialog) {
      const QList<QUrl> places = dialog.sidebarUrls();
      QVERIFY(places.contains(QUrl::fromLocalFile(u"D:/"_s)));
      QVERIFY(!places.contains(QUrl::fromLocalFile(u"E:/"_s)));
    });
  }

  void SideBarOfOtherProgramsStaysAsItWas() {
    const QList<QUrl> before = QFileDialog().sidebarUrls();
    ShowAnd([](QFileDialog& dialog) { dialog.reject(); });
    QCOMPARE(QFileDialog().sidebarUrls(), before);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::BrowseFF_test)
#include "BrowseFF_test.moc"
