// A report read back from a real browser: its cells, its title, and whether its pictures were found.

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "common/Html.h"
#include "compare/CompareReport.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// Loads the report in a frame and tells, as JSON, what the browser made of it.
constexpr const char* Reader = R"(<body><iframe src="REPORT"></iframe><pre id="seen"></pre><script>
onload = () => {
  const page = frames[0].document;
  document.getElementById("seen").textContent = "SEEN" + JSON.stringify({
    title: page.title,
    scripts: page.scripts.length + (window.hostile || frames[0].hostile ? 1 : 0),
    rows: [...page.querySelectorAll("tr")].map(row => [...row.cells].map(cell =>
      cell.querySelector("img") ? cell.querySelector("img").src.replace(/.*\/ico/, "") + ":" +
        cell.querySelector("img").naturalWidth : cell.textContent.replace(/\u00a0$/, "")))
  }) + "SEEN";
};
</script></body>)";

}  // namespace

class report_in_browser_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void AComparisonReadsAsItWasMade() {
    const QString chromium = QStandardPaths::findExecutable(u"chromium"_s);
    QVERIFY2(!chromium.isEmpty(), "chromium is not installed: tools/set-up test");

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
    const QJsonObject seen = Read(chromium, page);

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

 private:
  static QJsonObject Read(const QString& chromium, const QString& page) {
    QTemporaryDir folder;
    Write(folder.filePath(u"report.htm"_s), page.toUtf8());
    Write(folder.filePath(u"reader.htm"_s), QByteArray(Reader).replace("REPORT", "report.htm"));
    QProcess browser;
    browser.start(chromium,
                  {u"--headless"_s, u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                   u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
                   u"--disable-dev-shm-usage"_s, u"--allow-file-access-from-files"_s,
                   u"--user-data-dir="_s + folder.filePath(u"profile"_s), u"--dump-dom"_s,
                   u"file://"_s + folder.filePath(u"reader.htm"_s)});
    if (!browser.waitForFinished(120000)) return {};
    const QString dom = QString::fromUtf8(browser.readAllStandardOutput());
    const QString json = dom.section(u"SEEN"_s, 1, 1);
    return QJsonDocument::fromJson(QString(json)
                                       .replace(u"&lt;"_s, u"<"_s)
                                       .replace(u"&gt;"_s, u">"_s)
                                       .replace(u"&amp;"_s, u"&"_s)
                                       .toUtf8())
        .object();
  }

  static void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::report_in_browser_test)
#include "report_in_browser_test.moc"
