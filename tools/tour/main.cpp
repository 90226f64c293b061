// A guided tour: drives the real windows through their work on folders of its own, and leaves a picture of
// each and the reports that they print. brackwell_tour <folder for pictures and reports>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <utility>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/FlexGrid.h"
#include "controls/FolderTree.h"
#include "controls/HelpWindow.h"
#include "controls/ListView.h"
#include "controls/uctSelectDir.h"
#include "dirdisplay/frmDirDisplay.h"
#include "fonts/frmFontDisplay.h"
#include "rename/frmRename.h"
#include "replace/frmReplace.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"

namespace {

using namespace brackwell;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

/// Folders as somebody might have them: a website and its copy of last week, the texts of a harbour museum,
/// and the photographs of a day.
class DemoFolders {
 public:
  DemoFolders() {
    for (const char* side : {"website", "backup"}) {
      Write(side, "index.html", 4000, 0);
      Write(side, "contact.html", 2100, 0);
      Write(side, "images/harbour.jpg", 90000, 0);
      Write(side, "images/lighthouse.jpg", 120000, 0);
      Write(side, "styles/page.css", 1800, 0);
    }
    Write("website", "index.html", 4200, 5);
    Write("website", "news.html", 3000, 6);
    Write("website", "images/summer/beach.jpg", 80000, 6);
    Write("backup", "styles/print.css", 900, 1);
    Write("backup", "contact.html", 2000, 2);
    Write("backup", "old/guestbook.html", 700, 0);

    WriteText("opening hours.txt", "The harbor museum opens at ten.\nTours of the Harbor: at noon.\n");
    WriteText("guide/lighthouse.txt", "From the lighthouse one sees the whole harbor.\r\n");
    WriteText("guide/fishermen.htm", "<p>HARBOR and harbor, again the harbor.</p>\n");
    WriteText("guide/cafe.txt", "The caf\xe9 at the harbor.\n");  // as old programs write it
    WriteText("guide/notes to come.txt", "");
    WriteText("guide/shop.txt", "Post cards, models, books.\n");
    WriteText("old/leaflet 1998.txt", "The harbor museum has opened.\n");

    for (const char* name :
         {"P1020001.JPG", "P1020002.JPG", "P1020003.raw", "P1020004.jpg", "P1020005.jpg", "list.txt"})
      Make("camera", name, name);
  }

  std::string Text(const char* name) const {
    QFile file(mFolder.filePath(QString::fromLatin1(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }

  QString Path(const char* name) const { return mFolder.filePath(QString::fromLatin1(name)) + u'/'; }

 private:
  fs::path Make(const char* folder, const char* name, const std::string& content) const {
    const fs::path path = fs::path(mFolder.path().toStdString()) / folder / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  void WriteText(const char* name, const std::string& content) const { Make("museum", name, content); }

  void Write(const char* side, const char* name, std::size_t size, int daysLater) const {
    const fs::path path = Make(side, name, std::string(size, '.'));
    const std::chrono::sys_seconds start = std::chrono::sys_days(std::chrono::year(2024) / 5 / 1);
    fs::last_write_time(path, std::chrono::file_clock::from_sys(start + std::chrono::days(daysLater)));
  }

  QTemporaryDir mFolder;
};

class Tour {
 public:
  Tour(frmMain& main, QString folder) : mMain(main), mFolder(std::move(folder)) {
    qputenv("HOME", mDemo.Path("").toLocal8Bit());  // folder trees begin there, and not with the user's own
  }

  bool Drive() {
    Picture(u"main-window"_s, mMain);
    ShowComparison();
    ShowDirectoryDisplay();
    ShowReplacing();
    ShowRenaming();
    ShowDrives();
    ShowFonts();
    ShowDialogs();
    ShowHelp();
    ShowManyWindows();
    return mGood;
  }

 private:
  void ShowComparison() {
    Trigger(u"mnuTools_Compare"_s);
    auto* form = mMain.findChild<frmCompare*>();
    ShowFolderDialog(*form);
    form->findChild<uctSelectDir*>(u"uctSelSource"_s)->SetFolder(mDemo.Path("website"));
    form->findChild<uctSelectDir*>(u"uctSelTarget"_s)->SetFolder(mDemo.Path("backup"));
    form->findChild<QCheckBox*>(u"chkShowOptions"_s)->click();
    Picture(u"compare-options"_s, mMain);
    form->findChild<QPushButton*>(u"cmdCompare"_s)->click();
    Picture(u"compare-result"_s, mMain);
    TickAll(*form);
    Picture(u"compare-ticked"_s, mMain);
    WithDialog(u"compare-details"_s, [&] {
      Q_EMIT form->findChild<FlexGrid*>(u"grdCompare"_s)->CellActivated(0, CompareGrid::NameColumn);
    });
    WithDialog(u"compare-fixed-message"_s, [&] { form->findChild<QPushButton*>(u"cmdFix"_s)->click(); });
    Picture(u"compare-fixed"_s, mMain);
    Trigger(u"mnuFile_Print"_s);
  }

  /// Where both sides can be fixed, the newer one wins.
  void TickAll(frmCompare& form) {
    CompareGrid& grid = form.Grid();
    for (int row = 0; row < grid.rowCount(); ++row)
      if (grid.Rows()[row].Kind == ResultKind::TargetFileNewer ||
          !grid.Toggle(row, CompareGrid::FixTargetColumn))
        grid.Toggle(row, CompareGrid::FixSourceColumn);
  }

  void ShowFonts() {
    Trigger(u"mnuTools_FontDisplay"_s);
    auto* form = mMain.findChild<frmFontDisplay*>();
    form->parentWidget()->showMaximized();
    Picture(u"fonts"_s, mMain);
    form->findChild<QAction*>(u"QBF"_s)->trigger();
    form->findChild<QToolButton*>(u"chkItalic"_s)->click();
    form->findChild<QPushButton*>(u"cmdSample"_s)->click();
    QEventLoop drawing;  // the browser draws on its own
    QTimer::singleShot(1500, &drawing, &QEventLoop::quit);
    drawing.exec();
    Picture(u"fonts-sample"_s, mMain);
    Trigger(u"mnuFile_Print"_s);
    form->parentWidget()->close();
  }

  void ShowFolderDialog(frmCompare& form) {
    auto* selector = form.findChild<uctSelectDir*>(u"uctSelSource"_s);
    selector->SetFolder(mDemo.Path("website"));
    WithDialog(u"select-folder"_s, [&] { selector->findChild<QPushButton*>(u"cmdSelect"_s)->click(); });
  }

  /// The website's folder in each of the three formats. What they look like stays beside the pictures.
  void ShowDirectoryDisplay() {
    Trigger(u"mnuTools_DirDisplay"_s);
    auto* form = mMain.findChild<frmDirDisplay*>();
    if (!SelectFolder(*form, "website")) return;
    TickRows(*form, u"lvwFolderInfo"_s, {0, 3, 4, 9});
    TickRows(*form, u"lvwFileInfo"_s, {0, 3, 7, 8});
    for (const QString& format : {u"optFormat(2)"_s, u"optFormat(0)"_s, u"optFormat(1)"_s}) {
      form->findChild<QRadioButton*>(format)->click();
      form->findChild<QPushButton*>(u"cmdDisplay"_s)->click();
    }
    Picture(u"directory-display"_s, mMain);
    for (const QString& name : {u"dir_display.xml"_s, u"dir_display.txt"_s, u"dir_display.html"_s})
      if (QFileInfo(mFolder + u'/' + name).size() == 0) Fail(name);
  }

  /// The tree lists folders in its own time.
  bool SelectFolder(const QWidget& form, const char* name) {
    auto* tree = form.findChild<FolderTree*>(u"FolderTree"_s);
    const std::string folder(WithoutSeparator(mDemo.Path(name).toStdString()));
    tree->SetSelectedFolder(folder);
    QElapsedTimer waiting;
    for (waiting.start(); tree->SelectedFolder() != folder && waiting.elapsed() < 10000;)
      QApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    if (tree->SelectedFolder() != folder) Fail(u"FolderTree"_s);
    return tree->SelectedFolder() == folder;
  }

  static void TickRows(const frmDirDisplay& form, const QString& list, const std::vector<int>& rows) {
    QAbstractItemModel& items = *form.findChild<ListView*>(list)->model();
    for (const int row : rows) items.setData(items.index(row, 0), Qt::Checked, Qt::CheckStateRole);
  }

  void ShowReplacing() {
    Trigger(u"mnuTools_Replace"_s);
    auto* form = mMain.findChild<frmReplace*>();
    const auto type = [form](const QString& box, const QString& text) {
      form->findChild<QLineEdit*>(box)->setText(text);
    };
    form->findChild<uctSelectDir*>(u"uctSelectDir"_s)->SetFolder(mDemo.Path("museum"));
    form->findChild<QCheckBox*>(u"chkSubdir"_s)->click();
    type(u"txtExtensions"_s, u"txt;htm"_s);
    type(u"txtExclude"_s, u"old"_s);
    type(u"txtFind"_s, u"harbor"_s);
    form->findChild<QPushButton*>(u"cmdFind"_s)->click();
    Picture(u"replace-found"_s, mMain);
    type(u"txtReplace"_s, u"harbour"_s);
    WithDialog(u"replace-question"_s, [form] { form->findChild<QPushButton*>(u"cmdReplace"_s)->click(); });
    Picture(u"replace-replaced"_s, mMain);
    Trigger(u"mnuFile_Print"_s);
    if (mDemo.Text("museum/guide/cafe.txt") != "The caf\xe9 at the harbour.\n") Fail(u"the replaced text"_s);
  }

  /// Photographs copied under new names, the best one first, then renamed.
  void ShowRenaming() {
    Trigger(u"mnuTools_RenameImages"_s);
    auto* form = mMain.findChild<frmRename*>();
    const auto click = [form](const QString& name) { form->findChild<QAbstractButton*>(name)->click(); };
    click(u"chkExtension(9)"_s);
    form->findChild<QLineEdit*>(u"txtOtherExtension(0)"_s)->setText(u"raw"_s);
    if (!SelectFolder(*form, "camera")) return;
    auto* list = form->findChild<ListView*>(u"lvwFiles"_s);
    list->setCurrentIndex(list->model()->index(1, 0));
    click(u"cmdMoveItem(0)"_s);
    list->model()->setData(list->model()->index(3, 0), Qt::Unchecked, Qt::CheckStateRole);
    form->findChild<QLineEdit*>(u"txtPrefix"_s)->setText(u"Harbour "_s);
    form->findChild<QLineEdit*>(u"txtStartNum"_s)->setText(u"01"_s);
    click(u"cmdSetNames"_s);
    Picture(u"rename-names"_s, mMain);
    click(u"chkPreserve"_s);
    WithDialog(u"rename-question"_s, [&] { click(u"cmdRename"_s); });
    if (mDemo.Text("camera/Renamed Files/Harbour 01.JPG") != "P1020002.JPG") Fail(u"the copied photograph"_s);
    click(u"cmdSetNames"_s);
    click(u"chkPreserve"_s);
    WithDialog(u"rename-in-place"_s, [&] { click(u"cmdRename"_s); });
    Picture(u"rename-renamed"_s, mMain);
    if (!mDemo.Text("camera/P1020001.JPG").empty()) Fail(u"the renamed photograph"_s);
  }

  void ShowDrives() {
    Trigger(u"mnuTools_DriveInfo"_s);
    Picture(u"drives"_s, mMain);
    Trigger(u"mnuFile_Print"_s);
    Trigger(u"mnuFile_Close"_s);
  }

  void ShowDialogs() {
    WithDialog(
        u"options"_s, [this] { Trigger(u"mnuTools_Options"_s); },
        [this](const QString& name, QDialog& dialog) { ShowPages(name, dialog); });
    WithDialog(u"about"_s, [this] { Trigger(u"mnuHelp_About"_s); });
  }

  void ShowPages(const QString& name, QDialog& options) {
    auto* pages = options.findChild<QTabWidget*>(u"sstOptions"_s);
    for (int page = 0; page < pages->count(); ++page) {
      pages->setCurrentIndex(page);
      Picture(u"%1-%2"_s.arg(name).arg(page + 1), options);
    }
  }

  void ShowHelp() {
    Trigger(u"mnuHelp_Contents"_s);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!qobject_cast<HelpWindow*>(window)) continue;
      Picture(u"help"_s, *window);
      window->close();
      return;
    }
    Fail(u"help"_s);
  }

  void ShowManyWindows() {
    for (const char* item : {"mnuTools_DirDisplay", "mnuTools_FontDisplay", "mnuTools_DriveInfo"})
      Trigger(QString::fromLatin1(item));
    Trigger(u"mnuWindow_Cascade"_s);
    Picture(u"windows-cascaded"_s, mMain);
    Trigger(u"mnuWindow_TileV"_s);
    Picture(u"windows-tiled-vertically"_s, mMain);
    Trigger(u"mnuWindow_TileH"_s);
    Picture(u"windows-tiled-horizontally"_s, mMain);
    Trigger(u"mnuWindow_CloseAll"_s);
  }

  void Trigger(const QString& item) {
    auto* action = mMain.findChild<QAction*>(item);
    if (action)
      action->trigger();
    else
      Fail(item);
  }

  /// Runs what opens a modal dialog, shows the dialog (with one picture by default) and dismisses it,
  /// and the message boxes that follow.
  void WithDialog(const QString& name, const std::function<void()>& step,
                  const std::function<void(const QString&, QDialog&)>& show = {}) {
    QTimer watch;
    bool seen = false;
    QObject::connect(&watch, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      watch.stop();
      if (!std::exchange(seen, true)) show ? show(name, *dialog) : Picture(name, *dialog);
      Dismiss(*dialog);
      watch.start(100);
    });
    watch.start(100);
    step();
    if (!seen) Fail(name);
  }

  /// Says Yes or OK where that is asked.
  static void Dismiss(QDialog& dialog) {
    auto* box = qobject_cast<QMessageBox*>(&dialog);
    if (!box) return dialog.reject();
    for (const auto yes : {QMessageBox::Yes, QMessageBox::Ok})
      if (QAbstractButton* button = box->button(yes)) return button->click();
  }

  void Picture(const QString& name, QWidget& window) {
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    const QString file = u"%1/%2-%3.png"_s.arg(mFolder).arg(++mPictures, 2, 10, QChar(u'0')).arg(name);
    if (window.grab().save(file))
      std::printf("%s\n", qPrintable(file));
    else
      Fail(file);
  }

  void Fail(const QString& what) {
    std::fprintf(stderr, "brackwell_tour: could not show %s\n", qPrintable(what));
    mGood = false;
  }

  frmMain& mMain;
  const QString mFolder;
  const DemoFolders mDemo;
  int mPictures = 0;
  bool mGood = true;
};

/// The user's settings stay as they are, and the desktop has one program for all reports. Read once by the
/// desktop's libraries, so it has to be there before they are used.
void HaveOwnDesktop(const QString& folder) {
  qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
  qputenv("XDG_DATA_HOME", folder.toLocal8Bit());
  const QString programs = folder + u"/applications"_s;
  QDir().mkpath(programs);
  QFile program(programs + u"/tour.desktop"_s);
  if (program.open(QIODevice::WriteOnly))
    program.write("[Desktop Entry]\nType=Application\nName=Tour\nExec=/bin/true %u\n");
  QFile defaults(programs + u"/mimeapps.list"_s);
  if (defaults.open(QIODevice::WriteOnly))
    defaults.write(
        "[Default Applications]\ntext/html=tour.desktop\ntext/plain=tour.desktop\n"
        "text/xml=tour.desktop\napplication/xml=tour.desktop\n");
}

/// Reports stay in the tour's folder, and no browser opens them.
void KeepReports(const QString& folder, const QString& programs) {
  QFile opener(programs + u"/xdg-open"_s);
  if (opener.open(QIODevice::WriteOnly)) opener.write("#!/bin/sh\nexit 0\n");
  opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  qputenv("PATH", programs.toLocal8Bit() + ':' + qgetenv("PATH"));
  qputenv("TMPDIR", folder.toLocal8Bit());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || !QDir().mkpath(QString::fromLocal8Bit(argv[1]))) {
    std::fprintf(stderr, "usage: brackwell_tour <folder for pictures and reports>\n");
    return 2;
  }
  const QTemporaryDir own;
  HaveOwnDesktop(own.path());
  QApplication application(argc, argv);
  const QString folder = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
  frmMain main(ToolTable());
  main.resize(1100, 760);
  main.show();
  Tour tour(main, folder);  // makes its own folders before the reports get theirs
  KeepReports(folder, own.path());
  const bool good = tour.Drive();
  main.close();
  return good ? 0 : 1;
}
