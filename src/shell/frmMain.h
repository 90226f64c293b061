#pragma once

#include <QMainWindow>
#include <QPointer>
#include <memory>
#include <string>
#include <vector>

#include "common/ToolWindow.h"
#include "platform/FileSystemObject.h"
#include "shell/ToolTable.h"
#include "shell/frmImages.h"

class QMdiArea;
class QMdiSubWindow;

namespace brackwell {

class HelpWindow;

/// The program's one top-level window: opens the tools as windows inside it, arranges and closes them, prints
/// through the active one and shows the help. It owns what all tools share: the file-system object and the
/// pictures.
class frmMain : public QMainWindow {
  Q_OBJECT

 public:
  explicit frmMain(std::vector<Tool> tools);
  ~frmMain() override;

  /// Enables or disables the toolbar button with the given key; "Print", in whatever case, also
  /// mnuFile_Print.
  void tlbMain_ENABLE(const QString& key, bool enabled);

  const std::string& HelpFile() const { return mHelpFile; }
  const frmImages& Images() const { return mImages; }

 protected:
  /// A tool that is busy is asked to end its run first; the program then ends by itself.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  using Click = void (frmMain::*)();

  void BuildMenus();
  void BuildFileMenu();
  void BuildToolsMenu();
  void BuildWindowMenu();
  void BuildHelpMenu();
  void BuildToolbar();
  QMenu* AddMenu(const QString& name, const QString& caption);
  QAction* AddItem(QMenu* menu, const QString& name, const QString& caption, Click click);
  void AddToolItem(QMenu* menu, const QString& name, const QString& caption, const QString& key);
  QAction* AddButton(const QString& key, const QString& text, const QString& toolTip);
  QAction* Button(const QString& key) const;

  void MDIForm_Load();
  void MDIForm_Unload();
  void LoadToolbarImages();

  void tlbMain_ButtonClick(const QString& key);
  void mnuFile_Print_Click();
  void mnuFile_Close_Click();
  void mnuFile_Exit_Click();
  void mnuTools_Options_Click();
  void mnuWindow_TileH_Click();
  void mnuWindow_TileV_Click();
  void mnuWindow_Cascade_Click();
  void mnuWindow_Arrange_Click();
  void mnuWindow_CloseAll_Click();
  void mnuHelp_Contents_Click();
  void mnuHelp_Search_Click();
  void mnuHelp_About_Click();

  void OpenTool(const Tool& tool);
  QMdiSubWindow* OpenWindowOf(const Tool& tool) const;
  /// Shows the topic of the tool in front.
  void HelpKey_Press();
  void ShowHelp(const QString& key);
  /// Tells the user where there is none.
  bool HelpFileExists();
  void TellOfHelp(const QString& text);
  /// Where the system has no viewer of its own; null for a damaged help file, which the user is told of.
  HelpWindow* OwnHelpWindow();
  /// Tells the tool windows which of them is the active one, where that has changed.
  void UpdateActiveWindow();
  /// Asks every busy window to end its run and close then; true if there is one.
  bool CloseBusyWindows();
  void ToolRunEnded();

  // The order matters: the tool windows use what stands above them.
  std::unique_ptr<FileSystemObject> mFiles;
  frmImages mImages;
  Services mServices;
  std::vector<Tool> mTools;
  std::string mHelpFile;
  QPointer<ToolWindow> mActive;
  bool mCloseAsked = false;
  std::unique_ptr<HelpWindow> mHelpWindow;  // from the first time it is needed

  QMdiArea* mMdiArea;
  QToolBar* tlbMain;
  QAction* mnuFile_Print = nullptr;
};

}  // namespace brackwell
