#pragma once

#include <QDialog>

#include "platform/FileSystemObject.h"

class QLabel;
class QPushButton;

namespace brackwell {

/// Who the program is, and the way to the system's own "System Information" program.
class frmAbout : public QDialog {
  Q_OBJECT

 public:
  frmAbout(const FileSystemObject& files, QWidget* parent);

  static QString VersionText(int major, int minor, int revision);

 private:
  void BuildControls();
  void Arrange();

  void Form_Load();
  void cmdOK_Click();
  void cmdSysInfo_Click();

  void StartSysInfo();

  const FileSystemObject& mFiles;

  QLabel* imgVem;
  QLabel* lblTitle;
  QLabel* lblVersion;
  QLabel* lblDescription;
  QPushButton* cmdOK;
  QPushButton* cmdSysInfo;
};

}  // namespace brackwell
