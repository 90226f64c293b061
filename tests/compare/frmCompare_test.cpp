#include "compare/frmCompare.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <thread>

#include "common/Settings.h"
#include "compare/ComparisonWindow.h"
#include "support/When.h"

namespace brackwell {

using namespace Qt::StringLiterals;

class frmCompareTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    for (const QString& key : QStringList{
             u"SourceFolder"_s, u"TargetFolder"_s, u"SaveFolders"_s, u"CompareSubfolders"_s, u"Extensions"_s,
             u"Prefix"_s, u"ShowFullPath"_s, u"SRC_NOT_TGT"_s, u"SRC_NEWER"_s, u"DIR_IN_TGT"_s})
      DeleteSetting(u"Compare"_s, key);
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
  }

  void AFirstStartShowsNoFoldersAndEverythingTicked() {
    ComparisonWindow bench;
    QCOMPARE(bench.Form->windowTitle(), u"Directory Comparison"_s);
    QCOMPARE(bench.Get<uctSelectDir>("uctSelSource").Folder(), QString());
    QCOMPARE(bench.Get<uctSelectDir>("uctSelSource").Caption(), u"Source Directory"_s);
    QCOMPARE(bench.Get<uctSelectDir>("uctSelTarget").Folder(), QString());
    QCOMPARE(bench.Get<uctSelectDir>("uctSelTarget").Caption(), u"Target Directory"_s);
    for (int i = 0; i < 7; ++i)
      QVERIFY(bench.Get<QCheckBox>(qPrintable(u"chkOption(%1)"_s.arg(i))).isChecked());
    QVERIFY(bench.Get<QCheckBox>("chkSubfolders").isChecked());
    QVERIFY(bench.Get<QPushButton>("cmdFix").isHidden());
    QVERIFY(bench.Get<QGroupBox>("fraOptions").isHidden());
    QVERIFY(bench.Get<FlexGrid>("grdCompare").isVisible());
    QCOMPARE(bench.Lines(), QStringList{u" |  | - | -"_s});
  }

  void CaptionsStandAsTheyAre() {
    ComparisonWindow bench;
    const auto text = [&](const char* name) {
      return qobject_cast<QAbstractButton*>(&bench.Get<QWidget>(name))->text();
    };
    QCOMPARE(text("cmdCompare"), u"Co&mpare"_s);
    QCOMPARE(text("cmdFix"), u"&Fix"_s);
    QCOMPARE(text("cmdClose"), u"&Close"_s);
    QCOMPARE(text("chkShowOptions"), u"&Options"_s);
    QCOMPARE(text("chkOption(0)"), u"Flag when file exists in SOURCE but does not exist in TARGET"_s);
    QCOMPARE(text("chkOption(1)"), u"Flag when file exists in TARGET but does not exist in SOURCE"_s);
    QCOMPARE(text("chkOption(2)"), u"Flag when file in SOURCE is newer than file in TARGET"_s);
    QCOMPARE(text("chkOption(3)"), u"Flag when file in TARGET is newer than file in SOURCE"_s);
    QCOMPARE(text("chkOption(4)"), u"Flag when there is a difference in size of SOURCE and TARGET file"_s);
    QCOMPARE(text("chkOption(5)"), u"Flag when sub-folder exists in SOURCE but does not exist in TARGET"_s);
    QCOMPARE(text("chkOption(6)"), u"Flag when sub-folder exists in TARGET but does not exist in SOURCE"_s);
    QCOMPARE(text("chkSubfolders"), u"Compare subfolders"_s);
    QCOMPARE(bench.Get<QGroupBox>("fraOptions").title(), u"Directory Comparison Options"_s);
    QCOMPARE(bench.Get<QLabel>("hdgExtensions").text(), u"Exclude files with extension(s)"_s);
    QCOMPARE(bench.Get<QLabel>("hdgPrefix").text(), u"Exclude files/folders that begin with:"_s);
    QStringList headers;
    for (int column = 0; column < 6; ++column)
      headers << bench.Form->Grid().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    QCOMPARE(headers.join(u"|"_s),
             u"Folder / Filename|Folder / Filename|Comparison Result|Comparison Result|"
             "Fix Source|Fix Target"_s);
  }

  void FoldersAreCheckedInOrderAndTheGridIsLeftAsItWas() {
    ComparisonWindow bench;
    bench.Tree.File("s/a");
    bench.Compare();
    const QStringList before = bench.Lines();
    auto& source = bench.Get<uctSelectDir>("uctSelSource");
    auto& target = bench.Get<uctSelectDir>("uctSelTarget");
    const auto complaint = [&](const QString& sourceFolder, const QString& targetFolder) {
      source.SetFolder(sourceFolder);
      target.SetFolder(targetFolder);
      bench.Click("cmdCompare");
      const ShownBox& box = bench.Boxes.Shown().back();
      return box.Title + (box.Icon == QMessageBox::Critical ? u" critical: "_s : u" exclamation: "_s) +
             box.Text;
    };
    const QString gone = QString::fromStdString(bench.Tree.Root("gone"));
    const QString there = QString::fromStdString(bench.Tree.Root("s"));
    QCOMPARE(complaint({}, {}), u"Directory Comparison exclamation: Please select the source folder."_s);
    QCOMPARE(complaint(gone, {}), u"Directory Comparison critical: The source folder does not exist."_s);
    QCOMPARE(complaint(there, {}), u"Directory Comparison exclamation: Please select the target folder."_s);
    QCOMPARE(complaint(there, gone), u"Directory Comparison critical: The target folder does not exist."_s);
    QCOMPARE(bench.Lines(), before);
  }

  void AComparisonFillsTheGridInOrder() {
    ComparisonWindow bench;
    bench.Tree.File("s/a.txt");
    bench.Tree.File("t/b.txt");
    bench.Tree.File("s/Sub/newer", "x", 10);
    bench.Tree.File("t/Sub/newer", "x", 0);
    bench.Tree.Folder("s/only");
    QCOMPARE(bench.Compare(),
             (QStringList{u"a.txt | Source file was not found in target folder | - | o"_s,
                          u"b.txt | Target file was not found in source folder | o | -"_s,
                          u"only | Sub-folder was not found in target folder | - | o"_s, u"Sub |  | - | -"_s,
                          QDir::toNativeSeparators(u"Sub/newer"_s) +
                              u" | Source file is newer than target file | o | o"_s}));
    QVERIFY(bench.Get<QPushButton>("cmdFix").isVisible());
    QCOMPARE(bench.Status(), QString());
    QVERIFY(bench.Boxes.Shown().empty());
  }

  void NoFindingsLeaveTheHeaderAlone() {
    ComparisonWindow bench;
    QCOMPARE(bench.Compare(), QStringList{});
    QVERIFY(bench.Get<QPushButton>("cmdFix").isVisible());
  }

  void PicturesAreThoseOfTheImageHolder() {
    ComparisonWindow bench;
    bench.Tree.File("s/a");
    bench.Tree.File("t/b");
    bench.Tree.Folder("s/c");
    bench.Tree.Folder("t/c");
    bench.Compare();
    QStringList keys;
    for (int row = 0; row < 3; ++row)
      for (int column : {0, 2})
        keys << bench.Images.MatchPicture(
            bench.Form->Grid().index(row, column).data(Qt::DecorationRole).value<QIcon>());
    QCOMPARE(keys.join(u" "_s), u"File ArrowRedR File ArrowRedL FolderOpen ArrowGreenDbl"_s);
  }

  void TheFilterBoxesAreTidied() {
    ComparisonWindow bench;
    bench.Tree.File("s/a.TMP");
    bench.Tree.File("s/b.bak");
    bench.Tree.File("s/c.tmp.txt");
    bench.Get<QLineEdit>("txtExtensions").setText(u" tmp ; bak;"_s);
    bench.Get<QLineEdit>("txtPrefix").setText(u"~ ;;"_s);
    bench.Compare();
    QCOMPARE(bench.Get<QLineEdit>("txtExtensions").text(), u"tmp;bak"_s);
    QCOMPARE(bench.Get<QLineEdit>("txtPrefix").text(), u"~;"_s);
    QCOMPARE(bench.Lines(), QStringList{});  // the empty prefix excludes every name
    bench.Get<QLineEdit>("txtPrefix").setText({});
    bench.Click("cmdCompare");
    QCOMPARE(bench.Lines(), QStringList{u"c.tmp.txt | Source file was not found in target folder | - | o"_s});
  }

  void BoxesAreTickedByClickAndExcludeEachOther() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x", 0);
    bench.Tree.File("t/a", "xx", 0);
    bench.Tree.File("s/b");
    bench.Compare();
    auto& grid = bench.Get<FlexGrid>("grdCompare");
    bench.ClickCell(0, 4);
    QCOMPARE(bench.Box(0, 4) + bench.Box(0, 5), u"xo"_s);
    QCOMPARE(grid.currentIndex().column(), 5);
    bench.ClickCell(0, 5);
    QCOMPARE(bench.Box(0, 4) + bench.Box(0, 5), u"ox"_s);
    QCOMPARE(grid.currentIndex().column(), 4);
    bench.ClickCell(0, 5);
    QCOMPARE(bench.Box(0, 4) + bench.Box(0, 5), u"oo"_s);
    bench.ClickCell(1, 4);
    QCOMPARE(bench.Box(1, 4) + bench.Box(1, 5), u"-o"_s);
    bench.ClickCell(1, 3);
    QCOMPARE(bench.Box(1, 4) + bench.Box(1, 5), u"-o"_s);
  }

  void SpaceTogglesTheCurrentBox() {
    ComparisonWindow bench;
    bench.Tree.File("s/a");
    bench.Compare();
    auto& grid = bench.Get<FlexGrid>("grdCompare");
    grid.setCurrentIndex(grid.model()->index(0, 5));
    QTest::keyClick(&grid, Qt::Key_Space);
    QCOMPARE(bench.Box(0, 5), u"x"_s);
    QTest::keyClick(&grid, Qt::Key_Right);
    QTest::keyClick(&grid, Qt::Key_Space);
    QCOMPARE(bench.Box(0, 5), u"o"_s);
  }

  void ScreenReadersHearEveryPicture() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x", 0);
    bench.Tree.File("t/a", "xx", 0);
    bench.Compare();
    bench.ClickCell(0, 4);
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&bench.Get<FlexGrid>("grdCompare"));
    QVERIFY(table && table->tableInterface());
    QStringList heard;
    for (int column = 0; column < 6; ++column)
      heard << table->tableInterface()->cellAt(0, column)->text(QAccessible::Name);
    QCOMPARE(heard.join(u" | "_s),
             u"file | a | different | Source and target files are different size | ticked | not ticked"_s);
  }

  void AFixCopiesMarksAndTellsHowMany() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "source", 0);
    bench.Tree.File("t/a", "target", 10);
    bench.Tree.File("s/folder/b", "inside");
    bench.Compare();
    bench.ClickCell(0, 4);
    bench.ClickCell(1, 5);
    bench.Click("cmdFix");
    QCOMPARE(bench.Boxes.TakeTexts(), QStringList{u"2 files/folders have been fixed."_s});
    QCOMPARE(bench.Boxes.Shown().back().Title, u"Directory Comparison"_s);
    QCOMPARE(bench.Boxes.Shown().back().Icon, QMessageBox::Information);
    QCOMPARE(bench.Tree.Read("s/a"), "target");
    QCOMPARE(bench.Tree.Read("t/folder/b"), "inside");
    QCOMPARE(bench.Lines(),
             (QStringList{u"a | Target file is newer than source file (FIXED) | - | -"_s,
                          u"folder | Sub-folder was not found in target folder (FIXED) | - | -"_s}));
    QVERIFY(bench.Get<QPushButton>("cmdFix").isHidden());
    QCOMPARE(bench.Status(), u"Fixing folder"_s);
  }

  void AFixOfNothingSaysSo() {
    ComparisonWindow bench;
    bench.Tree.File("s/a");
    bench.Compare();
    bench.Click("cmdFix");
    QCOMPARE(bench.Boxes.TakeTexts(), QStringList{u"0 files/folders have been fixed."_s});
    QVERIFY(bench.Get<QPushButton>("cmdFix").isHidden());
    QVERIFY(!bench.Tree.Exists("t/a"));
    bench.Click("cmdCompare");
    QVERIFY(bench.Get<QPushButton>("cmdFix").isVisible());
  }

  void AProblemIsToldAndCountedAndTheRowStaysUnfixed() {
    ComparisonWindow bench;
    bench.Tree.File("s/a&amp;");
    bench.Tree.File("s/z");
    bench.Compare();
    bench.ClickCell(0, 5);
    bench.ClickCell(1, 5);
    bench.Tree.Remove("s/a&amp;");
    bench.Click("cmdFix");
    QCOMPARE(bench.Boxes.TakeTexts(),
             (QStringList{u"There was a problem fixing file a&amp;\nError: 53\nDescription: File not found"_s,
                          u"2 files/folders have been fixed."_s}));
    QCOMPARE(bench.Boxes.Shown().front().Icon, QMessageBox::Warning);
    QCOMPARE(bench.Lines(),
             (QStringList{u"a&amp; | Source file was not found in target folder | - | x"_s,
                          u"z | Source file was not found in target folder (FIXED) | - | -"_s}));
  }

  void ANameThatIsNoTextIsShownAndFixedAllTheSame() {
    if (!TempTree::CanName("caf\xe9\nbar")) QSKIP(NoSuchName);
    ComparisonWindow bench;
    bench.Tree.File("s/caf\xe9\nbar", "x");
    QCOMPARE(bench.Compare(), QStringList{u"caf\xfffd\x240a"
                                          u"bar | Source file was not found in target folder | - | o"_s});
    bench.ClickCell(0, 5);
    bench.Click("cmdFix");
    QCOMPARE(bench.Tree.List("t"), std::vector<std::string>{"caf\xe9\nbar"});
  }

  void ChangedFoldersAreTheOnesFixed() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x");
    bench.Tree.Folder("elsewhere");
    bench.Compare();
    bench.ClickCell(0, 5);
    bench.Get<uctSelectDir>("uctSelTarget").SetFolder(QString::fromStdString(bench.Tree.Root("elsewhere")));
    bench.Click("cmdFix");
    QVERIFY(bench.Tree.Exists("elsewhere/a"));
    QVERIFY(!bench.Tree.Exists("t/a"));
  }

  void FullPathsShowAndFixBothSides() {
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"1"_s);
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x");
    bench.Tree.File("t/b", "y");
    const auto path = [&](const char* name) { return QString::fromStdString(bench.Tree.Path(name)); };
    QCOMPARE(bench.Compare(),
             (QStringList{path("s/a") + u" | Source file was not found in target folder | - | o"_s,
                          path("t/b") + u" | Target file was not found in source folder | o | -"_s}));
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"0"_s);  // counts from the next comparison on
    bench.ClickCell(0, 5);
    bench.ClickCell(1, 4);
    bench.Click("cmdFix");
    QCOMPARE(bench.Tree.Read("t/a"), "x");
    QCOMPARE(bench.Tree.Read("s/b"), "y");
  }

  void OptionsTakeTheGridsPlace() {
    ComparisonWindow bench;
    auto& show = bench.Get<QCheckBox>("chkShowOptions");
    show.click();
    QVERIFY(bench.Get<QGroupBox>("fraOptions").isVisible());
    QVERIFY(bench.Get<FlexGrid>("grdCompare").isHidden());
    QTest::qWait(1);
    const QWidget& frame = bench.Get<QGroupBox>("fraOptions");
    const QLineEdit& extensions = bench.Get<QLineEdit>("txtExtensions");
    QCOMPARE(extensions.width(), frame.width() - extensions.x() - 8);
    QCOMPARE(bench.Get<QLineEdit>("txtPrefix").width(), extensions.width());
    bench.Compare();
    QVERIFY(!show.isChecked());
    QVERIFY(bench.Get<QGroupBox>("fraOptions").isHidden());
    QVERIFY(bench.Get<FlexGrid>("grdCompare").isVisible());
  }

  void EveryOptionReachesTheComparison() {
    ComparisonWindow bench;
    bench.Tree.File("t/b");
    bench.Tree.File("t/sub/c");
    bench.Get<QCheckBox>("chkOption(6)").setChecked(false);
    QCOMPARE(bench.Compare().size(), 2);  // b, and sub/c since sub is entered
    bench.Get<QCheckBox>("chkSubfolders").setChecked(false);
    QCOMPARE(bench.Compare().size(), 1);
    bench.Get<QCheckBox>("chkOption(1)").setChecked(false);
    QCOMPARE(bench.Compare().size(), 0);
  }

  void ChoicesAreRememberedAtOnce() {
    ComparisonWindow bench;
    bench.Get<QCheckBox>("chkOption(2)").click();
    bench.Get<QCheckBox>("chkSubfolders").click();
    bench.Get<QCheckBox>("chkShowOptions").click();
    QTest::keyClicks(&bench.Get<QLineEdit>("txtExtensions"), u"tmp"_s);
    QTest::keyClicks(&bench.Get<QLineEdit>("txtPrefix"), u"~;a"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"SRC_NEWER"_s), u"0"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"CompareSubfolders"_s), u"0"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Extensions"_s), u"tmp"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"~;a"_s);
    ComparisonWindow next;
    QVERIFY(!next.Get<QCheckBox>("chkOption(2)").isChecked());
    QVERIFY(next.Get<QCheckBox>("chkOption(3)").isChecked());
    QVERIFY(!next.Get<QCheckBox>("chkSubfolders").isChecked());
    QCOMPARE(next.Get<QLineEdit>("txtExtensions").text(), u"tmp"_s);
    QCOMPARE(next.Get<QLineEdit>("txtPrefix").text(), u"~;a"_s);
  }

  void AStoredTextThatIsNoNumberLeavesTheBoxAsDesigned() {
    SaveSetting(u"Compare"_s, u"SRC_NOT_TGT"_s, u"perhaps"_s);
    SaveSetting(u"Compare"_s, u"CompareSubfolders"_s, u""_s);
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"x"_s);
    ComparisonWindow bench;
    bench.Tree.File("s/a");
    QVERIFY(bench.Get<QCheckBox>("chkOption(0)").isChecked());
    QVERIFY(bench.Get<QCheckBox>("chkSubfolders").isChecked());
    QCOMPARE(bench.Compare(), QStringList{u"a | Source file was not found in target folder | - | o"_s});
  }

  void FoldersAreKeptOnClosingOrForgotten() {
    QString source;
    {
      ComparisonWindow bench;
      bench.Choose();
      source = bench.Get<uctSelectDir>("uctSelSource").Folder();
      bench.Click("cmdClose");
      QCOMPARE(bench.Enabled.last(), u"Print-"_s);
    }
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s), source);
    SaveSetting(u"Compare"_s, u"SaveFolders"_s, u"0"_s);
    {
      ComparisonWindow bench;
      QCOMPARE(bench.Get<uctSelectDir>("uctSelSource").Folder(), source);
      bench.Frame->close();
    }
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s, u"none"_s), u"none"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"TargetFolder"_s, u"none"_s), u"none"_s);
    ComparisonWindow bench;
    QCOMPARE(bench.Get<uctSelectDir>("uctSelSource").Folder(), QString());
  }

  void PrintIsOfferedWhileTheWindowIsActive() {
    ComparisonWindow bench;
    bench.Enabled.clear();
    bench.Form->Form_Activate();
    bench.Form->Form_Deactivate();
    QCOMPARE(bench.Enabled.join(u" "_s), u"Print+ Print-"_s);
  }

  void ColumnsFollowTheWindow() {
    ComparisonWindow bench;
    auto& grid = bench.Get<FlexGrid>("grdCompare");
    for (int width : {700, 850}) {
      bench.Frame->resize(width, 600);
      QTest::qWait(1);
      const double rest =
          grid.width() * 15.0 - grid.style()->pixelMetric(QStyle::PM_ScrollBarExtent) * 15 - 85 - 1000;
      QCOMPARE(grid.columnWidth(0), qRound(500 / 15.0));
      QVERIFY(qAbs(grid.columnWidth(1) - rest * 0.5 / 15) <= 1);
      QVERIFY(qAbs(grid.columnWidth(3) - rest * 0.3 / 15) <= 1);
      QVERIFY(qAbs(grid.columnWidth(5) - rest * 0.1 / 15) <= 1);
    }
  }

  void AnErrorEndsItAndTheRowsSoFarStay() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x", 0);
    bench.Tree.File("t/a", "x", 0);
    bench.Tree.File("s/b");
    bench.Get<QCheckBox>("chkOption(0)").setChecked(false);
    const QStringList lines = bench.Compare();
    QCOMPARE(lines, (QStringList{u"a |  | - | -"_s, u" |  | - | -"_s}));
    QCOMPARE(bench.Boxes.TakeTexts(),
             QStringList{u"File not found\n"_s + QString::fromStdString(bench.Tree.Path("t/b"))});
    QCOMPARE(bench.Boxes.Shown().back().Icon, QMessageBox::Critical);
    QCOMPARE(bench.Boxes.Shown().back().Title, u"Directory Comparison"_s);
    QVERIFY(bench.Get<QPushButton>("cmdFix").isHidden());
    bench.Get<QCheckBox>("chkOption(0)").setChecked(true);
    QCOMPARE(bench.Compare().size(), 2);
  }

  // What happens in the middle of a run.

  void EscStopsAndKeepsTheRows() {
    ComparisonWindow bench;
    TakeTime(bench);
    InTheMiddle(bench, [&] {
      QVERIFY(bench.Form->IsRunning());
      QVERIFY(bench.Status().startsWith(u"Checking "_s));
      QVERIFY(QGuiApplication::overrideCursor());
      QVERIFY(!bench.Get<QPushButton>("cmdFix").isEnabled());
      QTest::keyClick(bench.Form, Qt::Key_Escape);
    });
    const QStringList lines = bench.Compare();
    QVERIFY(lines.size() > 0 && lines.size() < 2 * FolderCount);
    QVERIFY(!lines.last().startsWith(u" |"_s));
    QVERIFY(!bench.Form->IsRunning());
    QCOMPARE(bench.Status(), u"Stopped: the list is not complete."_s);
  }

  void ASecondCompareStartsAnew() {
    ComparisonWindow bench;
    TakeTime(bench);
    InTheMiddle(bench, [&] {
      QVERIFY(bench.Form->IsRunning());
      bench.Files.OnCall = nullptr;
      bench.Tree.File("s/added");
      bench.Click("cmdCompare");
    });
    const QStringList lines = bench.Compare();
    QCOMPARE(lines.size(), 2 * FolderCount + 1);
    QCOMPARE(lines.first(), u"added | Source file was not found in target folder | - | o"_s);
    QCOMPARE(bench.Status(), QString());
  }

  void ClosingInTheMiddleEndsTheRunFirst() {
    ComparisonWindow bench;
    TakeTime(bench);
    bool wasRunning = false;
    InTheMiddle(bench, [&] {
      wasRunning = bench.Form->IsRunning();
      bench.Click("cmdClose");
      QVERIFY(bench.Form);  // still on the stack
    });
    bench.Choose();
    bench.Click("cmdCompare");
    QVERIFY(wasRunning);
    QTRY_VERIFY(!bench.Form);
    QTRY_VERIFY(!bench.Frame);
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s), QString::fromStdString(bench.Tree.Root("s")));
  }

  void TheEmptyRowHasNothingToTick() {
    ComparisonWindow bench;
    bench.ClickCell(0, 4);
    bench.ClickCell(0, 5);
    QCOMPARE(bench.Lines(), QStringList{u" |  | - | -"_s});
  }

  void TwoWindowsRunSideBySide() {
    ComparisonWindow first;
    ComparisonWindow second;
    TakeTime(first);
    second.Tree.File("s/a");
    QStringList inner;
    InTheMiddle(first, [&] { inner = second.Compare(); });
    QCOMPARE(first.Compare().size(), 2 * FolderCount);
    QCOMPARE(inner.size(), 1);
  }

  void RowsMayBeTickedWhileOthersComeIn() {
    ComparisonWindow bench;
    bench.Tree.File("s/zzz");
    TakeTime(bench);
    InTheMiddle(bench, [&] {
      QCOMPARE(bench.Lines().first(), u"zzz | Source file was not found in target folder | - | o"_s);
      bench.ClickCell(0, 5);
    });
    QCOMPARE(bench.Compare().last(), u"zzz | Source file was not found in target folder | - | x"_s);
  }

  void InputDuringAFixIsThrownAway() {
    ComparisonWindow bench;
    bench.Tree.File("s/a", "x");
    bench.Tree.File("s/b", "x");
    bench.Compare();
    bench.ClickCell(0, 5);
    bench.ClickCell(1, 5);
    bench.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(50)); };
    When([&] { return bench.Form->IsRunning(); },
         [&] {
           bench.ClickCell(1, 5);
           bench.Click("cmdClose");
           bench.Click("cmdFix");
           bench.Get<QPushButton>("cmdFix").click();  // as a screen reader presses it
         });
    bench.Click("cmdFix");
    QVERIFY(bench.Form && bench.Form->isVisible());
    QCOMPARE(bench.Boxes.TakeTexts(), QStringList{u"2 files/folders have been fixed."_s});
    QCOMPARE(bench.Tree.List("t"), (std::vector<std::string>{"a", "b"}));
  }

 private:
  static constexpr int FolderCount = 40;

  static void TakeTime(ComparisonWindow& bench) {
    bench.BothFiles(FolderCount);
    bench.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(5)); };
  }
  /// Calls `step` while a comparison runs that has found something.
  static void InTheMiddle(ComparisonWindow& bench, const std::function<void()>& step) {
    When([&bench] { return bench.Form->IsRunning() && bench.Form->Grid().rowCount() > 1; }, step);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareTest)
#include "frmCompare_test.moc"
