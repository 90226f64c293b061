#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>
#include <deque>
#include <string>

#include "common/FolderLister.h"

namespace brackwell {

class FolderTreeModel;

/// A tree of all folders in which the user selects one. Folders are listed when they are opened and never on
/// the thread of the interface, so a drive that does not answer leaves everything else usable. What is open
/// follows the disk when it is opened again, when the window becomes the active one, and on F5.
class FolderTree : public QTreeView {
  Q_OBJECT

 public:
  explicit FolderTree(QWidget* parent = nullptr);
  /// With another way to list folders.
  FolderTree(FolderLister::List list, QWidget* parent);

  /// The native path of the selected folder, without separator at its end unless it is a root; empty while
  /// none is selected.
  std::string SelectedFolder() const;
  /// Opens the tree down to a folder and selects it, which is done when its parents have been listed. One
  /// that turns out not to be there changes nothing, and neither does one that the user forestalls by
  /// selecting another. False where the path leads nowhere in this tree.
  bool SetSelectedFolder(const std::string& path);

  /// Lists all open folders anew.
  void Refresh();
  /// Forgets all listings under way: the window is closing.
  void Stop();

 Q_SIGNALS:
  /// Another folder is selected.
  void FolderChanged();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;

 private:
  void Select(const QModelIndex& folder);
  void Refresh(const QModelIndex& folder);
  void Loaded(const QModelIndex& folder);
  void Reveal();
  void TellChange();

  FolderTreeModel* mFolders;
  std::string mToldFolder;

  // On the way to a folder: the folder reached, the names still to go.
  QPersistentModelIndex mReached;
  std::deque<std::string> mToGo;
  bool mListedAnew = false;
};

}  // namespace brackwell
