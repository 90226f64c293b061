#include <QApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include "common/Settings.h"
#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/IsolatedSettings.h"
#include "support/LargeFolder.h"
#include "support/MessageBoxes.h"
#include "support/TempTree.h"
#include "support/When.h"

// Comparisons and fixes in the program as it is, while its user does something else.

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

void PostClick(QWidget& widget) {
  const QPointF place = widget.rect().center();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(&widget, new QMouseEvent(type, place, widget.mapToGlobal(place),
                                                         Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
}

QMessageBox* ShownBoxNow() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

}  // namespace

class frmCompareRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void TheProgramEndsInTheMiddleOfAComparison();
  void TheProgramEndsInTheMiddleOfTwoComparisons();
  void TheProgramDoesNotEndBehindAProblem();
  void TwoQuickClicksOnCompareGiveOneResult();
  void TwoQuickClicksOnFixFixOnce();
  void TwoQuickClicksOnCloseCloseOnce();

 private:
  template <typename Control>
  static Control& Get(frmCompare& form, const char* name) {
    auto* control = form.findChild<Control*>(QString::fromLatin1(name));
    if (!control) qFatal("no control %s", name);
    return *control;
  }

  frmCompare& Open(const char* source = "s", const char* target = "t");
  static bool HasRows(const frmCompare* form) {
    return form && form->IsRunning() && !form->Grid().Rows().empty();
  }
  static void Tick(frmCompare& form);
  /// Runs the program until it ends; false where it does not.
  static bool RunsToItsEnd();

  std::unique_ptr<TempTree> mTree;
  std::unique_ptr<frmMain> mMain;
};

void frmCompareRunTest::init() {
  mTree = std::make_unique<TempTree>();
  mTree->Folder("s");
  mTree->Folder("t");
  mMain = std::make_unique<frmMain>(ToolTable());
  mMain->resize(1100, 800);
  mMain->show();
  QVERIFY(QTest::qWaitForWindowExposed(mMain.get()));
}

void frmCompareRunTest::cleanup() {
  QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
  mMain.reset();
  mTree.reset();
}

frmCompare& frmCompareRunTest::Open(const char* source, const char* target) {
  const auto before = mMain->findChildren<frmCompare*>();
  mMain->findChild<QToolButton*>(u"DirCompare"_s)->click();
  for (frmCompare* form : mMain->findChildren<frmCompare*>()) {
    if (before.contains(form)) continue;
    Get<uctSelectDir>(*form, "uctSelSource").SetFolder(QString::fromStdString(mTree->Root(source)));
    Get<uctSelectDir>(*form, "uctSelTarget").SetFolder(QString::fromStdString(mTree->Root(target)));
    return *form;
  }
  qFatal("no window");
}

void frmCompareRunTest::Tick(frmCompare& form) {
  for (int row = 0; row < form.Grid().rowCount(); ++row)
    form.Grid().Toggle(row, CompareGrid::FixTargetColumn);
}

bool frmCompareRunTest::RunsToItsEnd() {
  QTimer::singleShot(20000, qApp, [] { QCoreApplication::exit(1); });
  return QApplication::exec() == 0;
}

void frmCompareRunTest::TheProgramEndsInTheMiddleOfAComparison() {
  const MessageBoxes boxes;
  MakeLargeFolder(*mTree, "large");
  const QPointer<frmCompare> form = &Open("large", "large");
  bool wasThere = false;
  When([=] { return HasRows(form); },
       [&, form] {
         mMain->close();
         wasThere = form && mMain->isVisible();
       });
  PostClick(Get<QPushButton>(*form, "cmdCompare"));
  QVERIFY(RunsToItsEnd());
  QVERIFY(wasThere);
  QVERIFY(!mMain->isVisible());
  QTRY_VERIFY(!form);
  QVERIFY(boxes.Shown().empty());
  QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s), QString::fromStdString(mTree->Root("large")));
  QCOMPARE(GetSetting(u"Compare"_s, u"TargetFolder"_s), QString::fromStdString(mTree->Root("large")));
}

void frmCompareRunTest::TheProgramEndsInTheMiddleOfTwoComparisons() {
  MakeLargeFolder(*mTree, "large");
  const QPointer<frmCompare> first = &Open("large", "large");
  const QPointer<frmCompare> second = &Open("large", "large");
  When([=] { return HasRows(first); },
       [=, this] {
         When([=] { return HasRows(second); }, [this] { mMain->close(); });
         Get<QPushButton>(*second, "cmdCompare").click();
       });
  PostClick(Get<QPushButton>(*first, "cmdCompare"));
  QVERIFY(RunsToItsEnd());
  QVERIFY(!mMain->isVisible());
  QTRY_VERIFY(!first && !second);
}

void frmCompareRunTest::TheProgramDoesNotEndBehindAProblem() {
  mTree->File("s/gone");
  mTree->File("s/there", "content");
  const QPointer<frmCompare> form = &Open();
  Get<QPushButton>(*form, "cmdCompare").click();
  Tick(*form);
  mTree->Remove("s/gone");

  QStringList texts;
  When([] { return ShownBoxNow() != nullptr; },
       [&, form] {
         texts << ShownBoxNow()->text();
         QCOMPARE(Get<StatusBar>(*form, "stbCompare").PanelText(u"MESSAGE"_s), u"Fixing gone"_s);
         QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
         QVERIFY(form->IsRunning());
         for (const char* button : {"cmdFix", "cmdCompare", "cmdClose"}) {
           const QWidget& widget = Get<QPushButton>(*form, button);
           QTest::mouseClick(mMain->windowHandle(), Qt::LeftButton, {},
                             widget.mapTo(mMain.get(), QPoint(5, 5)));
         }
         mMain->close();
         QVERIFY(form && form->IsRunning() && mMain->isVisible());
         QVERIFY(!mTree->Exists("t/there"));
         When([box = QPointer<QMessageBox>(ShownBoxNow())] { return !box && ShownBoxNow(); },
              [&] {
                texts << ShownBoxNow()->text();
                ShownBoxNow()->accept();
              });
         ShownBoxNow()->accept();
       });
  Get<QPushButton>(*form, "cmdFix").click();
  QCOMPARE(texts,
           (QStringList{u"There was a problem fixing file gone\nError: 53\nDescription: File not found"_s,
                        u"2 files/folders have been fixed."_s}));
  QVERIFY(form && mMain->isVisible());
  QCOMPARE(mTree->Read("t/there"), "content");
}

void frmCompareRunTest::TwoQuickClicksOnCompareGiveOneResult() {
  for (int i = 0; i < 200; ++i) mTree->File("s/folder" + std::to_string(i) + "/file");
  const MessageBoxes boxes;
  frmCompare& form = Open();
  PostClick(Get<QPushButton>(form, "cmdCompare"));
  PostClick(Get<QPushButton>(form, "cmdCompare"));
  QTRY_VERIFY(Get<QPushButton>(form, "cmdFix").isVisible());
  QVERIFY(!form.IsRunning());
  QCOMPARE(form.Grid().rowCount(), 200);
  QCOMPARE(Get<StatusBar>(form, "stbCompare").PanelText(u"MESSAGE"_s), QString());
  QVERIFY(boxes.Shown().empty());
}

void frmCompareRunTest::TwoQuickClicksOnFixFixOnce() {
  mTree->File("s/file", "content");
  MessageBoxes boxes;
  frmCompare& form = Open();
  Get<QPushButton>(form, "cmdCompare").click();
  Tick(form);
  PostClick(Get<QPushButton>(form, "cmdFix"));
  PostClick(Get<QPushButton>(form, "cmdFix"));
  QTRY_VERIFY(Get<QPushButton>(form, "cmdFix").isHidden());
  QTest::qWait(50);
  QCOMPARE(boxes.TakeTexts(), QStringList{u"1 files/folders have been fixed."_s});
  QCOMPARE(mTree->Read("t/file"), "content");
}

void frmCompareRunTest::TwoQuickClicksOnCloseCloseOnce() {
  const QPointer<frmCompare> form = &Open();
  PostClick(Get<QPushButton>(*form, "cmdClose"));
  PostClick(Get<QPushButton>(*form, "cmdClose"));
  QTRY_VERIFY(!form);
  QVERIFY(mMain->isVisible());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareRunTest)
#include "frmCompare_run_test.moc"
