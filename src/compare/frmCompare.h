#pragma once

#include <array>
#include <optional>

#include "common/ToolWindow.h"
#include "compare/CompareEngine.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QMenu;
class QModelIndex;
class QPoint;
class QPushButton;
class QScrollArea;

namespace brackwell {

class CompareGrid;
class FlexGrid;
class StatusBar;
class uctSelectDir;

/// The window of the directory comparison: choose two folders, compare, tick, fix.
class frmCompare : public ToolWindow {
  Q_OBJECT

 public:
  explicit frmCompare(Services& services);

  void Form_Activate() override;
  void Form_Deactivate() override;

  /// Large enough for the texts of the grid and for all options.
  QSize sizeHint() const override;

  /// Shows the grid as a page in the user's browser, to be printed there. Raises what the temporary folder
  /// refuses.
  Q_INVOKABLE void PrintData();

  /// The rows behind grdCompare.
  CompareGrid& Grid() const { return *mGrid; }

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static constexpr int OptionCount = 7;

  void BuildFolders();
  QLayout* BuildButtons();
  void BuildOptions();
  void BuildGrid();
  void ConnectHandlers();

  void Form_Load();
  void Form_Resize();
  void LoadCompareSettings();
  void InitCompareGrid();

  void chkOption_Click(int index);
  void chkSubfolders_Click();
  void chkShowOptions_Click();
  void cmdCompare_Click();
  void cmdFix_Click();
  void grdCompare_Click(int row, int column);
  void grdCompare_DblClick(int row);
  void grdCompare_Menu(const QModelIndex& cell, const QPoint& screenPosition);
  void AddTickItems(QMenu& menu);
  /// For the side of the cell's box; where that side lacks the item, for the other.
  void AddItemsOf(QMenu& menu, const QModelIndex& cell);

  bool CheckFolders();
  bool CheckFolder(const uctSelectDir& selector, const QString& nonePicked, const QString& notThere);
  CompareOptions ReadOptions();
  /// Gives the error that ended the comparison, if one did.
  std::optional<FileSystemError> RunComparison();
  bool WalkBothTrees();
  void FixSelected();
  void TellProblem(const CompareRow& row, const FileSystemError& error);
  void ShowMessage(const QString& text);

  uctSelectDir* uctSelSource;
  uctSelectDir* uctSelTarget;
  QPushButton* cmdCompare;
  QPushButton* cmdFix;
  QPushButton* cmdClose;
  QCheckBox* chkShowOptions;
  QScrollArea* mOptionsPlace;  // so that a small window can still reach every option
  QGroupBox* fraOptions;
  std::array<QCheckBox*, OptionCount> chkOption;
  QCheckBox* chkSubfolders;
  QLabel* hdgExtensions;
  QLineEdit* txtExtensions;
  QLabel* hdgPrefix;
  QLineEdit* txtPrefix;
  FlexGrid* grdCompare;
  StatusBar* stbCompare;

  CompareGrid* mGrid;
  bool mShowFullPath = false;  // as it was when the rows in the grid were made
  bool mCompareAgain = false;
};

}  // namespace brackwell
