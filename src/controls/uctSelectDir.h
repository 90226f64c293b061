#pragma once

#include <QWidget>

class QLabel;
class QMenu;
class QMimeData;
class QPushButton;

namespace brackwell {

class BrowseFF;
class ElidedLabel;
class FileSystemObject;

/// The folder selector: a heading, the chosen folder and a button that lets the user choose another one. A
/// folder can also be dropped on it; its context menu opens the chosen one, pastes one, and has those that
/// were chosen last.
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
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void cmdSelect_Click();
  /// What every way to choose a folder ends in.
  void Choose(const QString& folder);
  void AddRecentFolders(QMenu& menu);
  /// The one folder that is dragged or was copied; empty where it is anything else.
  QString FolderOf(const QMimeData& data) const;
  void UserControl_Resize();

  const FileSystemObject& mFiles;
  BrowseFF& mBrowse;
  QString mPrompt;
  QLabel* hdgDirectory;
  ElidedLabel* lblDirectory;
  QPushButton* cmdSelect;
};

}  // namespace brackwell
