#pragma once

#include <array>

#include "common/ToolWindow.h"
#include "rename/FolderFiles.h"
#include "rename/RenameEngine.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

namespace brackwell {

class FolderTree;
class ListView;
class RenameList;
class StatusBar;

/// The window of the image renamer: choose a folder and extensions, order and tick, preview the names,
/// rename.
class frmRename : public ToolWindow {
  Q_OBJECT

 public:
  explicit frmRename(Services& services);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// The items behind lvwFiles.
  RenameList& List() const { return *mList; }

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static constexpr int ExtensionCount = 20;

  void BuildExtensions();
  QLayout* BuildFiles();
  QPushButton* PictureButton(const QString& name, const QIcon& picture, const QString& toolTip);
  QLayout* BuildNaming();
  QLayout* BuildButtons();
  void ConnectHandlers();

  void Form_Load();
  void Form_Resize();

  void FolderTree_Change();
  void chkExtension_Click(int index);
  void txtOtherExtension_KeyUp(int index);
  void lvwFiles_ItemClick(int row);
  void cmdCheck_Click(int index);
  void cmdMoveItem_Click(int index);
  void chkPreserve_Click();
  void cmdSetNames_Click();
  void cmdRename_Click();

  /// -1 while no item is selected.
  int SelectedRow() const;
  void LoadFileList();
  ExtensionFilter ReadFilter() const;
  /// Has the list warn of names that are taken where the run puts its files.
  void ShowTakenNames();
  void AssignNewNames();
  void RenameFiles();
  /// All but what ends a run.
  void EnableControls(bool enabled);
  void Warn(const QString& text);

  QWidget* mControls;  // all but the status bar
  FolderTree* mFolderTree;
  QGroupBox* fraExtension;
  std::array<QCheckBox*, ExtensionCount> chkExtension;
  QLabel* hdgOtherExtension;
  std::array<QLineEdit*, 2> txtOtherExtension;
  QLabel* hdgFiles;
  ListView* lvwFiles;
  std::array<QPushButton*, 2> cmdCheck;
  std::array<QPushButton*, 2> cmdMoveItem;
  QLabel* hdgPrefix;
  QLineEdit* txtPrefix;
  QLabel* hdgStartNum;
  QLineEdit* txtStartNum;
  QCheckBox* chkPreserve;
  QPushButton* cmdSetNames;
  QPushButton* cmdRename;
  QPushButton* cmdClose;
  StatusBar* stbRename;

  RenameList* mList;
  FolderFiles mFolderFiles;
  FolderFiles mCopies;      // where copies go
  bool mKeyIsDown = false;  // in a box for other extensions
};

}  // namespace brackwell
