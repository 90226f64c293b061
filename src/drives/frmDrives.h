#pragma once

#include <functional>
#include <vector>

#include "common/ToolWindow.h"
#include "drives/DriveList.h"

class QPushButton;

namespace brackwell {

class ListView;
class StringTable;

/// The window that lists every drive of the machine. The drives are read once, when it opens.
class frmDrives : public ToolWindow {
  Q_OBJECT

 public:
  using DriveSource = std::function<DriveCollection()>;

  explicit frmDrives(Services& services, const DriveSource& drives = Drives);

  void Form_Activate() override;
  void Form_Deactivate() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// Shows the list as a page in the user's browser, to be printed there. Raises what the temporary folder
  /// refuses.
  Q_INVOKABLE void PrintData();

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Load(const DriveSource& drives);
  void Form_Resize();

  ListView* lvwDrives;
  QPushButton* cmdClose;

  StringTable* mTable;
  std::vector<DriveRow> mRows;
};

}  // namespace brackwell
