#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/FolderLister.h"

namespace brackwell {

/// The folders of the machine as a tree: the home folder and the volumes at the top. A folder's children come
/// when Load is called, in the order of all listings, some time later; links to folders may come after the
/// others. Until a folder has been loaded it is taken to have children.
class FolderTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  FolderTreeModel(FolderLister::List list, QObject* parent);
  ~FolderTreeModel() override;

  /// Lists a folder, also once more: its children follow what is on the disk now. One that is being listed is
  /// listed again when that has ended, so a dead drive is not asked twice. An invalid index stands for the
  /// top, which is read at once.
  void Load(const QModelIndex& folder);
  bool IsLoading(const QModelIndex& folder) const;
  /// Forgets all listings under way.
  void Stop();

  /// The native path, without separator at its end unless it is a root.
  std::string Path(const QModelIndex& folder) const;
  /// The child with this native name; an invalid index where it has not come in.
  QModelIndex Child(const QModelIndex& folder, const std::string& name) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 1; }
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& folder, int role) const override;

 Q_SIGNALS:
  /// All children of the folder are there, or it is known that there are none.
  void Loaded(const QModelIndex& folder);

 private:
  struct Node;
  struct Listing {
    Node* Folder;
    std::vector<std::string> Found;
  };

  void LoadTop();
  void TakeNews();
  void TakeNews(FolderLister::News news);
  void End(Node& folder, std::vector<std::string> found, const std::optional<FileSystemError>& failure);
  void MarkSlow(int listing);

  void InsertChildren(Node& folder, const std::vector<std::string>& names);
  /// Those whose names are not among `kept`, which is in OrderOfNames.
  void RemoveChildrenBut(Node& folder, const std::vector<std::string>& kept);
  void RemoveChildren(Node& folder, int first, int last);

  Node* NodeOf(const QModelIndex& index) const;
  QModelIndex IndexOf(const Node& node) const;
  std::string PathOf(const Node& node) const;
  QString TextOf(const Node& node) const;
  QString ToolTipOf(const Node& node) const;

  const FolderLister::List mList;
  std::unique_ptr<FolderLister> mLister;
  const std::string mHome;
  const QIcon mHomePicture;
  const QIcon mVolumePicture;
  const QIcon mFolderPicture;
  const std::unique_ptr<Node> mTop;
  std::unordered_map<int, Listing> mListings;
};

}  // namespace brackwell
