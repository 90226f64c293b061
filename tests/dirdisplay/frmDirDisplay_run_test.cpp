#include <QDir>
#include <QTimer>

#include <new>
#include <system_error>

#include "dirdisplay/DisplayWindow.h"
#include "platform/FileSystemError.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/LargeFolder.h"
#include "support/When.h"

// What the Display button does.

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// For as long as one is alive the test's program has the stylesheets beside it.
class Stylesheets {
 public:
  Stylesheets() {
    QDir(QCoreApplication::applicationDirPath()).mkpath(u"xml"_s);
    for (const QString& name : {u"dir_display_text.xsl"_s, u"dir_display_html.xsl"_s})
      QFile::copy(QStringLiteral(BRACKWELL_PROGRAM_FOLDER "/xml/") + name, Beside(name));
  }
  ~Stylesheets() { QDir(Beside({})).removeRecursively(); }
  Stylesheets(const Stylesheets&) = delete;
  Stylesheets& operator=(const Stylesheets&) = delete;

  static QString Beside(const QString& name) {
    return QCoreApplication::applicationDirPath() + u"/xml/"_s + name;
  }
};

QStringList OpenedIn(const DisplayWindow& window, const char* name, int times = 1) {
  return QStringList(times, window.Output.filePath(QString::fromLatin1(name)));
}

QString Shown(const ShownBox& box) {
  const QString icon = box.Icon == QMessageBox::Critical ? u"critical"_s : u"exclamation"_s;
  return box.Title + u", "_s + icon + u": "_s + box.Text;
}

}  // namespace

class frmDirDisplayRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    for (const QString& key :
         {u"XmlType"_s, u"TextDelimiter"_s, u"DisplayFormat"_s, u"FolderInfo"_s, u"FolderSelected"_s,
          u"FolderInclude"_s, u"FolderSubs"_s, u"FileInfo"_s, u"FileSelected"_s, u"FileInclude"_s})
      DeleteSetting(u"DirectoryDisplay"_s, key);
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
  }

  void ChoicesAreCheckedInOrder();
  void AnXmlDisplayIsWrittenAndOpened();
  void TheOptionsSayHowXmlIsWritten();
  void ATextIsDelimitedAsTheOptionsSay();
  void APageIsWrittenAndOpened();
  void TheBoxesSayWhatIsIncluded();
  void TheOrderOfTheListsIsThatOfTheOutput();
  void AFolderWhoseNameIsNoTextIsDisplayed();
  void AMissingStylesheetIsTold();
  void AProgramThatDoesNotStartIsTold();
  void AFolderThatCannotBeReadIsTold();
  void WantOfMemoryOrThreadsIsTold();
  void EveryFailureIsToldAndLeavesTheWindowUsable();
  void TheOutputOfTheRunBeforeStaysWhole();
  void ThePointerIsBusyDuringARun();
  void EscapeEndsARun();
  void AClickDuringARunStartsAnew();
  void ClosingEndsARun();
  void TheProgramEndsInTheMiddleOfARun();
};

void frmDirDisplayRunTest::ChoicesAreCheckedInOrder() {
  DisplayWindow window;
  window.Tree.Folder("folder");
  window.Area.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window.Area));
  const auto complaint = [&] {
    window.Click("cmdDisplay");
    const QWidget* focus = window.Form->focusWidget();
    return Shown(window.Boxes.Shown().back()) + u" -> "_s + (focus ? focus->objectName() : QString());
  };
  const QString start = u"Directory Display, exclamation: "_s;
  auto& includeFolders = window.Get<QCheckBox>("chkIncludeFolders");
  auto& includeFiles = window.Get<QCheckBox>("chkIncludeFiles");
  includeFolders.setChecked(false);
  includeFiles.setChecked(false);
  QCOMPARE(complaint(), start + u"Please select the directory that you wish to display -> FolderTree"_s);
  window.Choose(window.Tree.Path("folder"));
  QCOMPARE(complaint(), start + u"Please select the display format -> optFormat(0)"_s);
  window.Get<QRadioButton>("optFormat(2)").setChecked(true);
  QCOMPARE(complaint(), start + u"You must include either folders, files, or both -> chkIncludeFolders"_s);
  includeFolders.setChecked(true);
  includeFiles.setChecked(true);
  QCOMPARE(complaint(),
           start + u"Please identify the folder data to include in the display -> lvwFolderInfo"_s);
  window.Check("lvwFolderInfo", u"Size"_s);
  QCOMPARE(complaint(), start + u"Please identify the file data to include in the display -> lvwFileInfo"_s);
  QCOMPARE(window.Boxes.Shown().size(), 5u);
  QVERIFY(window.Opener.Opened().isEmpty());

  includeFiles.setChecked(false);  // then no file data need be checked
  window.Click("cmdDisplay");
  includeFiles.setChecked(true);
  includeFolders.setChecked(false);
  window.Check("lvwFolderInfo", u"Size"_s, false);
  window.Check("lvwFileInfo", u"Size"_s);
  window.Click("cmdDisplay");
  QCOMPARE(window.Boxes.Shown().size(), 5u);
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.xml", 2));
}

void frmDirDisplayRunTest::AnXmlDisplayIsWrittenAndOpened() {
  DisplayWindow window;
  window.Tree.File("a & b.txt");
  window.ChooseAll(2);
  window.Click("cmdDisplay");
  const QByteArray path = QByteArray::fromStdString(window.Tree.Path());
  QVERIFY2(
      window.Written("dir_display.xml")
          .contains("<directory_display style=\"element\" path=\"" + path + "\"><folder><full_name>" + path +
                    "</full_name><file><name>a &amp; b.txt</name></file></folder></directory_display>"),
      window.Written("dir_display.xml"));
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.xml"));
  QVERIFY(window.Boxes.Shown().empty());
  QVERIFY(!window.Form->IsRunning());
}

void frmDirDisplayRunTest::TheOptionsSayHowXmlIsWritten() {
  SaveSetting(u"DirectoryDisplay"_s, u"XmlType"_s, u"1"_s);
  DisplayWindow window;
  window.Tree.File("a.txt");
  window.ChooseAll(2);
  window.Click("cmdDisplay");
  QVERIFY(window.Written("dir_display.xml").contains("style=\"attribute\""));
  QVERIFY(window.Written("dir_display.xml").contains("<file name=\"a.txt\"/>"));
}

void frmDirDisplayRunTest::ATextIsDelimitedAsTheOptionsSay() {
  const Stylesheets stylesheets;
  DisplayWindow window;
  window.Tree.File("a.txt", "12345");
  window.ChooseAll(0);
  window.Check("lvwFileInfo", u"Size"_s);
  const auto written = [&] {
    window.Click("cmdDisplay");
    return window.Written("dir_display.txt");
  };
  QVERIFY(written().contains("a.txt\t5"));
  SaveSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s, u"CHR-9"_s);
  QVERIFY(written().contains("a.txt\t5"));
  SaveSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s, u"CHR-124"_s);
  QVERIFY(written().contains("a.txt|5"));
  SaveSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s, u" ; "_s);
  QVERIFY(written().contains("a.txt ; 5"));
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.txt", 4));
}

void frmDirDisplayRunTest::APageIsWrittenAndOpened() {
  const Stylesheets stylesheets;
  DisplayWindow window;
  window.Tree.File("a & b.txt");
  window.ChooseAll(1);
  window.Click("cmdDisplay");
  const QByteArray page = window.Written("dir_display.html");
  QVERIFY(page.contains("a &amp; b.txt"));
  QVERIFY(page.trimmed().endsWith("</html>"));
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.html"));
}

void frmDirDisplayRunTest::TheBoxesSayWhatIsIncluded() {
  DisplayWindow window;
  window.Tree.File("folder/file");
  window.ChooseAll(2);
  const auto counts = [&] {
    window.Click("cmdDisplay");
    const QByteArray xml = window.Written("dir_display.xml");
    return QList<qsizetype>{xml.count("<folder"), xml.count("<full_name>"), xml.count("<file>")};
  };
  QCOMPARE(counts(), (QList<qsizetype>{2, 2, 1}));
  window.Get<QCheckBox>("chkIncludeFolders").setChecked(false);
  QCOMPARE(counts(), (QList<qsizetype>{2, 0, 1}));
  window.Get<QCheckBox>("chkSubfolders").setChecked(false);
  QCOMPARE(counts(), (QList<qsizetype>{1, 0, 0}));
  window.Get<QCheckBox>("chkIncludeFolders").setChecked(true);
  window.Get<QCheckBox>("chkSubfolders").setChecked(true);
  window.Get<QCheckBox>("chkIncludeFiles").setChecked(false);
  QCOMPARE(counts(), (QList<qsizetype>{2, 2, 0}));
}

void frmDirDisplayRunTest::TheOrderOfTheListsIsThatOfTheOutput() {
  SaveSetting(u"DirectoryDisplay"_s, u"FileInfo"_s, u"Colour|Colour;Size|Size;Name|Name;"_s);
  SaveSetting(u"DirectoryDisplay"_s, u"FileSelected"_s, u"Colour;Size;Name;"_s);
  DisplayWindow window;
  window.Tree.File("a", "123");
  window.ChooseAll(2);
  window.ClickItem("lvwFileInfo", u"Name"_s);
  window.Click("cmdMoveFileInfo(0)");
  window.Click("cmdDisplay");
  QVERIFY(window.Written("dir_display.xml").contains("<file><colour/><name>a</name><size>3</size></file>") ||
          window.Written("dir_display.xml")
              .contains("<file><colour></colour><name>a</name><size>3</size></file>"));
}

void frmDirDisplayRunTest::AFolderWhoseNameIsNoTextIsDisplayed() {
  if (!TempTree::CanName("caf\xe9")) QSKIP(NoSuchName);
  DisplayWindow window;
  window.Tree.File("caf\xe9/file");
  window.ChooseAll(2);
  window.Choose(window.Tree.Path("caf\xe9"));
  window.Click("cmdDisplay");
  QVERIFY(window.Boxes.Shown().empty());
  QVERIFY(window.Written("dir_display.xml").contains("<name>file</name>"));
}

void frmDirDisplayRunTest::AMissingStylesheetIsTold() {
  DisplayWindow window;
  window.ChooseAll(0);
  window.Click("cmdDisplay");
  QCOMPARE(window.Boxes.Shown().size(), 1u);
  const QString box = Shown(window.Boxes.Shown()[0]);
  QVERIFY2(box.startsWith(u"XmlApplyXsl, critical: There was an error in XmlApplyXsl:\r\nError: "_s),
           qPrintable(box));
  QCOMPARE(window.Written("dir_display.txt"), QByteArray());
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.txt"));
}

void frmDirDisplayRunTest::AProgramThatDoesNotStartIsTold() {
  DisplayWindow window;
  window.Opener.OpenNothing();
  window.ChooseAll(2);
  window.Click("cmdDisplay");
  QCOMPARE(
      Shown(window.Boxes.Shown().back()),
      u"Run Program, exclamation: There is no application associated with the given file name extension."_s);
}

void frmDirDisplayRunTest::AFolderThatCannotBeReadIsTold() {
  DisplayWindow window;
  window.Tree.Folder("a&amp;b");
  window.ChooseAll(2);
  window.Choose(window.Tree.Path("a&amp;b"));
  window.Tree.Remove("a&amp;b");
  window.Click("cmdDisplay");
  QCOMPARE(Shown(window.Boxes.Shown().back()),
           u"Directory Display, critical: There was a problem displaying "_s +
               QString::fromStdString(window.Tree.Path("a&amp;b")) +
               u"\nError: 76\nDescription: Path not found"_s);
  QVERIFY(window.Opener.Opened().isEmpty());
}

void frmDirDisplayRunTest::WantOfMemoryOrThreadsIsTold() {
  DisplayWindow window;
  window.ChooseAll(2);
  window.Files.OnCall = [] { throw std::bad_alloc(); };
  window.Click("cmdDisplay");
  window.Files.OnCall = [] {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  };
  window.Click("cmdDisplay");
  QCOMPARE(window.Boxes.Shown().size(), 2u);
  QCOMPARE(Shown(window.Boxes.Shown()[0]),
           u"Directory Display, critical: There is not enough memory to display this folder."_s);
  QCOMPARE(
      Shown(window.Boxes.Shown()[1]),
      u"Directory Display, critical: This folder cannot be displayed: the system cannot start another thread."_s);
  QVERIFY(!window.Form->IsRunning());
  QVERIFY(window.Opener.Opened().isEmpty());
}

void frmDirDisplayRunTest::EveryFailureIsToldAndLeavesTheWindowUsable() {
  int failures = 0;
  for (int failAt = 1;; ++failAt) {
    DisplayWindow window(failAt, FileError::DeviceError);
    window.Tree.File("folder/file");
    window.ChooseAll(2);
    window.Click("cmdDisplay");
    QVERIFY(!window.Form->IsRunning());
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    if (window.Boxes.Shown().empty()) break;
    ++failures;
    QVERIFY(Shown(window.Boxes.Shown()[0]).endsWith(u"\nError: 57\nDescription: Device I/O error"_s));
    QVERIFY(window.Opener.Opened().isEmpty());
    QCOMPARE(QDir(window.Output.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
  }
  QVERIFY(failures >= 4);
}

void frmDirDisplayRunTest::TheOutputOfTheRunBeforeStaysWhole() {
  DisplayWindow window;
  window.Tree.File("first/file");
  window.Tree.Folder("second");
  window.ChooseAll(2);
  window.Choose(window.Tree.Path("first"));
  window.Click("cmdDisplay");
  const QByteArray before = window.Written("dir_display.xml");
  window.Choose(window.Tree.Path("second"));
  window.Tree.Remove("second");
  window.Click("cmdDisplay");
  QVERIFY(before.contains("<name>file</name>"));
  QCOMPARE(window.Written("dir_display.xml"), before);
}

void frmDirDisplayRunTest::ThePointerIsBusyDuringARun() {
  DisplayWindow window;
  window.ChooseAll(2);
  bool wasBusy = false;
  window.AtCall(1, [&] {
    wasBusy =
        QGuiApplication::overrideCursor() && QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
  });
  window.Click("cmdDisplay");
  QVERIFY(wasBusy);
  QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

void frmDirDisplayRunTest::EscapeEndsARun() {
  DisplayWindow window;
  for (int i = 0; i < 50; ++i) window.Tree.File("folder" + std::to_string(i) + "/file");
  window.ChooseAll(2);
  window.Area.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window.Area));
  window.AtCall(5, [&] { QTest::keyClick(&window.Get<ListView>("lvwFileInfo"), Qt::Key_Escape); });
  window.Click("cmdDisplay");
  QVERIFY(window.Files.Calls() < 50);
  QVERIFY(!window.Form->IsRunning());
  QVERIFY(window.Opener.Opened().isEmpty());
  QVERIFY(window.Boxes.Shown().empty());
}

void frmDirDisplayRunTest::AClickDuringARunStartsAnew() {
  DisplayWindow window;
  for (int i = 0; i < 50; ++i) window.Tree.File("folder" + std::to_string(i) + "/file");
  window.ChooseAll(2);
  window.AtCall(5, [&] {
    window.Get<QCheckBox>("chkSubfolders").setChecked(false);
    window.Click("cmdDisplay");
    window.Click("cmdDisplay");
  });
  window.Click("cmdDisplay");
  QVERIFY(!window.Form->IsRunning());
  QCOMPARE(window.Opener.Opened(), OpenedIn(window, "dir_display.xml"));
  QCOMPARE(window.Written("dir_display.xml").count("<folder"), 1);
}

void frmDirDisplayRunTest::ClosingEndsARun() {
  DisplayWindow window;
  for (int i = 0; i < 50; ++i) window.Tree.File("folder" + std::to_string(i) + "/file");
  window.ChooseAll(2);
  window.AtCall(5, [&] { window.Click("cmdClose"); });
  window.Click("cmdDisplay");
  QVERIFY(window.Files.Calls() < 50);
  QTRY_VERIFY(!window.Form);
  QVERIFY(window.Opener.Opened().isEmpty());
  QVERIFY(window.Boxes.Shown().empty());
  QCOMPARE(GetSetting(u"DirectoryDisplay"_s, u"DisplayFormat"_s), u"2"_s);
}

void frmDirDisplayRunTest::TheProgramEndsInTheMiddleOfARun() {
  TempTree tree;
  MakeLargeFolder(tree, ".");
  const OwnHomeFolder home(tree.Path());
  frmMain main(ToolTable());
  main.show();
  main.findChild<QAction*>(u"mnuTools_DirDisplay"_s)->trigger();
  const QPointer<frmDirDisplay> form = main.findChild<frmDirDisplay*>();
  QVERIFY(form->findChild<FolderTree*>()->SetSelectedFolder(tree.Path()));
  form->findChild<QRadioButton*>(u"optFormat(2)"_s)->click();
  form->findChild<QCheckBox*>(u"chkIncludeFolders"_s)->click();
  QAbstractItemModel& items = *form->findChild<ListView*>(u"lvwFileInfo"_s)->model();
  items.setData(items.index(0, 0), Qt::Checked, Qt::CheckStateRole);
  QTimer::singleShot(0, form->findChild<QPushButton*>(u"cmdDisplay"_s), &QPushButton::click);
  When([form] { return form && form->IsRunning(); }, [&] { main.close(); });
  QTimer::singleShot(20000, qApp, [] { QCoreApplication::exit(1); });
  QCOMPARE(QApplication::exec(), 0);
  QVERIFY(!main.isVisible());
  QTRY_VERIFY(!form);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmDirDisplayRunTest)
#include "frmDirDisplay_run_test.moc"
