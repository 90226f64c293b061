#include "compare/frmCompareInfo.h"

#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QTimer>

#include "common/Settings.h"
#include "compare/ComparisonWindow.h"
#include "support/When.h"

namespace brackwell {

/// Details of a row, as its dialog shows them.
struct Details {
  QString Object;
  QStringList Headers;
  QMap<QString, QPair<QString, QString>> Values;  // by property: source, target
  int Rows = 0;
};

class frmCompareInfoTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { DeleteSetting(u"Compare"_s, u"ShowFullPath"_s); }

  void AMissingSideStaysEmpty() {
    ComparisonWindow window;
    window.Tree.File("s/a.txt", "12345");
    window.Compare();
    const Details details = Open(window, 0);
    QCOMPARE(details.Object, u"a.txt"_s);
    QCOMPARE(details.Headers.join(u"|"_s), u"Source File|Property|Target File"_s);
    QCOMPARE(details.Rows, 12);
    QCOMPARE(details.Values.value(u"Size"_s).first, u"5"_s);
    QCOMPARE(details.Values.value(u"Path"_s).first, QString::fromStdString(window.Tree.Path("s/a.txt")));
    for (const auto& value : details.Values) QCOMPARE(value.second, QString());
  }

  void ATargetRowFillsTheOtherSide() {
    ComparisonWindow window;
    window.Tree.File("t/b", "1");
    window.Compare();
    const Details details = Open(window, 0);
    QCOMPARE(details.Values.value(u"Name"_s), qMakePair(QString(), u"b"_s));
  }

  void AFolderShowsWhatIsInIt() {
    ComparisonWindow window;
    window.Tree.File("s/sub/a", "123");
    window.Tree.File("s/sub/deep/b", "1");
    window.Tree.Folder("t/sub");
    window.Compare();
    const Details details = Open(window, 0);
    QCOMPARE(details.Headers.join(u"|"_s), u"Source Folder|Property|Target Folder"_s);
    QCOMPARE(details.Rows, 14);
    QCOMPARE(details.Values.value(u"Files"_s), qMakePair(u"1"_s, u"0"_s));
    QCOMPARE(details.Values.value(u"Subfolders"_s), qMakePair(u"1"_s, u"0"_s));
    QCOMPARE(details.Values.value(u"Size"_s), qMakePair(u"4"_s, u"0"_s));
  }

  void FullPathsFindBothSides() {
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"1"_s);
    ComparisonWindow window;
    window.Tree.File("s/a", "1", 0);
    window.Tree.File("t/a", "22", 0);
    window.Tree.File("t/b", "333");
    window.Compare();
    const Details both = Open(window, 0);
    QCOMPARE(both.Object, u"a"_s);
    QCOMPARE(both.Values.value(u"Size"_s), qMakePair(u"1"_s, u"2"_s));
    const Details target = Open(window, 1);
    QCOMPARE(target.Object, u"b"_s);
    QCOMPARE(target.Values.value(u"Size"_s), qMakePair(QString(), u"3"_s));
  }

  void ANameThatIsNoTextIsFound() {
    if (!TempTree::CanName("caf\xe9")) QSKIP(NoSuchName);
    ComparisonWindow window;
    window.Tree.File("s/caf\xe9", "12");
    window.Compare();
    const Details details = Open(window, 0);
    QCOMPARE(details.Object, u"caf\xfffd"_s);
    QCOMPARE(details.Values.value(u"Size"_s).first, u"2"_s);
  }

  void TheEmptyRowHasNoDetails() {
    ComparisonWindow window;
    bool shown = false;
    QTimer::singleShot(50, [&] { shown = QApplication::activeModalWidget() != nullptr; });
    DoubleClick(window, 0);
    QTest::qWait(100);
    QVERIFY(!shown);
  }

  void EnterOpensAndEscCloses() {
    ComparisonWindow window;
    window.Tree.File("s/a");
    window.Compare();
    auto& grid = window.Get<FlexGrid>("grdCompare");
    grid.setCurrentIndex(grid.model()->index(0, 1));
    InDialog([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QTest::keyClick(&grid, Qt::Key_Return);
    QVERIFY(!QApplication::activeModalWidget());
  }

  void F1AsksForItsHelp() {
    ComparisonWindow window;
    window.Tree.File("s/a");
    window.Compare();
    QStringList asked;
    window.Lent.ShowHelp = [&](const QString& key) { asked << key; };
    Qt::WindowModality modality = Qt::NonModal;
    InDialog([&](QWidget& dialog) {
      modality = dialog.windowModality();
      QTest::keySequence(&dialog, QKeySequence(u"F1"_s));
      QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    DoubleClick(window, 0);
    QCOMPARE(asked, QStringList{u"frmCompareInfo"_s});
    QCOMPARE(modality, Qt::WindowModal);  // the help can be read meanwhile
  }

  void PropertiesAreCopied() {
    ComparisonWindow window;
    window.Tree.File("s/a", "12345");
    window.Tree.File("t/a", "1");
    window.Compare();
    InDialog([](QWidget& dialog) {
      auto* grid = dialog.findChild<FlexGrid*>(u"grdProperties"_s);
      grid->selectAll();
      QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
      QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    DoubleClick(window, 0);
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
    QCOMPARE(lines.size(), 12);
    QVERIFY(lines.contains(u"5\tSize\t1"_s));
  }

  void AnUnreadableFolderIsTold() {
    ComparisonWindow window;
    window.Tree.Folder("s/sub");
    window.Compare();
    FailingFileSystem failing(3, FileError::PermissionDenied);
    frmCompareInfo info(failing, nullptr);
    info.ObjectName = "sub";
    info.ObjectType = u"Folder"_s;
    info.SourceRoot = window.Tree.Root("s");
    info.TargetRoot = window.Tree.Root("t");
    info.show();
    QTRY_COMPARE(window.Boxes.Shown().size(), std::size_t(1));
    QCOMPARE(window.Boxes.Shown().back().Title, u"Comparison Object Details"_s);
    QVERIFY(window.Boxes.Shown().back().Text.startsWith(u"Permission denied\n"_s));
  }

  void ClosingEndsTheReadingOfALargeFolder() {
    ComparisonWindow window;
    for (int i = 0; i < 60; ++i) window.Tree.File("s/sub/folder" + std::to_string(i) + "/file", "x");
    window.Compare();
    window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(20)); };
    const int before = window.Files.Calls();
    bool wasBusy = false;
    const auto isReading = [&] {
      return QApplication::activeModalWidget() && window.Files.Calls() > before + 3;
    };
    When(isReading, [&wasBusy] {
      wasBusy = QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
      QApplication::activeModalWidget()->findChild<QPushButton*>(u"cmdClose"_s)->click();
    });
    DoubleClick(window, 0);
    QVERIFY(window.Files.Calls() - before < 60);
    QVERIFY(wasBusy);
    QVERIFY(!QApplication::overrideCursor());
  }

  void NamesStandWholeInALargeFont() {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSize(18);
    QApplication::setFont(large);
    ComparisonWindow window;
    window.Tree.File("s/a");
    window.Compare();
    int room = 0;
    int needed = 0;
    InDialog([&](QWidget& dialog) {
      auto* grid = dialog.findChild<FlexGrid*>(u"grdProperties"_s);
      room = grid->columnWidth(1);
      needed = static_cast<QAbstractItemView*>(grid)->sizeHintForColumn(1);
      QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    DoubleClick(window, 0);
    QApplication::setFont(usual);
    QVERIFY(needed > 0);
    QVERIFY(room >= needed);
  }

 private:
  static void DoubleClick(ComparisonWindow& window, int row) {
    auto& grid = window.Get<FlexGrid>("grdCompare");
    const QPoint place = grid.visualRect(grid.model()->index(row, 1)).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, place);
  }

  /// Whether the dialog has read all that it shows.
  static bool IsFilled(const QWidget& dialog) {
    const QAbstractItemModel& model = *dialog.findChild<FlexGrid*>(u"grdProperties"_s)->model();
    const QString texts = model.index(0, 0).data().toString() + model.index(0, 2).data().toString();
    return !texts.isEmpty() && !QApplication::overrideCursor();
  }

  /// Calls `step` with the dialog once it takes keys and has read all.
  static void InDialog(const std::function<void(QWidget&)>& step) {
    When(
        [] {
          const QWidget* dialog = QApplication::activeModalWidget();
          return dialog && dialog->isActiveWindow() && IsFilled(*dialog);
        },
        [step] { step(*QApplication::activeModalWidget()); });
  }

  static Details Open(ComparisonWindow& window, int row) {
    Details details;
    InDialog([&](QWidget& dialog) {
      QCOMPARE(dialog.windowTitle(), u"Comparison Object Details"_s);
      details.Object = dialog.findChild<QLabel*>(u"lblObject"_s)->text();
      const QAbstractItemModel& model = *dialog.findChild<FlexGrid*>(u"grdProperties"_s)->model();
      details.Rows = model.rowCount();
      for (int column = 0; column < 3; ++column)
        details.Headers << model.headerData(column, Qt::Horizontal).toString();
      for (int i = 0; i < model.rowCount(); ++i)
        details.Values[model.index(i, 1).data().toString()] = {model.index(i, 0).data().toString(),
                                                               model.index(i, 2).data().toString()};
      dialog.findChild<QPushButton*>(u"cmdClose"_s)->click();
    });
    DoubleClick(window, row);
    return details;
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareInfoTest)
#include "frmCompareInfo_test.moc"
