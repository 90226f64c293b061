#include <QCheckBox>
#include <QClipboard>

#include "replace/ReplaceWindow.h"

namespace brackwell {

namespace {

const QString NoFolder = u"! Please select the path to find files in. [OK]"_s;
const QString GoneFolder = u"! Please path you selected does not exist. [OK]"_s;
const QString NoExtensions = u"! Please select the extensions of the files you want to search in. [OK]"_s;
const QString Asterisk = u"! Do not use the asterisk wildcard when specifying extensions. [OK]"_s;
const QString Comma = u"! Separate multiple file extensions with semi-colons, not commas. [OK]"_s;
const QString NoPhrase = u"! Please specify the text string to find. [OK]"_s;
const QString WithNothing = u"? Are you sure you want to replace the 'find string' with nothing? [Yes No]"_s;
const QString Same = u"! Your find and replace text strings are the same. [OK]"_s;
const QString Verify = u"? Please verify that you want to do the replacement. [OK Cancel]"_s;

enum class Where { Nowhere, Gone, There };

QString Text(const ShownBox& box) {
  QString text;
  if (box.Icon == QMessageBox::Warning) text = u"! "_s;
  if (box.Icon == QMessageBox::Question) text = u"? "_s;
  if (box.Icon == QMessageBox::Critical) text = u"X "_s;
  QStringList buttons;
  for (const auto& [button, name] : std::initializer_list<std::pair<QMessageBox::StandardButton, QString>>{
           {QMessageBox::Yes, u"Yes"_s},
           {QMessageBox::No, u"No"_s},
           {QMessageBox::Ok, u"OK"_s},
           {QMessageBox::Cancel, u"Cancel"_s}})
    if (box.Buttons & button) buttons << name;
  return text + box.Text + u" ["_s + buttons.join(u' ') + u']';
}

}  // namespace

/// The window of find and replace: what it checks and asks, and what it shows of a run.
class frmReplaceTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { ForgetReplaceSettings(); }

  void EveryClickIsCheckedInOrder_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<Where>("folder");
    QTest::addColumn<QString>("extensions");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replace");
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("focus");  // empty where the click leaves it
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("status");

    const QList<QMessageBox::StandardButton> none;
    const QString find = u"cmdFind"_s;
    const QString replace = u"cmdReplace"_s;
    const QString untouched = u"||"_s;
    const auto refused = [&](const char* name, const QString& button, Where folder, const QString& extensions,
                             const QString& phrase, const QString& replacement, const QStringList& boxes,
                             const QString& focus, const QList<QMessageBox::StandardButton>& answers = {}) {
      QTest::newRow(name) << button << folder << extensions << phrase << replacement << answers << boxes
                          << focus << u"Replacements"_s << untouched;
    };
    const auto run = [&](const char* name, const QString& button, const QString& extensions,
                         const QString& phrase, const QString& replacement, const QStringList& boxes,
                         const QString& column, const QString& status,
                         const QList<QMessageBox::StandardButton>& answers = {}) {
      QTest::newRow(name) << button << Where::There << extensions << phrase << replacement << answers << boxes
                          << QString() << column << status;
    };

    refused("find: nothing at all", find, Where::Nowhere, {}, {}, {}, {NoFolder}, {});
    refused("find: no folder, all else good", find, Where::Nowhere, u"txt"_s, u"abc"_s, {}, {NoFolder}, {});
    refused("find: folder gone", find, Where::Gone, {}, {}, {}, {GoneFolder}, {});
    refused("find: no extensions", find, Where::There, {}, {}, {}, {NoExtensions}, u"txtExtensions"_s);
    refused("find: asterisk", find, Where::There, u"*.txt"_s, {}, {}, {Asterisk}, u"txtExtensions"_s);
    refused("find: asterisk before comma", find, Where::There, u"htm,*"_s, {}, {}, {Asterisk},
            u"txtExtensions"_s);
    refused("find: comma", find, Where::There, u"txt,htm"_s, {}, {}, {Comma}, u"txtExtensions"_s);
    refused("find: no phrase", find, Where::There, u"txt"_s, {}, u"x"_s, {NoPhrase}, u"txtFind"_s);
    run("find", find, u"txt"_s, u"abc"_s, {}, {}, u"Finds"_s, u"3 total matches were found|1|1"_s);
    run("find: the same phrase twice", find, u"txt"_s, u"abc"_s, u"abc"_s, {}, u"Finds"_s,
        u"3 total matches were found|1|1"_s);
    run("find: a blank is a phrase", find, u"txt"_s, u" "_s, {}, {}, u"Finds"_s,
        u"0 total matches were found|1|1"_s);

    refused("replace: nothing at all", replace, Where::Nowhere, {}, {}, {}, {NoFolder}, {});
    refused("replace: folder gone", replace, Where::Gone, {}, {}, {}, {GoneFolder}, {});
    refused("replace: no extensions", replace, Where::There, {}, {}, {}, {NoExtensions}, u"txtExtensions"_s);
    refused("replace: no phrase", replace, Where::There, u"txt"_s, {}, {}, {NoPhrase}, u"txtFind"_s);
    refused("replace: with nothing, no", replace, Where::There, u"txt"_s, u"abc"_s, {}, {WithNothing}, {},
            {QMessageBox::No});
    refused("replace: with nothing, escaped", replace, Where::There, u"txt"_s, u"abc"_s, {}, {WithNothing},
            {}, {QMessageBox::Escape});
    refused("replace: with nothing, not verified", replace, Where::There, u"txt"_s, u"abc"_s, {},
            {WithNothing, Verify}, {}, {QMessageBox::Yes, QMessageBox::Cancel});
    refused("replace: the same", replace, Where::There, u"txt"_s, u"Abc"_s, u"aBC"_s, {Same},
            u"txtReplace"_s);
    refused("replace: the same beyond ASCII", replace, Where::There, u"txt"_s, u"\u00c4\u0416"_s,
            u"\u00e4\u0436"_s, {Same}, u"txtReplace"_s);
    refused("replace: not verified", replace, Where::There, u"txt"_s, u"abc"_s, u"X"_s, {Verify}, {},
            {QMessageBox::Cancel});
    refused("replace: escaped", replace, Where::There, u"txt"_s, u"abc"_s, u"X"_s, {Verify}, {},
            {QMessageBox::Escape});
    run("replace: asterisk", replace, u"*.txt"_s, u"abc"_s, u"X"_s, {Verify}, u"Replaces"_s,
        u"0 total matches were replaced||0"_s, {QMessageBox::Ok});
    run("replace: comma", replace, u"txt,htm"_s, u"abc"_s, u"X"_s, {Verify}, u"Replaces"_s,
        u"0 total matches were replaced||0"_s, {QMessageBox::Ok});
    run("replace", replace, u"txt"_s, u"abc"_s, u"X"_s, {Verify}, u"Replaces"_s,
        u"3 total matches were replaced|1|1"_s, {QMessageBox::Ok});
    run("replace: with nothing", replace, u"txt"_s, u"abc"_s, {}, {WithNothing, Verify}, u"Replaces"_s,
        u"3 total matches were replaced|1|1"_s, {QMessageBox::Yes, QMessageBox::Ok});
  }
  void EveryClickIsCheckedInOrder() {
    QFETCH(QString, button);
    QFETCH(Where, folder);
    QFETCH(QString, extensions);
    QFETCH(QString, find);
    QFETCH(QString, replace);
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    QFETCH(QStringList, boxes);
    QFETCH(QString, focus);
    QFETCH(QString, column);
    QFETCH(QString, status);

    ReplaceWindow window;
    window.Area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    window.Tree.File("t/x.txt", "AbcABCabc");
    if (folder != Where::Nowhere) window.Choose();
    if (folder == Where::Gone) window.Tree.Remove("t");
    window.Type("txtExtensions", extensions);
    window.Type("txtFind", find);
    window.Type("txtReplace", replace);
    for (const auto answer : answers) window.Boxes.AnswerNext(answer);
    window.Click(qPrintable(button));

    QStringList shown;
    for (const ShownBox& box : window.Boxes.Shown()) {
      shown << Text(box);
      QCOMPARE(box.Title, u"Find and Replace"_s);
    }
    QCOMPARE(shown, boxes);
    QCOMPARE(window.Area.focusWidget()->objectName(), focus.isEmpty() ? button : focus);
    QCOMPARE(window.ResultHeader(), column);
    QCOMPARE(window.Status(), status);
    if (folder == Where::Gone) return;
    const bool isReplaced = status.startsWith(u"3 total matches were replaced"_s);
    QCOMPARE(window.Tree.Read("t/x.txt"), isReplaced ? std::string(replace.size() * 3, 'X') : "AbcABCabc");
  }

  void ARefusedClickKeepsWhatTheListShows() {
    ReplaceWindow window;
    window.HoldingFiles(1);
    window.Fill();
    const QStringList found = window.Find();
    window.Type("txtExtensions", u"*"_s);
    QCOMPARE(window.Find(), found);
    window.Boxes.AnswerNext(QMessageBox::Cancel);
    QCOMPARE(window.Replace(), found);
    QCOMPARE(window.Status(), u"1 total matches were found|1|1"_s);
    QCOMPARE(window.ResultHeader(), u"Finds"_s);
  }

  void EachFileHasItsResult() {
    ReplaceWindow window;
    window.Tree.File("t/aaaa.txt", "aaaa");
    window.Tree.File("t/empty.txt");
    window.Tree.File("t/other.htm", "aa");
    window.Tree.File("t/without.txt", "b");
    window.Tree.File("t/sub/below.txt", "AA");
    window.Fill(u"aa"_s, u"b"_s);
    QCOMPARE(window.Find(), (QStringList{u"aaaa.txt: 3 matches found"_s, u"empty.txt: File has 0 size"_s,
                                         u"without.txt: 0 matches found"_s}));
    QCOMPARE(window.Status(), u"3 total matches were found|3|3"_s);
    window.Get<QCheckBox>("chkSubdir").click();
    QCOMPARE(window.Replace(),
             (QStringList{u"aaaa.txt: 3 matches replaced"_s, u"empty.txt: File has 0 size"_s,
                          u"without.txt: 0 matches replaced"_s, u"sub/below.txt: 1 matches replaced"_s}));
    QCOMPARE(window.Status(), u"4 total matches were replaced|4|4"_s);
    QCOMPARE(window.Tree.Read("t/aaaa.txt"), "bb");
    QCOMPARE(window.Tree.Read("t/sub/below.txt"), "b");
  }

  void ListsOfExtensionsAndExclusionsCount() {
    ReplaceWindow window;
    for (const char* name : {"a.TXT", "b.htm", "bakery.txt", "none", "c.doc"})
      window.Tree.File(std::string("t/") + name, "x");
    window.Tree.File("t/Backup2/d.txt", "x");
    window.Fill(u"x"_s);
    window.Get<QCheckBox>("chkSubdir").click();
    window.Type("txtExclude", u"BA; k;"_s);
    const auto names = [&](const QString& extensions) {
      window.Type("txtExtensions", extensions);
      QStringList found = window.Find();
      for (QString& line : found) line = line.section(u':', 0, 0);
      return found.join(u' ');
    };
    QCOMPARE(names(u"txt;"_s), u"a.TXT"_s);
    QCOMPARE(names(u"txt; HTM"_s), u"a.TXT b.htm"_s);
    QCOMPARE(names(u"txt;;htm"_s), u"a.TXT b.htm none"_s);
    QCOMPARE(names(u".txt"_s), QString());
    window.Type("txtExclude", {});
    QCOMPARE(names(u"txt"_s), u"a.TXT bakery.txt Backup2/d.txt"_s);
    window.Type("txtExclude", u"a;;b"_s);
    QCOMPARE(names(u"txt"_s), QString());
    QCOMPARE(window.Status(), u"0 total matches were found||0"_s);
  }

  void ANewRunBeginsWithAnEmptyList() {
    ReplaceWindow window;
    window.HoldingFiles(3);
    window.Fill();
    QCOMPARE(window.Find().size(), 3);
    window.Tree.Remove("t/1.txt");
    QCOMPARE(window.Find(), (QStringList{u"0.txt: 1 matches found"_s, u"2.txt: 1 matches found"_s}));
    window.Tree.Remove("t/0.txt");
    window.Tree.Remove("t/2.txt");
    QCOMPARE(window.Find(), QStringList());
    QCOMPARE(window.Status(), u"0 total matches were found||0"_s);
  }

  void AReadOnlyFileIsToldAndLeft() {
    ReplaceWindow window;
    window.HoldingFiles(3);
    window.Tree.SetReadOnly("t/1.txt");
    window.Fill();
    QCOMPARE(window.Replace(), (QStringList{u"0.txt: 1 matches replaced"_s, u"1.txt: 1 matches replaced"_s,
                                            u"2.txt: 1 matches replaced"_s}));
    QCOMPARE(window.Status(), u"3 total matches were replaced|3|3"_s);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
    QCOMPARE(Text(window.Boxes.Shown()[1]),
             u"! Can't open "_s + QString::fromStdString(window.Tree.Path("t/1.txt")) +
                 u". It is possibly open in another application or you don't have permissions to modify the "
                 "file. [OK]"_s);
    QCOMPARE(window.Boxes.Shown()[1].Title, u"Find and Replace"_s);
    QCOMPARE(window.Tree.Read("t/1.txt"), "abc");
    QCOMPARE(window.Replaced(3), 2);
  }

  void AReplacementThatAFileCannotHoldIsToldAndTheFileLeft() {
    ReplaceWindow window;
    window.Tree.File("t/a.txt", "caf\xe9 abc");  // no UTF-8
    window.Tree.File("t/b.txt", "abc");
    window.Fill(u"abc"_s, u"\u0416"_s);
    window.Replace();
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
    const ShownBox& box = window.Boxes.Shown()[1];
    QCOMPARE(box.Icon, QMessageBox::Warning);
    QCOMPARE(box.Title, u"Find and Replace"_s);
    QCOMPARE(box.Text,
             QString::fromStdString(ProblemText(ReplaceProblem::CannotEncode, window.Tree.Path("t/a.txt"))));
    QCOMPARE(window.Tree.Read("t/a.txt"), "caf\xe9 abc");
    QCOMPARE(window.Tree.Read("t/b.txt"), "\xd0\x96");
  }

  void NamesInMessagesAreNoMarkup() {
    if (!TempTree::CanName("<b>x.txt")) QSKIP(NoSuchName);
    ReplaceWindow window;
    window.Tree.File("t/<b>x.txt", "abc");
    window.Tree.SetReadOnly("t/<b>x.txt");
    window.Fill();
    window.Replace();
    QVERIFY(window.Boxes.Shown().back().Text.contains(u"<b>x.txt"_s));
  }

  void APhraseOfTwoLinesIsItsFirst() {
    ReplaceWindow window;
    window.Tree.File("t/a.txt", "Hello\nworld, hello world");
    window.Fill({}, {});
    QApplication::clipboard()->setText(u"hello\nworld"_s);
    for (const char* box : {"txtFind", "txtReplace"})
      QTest::keySequence(&window.Get<QLineEdit>(box), QKeySequence::Paste);
    QCOMPARE(window.Get<QLineEdit>("txtFind").text(), u"hello"_s);
    QCOMPARE(window.Get<QLineEdit>("txtReplace").text(), u"hello"_s);
    QCOMPARE(window.Find(), QStringList{u"a.txt: 2 matches found"_s});
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmReplaceTest)
#include "frmReplace_test.moc"
