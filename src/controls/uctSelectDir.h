#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace brackwell {

class BrowseFF;
class ElidedLabel;
class FileSystemObject;

/// The folder selector: a heading, the chosen folder and a button that lets the user choose another one.
class uctSelectDir : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
  Q_PROPERTY(QString Folder READ Folder WRITE SetFolder)

 public:
  /// The dialog is borrowed for each choice.
  uctSelectDir(const FileSystemObject& files, BrowseFF& browse, QWidget* parent = nullptr);

  QString Caption() const;
  void SetCaption(const QString& caption);

  /// What the dialog asks for, in the place of "Select the " and the caption.
  void SetPrompt(const QString& prompt);

  /// Ends in the path separator when the user chose it. Setting it only changes what is shown; it need not
  /// exist.
  QString Folder() const;
  void SetFolder(const QString& folder);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void cmdSelect_Click();
  void UserControl_Resize();

  const FileSystemObject& mFiles;
  BrowseFF& mBrowse;
  QString mPrompt;
  QLabel* hdgDirectory;
  ElidedLabel* lblDirectory;
  QPushButton* cmdSelect;
};

}  // namespace brackwell
