#include "controls/FolderTree.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <condition_variable>
#include <filesystem>
#include <mutex>

#include "platform/SubFolders.h"
#include "support/ClosedFolder.h"
#include "support/FolderLink.h"
#include "support/IsolatedSettings.h"
#include "support/OwnFolders.h"
#include "support/RootOfAll.h"
#include "support/TempTree.h"

using namespace Qt::StringLiterals;

namespace brackwell {

namespace {

/// A drive that answers nothing below some folder until it is let go. Its listings may outlive the test.
struct DeadDrive {
  std::mutex Lock;
  std::condition_variable Changed;
  std::string Path;
  bool Answers = false;
  int Asked = 0;

  void Answer() {
    const std::lock_guard guard(Lock);
    Answers = true;
    Changed.notify_all();
  }
  void Wait(const std::string& path) {
    std::unique_lock guard(Lock);
    ++Asked;
    if (path == Path) Changed.wait(guard, [this] { return Answers; });
  }
  int TimesAsked() {
    const std::lock_guard guard(Lock);
    return Asked;
  }
};

FolderLister::List Through(const std::shared_ptr<DeadDrive>& drive) {
  return [drive](const std::string& path, const auto& found) {
    drive->Wait(path);
    ListSubFolders(path, found);
  };
}

}  // namespace

class FolderTreeTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void TheTopShowsTheRootAndTheHomeFolder();
  void NothingIsSelectedAtFirst();
  void ChildrenComeWhenAFolderIsOpened();
  void OnlyFoldersShowHiddenOnesIncluded();
  void LinksShowAndLoopsDoNoHarm();
  void AFolderWithoutFoldersLosesItsMark();
  void AClickSelectsAndTellsOnce();
  void NothingCanUnselect();
  void ANameThatIsNoTextGivesItsBytesBack();
  void ANameWithALineBreakStaysOnOneLine();
  void AFolderThatCannotBeReadSaysSo();
  void ToolTipsShowThePathAsItIs();
  void ADeepPathIsRevealed();
  void PathsAreTakenAsTheyCome_data();
  void PathsAreTakenAsTheyCome();
  void APathThatIsNotThereChangesNothing_data();
  void APathThatIsNotThereChangesNothing();
  void TheUserForestallsAReveal();
  void AFolderMadeAfterTheListingIsRevealed();
  void ArrowsOpenCloseAndMove();
  void PlusMinusAndEnter();
  void TypingANameGoesThere();
  void HomeAndEnd();
  void TheAsteriskOpensOneFolder();
  void F5FollowsTheDisk();
  void OpeningAgainFollowsTheDisk();
  void ComingBackToTheProgramFollowsTheDisk();
  void ASelectedFolderThatVanishesHandsTheSelectionToItsParent();
  void AFolderThatVanishesBelowAnOpenOne();
  void AFolderGoneWhenItIsOpenedLeavesTheTree();
  void TenThousandFoldersDoNotStall();
  void ADriveThatHangsLeavesTheRestUsable();
  void ADriveThatHangsDoesNotHoldUpTheEnd();
  void StopForgetsWhatHangs();

 private:
  QAbstractItemModel& Model() const { return *mTree->model(); }
  QModelIndex HomeIndex() const;
  QModelIndex Below(const QModelIndex& folder, const QString& name) const;
  QStringList Names(const QModelIndex& folder) const;
  void Open(const QModelIndex& folder, int children);
  void Key(Qt::Key key) { QTest::keyClick(mTree.get(), key); }
  QString CurrentName() const { return mTree->currentIndex().data().toString(); }
  void Use(std::unique_ptr<FolderTree> tree);

  std::unique_ptr<TempTree> mDisk;
  std::unique_ptr<OwnHomeFolder> mHome;
  std::unique_ptr<FolderTree> mTree;
};

void FolderTreeTest::init() {
  mDisk = std::make_unique<TempTree>();
  mHome = std::make_unique<OwnHomeFolder>(mDisk->Path());
  Use(std::make_unique<FolderTree>());
}

void FolderTreeTest::cleanup() {
  mTree.reset();
  mHome.reset();
  mDisk.reset();
}

void FolderTreeTest::Use(std::unique_ptr<FolderTree> tree) {
  mTree = std::move(tree);
  new QAbstractItemModelTester(&Model(), QAbstractItemModelTester::FailureReportingMode::Fatal, mTree.get());
  mTree->resize(300, 500);
  mTree->show();
  QVERIFY(QTest::qWaitForWindowExposed(mTree.get()));
}

QModelIndex FolderTreeTest::HomeIndex() const { return Below({}, u"Home"_s); }

QModelIndex FolderTreeTest::Below(const QModelIndex& folder, const QString& name) const {
  for (int row = 0; row < Model().rowCount(folder); ++row)
    if (Model().index(row, 0, folder).data().toString() == name) return Model().index(row, 0, folder);
  return {};
}

QStringList FolderTreeTest::Names(const QModelIndex& folder) const {
  QStringList names;
  for (int row = 0; row < Model().rowCount(folder); ++row)
    names << Model().index(row, 0, folder).data().toString();
  return names;
}

void FolderTreeTest::Open(const QModelIndex& folder, int children) {
  mTree->expand(folder);
  QTRY_COMPARE(Model().rowCount(folder), children);
}

void FolderTreeTest::TheTopShowsTheRootAndTheHomeFolder() {
  const QStringList names = Names({});
  QVERIFY(names.contains(RootOfAll()));
  QVERIFY(names.contains(u"Home"_s));
  QVERIFY(mTree->visualRect(HomeIndex()).isValid());
  QCOMPARE(mTree->objectName(), u"FolderTree"_s);
  QVERIFY(!mTree->accessibleName().isEmpty());
}

void FolderTreeTest::NothingIsSelectedAtFirst() {
  const QSignalSpy told(mTree.get(), &FolderTree::FolderChanged);
  mTree->setFocus();
  QTRY_VERIFY(mTree->hasFocus());
  QCOMPARE(mTree->SelectedFolder(), std::string());
  QVERIFY(told.isEmpty());
}

void FolderTreeTest::ChildrenComeWhenAFolderIsOpened() {
  mDisk->Folder("b/inner");
  mDisk->Folder("A");
  QVERIFY(Model().hasChildren(HomeIndex()));
  QCOMPARE(Model().rowCount(HomeIndex()), 0);
  mTree->expand(HomeIndex());
  QCOMPARE(Model().rowCount(HomeIndex()), 0);  // nobody waited for them
  QTRY_COMPARE(Names(HomeIndex()), (QStringList{u"A"_s, u"b"_s}));
  QVERIFY(mTree->visualRect(Below(HomeIndex(), u"b"_s)).isValid());
  QCOMPARE(Model().rowCount(Below(HomeIndex(), u"b"_s)), 0);
}

void FolderTreeTest::OnlyFoldersShowHiddenOnesIncluded() {
  mDisk->Folder(".hidden");
  mDisk->Folder("folder");
  mDisk->File("file");
  Open(HomeIndex(), 2);
  QCOMPARE(Names(HomeIndex()), (QStringList{u".hidden"_s, u"folder"_s}));
}

void FolderTreeTest::LinksShowAndLoopsDoNoHarm() {
  mDisk->Folder("a");
  if (!MakeFolderLink(mDisk->Path("a/loop"), "..")) QSKIP(NoLinks);
  QVERIFY(MakeFolderLink(mDisk->Path("dangling"), "nowhere"));
  Open(HomeIndex(), 1);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("a/loop/a/loop/a")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("a/loop/a/loop/a"));
}

void FolderTreeTest::AFolderWithoutFoldersLosesItsMark() {
  mDisk->Folder("empty");
  Open(HomeIndex(), 1);
  const QModelIndex empty = Below(HomeIndex(), u"empty"_s);
  QVERIFY(Model().hasChildren(empty));
  mTree->expand(empty);
  QTRY_VERIFY(!Model().hasChildren(empty));
  QVERIFY(!mTree->isExpanded(empty));
}

void FolderTreeTest::AClickSelectsAndTellsOnce() {
  mDisk->Folder("a");
  Open(HomeIndex(), 1);
  const QSignalSpy told(mTree.get(), &FolderTree::FolderChanged);
  const QModelIndex folder = Below(HomeIndex(), u"a"_s);
  for (int i = 0; i < 2; ++i)
    QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, mTree->visualRect(folder).center());
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("a"));
  QCOMPARE(told.count(), 1);
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, mTree->visualRect(HomeIndex()).center());
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {},
                    mTree->visualRect(Below({}, RootOfAll())).center());
  QCOMPARE(mTree->SelectedFolder(), RootOfAll().toStdString());
  QCOMPARE(told.count(), 3);
}

void FolderTreeTest::NothingCanUnselect() {
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  const QPoint home = mTree->visualRect(HomeIndex()).center();
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, Qt::ControlModifier, home);
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, QPoint(100, mTree->viewport()->height() - 5));
  QTest::keyClick(mTree.get(), Qt::Key_Space, Qt::ControlModifier);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());
}

void FolderTreeTest::ANameThatIsNoTextGivesItsBytesBack() {
  if (!TempTree::CanName("caf\xe9")) QSKIP(NoSuchName);
  mDisk->Folder("caf\xe9/inner\xff");
  Open(HomeIndex(), 1);
  const QModelIndex folder = Below(HomeIndex(), u"caf\ufffd"_s);
  QVERIFY(folder.isValid());
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, mTree->visualRect(folder).center());
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("caf\xe9"));
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("caf\xe9/inner\xff")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("caf\xe9/inner\xff"));
}

void FolderTreeTest::ANameWithALineBreakStaysOnOneLine() {
  if (!TempTree::CanName("two\nlines")) QSKIP(NoSuchName);
  mDisk->Folder("two\nlines");
  Open(HomeIndex(), 1);
  QCOMPARE(Names(HomeIndex()), QStringList{u"two\u240alines"_s});
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("two\nlines")));
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("two\nlines"));
}

void FolderTreeTest::AFolderThatCannotBeReadSaysSo() {
  mDisk->Folder("closed/inner");
  Open(HomeIndex(), 1);
  const QModelIndex closed = Below(HomeIndex(), u"closed"_s);
  {
    // A thread has the privileges of the one that starts it.
    const ClosedFolder unreadable(mDisk->Path("closed"), ClosedFolder::To::Readers);
    mTree->expand(closed);
    QTRY_VERIFY(!Model().hasChildren(closed));
  }
  const QString toolTip = closed.data(Qt::ToolTipRole).toString();
  QVERIFY2(toolTip.contains(u"\nThis folder cannot be read: Permission denied"_s), qPrintable(toolTip));
  QCOMPARE(closed.data(Qt::AccessibleDescriptionRole).toString(), u"Permission denied"_s);
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, mTree->visualRect(closed).center());
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("closed"));

  QTest::keyClick(mTree.get(), Qt::Key_F5);  // it is not open
  mTree->expand(closed);
  QTRY_VERIFY(mTree->SetSelectedFolder(mDisk->Path("closed/inner")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("closed/inner"));
  QVERIFY(!closed.data(Qt::ToolTipRole).toString().contains(u"cannot"_s));
}

void FolderTreeTest::ToolTipsShowThePathAsItIs() {
  if (!TempTree::CanName("<b>bold")) QSKIP(NoSuchName);
  mDisk->Folder("<b>bold");
  Open(HomeIndex(), 1);
  QVERIFY(Below(HomeIndex(), u"<b>bold"_s).data(Qt::ToolTipRole).toString().contains(u"/&lt;b&gt;bold"_s));
}

void FolderTreeTest::ADeepPathIsRevealed() {
  const std::string deep = "one/two/three/four/five";
  mDisk->Folder(deep);
  const QSignalSpy told(mTree.get(), &FolderTree::FolderChanged);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path(deep)));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path(deep));
  QCOMPARE(told.count(), 1);
  QVERIFY(mTree->viewport()->rect().intersects(mTree->visualRect(mTree->currentIndex())));
  QCOMPARE(CurrentName(), u"five"_s);
  QVERIFY(!mTree->isExpanded(mTree->currentIndex()));
}

void FolderTreeTest::PathsAreTakenAsTheyCome_data() {
  QTest::addColumn<QString>("given");
  QTest::addColumn<QString>("folder");
  QTest::newRow("the home folder") << u"%1"_s << u"%1"_s;
  QTest::newRow("separator at its end") << u"%1/"_s << u"%1"_s;
  QTest::newRow("a folder with separators") << u"%1/a//b/"_s << u"%1/a/b"_s;
  QTest::newRow("with a dot") << u"%1/./a/."_s << u"%1/a"_s;
  QTest::newRow("the root") << RootOfAll() << RootOfAll();
}

void FolderTreeTest::PathsAreTakenAsTheyCome() {
  QFETCH(QString, given);
  QFETCH(QString, folder);
  mDisk->Folder("a/b");
  const QString home = QString::fromStdString(mDisk->Path());
  const auto full = [&](const QString& text) {
    return QDir::toNativeSeparators(QString(text).replace(u"%1"_s, home)).toStdString();
  };
  QVERIFY(mTree->SetSelectedFolder(full(given)));
  QTRY_COMPARE(mTree->SelectedFolder(), full(folder));
}

void FolderTreeTest::APathThatIsNotThereChangesNothing_data() {
  QTest::addColumn<QString>("path");
  QTest::addColumn<bool>("leadsSomewhere");
  QTest::newRow("empty") << QString() << false;
  QTest::newRow("relative") << u"a"_s << false;
  QTest::newRow("up again") << u"%1/a/../b"_s << false;
  QTest::newRow("not there") << u"%1/gone"_s << true;
  QTest::newRow("nor its parent") << u"%1/gone/below"_s << true;
  QTest::newRow("below a file") << u"%1/file/below"_s << true;
  QTest::newRow("a file") << u"%1/file"_s << true;
}

void FolderTreeTest::APathThatIsNotThereChangesNothing() {
  QFETCH(QString, path);
  QFETCH(bool, leadsSomewhere);
  mDisk->Folder("a");
  mDisk->File("file");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  path = QDir::toNativeSeparators(path.replace(u"%1"_s, QString::fromStdString(mDisk->Path())));
  QCOMPARE(mTree->SetSelectedFolder(path.toStdString()), leadsSomewhere);
  QTest::qWait(50);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());

  // Nor does it lie in wait for a folder to come.
  Open(HomeIndex(), 1);
  mDisk->Folder("gone/below");
  Key(Qt::Key_F5);
  QTRY_COMPARE(Model().rowCount(HomeIndex()), 2);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());
}

void FolderTreeTest::TheUserForestallsAReveal() {
  const auto drive = std::make_shared<DeadDrive>();
  drive->Path = mDisk->Path("slow");
  mDisk->Folder("slow/inner");
  mDisk->Folder("other");
  Use(std::make_unique<FolderTree>(Through(drive), nullptr));
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("slow/inner")));
  QTRY_COMPARE(Model().rowCount(HomeIndex()), 2);
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {},
                    mTree->visualRect(Below(HomeIndex(), u"other"_s)).center());
  drive->Answer();
  const QModelIndex slow = Model().index(1, 0, HomeIndex());
  QTRY_COMPARE(Model().rowCount(slow), 1);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("other"));
}

void FolderTreeTest::AFolderMadeAfterTheListingIsRevealed() {
  mDisk->Folder("a");
  Open(HomeIndex(), 1);
  mDisk->Folder("new/inner");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("new/inner")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("new/inner"));
}

void FolderTreeTest::ArrowsOpenCloseAndMove() {
  mDisk->Folder("a/inner");
  mDisk->Folder("b");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  Key(Qt::Key_Right);
  QTRY_COMPARE(Model().rowCount(HomeIndex()), 2);
  Key(Qt::Key_Right);
  QCOMPARE(CurrentName(), u"a"_s);
  Key(Qt::Key_Down);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("b"));
  Key(Qt::Key_Up);
  Key(Qt::Key_Left);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());
  Key(Qt::Key_Left);
  QVERIFY(!mTree->isExpanded(HomeIndex()));
}

void FolderTreeTest::PlusMinusAndEnter() {
  mDisk->Folder("a");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  Key(Qt::Key_Plus);
  QVERIFY(mTree->isExpanded(HomeIndex()));
  Key(Qt::Key_Minus);
  QVERIFY(!mTree->isExpanded(HomeIndex()));
  Key(Qt::Key_Return);
  QTRY_VERIFY(mTree->isExpanded(HomeIndex()) && Model().rowCount(HomeIndex()) == 1);
  Key(Qt::Key_Enter);
  QVERIFY(!mTree->isExpanded(HomeIndex()));
}

void FolderTreeTest::TypingANameGoesThere() {
  mDisk->Folder("apple");
  mDisk->Folder("pear");
  mDisk->Folder("plum");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  Open(HomeIndex(), 3);
  QTest::keyClicks(mTree.get(), u"pl"_s);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("plum"));
}

void FolderTreeTest::HomeAndEnd() {
  mDisk->Folder("a");
  Open(HomeIndex(), 1);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  Key(Qt::Key_End);
  QCOMPARE(mTree->indexBelow(mTree->currentIndex()), QModelIndex());
  Key(Qt::Key_Home);
  QCOMPARE(mTree->SelectedFolder(), Model().index(0, 0).data().toString().toStdString());
}

void FolderTreeTest::TheAsteriskOpensOneFolder() {
  const auto drive = std::make_shared<DeadDrive>();
  for (const char* name : {"a/1", "b/1", "c/1"}) mDisk->Folder(name);
  Use(std::make_unique<FolderTree>(Through(drive), nullptr));
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path()));
  Open(HomeIndex(), 3);
  Key(Qt::Key_Asterisk);
  QTest::qWait(50);
  QCOMPARE(drive->TimesAsked(), 1);
}

void FolderTreeTest::F5FollowsTheDisk() {
  mDisk->Folder("a");
  mDisk->Folder("c/inner");
  Open(HomeIndex(), 2);
  Open(Below(HomeIndex(), u"c"_s), 1);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("c/inner")));
  mDisk->Remove("a");
  for (const char* name : {"0", "b", "d", "c/new"}) mDisk->Folder(name);
  Key(Qt::Key_F5);
  QTRY_COMPARE(Names(HomeIndex()), (QStringList{u"0"_s, u"b"_s, u"c"_s, u"d"_s}));
  QTRY_COMPARE(Names(Below(HomeIndex(), u"c"_s)), (QStringList{u"inner"_s, u"new"_s}));
  QVERIFY(mTree->isExpanded(Below(HomeIndex(), u"c"_s)));
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("c/inner"));
}

void FolderTreeTest::OpeningAgainFollowsTheDisk() {
  mDisk->Folder("a");
  Open(HomeIndex(), 1);
  mDisk->Folder("b");
  mTree->collapse(HomeIndex());
  mTree->expand(HomeIndex());
  QTRY_COMPARE(Names(HomeIndex()), (QStringList{u"a"_s, u"b"_s}));
}

void FolderTreeTest::ComingBackToTheProgramFollowsTheDisk() {
  mDisk->Folder("a");
  Open(HomeIndex(), 1);
  QWidget window;
  mTree->setParent(&window);
  const auto takenOut = qScopeGuard([this] { mTree->setParent(nullptr); });
  mTree->show();
  window.show();
  QWidget other;
  other.show();
  other.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&other));
  mDisk->Folder("b");
  window.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  QTRY_COMPARE(Names(HomeIndex()), (QStringList{u"a"_s, u"b"_s}));
}

void FolderTreeTest::ASelectedFolderThatVanishesHandsTheSelectionToItsParent() {
  for (const char* name : {"a", "b/inner/most", "c"}) mDisk->Folder(name);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("b/inner/most")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("b/inner/most"));
  const QSignalSpy told(mTree.get(), &FolderTree::FolderChanged);
  mDisk->Remove("b/inner");
  Key(Qt::Key_F5);
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("b"));
  QCOMPARE(told.count(), 1);
}

void FolderTreeTest::AFolderThatVanishesBelowAnOpenOne() {
  mDisk->Folder("a/b/c");
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("a/b/c")));
  QTRY_COMPARE(mTree->SelectedFolder(), mDisk->Path("a/b/c"));
  mDisk->Remove("a");
  Key(Qt::Key_F5);
  QTRY_COMPARE(Model().rowCount(HomeIndex()), 0);
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path());
  QTest::qWait(50);  // listings of what is gone come in late
}

void FolderTreeTest::AFolderGoneWhenItIsOpenedLeavesTheTree() {
  mDisk->Folder("a");
  mDisk->Folder("b");
  Open(HomeIndex(), 2);
  mDisk->Remove("a");
  mTree->expand(Below(HomeIndex(), u"a"_s));
  QTRY_COMPARE(Names(HomeIndex()), QStringList{u"b"_s});
}

void FolderTreeTest::TenThousandFoldersDoNotStall() {
  for (int i = 0; i < 10000; ++i) std::filesystem::create_directory(mDisk->Path(std::to_string(i)));
  // Without the checks of the model, which take longer than all else.
  auto tree = std::make_unique<FolderTree>();
  tree->resize(300, 500);
  tree->show();
  QVERIFY(QTest::qWaitForWindowExposed(tree.get()));
  mTree = std::move(tree);
  mTree->expand(HomeIndex());
  qint64 longest = 0;
  while (Model().rowCount(HomeIndex()) < 10000) {
    QElapsedTimer watch;
    watch.start();
    QCoreApplication::processEvents();
    longest = std::max(longest, watch.elapsed());
  }
  qInfo("longest pause: %lld ms", longest);
  QVERIFY(mTree->SetSelectedFolder(mDisk->Path("7777")));
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("7777"));
  QVERIFY(mTree->viewport()->rect().intersects(mTree->visualRect(mTree->currentIndex())));
}

void FolderTreeTest::ADriveThatHangsLeavesTheRestUsable() {
  const auto drive = std::make_shared<DeadDrive>();
  drive->Path = mDisk->Path("dead");
  mDisk->Folder("dead/inner");
  mDisk->Folder("alive/inner");
  Use(std::make_unique<FolderTree>(Through(drive), nullptr));
  Open(HomeIndex(), 2);
  const QModelIndex alive = Model().index(0, 0, HomeIndex());
  const QModelIndex dead = Model().index(1, 0, HomeIndex());
  mTree->expand(dead);
  QTRY_COMPARE(dead.data().toString(), u"dead …"_s);
  QCOMPARE(dead.data(Qt::AccessibleTextRole).toString(), u"dead"_s);
  Open(alive, 1);
  QTest::mouseClick(mTree->viewport(), Qt::LeftButton, {}, mTree->visualRect(dead).center());
  QCOMPARE(mTree->SelectedFolder(), mDisk->Path("dead"));
  const int asked = drive->TimesAsked();
  Key(Qt::Key_F5);  // lists the home folder and the other one, and does not hang once more
  QTRY_COMPARE(drive->TimesAsked(), asked + 2);
  drive->Answer();
  QTRY_COMPARE(Names(dead), QStringList{u"inner"_s});
  QCOMPARE(dead.data().toString(), u"dead"_s);
}

void FolderTreeTest::ADriveThatHangsDoesNotHoldUpTheEnd() {
  const auto drive = std::make_shared<DeadDrive>();
  drive->Path = mDisk->Path();
  Use(std::make_unique<FolderTree>(Through(drive), nullptr));
  mTree->expand(HomeIndex());
  QTRY_COMPARE(drive->TimesAsked(), 1);
  mTree.reset();
  drive->Answer();
  QTest::qWait(20);  // it finds nobody to tell
}

void FolderTreeTest::StopForgetsWhatHangs() {
  const auto drive = std::make_shared<DeadDrive>();
  drive->Path = mDisk->Path();
  mDisk->Folder("inner");
  Use(std::make_unique<FolderTree>(Through(drive), nullptr));
  mTree->expand(HomeIndex());
  QTRY_COMPARE(Names({}).filter(u"…"_s), QStringList{u"Home …"_s});
  mTree->Stop();
  QVERIFY(HomeIndex().isValid());
  drive->Answer();
  QTest::qWait(20);
  QCOMPARE(Model().rowCount(HomeIndex()), 0);
  Key(Qt::Key_F5);
  QTRY_COMPARE(Names(HomeIndex()), QStringList{u"inner"_s});
}

}  // namespace brackwell

QTEST_MAIN(brackwell::FolderTreeTest)
#include "FolderTree_test.moc"
