// A report read back from a real browser: its cells, its title, and whether its pictures were found.

#include <QJsonArray>

#include "common/Html.h"
#include "compare/CompareReport.h"
#include "e2e/Browser.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// What is looked at, of the report itself and of the page around it.
constexpr const char* Seen = R"({
    title: page.title,
    scripts: page.scripts.length + (window.hostile || view.hostile ? 1 : 0),
    rows: [...page.querySelectorAll("tr")].map(row => [...row.cells].map(cell =>
      cell.querySelector("img") ? cell.querySelector("img").src.replace(/.*\/ico/, "") + ":" +
        cell.querySelector("img").naturalWidth : cell.textContent.replace(/\u00a0$/, "")))
  })";

}  // namespace

class report_in_browser_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (!Browser::IsInstalled()) QSKIP(Browser::None);
  }
  void AComparisonReadsAsItWasMade() {
    CompareRows rows{
        MakeRow(ResultKind::SourceFileMissingInTarget, "<script>top.hostile = hostile = 1</script>"),
        MakeRow(ResultKind::FolderSame, "\"><img src=x onerror=\"hostile=1\">"),
        MakeRow(ResultKind::TargetFileNewer, "gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x98\x80 & co"),
        MakeRow(ResultKind::SizesDiffer, "caf\xe9\nbar")};
    MarkFixed(rows[3]);
    const QString page = QString::fromStdString(HtmlToAscii(ToHtml(
        {.Title = "Directory Comparison",
         .ProgramFolder = BRACKWELL_PROGRAM_FOLDER,
         .Headers = {"Folder / Filename", "Folder / Filename", "Comparison Result", "Comparison Result"},
         .ColumnWidths = {33, 470, 33, 282},
         .GridWidth = 1000,
         .Rows = rows})));
    const QJsonObject seen = Browser::Read(page.toUtf8(), Seen);

    QCOMPARE(seen[u"title"].toString(), u"Directory Comparison"_s);
    QCOMPARE(seen[u"scripts"].toInt(), 0);
    QStringList lines;
    for (const QJsonValue& row : seen[u"rows"].toArray()) {
      QStringList cells;
      for (const QJsonValue& cell : row.toArray()) cells << cell.toString();
      lines << cells.join(u" | "_s);
    }
    QCOMPARE(
        lines,
        (QStringList{u"Folder / Filename | Folder / Filename | Comparison Result | Comparison Result"_s,
                     u"File.gif:16 | <script>top.hostile = hostile = 1</script> | ArrowRedR.gif:16 | "
                     "Source file was not found in target folder"_s,
                     u"FolderOpen.gif:16 | \"><img src=x onerror=\"hostile=1\"> | ArrowGreenDbl.gif:16 | "_s,
                     u"File.gif:16 | gr\u00fc\u00df \u20ac \U0001f600 & co | ArrowYellowDbl.gif:16 | "
                     "Target file is newer than source file"_s,
                     u"File.gif:16 | caf\ufffd\u240a"
                     "bar | Checkmark.gif:16 | Source and target files are different size (FIXED)"_s}));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::report_in_browser_test)
#include "report_in_browser_test.moc"
