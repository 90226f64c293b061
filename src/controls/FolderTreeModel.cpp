#include "controls/FolderTreeModel.h"

#include <QApplication>
#include <QStyle>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "common/NativeText.h"
#include "platform/CaseRules.h"
#include "platform/Paths.h"
#include "platform/Places.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

constexpr int SlowAfter = 300;  // milliseconds

bool Precedes(const std::string& a, const std::string& b) { return OrderOfNames(a, b) < 0; }

/// Where drives have letters, case tells no two names apart.
bool IsSameName(const std::string& a, const std::string& b) {
  constexpr bool IgnoresCase = PathSeparator == '\\';
  return a == b || (IgnoresCase && CompareIgnoreCase(a, b) == 0);
}

}  // namespace

struct FolderTreeModel::Node {
  std::string Name;  // at the top, the whole path
  Node* Parent = nullptr;
  int Row = 0;
  enum class State { Unknown, Loading, Slow, Loaded } State = State::Unknown;
  bool LoadAgain = false;  // asked for while it was being loaded, which may have missed what is new
  QString Failure;
  std::vector<std::unique_ptr<Node>> Children;

  bool IsLoading() const { return State == State::Loading || State == State::Slow; }
};

FolderTreeModel::FolderTreeModel(FolderLister::List list, QObject* parent)
    : QAbstractItemModel(parent),
      mList(std::move(list)),
      mHome(HomeFolder()),
      mHomePicture(QApplication::style()->standardIcon(QStyle::SP_DirHomeIcon)),
      mVolumePicture(QApplication::style()->standardIcon(QStyle::SP_DriveHDIcon)),
      mFolderPicture(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      mTop(std::make_unique<Node>()) {
  Stop();
  LoadTop();
}

FolderTreeModel::~FolderTreeModel() = default;

void FolderTreeModel::Stop() {
  mLister = std::make_unique<FolderLister>(mList, [this] {
    QMetaObject::invokeMethod(this, qOverload<>(&FolderTreeModel::TakeNews), Qt::QueuedConnection);
  });
  for (auto& [number, listing] : std::exchange(mListings, {})) {
    listing.Folder->State = Node::State::Unknown;
    listing.Folder->LoadAgain = false;
    const QModelIndex folder = IndexOf(*listing.Folder);
    Q_EMIT dataChanged(folder, folder);
  }
}

// --- listing -------------------------------------------------------------------------

void FolderTreeModel::Load(const QModelIndex& folder) {
  if (!folder.isValid()) return LoadTop();
  Node& node = *NodeOf(folder);
  if (node.IsLoading()) {
    node.LoadAgain = true;
    return;
  }
  node.State = Node::State::Loading;
  const int listing = mLister->Start(PathOf(node));
  mListings[listing] = {.Folder = &node, .Found = {}};
  QTimer::singleShot(SlowAfter, this, [this, listing] { MarkSlow(listing); });
}

bool FolderTreeModel::IsLoading(const QModelIndex& folder) const {
  return folder.isValid() && NodeOf(folder)->IsLoading();
}

void FolderTreeModel::LoadTop() {
  std::vector<std::string> paths;
  if (!mHome.empty()) paths.push_back(mHome);
  for (const Volume& volume : Volumes())
    if (volume.Root != mHome) paths.push_back(volume.Root);
  std::ranges::sort(paths, Precedes);
  RemoveChildrenBut(*mTop, paths);
  InsertChildren(*mTop, paths);
}

void FolderTreeModel::MarkSlow(int listing) {
  const auto found = mListings.find(listing);
  if (found == mListings.end()) return;
  found->second.Folder->State = Node::State::Slow;
  const QModelIndex folder = IndexOf(*found->second.Folder);
  Q_EMIT dataChanged(folder, folder);
}

void FolderTreeModel::TakeNews() {
  for (FolderLister::News& news : mLister->TakeNews()) TakeNews(std::move(news));
}

void FolderTreeModel::TakeNews(FolderLister::News news) {
  const auto at = mListings.find(news.Listing);
  if (at == mListings.end()) return;  // of a folder that has left the tree
  Listing& listing = at->second;
  Node& folder = *listing.Folder;
  std::ranges::sort(news.Names, Precedes);
  listing.Found.insert(listing.Found.end(), news.Names.begin(), news.Names.end());
  InsertChildren(folder, news.Names);
  if (!news.Ended) return;
  std::vector<std::string> found = std::move(listing.Found);
  mListings.erase(news.Listing);  // not `at`: the view may have begun other listings meanwhile
  End(folder, std::move(found), news.Failure);
}

void FolderTreeModel::End(Node& folder, std::vector<std::string> found,
                          const std::optional<FileSystemError>& failure) {
  folder.State = Node::State::Loaded;
  folder.Failure = failure ? QString::fromStdString(failure->Description()) : QString();
  // A folder that is gone leaves the tree as a whole, with what is open and selected in it.
  const bool isGone = failure && failure->Kind() == FileError::PathNotFound && folder.Parent != mTop.get();
  if (failure) found.clear();
  std::ranges::sort(found, Precedes);
  if (!isGone) RemoveChildrenBut(folder, found);
  const QPersistentModelIndex index = IndexOf(folder);
  Q_EMIT dataChanged(index, index);
  if (std::exchange(folder.LoadAgain, false)) return Load(index);
  if (isGone) Load(index.parent());
  Q_EMIT Loaded(index);
}

// --- nodes ---------------------------------------------------------------------------

void FolderTreeModel::InsertChildren(Node& folder, const std::vector<std::string>& names) {
  auto& children = folder.Children;
  std::size_t at = 0;
  for (std::size_t next = 0; next < names.size();) {
    while (at < children.size() && Precedes(children[at]->Name, names[next])) ++at;
    if (at < children.size() && children[at]->Name == names[next]) {
      ++next;
      continue;
    }
    // All names that belong between the same two children.
    std::vector<std::unique_ptr<Node>> run;
    while (next < names.size() && (at == children.size() || Precedes(names[next], children[at]->Name))) {
      run.push_back(std::make_unique<Node>());
      run.back()->Name = names[next++];
      run.back()->Parent = &folder;
    }
    const std::size_t count = run.size();
    beginInsertRows(IndexOf(folder), static_cast<int>(at), static_cast<int>(at + count) - 1);
    children.insert(children.begin() + at, std::make_move_iterator(run.begin()),
                    std::make_move_iterator(run.end()));
    for (std::size_t row = at; row < children.size(); ++row) children[row]->Row = static_cast<int>(row);
    endInsertRows();
    at += count;
  }
}

void FolderTreeModel::RemoveChildrenBut(Node& folder, const std::vector<std::string>& kept) {
  const auto isKept = [&](const std::unique_ptr<Node>& child) {
    return std::ranges::binary_search(kept, child->Name, Precedes);
  };
  for (int last = static_cast<int>(folder.Children.size()) - 1; last >= 0; --last) {
    if (isKept(folder.Children[last])) continue;
    int first = last;
    while (first > 0 && !isKept(folder.Children[first - 1])) --first;
    RemoveChildren(folder, first, last);
    last = first;
  }
}

void FolderTreeModel::RemoveChildren(Node& folder, int first, int last) {
  beginRemoveRows(IndexOf(folder), first, last);
  auto& children = folder.Children;
  std::erase_if(mListings, [&](const auto& listing) {
    const Node* node = listing.second.Folder;
    while (node->Parent && node->Parent != &folder) node = node->Parent;
    return node->Parent && node->Row >= first && node->Row <= last;
  });
  children.erase(children.begin() + first, children.begin() + last + 1);
  for (std::size_t row = first; row < children.size(); ++row) children[row]->Row = static_cast<int>(row);
  endRemoveRows();
}

FolderTreeModel::Node* FolderTreeModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? static_cast<Node*>(index.internalPointer()) : mTop.get();
}

QModelIndex FolderTreeModel::IndexOf(const Node& node) const {
  return &node == mTop.get() ? QModelIndex() : createIndex(node.Row, 0, &node);
}

std::string FolderTreeModel::PathOf(const Node& node) const {
  return node.Parent == mTop.get() ? node.Name : JoinPath(PathOf(*node.Parent), node.Name);
}

std::string FolderTreeModel::Path(const QModelIndex& folder) const {
  return folder.isValid() ? PathOf(*NodeOf(folder)) : std::string();
}

QModelIndex FolderTreeModel::Child(const QModelIndex& folder, const std::string& name) const {
  for (const auto& child : NodeOf(folder)->Children)
    if (IsSameName(child->Name, name)) return IndexOf(*child);
  return {};
}

// --- for the view --------------------------------------------------------------------

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, NodeOf(parent)->Children[row].get());
}

QModelIndex FolderTreeModel::parent(const QModelIndex& child) const {
  return child.isValid() ? IndexOf(*NodeOf(child)->Parent) : QModelIndex();
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > 0 ? 0 : static_cast<int>(NodeOf(parent)->Children.size());
}

bool FolderTreeModel::hasChildren(const QModelIndex& parent) const {
  const Node& node = *NodeOf(parent);
  return !node.Children.empty() || (&node != mTop.get() && node.State != Node::State::Loaded);
}

QVariant FolderTreeModel::data(const QModelIndex& folder, int role) const {
  if (!folder.isValid()) return {};
  const Node& node = *NodeOf(folder);
  const bool isTop = node.Parent == mTop.get();
  switch (role) {
    case Qt::DisplayRole:
      return node.State == Node::State::Slow ? TextOf(node) + u" …"_s : TextOf(node);
    case Qt::AccessibleTextRole:
      return TextOf(node);
    case Qt::AccessibleDescriptionRole:
      return node.Failure;
    case Qt::ToolTipRole:
      return ToolTipOf(node);
    case Qt::DecorationRole:
      if (!isTop) return mFolderPicture;
      return node.Name == mHome ? mHomePicture : mVolumePicture;
    default:
      return {};
  }
}

QString FolderTreeModel::TextOf(const Node& node) const {
  const bool isHome = node.Parent == mTop.get() && node.Name == mHome && !FileName(mHome).empty();
  return isHome ? u"Home"_s : ToShownText(node.Name);
}

QString FolderTreeModel::ToolTipOf(const Node& node) const {
  const QString path = ToShownText(PathOf(node));
  if (node.Failure.isEmpty()) return ToToolTip(path);
  return ToToolTip(path + u"\nThis folder cannot be read: "_s + node.Failure);
}

}  // namespace brackwell
