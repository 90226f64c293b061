#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "common/Settings.h"

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace brackwell {

/// What the user chooses for the whole program. The choices come from the settings when it opens and go back
/// there with OK, all at once; tool windows read them when they next need them.
class frmOptions : public QDialog {
  Q_OBJECT

 public:
  explicit frmOptions(QWidget* parent);

 private:
  void BuildGeneralPage();
  void BuildComparePage();
  void BuildReplacePage();
  void BuildDirDisplayPage();
  QGroupBox* BuildXmlTypeFrame();
  QGroupBox* BuildTextDelimFrame();
  void BuildButtons();
  void ConnectHandlers();

  void Form_Load();
  void LoadXmlType();
  void LoadTextDelimiter();

  void optDirDisplayTextDelim_Click(int index);
  void cmdOK_Click();
  void cmdCancel_Click();

  /// Tells the user, where the delimiter of "Other" is missing.
  bool CheckTextDelimiter();
  void TellUnsaved();
  std::vector<Setting> ChosenSettings() const;

  QTabWidget* sstOptions;
  QWidget* mDirDisplayPage = nullptr;

  QCheckBox* chkAppMax = nullptr;
  QCheckBox* chkChildMax = nullptr;
  QCheckBox* chkCompareSaveFolders = nullptr;
  QCheckBox* chkCompareShowFullPath = nullptr;
  QCheckBox* chkReplaceSaveForm = nullptr;
  QCheckBox* chkDirDisplaySave = nullptr;
  std::array<QRadioButton*, 2> optDirDisplayXmlType{};
  std::array<QRadioButton*, 2> optDirDisplayTextDelim{};
  QLineEdit* txtDirDisplayTextDelim = nullptr;

  QPushButton* cmdOK = nullptr;
  QPushButton* cmdCancel = nullptr;
};

}  // namespace brackwell
