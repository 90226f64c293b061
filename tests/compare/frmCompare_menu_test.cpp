#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTimer>

#include "compare/ComparisonWindow.h"
#include "compare/frmCompareInfo.h"
#include "support/StandInOpener.h"

// What a right click on the rows of a comparison offers, and what is copied of them.

namespace brackwell {

class frmCompareMenuTest : public QObject {
  Q_OBJECT

 private:
  /// One row of each kind that a comparison can find, in the order of their names.
  static QStringList CompareAll(ComparisonWindow& window) {
    TempTree& tree = window.Tree;
    tree.File("s/newer.txt", "1", 10);
    tree.File("t/newer.txt", "1", 0);
    tree.File("s/older", "1", 0);
    tree.File("t/older", "1", 10);
    tree.File("s/only s.txt", "1", 0);
    tree.File("t/only t.txt", "1", 0);
    tree.File("s/same", "1", 0);
    tree.File("t/same", "1", 0);
    tree.File("s/size", "1", 0);
    tree.File("t/size", "22", 0);
    tree.Folder("s/x");
    tree.Folder("t/y");
    tree.Folder("s/z");
    tree.Folder("t/z");
    return window.Compare();
  }
  enum Row { Newer, Older, OnlySource, OnlyTarget, Same, Size, SourceFolder, TargetFolder, BothFolders };

  /// "name: fix source fix target", the rows with a box.
  static QString Boxes(ComparisonWindow& window) {
    QStringList boxes;
    for (const QString& line : window.Lines()) {
      const QStringList cells = line.split(u" | "_s);
      if (cells[2] + cells[3] != u"--"_s) boxes << cells[0] + u':' + cells[2] + cells[3];
    }
    return boxes.join(u' ');
  }

  static QMenu* Menu(ComparisonWindow& window, int row, int column = CompareGrid::NameColumn) {
    auto& grid = window.Get<FlexGrid>("grdCompare");
    delete grid.findChild<QMenu*>();
    const QPoint at = row < 0 ? QPoint(20, grid.viewport()->height() - 5)
                              : grid.visualRect(grid.model()->index(row, column)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, grid.viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(grid.viewport(), &event);
    return grid.findChild<QMenu*>();
  }

  static void Choose(QMenu* menu, const QString& name) {
    auto* item = menu->findChild<QAction*>(name);
    if (!item) qFatal("no item %s", qPrintable(name));
    item->trigger();
  }

  static QString Captions(const QMenu* menu) {
    QStringList captions;
    for (const QAction* item : menu->actions()) captions << (item->isSeparator() ? u"-"_s : item->text());
    return captions.join(u'\n');
  }

 private Q_SLOTS:
  void TheMenu() {
    ComparisonWindow window;
    CompareAll(window);
    QCOMPARE(Captions(Menu(window, Same)),
             u"Tick All Fix &Source\nTick All Fix &Target\n"
             "Tick &Newer to Older\n&Untick All\n-\n"
             "&Open Source Item\nOpen &Folder of Source Item\n"
             "&Copy Path of Source Item\n-\n&Details"_s);
    QCOMPARE(Captions(Menu(window, -1)),
             u"Tick All Fix &Source\nTick All Fix &Target\nTick &Newer to Older\n&Untick All"_s);
  }

  void ShiftF10AsksForTheMenuToo() {
    ComparisonWindow window;
    window.Area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    CompareAll(window);
    auto& grid = window.Get<FlexGrid>("grdCompare");
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(grid.findChild<QMenu*>()->isVisible());
    auto& selector = window.Get<uctSelectDir>("uctSelSource");
    selector.setFocus();
    QTest::keyClick(selector.focusProxy(), Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(selector.findChild<QMenu*>()->isVisible());
  }

  void AllAreTickedWhereTheyHaveTheBox() {
    ComparisonWindow window;
    CompareAll(window);
    QCOMPARE(Boxes(window), u"newer.txt:oo older:oo only s.txt:-o only t.txt:o- size:oo x:-o y:o-"_s);
    Choose(Menu(window, Newer), u"mnuTickSource"_s);
    QCOMPARE(Boxes(window), u"newer.txt:xo older:xo only s.txt:-o only t.txt:x- size:xo x:-o y:x-"_s);
    Choose(Menu(window, Newer), u"mnuTickTarget"_s);
    QCOMPARE(Boxes(window), u"newer.txt:ox older:ox only s.txt:-x only t.txt:x- size:ox x:-x y:x-"_s);
    Choose(Menu(window, Newer), u"mnuTickNothing"_s);
    QCOMPARE(Boxes(window), u"newer.txt:oo older:oo only s.txt:-o only t.txt:o- size:oo x:-o y:o-"_s);
  }

  void TheNewerReplaceTheOlder() {
    ComparisonWindow window;
    CompareAll(window);
    window.ClickCell(Newer, CompareGrid::FixSourceColumn);
    window.ClickCell(OnlySource, CompareGrid::FixTargetColumn);
    Choose(Menu(window, Same), u"mnuTickNewer"_s);
    QCOMPARE(Boxes(window), u"newer.txt:ox older:xo only s.txt:-x only t.txt:o- size:oo x:-o y:o-"_s);
    window.Tree.File("s/newer.txt", "new", 10);
    window.Tree.File("t/older", "new", 10);
    window.Click("cmdFix");
    QCOMPARE(window.Tree.Read("t/newer.txt"), std::string("new"));
    QCOMPARE(window.Tree.Read("s/older"), std::string("new"));
  }

  void FixedRowsStayWithoutBoxes() {
    ComparisonWindow window;
    CompareAll(window);
    Choose(Menu(window, Same), u"mnuTickNewer"_s);
    window.Click("cmdFix");
    Choose(Menu(window, Same), u"mnuTickSource"_s);
    QCOMPARE(Boxes(window), u"only s.txt:-o only t.txt:x- size:xo x:-o y:x-"_s);
  }

  void WithoutRowsThereIsNothingToTick() {
    ComparisonWindow window;
    for (const QAction* item : Menu(window, 0)->actions()) QVERIFY(!item->isEnabled());
    window.Compare();
    for (const QAction* item : Menu(window, -1)->actions()) QVERIFY(!item->isEnabled());
  }

  void DuringARunNothingIsTickedAtOnce() {
    ComparisonWindow window;
    window.BothFiles(3);
    QString seen;
    window.Files.OnCall = [&] {
      if (!window.Form->IsRunning() || !seen.isEmpty()) return;
      QMenu* menu = Menu(window, -1);
      QStringList enabled;
      for (const QAction* item : menu->actions())
        if (item->isEnabled()) enabled << item->text();
      seen = u"enabled: "_s + enabled.join(u',');
    };
    window.Compare();
    QCOMPARE(seen, u"enabled: "_s);
  }

  void TheItemIsThatOfTheClickedSide_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("path");
    const auto add = [](const char* name, int row, int column, const QString& path) {
      QTest::newRow(name) << row << column << path;
    };
    add("name", Newer, CompareGrid::NameColumn, u"s/newer.txt"_s);
    add("source", Newer, CompareGrid::FixSourceColumn, u"s/newer.txt"_s);
    add("target", Newer, CompareGrid::FixTargetColumn, u"t/newer.txt"_s);
    add("target of a source row", OnlySource, CompareGrid::FixTargetColumn, u"s/only s.txt"_s);
    add("target row", OnlyTarget, CompareGrid::MessageColumn, u"t/only t.txt"_s);
    add("source of a target row", OnlyTarget, CompareGrid::FixSourceColumn, u"t/only t.txt"_s);
    add("folder", BothFolders, CompareGrid::FixTargetColumn, u"t/z"_s);
    add("target folder", TargetFolder, CompareGrid::NameColumn, u"t/y"_s);
  }
  void TheItemIsThatOfTheClickedSide() {
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, path);
    ComparisonWindow window;
    CompareAll(window);
    QMenu* menu = Menu(window, row, column);
    const QString side = path.startsWith(u's') ? u"Source Item"_s : u"Target Item"_s;
    QCOMPARE(menu->findChild<QAction*>(u"mnuOpen"_s)->text(), u"&Open "_s + side);
    Choose(menu, u"mnuCopyPath"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QString::fromStdString(window.Tree.Path(path.toStdString())));
    const StandInOpener opener;
    Choose(Menu(window, row, column), u"mnuOpen"_s);
    QVERIFY(opener.Opened().value(0).endsWith(u'/' + path));
    Choose(Menu(window, row, column), u"mnuOpenFolder"_s);
    QVERIFY(opener.Opened().value(1).endsWith(u'/' + path.left(1)));
  }

  void DetailsAreThoseOfTheRow() {
    ComparisonWindow window;
    CompareAll(window);
    QString object;
    QTimer::singleShot(0, window.Form, [&] {
      auto* info = qobject_cast<frmCompareInfo*>(QApplication::activeModalWidget());
      if (!info) return;
      object = QString::fromStdString(info->ObjectName);
      info->reject();
    });
    Choose(Menu(window, Size), u"mnuDetails"_s);
    QCOMPARE(object, u"size"_s);
  }

  void DetailsOfRowsThatAreNoMore() {
    ComparisonWindow window;
    CompareAll(window);
    QMenu* menu = Menu(window, Size);
    window.Form->Grid().Init();
    Choose(menu, u"mnuDetails"_s);
    QVERIFY(!QApplication::activeModalWidget());
  }

  void RowsAreCopiedWithWhatTheirPicturesSay() {
    ComparisonWindow window;
    CompareAll(window);
    auto& grid = window.Get<FlexGrid>("grdCompare");
    window.ClickCell(Newer, CompareGrid::FixSourceColumn);
    grid.setCurrentIndex(grid.model()->index(Newer, 1));
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             u"file\tnewer.txt\tdifferent\tSource file is newer than target file\tticked\tnot ticked\n"
             "file\tolder\tdifferent\tTarget file is newer than source file\tnot ticked\tnot ticked"_s);
  }

  void AClickThatSelectsTicksNothing() {
    ComparisonWindow window;
    CompareAll(window);
    auto& grid = window.Get<FlexGrid>("grdCompare");
    const auto click = [&](int row, Qt::KeyboardModifiers modifiers) {
      const QModelIndex cell = grid.model()->index(row, CompareGrid::FixSourceColumn);
      QTest::mouseClick(grid.viewport(), Qt::LeftButton, modifiers, grid.visualRect(cell).center());
    };
    grid.setCurrentIndex(grid.model()->index(Newer, CompareGrid::FixSourceColumn));
    click(Older, Qt::ShiftModifier);
    click(Size, Qt::ControlModifier);
    QCOMPARE(Boxes(window), u"newer.txt:oo older:oo only s.txt:-o only t.txt:o- size:oo x:-o y:o-"_s);
    click(Older, {});
    QCOMPARE(Boxes(window), u"newer.txt:oo older:xo only s.txt:-o only t.txt:o- size:oo x:-o y:o-"_s);
  }

  void AMillionRowsAreTickedInOneChange() {
    const frmImages images;
    CompareGrid rows(ComparePictures::From(images));
    FlexGrid grid;
    grid.setModel(&rows);
    grid.show();
    for (int row = 0; row < 1'000'000; ++row)
      rows.AddCompareRow(MakeRow(ResultKind::SourceFileNewer, std::to_string(row)));
    rows.Publish();
    rows.RemoveEmptyRow();
    const QSignalSpy changes(&rows, &CompareGrid::dataChanged);
    rows.TickRows(TickAll::NewerToOlder);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(rows.Rows().back().FixTarget, FixBox::On);
    grid.selectAll();
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text().count(u'\n'), 999'999);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareMenuTest)
#include "frmCompare_menu_test.moc"
