// A displayed directory read back from a real browser, in light and dark.

#include <QJsonArray>

#include "common/Progress.h"
#include "dirdisplay/DisplayOutput.h"
#include "e2e/Browser.h"
#include "support/OwnFolders.h"
#include "support/TempTree.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* Seen = R"({
    title: page.title,
    mode: page.compatMode,
    scripts: page.scripts.length + (window.hostile || view.hostile ? 1 : 0),
    page: view.getComputedStyle(page.body).backgroundColor,
    text: view.getComputedStyle(page.body).color,
    rows: [...page.querySelectorAll("tr")].map(row => [...row.cells].map(cell => cell.textContent).join(" | ")),
    nesting: [...page.querySelectorAll("tbody tr")].map(row => view.getComputedStyle(row.cells[0]).paddingLeft),
    right: [...page.querySelectorAll("tr")].map(row =>
      [...row.cells].filter(cell => view.getComputedStyle(cell).textAlign == "right").length)
  })";

class NoProgress final : public Progress {
 public:
  void Message(std::string_view /*text*/) override {}
  void DoEvents() override {}
  bool Stopped() const override { return false; }
};

QStringList Texts(const QJsonValue& array) {
  QStringList texts;
  for (const QJsonValue& value : array.toArray()) texts << value.toVariant().toString();
  return texts;
}

}  // namespace

class display_in_browser_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (!Browser::IsInstalled()) QSKIP(Browser::None);
  }
  void ADirectoryReadsAsItIs() {
    TempTree tree;
    tree.File("top/<script>top.hostile = hostile = 1;", "12345");
    tree.File("top/gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x98\x80 & co", "1");
    tree.File("top/\"><img src=x onerror=\"hostile=1\">/caf\xe9\nbar");
    tree.Folder("out");
    const OwnTempFolder out(tree.Path("out"));
    DisplayOptions options;
    options.Folder = tree.Path("top");
    options.Format = DisplayFormat::Html;
    options.ProgramFolder = BRACKWELL_PROGRAM_FOLDER;
    options.FolderInfo = {{"Name", "Name"}, {"Size", "Size"}, {"Is Root", "IsRootFolder"}};
    options.FileInfo = {{"Size", "Size"}, {"Name", "Name"}};
    NoProgress progress;
    const auto path = DisplayDirectory(*CreateFileSystemObject(), options, progress,
                                       [](const std::string& error) { QFAIL(error.c_str()); });
    QVERIFY(path);
    const QByteArray page = QByteArray::fromStdString(tree.Read("out/dir_display.html"));

    const QJsonObject light = Browser::Read(page, Seen);
    QCOMPARE(light[u"title"].toString(), u"Directory of "_s + QString::fromStdString(options.Folder));
    QCOMPARE(light[u"mode"].toString(), u"CSS1Compat"_s);
    QCOMPARE(light[u"scripts"].toInt(), 0);
    QCOMPARE(Texts(light[u"rows"]),
             (QStringList{u"Folder | Name | Size | Is Root"_s, u"File | Size | Name | "_s,
                          u"Folder | top | 6 | False"_s, u"File | 5 | <script>top.hostile = hostile = 1;"_s,
                          u"File | 1 | gr\u00fc\u00df \u20ac \U0001f600 & co"_s,
                          u"Folder | \"><img src=x onerror=\"hostile=1\"> | 0 | False"_s,
                          u"File | 0 | caf\ufffd\u240a"
                          "bar"_s}));
    const QStringList nesting = Texts(light[u"nesting"]);
    QVERIFY(nesting[0] < nesting[1] && nesting[1] == nesting[2] && nesting[2] == nesting[3] &&
            nesting[3] < nesting[4]);
    QCOMPARE(Texts(light[u"right"]), (QStringList{u"1"_s, u"1"_s, u"1"_s, u"1"_s, u"1"_s, u"1"_s, u"1"_s}));
    QCOMPARE(light[u"page"].toString(), u"rgb(255, 255, 255)"_s);

    const QJsonObject dark = Browser::Read(page, Seen, true);
    QCOMPARE(dark[u"rows"], light[u"rows"]);
    QCOMPARE(dark[u"page"].toString(), u"rgb(22, 27, 33)"_s);
    QCOMPARE(dark[u"text"].toString(), u"rgb(223, 230, 238)"_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::display_in_browser_test)
#include "display_in_browser_test.moc"
