#include <QFile>
#include <QTemporaryDir>

#include "compare/ComparisonWindow.h"
#include "support/StandInOpener.h"

namespace brackwell {

class frmComparePrintTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    mTemporary = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", mTemporary->path().toLocal8Bit());
  }
  void cleanup() {
    QFile::setPermissions(mTemporary->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qunsetenv("TMPDIR");
  }

  void ThePageIsWrittenAndOpened() {
    const StandInOpener opener;
    ComparisonWindow window;
    window.Tree.File("s/\xc3\xa4<b>.txt");
    window.Tree.File("t/z");
    window.Compare();
    Print(window);
    QCOMPARE(opener.Opened(), u"file://"_s + Report() + u"\n"_s);
    const QByteArray page = Page();
    QVERIFY(page.startsWith(
        "<html><head><title>Directory Comparison</title></head><body><table width=\"100%\" "));
    QVERIFY(page.contains(">&#228;&lt;b&gt;.txt&nbsp;</td>"));
    QVERIFY(page.contains("/images/icoArrowRedR.gif\" border=\"0\"></td>"));
    QVERIFY(page.contains(">Target file was not found in source folder&nbsp;</td>"));
    QVERIFY(page.endsWith("</table></body></html>"));
    QVERIFY(std::all_of(page.begin(), page.end(), [](char c) { return c >= 0x20 && c < 0x7f; }));
    const QModelIndex current = window.Get<FlexGrid>("grdCompare").currentIndex();
    QCOMPARE(current.row(), 1);
    QCOMPARE(current.column(), 3);
  }

  void BeforeAnyComparisonTheEmptyRowIsPrinted() {
    const StandInOpener opener;
    ComparisonWindow window;
    Print(window);
    QCOMPARE(Page().count("<tr>"), 2);
    QCOMPARE(Page().count("&nbsp;"), 8);
  }

  void TheNextReportReplacesTheLast() {
    const StandInOpener opener;
    ComparisonWindow window;
    window.Tree.File("s/first");
    window.Compare();
    Print(window);
    window.Tree.File("s/second");
    window.Compare();
    Print(window);
    QCOMPARE(Page().count("first"), 1);
    QCOMPARE(Page().count("second"), 1);
    QCOMPARE(QDir(mTemporary->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"dir_compare.htm"_s});
  }

  void FixedRowsAreShownAsSuch() {
    const StandInOpener opener;
    ComparisonWindow window;
    window.Tree.File("s/a");
    window.Compare();
    window.ClickCell(0, 5);
    window.Click("cmdFix");
    Print(window);
    QVERIFY(Page().contains("/images/icoCheckmark.gif\""));
    QVERIFY(Page().contains("Source file was not found in target folder (FIXED)&nbsp;"));
  }

  void ALinkPlantedUnderTheReportsNameIsNotWrittenThrough() {
    const StandInOpener opener;
    ComparisonWindow window;
    window.Tree.File("precious", "kept");
    QVERIFY(QFile::link(QString::fromStdString(window.Tree.Path("precious")), Report()));
    Print(window);
    QCOMPARE(window.Tree.Read("precious"), "kept");
    QVERIFY(Page().startsWith("<html>"));
  }

  void WithoutAFolderToWriteToNothingIsOpened() {
    const StandInOpener opener;
    ComparisonWindow window;
    qputenv("TMPDIR", (mTemporary->path() + u"/gone"_s).toLocal8Bit());
    QVERIFY_EXCEPTION_THROWN(PrintDirectly(window), FileSystemError);
    QCOMPARE(opener.Opened(), QString());
    QVERIFY(window.Boxes.Shown().empty());
  }

  void AFullDiskLeavesTheLastReportWhole() {
    const StandInOpener opener;
    QFile last(Report());
    QVERIFY(last.open(QIODevice::WriteOnly));
    last.write("the last report");
    last.close();
    ComparisonWindow window(1);
    QVERIFY_EXCEPTION_THROWN(PrintDirectly(window), FileSystemError);
    QCOMPARE(Page(), "the last report");
    QCOMPARE(opener.Opened(), QString());
  }

  void ABrowserThatDoesNotStartIsTold() {
    StandInOpener opener;
    opener.ExitWith(3);
    ComparisonWindow window;
    Print(window);
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"There is no application associated with the given file name extension."_s});
  }

 private:
  QString Report() const { return mTemporary->filePath(u"dir_compare.htm"_s); }
  QByteArray Page() const {
    QFile page(Report());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
  }

  static void PrintDirectly(ComparisonWindow& window) { window.Form->PrintData(); }
  /// By name, as the main window does.
  static void Print(ComparisonWindow& window) {
    QVERIFY(QMetaObject::invokeMethod(window.Form, "PrintData"));
  }

  std::unique_ptr<QTemporaryDir> mTemporary;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmComparePrintTest)
#include "frmCompare_print_test.moc"
