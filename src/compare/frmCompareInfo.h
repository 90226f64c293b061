#pragma once

#include <QDialog>
#include <string>

class QLabel;
class QPushButton;
class QStandardItemModel;

namespace brackwell {

class ElidedLabel;
class FileSystemObject;
class FlexGrid;

/// Shows the properties of one compared item as it is in the source and in the target, side by side. Set the
/// four properties, then exec.
class frmCompareInfo : public QDialog {
  Q_OBJECT

 public:
  frmCompareInfo(const FileSystemObject& files, QWidget* parent);

  std::string ObjectName;  // native, relative to both roots
  QString ObjectType;      // "File" or "Folder"
  std::string SourceRoot;
  std::string TargetRoot;

  QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum Column { SourceColumn, PropertyColumn, TargetColumn };

  void Form_Load();
  void InitPropertyGrid();
  void ResizeColumns();
  void FillProperties();
  /// False when the dialog was closed meanwhile.
  bool FillSide(Column column, const std::string& root);

  const FileSystemObject& mFiles;
  bool mLoaded = false;
  QLabel* hdgObject;
  ElidedLabel* lblObject;
  FlexGrid* grdProperties;
  QPushButton* cmdClose;
  QStandardItemModel* mProperties;
};

}  // namespace brackwell
