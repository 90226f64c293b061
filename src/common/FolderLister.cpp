#include "common/FolderLister.h"

#include <iterator>
#include <mutex>
#include <utility>

#include "platform/Threads.h"

namespace brackwell {

/// What the lister and its threads have in common.
struct FolderLister::Shared {
  std::mutex Lock;
  std::vector<News> Waiting;
  std::function<void()> Wake;  // none once the lister is gone

  /// False when nobody wants to know any more.
  bool Tell(News news) {
    const std::lock_guard guard(Lock);
    if (!Wake) return false;
    const bool wasEmpty = Waiting.empty();
    if (!wasEmpty && Waiting.back().Listing == news.Listing)
      Append(Waiting.back(), std::move(news));
    else
      Waiting.push_back(std::move(news));
    if (wasEmpty) Wake();
    return true;
  }

 private:
  static void Append(News& earlier, News later) {
    earlier.Names.insert(earlier.Names.end(), std::make_move_iterator(later.Names.begin()),
                         std::make_move_iterator(later.Names.end()));
    earlier.Ended = later.Ended;
    earlier.Failure = std::move(later.Failure);
  }
};

namespace {

struct NobodyWaits {};

}  // namespace

FolderLister::FolderLister(List list, std::function<void()> wake)
    : mList(std::move(list)), mShared(std::make_shared<Shared>()) {
  mShared->Wake = std::move(wake);
}

FolderLister::~FolderLister() {
  const std::lock_guard guard(mShared->Lock);
  mShared->Wake = nullptr;
}

int FolderLister::Start(const std::string& path) {
  const int listing = ++mLastListing;
  const auto run = [listing, path, list = mList, shared = mShared] {
    News end{.Listing = listing, .Names = {}, .Ended = true, .Failure = {}};
    try {
      list(path, [&](std::vector<std::string> names) {
        if (!shared->Tell({.Listing = listing, .Names = std::move(names), .Ended = false, .Failure = {}}))
          throw NobodyWaits();
      });
    } catch (const FileSystemError& error) {
      end.Failure = error;
    } catch (const NobodyWaits&) {
      return;
    } catch (const std::exception&) {  // out of memory
      end.Failure = FileSystemError(FileError::DeviceError, path);
    }
    shared->Tell(std::move(end));
  };
  if (!StartThread(run))
    mShared->Tell({.Listing = listing,
                   .Names = {},
                   .Ended = true,
                   .Failure = FileSystemError(FileError::TooManyFiles, path)});
  return listing;
}

std::vector<FolderLister::News> FolderLister::TakeNews() {
  const std::lock_guard guard(mShared->Lock);
  return std::exchange(mShared->Waiting, {});
}

}  // namespace brackwell
