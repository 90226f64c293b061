#include "controls/FolderTree.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "controls/FolderTreeModel.h"
#include "platform/Paths.h"
#include "platform/SubFolders.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

bool LiesWithin(const std::string& path, const std::string& root) {
  return path == root || path.starts_with(WithSeparator(root));
}

/// Empty names and "." are left out.
std::deque<std::string> Elements(std::string_view path) {
  std::deque<std::string> names;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(PathSeparator), path.size());
    if (end > 0 && path.substr(0, end) != ".") names.emplace_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return names;
}

}  // namespace

FolderTree::FolderTree(QWidget* parent) : FolderTree(&ListSubFolders, parent) {}

FolderTree::FolderTree(FolderLister::List list, QWidget* parent)
    : QTreeView(parent), mFolders(new FolderTreeModel(std::move(list), this)) {
  setObjectName(u"FolderTree"_s);
  setAccessibleName(u"Folders"_s);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setModel(mFolders);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);

  connect(this, &QTreeView::expanded, mFolders, &FolderTreeModel::Load);
  connect(mFolders, &FolderTreeModel::Loaded, this, &FolderTree::Loaded);
  connect(mFolders, &FolderTreeModel::rowsInserted, this, &FolderTree::Reveal);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &FolderTree::TellChange);
}

std::string FolderTree::SelectedFolder() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? std::string() : mFolders->Path(selected.first());
}

void FolderTree::TellChange() {
  mToGo.clear();  // whoever selects a folder wants that one
  if (std::string folder = SelectedFolder(); folder != mToldFolder) {
    mToldFolder = std::move(folder);
    Q_EMIT FolderChanged();
  }
}

void FolderTree::Select(const QModelIndex& folder) {
  selectionModel()->setCurrentIndex(folder, QItemSelectionModel::ClearAndSelect);
}

// --- on the way to a folder ----------------------------------------------------------

bool FolderTree::SetSelectedFolder(const std::string& path) {
  QModelIndex nearest;
  for (int row = 0; row < mFolders->rowCount(); ++row) {
    const QModelIndex top = mFolders->index(row, 0);
    if (LiesWithin(path, mFolders->Path(top)) &&
        (!nearest.isValid() || mFolders->Path(top).size() > mFolders->Path(nearest).size()))
      nearest = top;
  }
  if (!nearest.isValid()) return false;
  std::deque<std::string> names = Elements(std::string_view(path).substr(mFolders->Path(nearest).size()));
  if (std::ranges::find(names, "..") != names.end()) return false;
  if (names.empty()) {
    Select(nearest);
    scrollTo(nearest);
    return true;
  }
  mReached = nearest;
  mToGo = std::move(names);
  mListedAnew = false;
  Reveal();
  return true;
}

void FolderTree::Reveal() {
  while (!mToGo.empty() && mReached.isValid()) {
    const QModelIndex child = mFolders->Child(mReached, mToGo.front());
    if (!child.isValid()) {
      if (!std::exchange(mListedAnew, true)) mFolders->Load(mReached);
      return;
    }
    expand(mReached);
    mToGo.pop_front();
    mReached = child;
    mListedAnew = false;
    if (!mToGo.empty()) continue;
    Select(child);
    scrollTo(child, PositionAtCenter);
  }
}

void FolderTree::Loaded(const QModelIndex& folder) {
  if (mReached == folder) {
    Reveal();
    if (!mToGo.empty() && mReached == folder) mToGo.clear();  // it is not there
  }
  if (folder.isValid() && !mFolders->hasChildren(folder)) {
    collapse(folder);
    scheduleDelayedItemsLayout();  // the mark before it has to go
  }
}

// --- following the disk --------------------------------------------------------------

void FolderTree::Refresh() {
  mFolders->Load({});
  for (int row = 0; row < mFolders->rowCount(); ++row) Refresh(mFolders->index(row, 0));
}

void FolderTree::Refresh(const QModelIndex& folder) {
  if (!isExpanded(folder)) return;
  mFolders->Load(folder);
  for (int row = 0; row < mFolders->rowCount(folder); ++row) Refresh(mFolders->index(row, 0, folder));
}

void FolderTree::Stop() {
  mToGo.clear();
  mFolders->Stop();
}

/// A change of activation is told to the window alone, that it is active now to everything inside.
bool FolderTree::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) Refresh();
  return QTreeView::event(event);
}

/// The column is as wide as its names, and never narrower than the tree.
void FolderTree::resizeEvent(QResizeEvent* event) {
  header()->setMinimumSectionSize(viewport()->width());
  QTreeView::resizeEvent(event);
}

/// A folder that goes with the selection inside it hands it to its parent; the view's own choice would be
/// some neighbour.
void FolderTree::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
  for (QModelIndex folder = currentIndex(); folder.isValid(); folder = folder.parent()) {
    if (folder.parent() != parent || folder.row() < first || folder.row() > last) continue;
    if (SelectedFolder().empty())
      selectionModel()->setCurrentIndex(parent, QItemSelectionModel::NoUpdate);
    else
      Select(parent);
    break;
  }
  QTreeView::rowsAboutToBeRemoved(parent, first, last);
}

// --- keys and clicks -----------------------------------------------------------------

void FolderTree::keyPressEvent(QKeyEvent* event) {
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (plain && event->key() == Qt::Key_F5) return Refresh();
  if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    if (!currentIndex().isValid()) return;
    Select(currentIndex());
    return setExpanded(currentIndex(), !isExpanded(currentIndex()));
  }
  // Opening whatever has been listed so far, and listing all of that, is nothing that anybody means.
  if (plain && event->key() == Qt::Key_Asterisk) return expand(currentIndex());
  QTreeView::keyPressEvent(event);
}

/// There is no way to select nothing again.
QItemSelectionModel::SelectionFlags FolderTree::selectionCommand(const QModelIndex& index,
                                                                 const QEvent* event) const {
  Q_UNUSED(event)
  return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

}  // namespace brackwell
