#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "compare/ComparisonWindow.h"
#include "support/OwnFolders.h"
#include "support/StandInOpener.h"

namespace brackwell {

class frmComparePrintTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    mTemporary = std::make_unique<QTemporaryDir>();
    mTempFolder = std::make_unique<OwnTempFolder>(mTemporary->path().toStdString());
  }
  void cleanup() {
    QFile::setPermissions(mTemporary->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    mTempFolder.reset();
  }

  void ThePageIsWrittenAndOpened() {
    const StandInOpener opener;
    ComparisonWindow window;
    window.Tree.File("s/\xc3\xa4 b.txt");
    window.Tree.File("t/z");
    window.Compare();
    Print(window);
    QCOMPARE(opener.Opened(), QStringList{Report()});
    const QByteArray page = Page();
    QVERIFY(page.startsWith(
        "<html><head><title>Directory Comparison</title></head><body><table width=\"100%\" "));
    QVERIFY(page.contains(">&#228; b.txt&nbsp;</td>"));
    QVERIFY(page.contains(Picture("icoArrowRedR.gif") + "\" border=\"0\"></td>"));
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
    QVERIFY(Page().contains(Picture("icoCheckmark.gif") + '"'));
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
    const OwnTempFolder gone(mTemporary->filePath(u"gone"_s).toStdString());
    QVERIFY_EXCEPTION_THROWN(PrintDirectly(window), FileSystemError);
    QVERIFY(opener.Opened().isEmpty());
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
    QVERIFY(opener.Opened().isEmpty());
  }

  void ABrowserThatDoesNotStartIsTold() {
    StandInOpener opener;
    opener.OpenNothing();
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

  /// The end of a picture's path.
  static QByteArray Picture(const char* name) {
    return QDir::toNativeSeparators(u"/images/"_s + QString::fromLatin1(name)).toLatin1();
  }

  static void PrintDirectly(ComparisonWindow& window) { window.Form->PrintData(); }
  /// By name, as the main window does.
  static void Print(ComparisonWindow& window) {
    QVERIFY(QMetaObject::invokeMethod(window.Form, "PrintData"));
  }

  std::unique_ptr<QTemporaryDir> mTemporary;
  std::unique_ptr<OwnTempFolder> mTempFolder;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmComparePrintTest)
#include "frmCompare_print_test.moc"
