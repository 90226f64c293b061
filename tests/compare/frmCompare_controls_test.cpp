#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <array>

#include "common/Settings.h"
#include "compare/ComparisonWindow.h"

namespace brackwell {

namespace {

struct Option {
  const char* Box;
  QString Tag;
  QString Message;
};

const std::array<Option, 7> Options{{
    {"chkOption(0)", u"SRC_NOT_TGT"_s, u"Source file was not found in target folder"_s},
    {"chkOption(1)", u"TGT_NOT_SRC"_s, u"Target file was not found in source folder"_s},
    {"chkOption(2)", u"SRC_NEWER"_s, u"Source file is newer than target file"_s},
    {"chkOption(3)", u"TGT_NEWER"_s, u"Target file is newer than source file"_s},
    {"chkOption(4)", u"SRC_SIZE"_s, u"Source and target files are different size"_s},
    {"chkOption(5)", u"DIR_IN_SRC"_s, u"Sub-folder was not found in target folder"_s},
    {"chkOption(6)", u"DIR_IN_TGT"_s, u"Sub-folder was not found in source folder"_s},
}};

void MakeEveryDifference(TempTree& tree) {
  tree.File("s/only source");
  tree.File("t/only target");
  tree.File("s/newer", "x", 10);
  tree.File("t/newer", "x", 0);
  tree.File("s/older", "x", 0);
  tree.File("t/older", "x", 10);
  tree.File("s/size", "x", 0);
  tree.File("t/size", "xx", 0);
  tree.File("s/source folder/inside");
  tree.File("t/target folder/inside");
}

void OptionRows() {
  QTest::addColumn<int>("index");
  for (int i = 0; i < 7; ++i) QTest::newRow(qPrintable(Options[i].Tag)) << i;
}

}  // namespace

/// The controls of the comparison window one by one: what each option means, where Tab leads, what is drawn.
class frmCompareControlsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    for (const Option& option : Options) DeleteSetting(u"Compare"_s, option.Tag);
    DeleteSetting(u"Compare"_s, u"Extensions"_s);
    DeleteSetting(u"Compare"_s, u"Prefix"_s);
    DeleteSetting(u"Compare"_s, u"SourceFolder"_s);
    DeleteSetting(u"Compare"_s, u"TargetFolder"_s);
  }

  void EachOptionIsKeptUnderItsOwnKey_data() { OptionRows(); }
  void EachOptionIsKeptUnderItsOwnKey() {
    QFETCH(int, index);
    {
      ComparisonWindow window;
      window.Get<QCheckBox>(Options[index].Box).click();
      QCOMPARE(GetSetting(u"Compare"_s, Options[index].Tag), u"0"_s);
    }
    ComparisonWindow window;
    for (int i = 0; i < 7; ++i) QCOMPARE(window.Get<QCheckBox>(Options[i].Box).isChecked(), i != index);
    window.Get<QCheckBox>(Options[index].Box).click();
    QCOMPARE(GetSetting(u"Compare"_s, Options[index].Tag), u"1"_s);
  }

  void EachOptionFlagsItsOwnDifference_data() { OptionRows(); }
  void EachOptionFlagsItsOwnDifference() {
    QFETCH(int, index);
    ComparisonWindow window;
    MakeEveryDifference(window.Tree);
    window.Get<QCheckBox>(Options[index].Box).setChecked(false);
    const QString found = window.Compare().join(u'\n');
    QVERIFY(!found.contains(Options[index].Message));
    // A source file without counterpart ends the comparison where that is not flagged.
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(index == 0 ? 1 : 0));
    for (int i = 1; i < 7 && index != 0; ++i) QCOMPARE(found.contains(Options[i].Message), i != index);
  }

  void BothFoldersAreKept() {
    QString source;
    QString target;
    {
      ComparisonWindow window;
      window.Choose();
      source = window.Get<uctSelectDir>("uctSelSource").Folder();
      target = window.Get<uctSelectDir>("uctSelTarget").Folder();
      window.Frame->close();
    }
    ComparisonWindow window;
    QCOMPARE(window.Get<uctSelectDir>("uctSelSource").Folder(), source);
    QCOMPARE(window.Get<uctSelectDir>("uctSelTarget").Folder(), target);
  }

  void ATidiedFilterIsStoredWithTheNextKey() {
    ComparisonWindow window;
    auto& extensions = window.Get<QLineEdit>("txtExtensions");
    auto& prefix = window.Get<QLineEdit>("txtPrefix");
    extensions.setText(u"tmp ; bak;"_s);
    prefix.setText(u"~ ;"_s);
    window.Compare();
    QTest::keyClick(&extensions, Qt::Key_End);
    QTest::keyClick(&prefix, Qt::Key_End);
    QCOMPARE(GetSetting(u"Compare"_s, u"Extensions"_s), u"tmp;bak"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"~"_s);
  }

  void UntickingOptionsBringsTheGridBack() {
    ComparisonWindow window;
    auto& show = window.Get<QCheckBox>("chkShowOptions");
    show.click();
    show.click();
    QVERIFY(window.Get<QGroupBox>("fraOptions").isHidden());
    QVERIFY(window.Get<FlexGrid>("grdCompare").isVisible());
  }

  void EveryResultHasItsPicture() {
    ComparisonWindow window;
    MakeEveryDifference(window.Tree);
    const QStringList lines = window.Compare();
    window.ClickCell(0, 4);  // newer
    window.Click("cmdFix");
    QStringList pictures;
    for (int row = 0; row < lines.size(); ++row) {
      QStringList keys{lines[row].section(u" |"_s, 0, 0)};
      for (const int column : {0, 2})
        keys << window.Images.MatchPicture(
            window.Form->Grid().index(row, column).data(Qt::DecorationRole).value<QIcon>());
      pictures << keys.join(u", "_s);
    }
    QCOMPARE(pictures.join(u'\n'),
             u"newer, File, Checkmark\n"
             "older, File, ArrowYellowDbl\n"
             "only source, File, ArrowRedR\n"
             "only target, File, ArrowRedL\n"
             "size, File, ArrowYellowDbl\n"
             "source folder, FolderOpen, ArrowRedR\n"
             "target folder, FolderOpen, ArrowRedL"_s);
  }

  void PicturesAreCentredAndTextsBeginAtTheLeft() {
    ComparisonWindow window;
    QString sides;
    for (int column = 0; column < 6; ++column) {
      const int alignment = window.Form->Grid().index(0, column).data(Qt::TextAlignmentRole).toInt();
      sides += alignment & Qt::AlignHCenter ? u'c' : alignment & Qt::AlignLeft ? u'l' : u'?';
    }
    QCOMPARE(sides, u"clclcc"_s);
  }

  void AProblemWithAFolderSaysSo() {
    ComparisonWindow window;
    window.Tree.Folder("s/folder");
    window.Compare();
    window.ClickCell(0, 5);
    window.Tree.Remove("s/folder");
    window.Click("cmdFix");
    QCOMPARE(window.Boxes.Shown().front().Text,
             u"There was a problem fixing folder folder\nError: 76\nDescription: Path not found"_s);
  }

  void TheFirstNameIsCurrentAfterAComparison() {
    ComparisonWindow window;
    window.Tree.File("s/a");
    window.Tree.File("s/b");
    window.Compare();
    const QModelIndex current = window.Get<FlexGrid>("grdCompare").currentIndex();
    QCOMPARE(current.row(), 0);
    QCOMPARE(current.column(), 1);
  }

  void TabLeadsFromTopToBottom() {
    ComparisonWindow window;
    window.Area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    window.Compare();
    const auto visited = [&window] {
      QStringList names;
      window.Get<uctSelectDir>("uctSelSource").setFocus();
      for (int i = 0; i < 20; ++i) {
        const QWidget* control = QApplication::focusWidget();
        const QString name = control->objectName() == u"cmdSelect"_s ? control->parentWidget()->objectName()
                                                                     : control->objectName();
        if (names.contains(name)) break;
        names << name;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      }
      return names.join(u' ');
    };
    QCOMPARE(visited(), u"uctSelSource uctSelTarget cmdCompare cmdFix cmdClose chkShowOptions grdCompare"_s);
    window.Get<QCheckBox>("chkShowOptions").click();
    QCOMPARE(visited(),
             u"uctSelSource uctSelTarget cmdCompare cmdFix cmdClose chkShowOptions chkOption(0) chkOption(1) "
             "chkOption(2) chkOption(3) chkOption(4) chkOption(5) chkOption(6) chkSubfolders txtExtensions "
             "txtPrefix"_s);
  }

  void AfterAFixTheFocusIsNotOnClose() {
    ComparisonWindow window;
    window.Area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    window.Tree.File("s/a");
    window.Compare();
    window.Get<QPushButton>("cmdFix").setFocus();
    QTest::keyClick(&window.Get<QPushButton>("cmdFix"), Qt::Key_Space);
    QCOMPARE(window.Area.focusWidget(), &window.Get<FlexGrid>("grdCompare"));
  }

  void ColumnsFitThoughTheGridWasHiddenDuringTheResize() {
    ComparisonWindow window;
    auto& grid = window.Get<FlexGrid>("grdCompare");
    window.Get<QCheckBox>("chkShowOptions").click();
    window.Frame->resize(500, 500);
    QTest::qWait(1);
    window.Get<QCheckBox>("chkShowOptions").click();
    QTest::qWait(1);
    QVERIFY(grid.horizontalHeader()->length() <= grid.viewport()->width());
    QVERIFY(grid.horizontalHeader()->length() > grid.viewport()->width() - 40);
  }

  void AllStandsBetweenEqualMargins() {
    ComparisonWindow window;
    QTest::qWait(1);
    const int width = window.Form->width();
    const QWidget& select = *window.Get<uctSelectDir>("uctSelSource").findChild<QWidget*>(u"cmdSelect"_s);
    const QWidget& grid = window.Get<FlexGrid>("grdCompare");
    QCOMPARE(grid.x(), 8);
    QCOMPARE(grid.geometry().right() + 1, width - 8);
    QCOMPARE(select.mapTo(window.Form, QPoint(select.width(), 0)).x(), width - 8);
    const QWidget& fix = window.Get<QPushButton>("cmdFix");
    QCOMPARE(window.Get<QPushButton>("cmdClose").x(), fix.x() + fix.width() + 6);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareControlsTest)
#include "frmCompare_controls_test.moc"
