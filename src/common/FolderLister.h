#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileSystemError.h"

namespace brackwell {

/// Lists folders on threads of its own, one for each listing, so that nobody waits for a drive that does not
/// answer. A listing's thread owns what it works on, hands its results over under a lock and touches nothing
/// else; one that never comes back is left behind when the lister goes.
class FolderLister {
 public:
  /// As ListSubFolders. Must not refer to anything that may end before it.
  using List = std::function<void(const std::string& path,
                                  const std::function<void(std::vector<std::string>)>& found)>;

  /// What has come in of one listing since it was last asked for.
  struct News {
    int Listing = 0;
    std::vector<std::string> Names;  // in no order
    bool Ended = false;
    std::optional<FileSystemError> Failure;  // it ended early
  };

  /// `wake` is called on one of the threads when there are news after there were none; TakeNews must not be
  /// called within it. It is not called once the lister is gone.
  FolderLister(List list, std::function<void()> wake);
  ~FolderLister();
  FolderLister(const FolderLister&) = delete;
  FolderLister& operator=(const FolderLister&) = delete;

  /// Begins a listing and gives its number.
  int Start(const std::string& path);
  std::vector<News> TakeNews();

 private:
  struct Shared;

  const List mList;
  const std::shared_ptr<Shared> mShared;
  int mLastListing = 0;
};

}  // namespace brackwell
