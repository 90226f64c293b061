#include "support/EveryWindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <string_view>

#include "common/MsgBox.h"
#include "common/Text.h"
#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/FlexGrid.h"
#include "controls/FolderTree.h"
#include "controls/HelpWindow.h"
#include "controls/uctSelectDir.h"
#include "shell/frmMain.h"
#include "support/IsolatedSettings.h"
#include "support/OwnFolders.h"
#include "support/TempTree.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

using Look = std::function<void(QWidget&)>;

constexpr int HelpSearchPage = 2;
constexpr std::string_view HelpFile = BRACKWELL_HELP_FILE;  // none where the system itself shows the help

/// The main window as it starts, and a few files to work on.
class Program {
 public:
  Program() {
    mTree.File("source/notes.txt", "one", 10);
    mTree.File("source/pictures/harbour.jpg", "two", 0);
    mTree.File("source/only here.txt", "three", 0);
    mTree.File("target/notes.txt", "four", 0);
    Main.show();
    if (!QTest::qWaitForWindowActive(&Main)) qFatal("the main window does not become active");
  }

  ToolWindow& Open(const char* key) {
    Main.findChild<QToolButton*>(QString::fromLatin1(key))->click();
    Settle();
    return *Main.findChild<ToolWindow*>();
  }

  QString Folder(const char* name) const { return QString::fromStdString(mTree.Root(name)); }

  void Trigger(const char* item) { Main.findChild<QAction*>(QString::fromLatin1(item))->trigger(); }

  /// Runs what opens a modal dialog, hands that over and closes it.
  static void WithDialog(const std::function<void()>& step, const Look& look) {
    bool shown = false;
    QTimer::singleShot(0, qApp, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      shown = true;
      WaitForFocus(*dialog);
      look(*dialog);
      dialog->reject();
    });
    step();
    if (!shown) qFatal("no dialog");
  }

  static void WaitForFocus(const QWidget& dialog) {
    const auto hasFocus = [&] {
      const QWidget* focused = QApplication::focusWidget();
      return focused && dialog.isAncestorOf(focused);
    };
    (void)QTest::qWaitFor(hasFocus, 1000);  // one without any is for the tests to find
    Settle();
  }

  static void Settle() { QTest::qWait(20); }

  frmMain Main{ToolTable()};

 private:
  TempTree mTree;
  OwnHomeFolder mHome{mTree.Path()};  // so the trees of folders begin with these
};

template <typename Control>
Control& Get(const QWidget& window, const char* name) {
  auto* control = window.findChild<Control*>(QString::fromLatin1(name));
  if (!control) qFatal("no control %s", name);
  return *control;
}

void Type(const QWidget& window, const char* box, const QString& text) {
  Get<QLineEdit>(window, box).setText(text);
}

void ShowMain(const Look& look) {
  Program program;
  look(program.Main);
}

void ShowTool(const char* key, const Look& look) {
  Program program;
  look(program.Open(key));
}

void ShowCompareOptions(const Look& look) {
  Program program;
  QWidget& window = program.Open("DirCompare");
  Get<QCheckBox>(window, "chkShowOptions").click();
  Program::Settle();
  look(window);
}

QWidget& OpenComparison(Program& program) {
  QWidget& window = program.Open("DirCompare");
  Get<uctSelectDir>(window, "uctSelSource").SetFolder(program.Folder("source"));
  Get<uctSelectDir>(window, "uctSelTarget").SetFolder(program.Folder("target"));
  Get<QPushButton>(window, "cmdCompare").click();
  Program::Settle();
  return window;
}

void ShowCompareResult(const Look& look) {
  Program program;
  look(OpenComparison(program));
}

void ShowCompareDetails(int row, const Look& look) {
  Program program;
  QWidget& window = OpenComparison(program);
  Program::WithDialog(
      [&] { Q_EMIT Get<FlexGrid>(window, "grdCompare").CellActivated(row, CompareGrid::NameColumn); }, look);
}

void ShowSelectFolder(const Look& look) {
  Program program;
  QWidget& window = program.Open("DirCompare");
  auto& selector = Get<uctSelectDir>(window, "uctSelSource");
  selector.SetFolder(program.Folder("source"));
  Program::WithDialog([&] { Get<QPushButton>(selector, "cmdSelect").click(); }, look);
}

void ShowReplaceResult(const Look& look) {
  Program program;
  QWidget& window = program.Open("Replace");
  Get<uctSelectDir>(window, "uctSelectDir").SetFolder(program.Folder("source"));
  Type(window, "txtExtensions", u"txt"_s);
  Type(window, "txtFind", u"e"_s);
  Get<QPushButton>(window, "cmdFind").click();
  Program::Settle();
  look(window);
}

void ShowRenameNames(const Look& look) {
  Program program;
  QWidget& window = program.Open("RenImages");
  Type(window, "txtOtherExtension(0)", u"*"_s);
  auto& folders = Get<FolderTree>(window, "FolderTree");
  const std::string folder(WithoutSeparator(program.Folder("source").toStdString()));
  folders.SetSelectedFolder(folder);
  if (!QTest::qWaitFor([&] { return folders.SelectedFolder() == folder; })) qFatal("no folder");
  Type(window, "txtPrefix", u"Harbour"_s);
  Type(window, "txtStartNum", u"01"_s);
  Get<QPushButton>(window, "cmdSetNames").click();
  Program::Settle();
  look(window);
}

void ShowOptions(int page, const Look& look) {
  Program program;
  Program::WithDialog([&] { program.Trigger("mnuTools_Options"); },
                      [&](QWidget& dialog) {
                        Get<QTabWidget>(dialog, "sstOptions").setCurrentIndex(page);
                        Program::Settle();
                        look(dialog);
                      });
}

void ShowAbout(const Look& look) {
  Program program;
  Program::WithDialog([&] { program.Trigger("mnuHelp_About"); }, look);
}

void ShowHelp(int page, const Look& look) {
  std::optional<ChmFile> file = ChmFile::Open(std::string(HelpFile));
  if (!file) qFatal("no help file");
  HelpWindow window(*std::move(file));
  page == HelpSearchPage ? window.ShowSearch() : window.ShowContents();
  if (!QTest::qWaitForWindowActive(&window)) qFatal("the help window does not become active");
  Get<QTabWidget>(window, "sstHelp").setCurrentIndex(page);
  Type(window, "txtSearch", u"folder"_s);
  Program::Settle();
  look(window);
}

void ShowFindInPage(const Look& look) {
  ShowHelp(0, [&](QWidget& window) {
    Get<QAction>(window, "cmdFind").trigger();
    Type(window, "txtFind", u"nowhere to be found"_s);
    Get<QPushButton>(window, "cmdNext").click();
    Program::Settle();
    look(window);
  });
}

void ShowMessage(const std::function<void(QWidget*)>& step, const Look& look) {
  Program program;
  Program::WithDialog([&] { step(&program.Main); }, look);
}

std::vector<WindowCase> AllCases() {
  const auto tool = [](const char* key) { return [key](const Look& look) { ShowTool(key, look); }; };
  const auto details = [](int row) { return [row](const Look& look) { ShowCompareDetails(row, look); }; };
  const auto options = [](int page) { return [page](const Look& look) { ShowOptions(page, look); }; };
  const auto help = [](int page) { return [page](const Look& look) { ShowHelp(page, look); }; };
  const auto message = [](const auto& step) { return [step](const Look& look) { ShowMessage(step, look); }; };
  const QString title = u"Find and Replace"_s;
  std::vector<WindowCase> cases{
      {"main window", ShowMain},
      {"comparison", tool("DirCompare")},
      {"comparison's options", ShowCompareOptions},
      {"comparison's result", ShowCompareResult},
      {"details of a file", details(0)},
      {"details of a folder", details(2)},
      {"select a folder", ShowSelectFolder},
      {"directory display", tool("DirDisplay")},
      {"find and replace", tool("Replace")},
      {"find and replace's result", ShowReplaceResult},
      {"rename", tool("RenImages")},
      {"rename's new names", ShowRenameNames},
      {"fonts", tool("FontDisplay")},
      {"drives", tool("Drive")},
      {"options, first page", options(0)},
      {"options, second page", options(1)},
      {"options, third page", options(2)},
      {"options, fourth page", options(3)},
      {"about", ShowAbout},
      {"message", message([title](QWidget* parent) {
         MsgBox(parent, u"Please specify the text string to find."_s, MsgIcon::Exclamation, title);
       })},
      {"question", message([title](QWidget* parent) {
         MsgBoxYesNo(parent, u"Are you sure you want to replace the 'find string' with nothing?"_s,
                     MsgIcon::Question, title);
       })},
      {"confirmation", message([title](QWidget* parent) {
         MsgBoxOkCancel(parent, u"Please verify that you want to do the replacement."_s, MsgIcon::Question,
                        title);
       })},
  };
  if (HelpFile.empty()) return cases;
  const WindowCase helpCases[] = {
      {"help, contents", help(0)},
      {"help, index", help(1)},
      {"help, search", help(HelpSearchPage)},
      {"help, find in page", ShowFindInPage},
  };
  cases.insert(cases.end(), std::begin(helpCases), std::end(helpCases));
  return cases;
}

}  // namespace

const std::vector<WindowCase>& EveryWindow() {
  static const std::vector<WindowCase> cases = AllCases();
  return cases;
}

void AddEveryWindow() {
  QTest::addColumn<int>("window");
  int window = 0;
  for (const WindowCase& each : EveryWindow()) QTest::newRow(each.Name) << window++;
}

void ShowWindow(int window, const std::function<void(QWidget&)>& look) {
  EveryWindow().at(window).Show(look);
}

QString PathOf(const QWidget& control) {
  const QString name = control.objectName().isEmpty() ? QString::fromLatin1(control.metaObject()->className())
                                                      : control.objectName();
  const QWidget* parent = control.isWindow() ? nullptr : control.parentWidget();
  return parent ? PathOf(*parent) + u'/' + name : name;
}

}  // namespace brackwell
