#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "replace/ReplaceWindow.h"
#include "support/OwnFolders.h"
#include "support/StandInOpener.h"

namespace brackwell {

class frmReplacePrintTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    mTemporary = std::make_unique<QTemporaryDir>();
    mTempFolder = std::make_unique<OwnTempFolder>(mTemporary->path().toStdString());
  }
  void cleanup() {
    mTempFolder.reset();
    ForgetReplaceSettings();
  }

  void ThePageIsWrittenAndOpened() {
    const StandInOpener opener;
    ReplaceWindow window;
    window.Tree.File("t/\xc3\xa4 b.txt", "abc");
    window.Fill(u"<i>abc\u00e4"_s, u"X & Y"_s);
    window.Type("txtFind", u"<i>a"_s);
    window.Type("txtExclude", u"bak"_s);
    window.Find();
    Print(window);
    QCOMPARE(opener.Opened(), QStringList{Report()});
    const QByteArray page = Page();
    const QByteArray folder = QByteArray::fromStdString(window.Tree.Root("t"));
    QVERIFY(
        page.startsWith("<html><head><title>Find and Replace</title></head><body>"
                        "<p><b>Folder to Search</b>: " +
                        folder +
                        "</p><p><b>Search in files with these extensions</b>: txt</p>"
                        "<p><b>Exclude files/subfolders that begin with</b>: bak</p>"
                        "<p><b>Phrase to find within the files</b>: <i>a</p>"
                        "<p><b>Phrase to replace the found text with</b>: X & Y</p>"
                        "<table width=\"100%\" "));
    QVERIFY(page.contains(" nowrap=\"nowrap\">Finds</td></tr>"));
    QVERIFY(page.contains('>' + folder + "&#228; b.txt</td>"));
    QVERIFY(page.endsWith("nowrap=\"nowrap\">0 matches found&nbsp;</td></tr></table></body></html>"));
    QVERIFY(std::all_of(page.begin(), page.end(), [](char c) { return c >= 0x20 && c < 0x7f; }));
  }

  void TheColumnsKeepTheirShares() {
    const StandInOpener opener;
    ReplaceWindow window;
    Print(window);
    auto& list = window.Get<ListView>("lvwResults");
    for (int column = 0; column < 2; ++column) {
      const double share = 100.0 * list.columnWidth(column) / list.width();
      QVERIFY(Page().contains("<td width=\"" + QByteArray::number(std::nearbyint(share)) +
                              "%\" bgcolor=\"silver\" nowrap=\"nowrap\">"));
    }
  }

  void BeforeAnyRunTheEmptyListIsPrinted() {
    const StandInOpener opener;
    ReplaceWindow window;
    Print(window);
    QCOMPARE(Page().count("<tr>"), 1);
    QVERIFY(Page().contains(">Replacements</td></tr></table></body></html>"));
    QVERIFY(Page().contains("<p><b>Folder to Search</b>: </p>"));
  }

  void TheNextReportReplacesTheLast() {
    const StandInOpener opener;
    ReplaceWindow window;
    window.HoldingFiles(2);
    window.Fill();
    window.Find();
    Print(window);
    window.Tree.Remove("t/1.txt");
    window.Replace();
    Print(window);
    QCOMPARE(Page().count("1.txt"), 0);
    QVERIFY(Page().contains(">1 matches replaced&nbsp;</td>"));
    QCOMPARE(QDir(mTemporary->path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"replace.htm"_s});
  }

  void AFullDiskLeavesTheLastReportWhole() {
    const StandInOpener opener;
    QFile last(Report());
    QVERIFY(last.open(QIODevice::WriteOnly));
    last.write("the last report");
    last.close();
    ReplaceWindow window(1);
    QVERIFY_EXCEPTION_THROWN(PrintDirectly(window), FileSystemError);
    QCOMPARE(Page(), "the last report");
    QVERIFY(opener.Opened().isEmpty());
  }

  void ABrowserThatDoesNotStartIsTold() {
    StandInOpener opener;
    opener.OpenNothing();
    ReplaceWindow window;
    Print(window);
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"There is no application associated with the given file name extension."_s});
  }

 private:
  QString Report() const { return mTemporary->filePath(u"replace.htm"_s); }
  QByteArray Page() const {
    QFile page(Report());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
  }

  static void PrintDirectly(ReplaceWindow& window) { window.Form->PrintData(); }
  /// By name, as the main window does.
  static void Print(ReplaceWindow& window) { QVERIFY(QMetaObject::invokeMethod(window.Form, "PrintData")); }

  std::unique_ptr<QTemporaryDir> mTemporary;
  std::unique_ptr<OwnTempFolder> mTempFolder;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmReplacePrintTest)
#include "frmReplace_print_test.moc"
