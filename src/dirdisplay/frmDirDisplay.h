#pragma once

#include <array>

#include "common/ToolWindow.h"
#include "dirdisplay/DisplayOutput.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLayout;
class QPushButton;
class QRadioButton;

namespace brackwell {

class ElidedLabel;
class FolderTree;
class InfoListModel;
class ListView;

/// The window of the directory display: choose a folder, a format and properties, display. The result shows
/// in the program that the system has for it.
class frmDirDisplay : public ToolWindow {
  Q_OBJECT

 public:
  explicit frmDirDisplay(Services& services);

  void Form_Activate() override;

  QSize sizeHint() const override;

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A list of properties and the buttons that move the selected one.
  struct InfoControls {
    ListView* List;
    InfoListModel* Items;
    std::array<QPushButton*, 2> Move;  // up, down
  };

  QLayout* BuildFolder();
  QGroupBox* BuildFormat();
  QGroupBox* BuildFolders();
  QGroupBox* BuildFiles();
  QLayout* BuildButtons();
  QLayout* BuildInfo(InfoControls& controls, const QString& name, const QString& heading);
  void ConnectHandlers();
  void ConnectInfo(InfoControls& controls);

  void Form_Load();
  void LoadFolderInfoList();
  void LoadFileInfoList();
  void Form_QueryUnload();
  void Form_Resize(const InfoControls& controls);

  void FolderTree_FolderChanged();
  void cmdMoveInfo_Click(const InfoControls& controls, int index);
  void lvwInfo_ItemClick(const InfoControls& controls);
  void cmdDisplay_Click();

  bool CheckChoices();
  bool Complain(const QString& text, QWidget& control);
  DisplayOptions ReadOptions() const;
  void DisplayDirectory();
  void WriteAndOpen();

  QLabel* hdgDirectory;
  ElidedLabel* lblDirectory;
  FolderTree* mFolderTree;
  std::array<QRadioButton*, 3> optFormat;
  QCheckBox* chkIncludeFolders;
  QCheckBox* chkSubfolders;
  QCheckBox* chkIncludeFiles;
  InfoControls mFolderInfo;
  InfoControls mFileInfo;
  QPushButton* cmdDisplay;
  QPushButton* cmdClose;

  bool mDisplayAgain = false;
};

}  // namespace brackwell
