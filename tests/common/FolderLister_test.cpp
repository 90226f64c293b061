#include "common/FolderLister.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <stdexcept>

#include "platform/SubFolders.h"
#include "support/TempTree.h"

// Listings may outlive their test, as they may outlive a window: whatever they use is shared with them.

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A door that stays shut until it is opened, for whoever waits at it.
class Gate {
 public:
  void Open() {
    const std::lock_guard guard(mLock);
    mOpen = true;
    mChanged.notify_all();
  }
  void Pass() {
    std::unique_lock guard(mLock);
    mChanged.wait(guard, [this] { return mOpen; });
  }

 private:
  std::mutex mLock;
  std::condition_variable mChanged;
  bool mOpen = false;
};

class FolderListerTest : public testing::Test {
 protected:
  void Use(FolderLister::List list) {
    mLister = std::make_unique<FolderLister>(std::move(list), [bell = mBell] {
      const std::lock_guard guard(bell->Lock);
      ++bell->Rings;
      bell->Rung.notify_all();
    });
  }

  void WaitForNews() {
    std::unique_lock guard(mBell->Lock);
    ASSERT_TRUE(mBell->Rung.wait_for(guard, std::chrono::seconds(20), [this] { return mBell->Rings > 0; }));
    mBell->Rings = 0;
  }

  /// All that comes of a listing until its end.
  FolderLister::News WaitForEnd(int listing) {
    while (!mSoFar[listing].Ended) {
      WaitForNews();
      if (HasFatalFailure()) break;
      for (FolderLister::News& news : mLister->TakeNews()) {
        FolderLister::News& all = mSoFar[news.Listing];
        all.Names.insert(all.Names.end(), news.Names.begin(), news.Names.end());
        all.Ended = news.Ended;
        all.Failure = news.Failure;
      }
    }
    return mSoFar[listing];
  }

  struct Bell {
    std::mutex Lock;
    std::condition_variable Rung;
    int Rings = 0;
  };
  const std::shared_ptr<Bell> mBell = std::make_shared<Bell>();
  std::map<int, FolderLister::News> mSoFar;
  std::unique_ptr<FolderLister> mLister;
};

TEST_F(FolderListerTest, ListsFoldersOnly) {
  const TempTree tree;
  TempTree made;
  made.Folder("b");
  made.Folder("a/inner");
  made.Folder(".hidden");
  made.File("file");
  Use(&ListSubFolders);
  const FolderLister::News news = WaitForEnd(mLister->Start(made.Path()));
  EXPECT_THAT(news.Names, UnorderedElementsAre("a", "b", ".hidden"));
  EXPECT_FALSE(news.Failure);
  EXPECT_THAT(WaitForEnd(mLister->Start(tree.Path())).Names, IsEmpty());
}

TEST_F(FolderListerTest, AFolderThatIsNotThereFails) {
  const TempTree tree;
  Use(&ListSubFolders);
  const FolderLister::News news = WaitForEnd(mLister->Start(tree.Path("gone")));
  ASSERT_TRUE(news.Failure);
  EXPECT_EQ(news.Failure->Kind(), FileError::PathNotFound);
  EXPECT_EQ(news.Failure->Path(), tree.Path("gone"));
}

TEST_F(FolderListerTest, AnyOtherFailureEndsTheListingToo) {
  Use([](const std::string&, const auto& found) {
    found({"first"});
    throw std::runtime_error("no memory");
  });
  const FolderLister::News news = WaitForEnd(mLister->Start("folder"));
  EXPECT_THAT(news.Names, ElementsAre("first"));
  ASSERT_TRUE(news.Failure);
  EXPECT_EQ(news.Failure->Kind(), FileError::DeviceError);
}

TEST_F(FolderListerTest, WhatHasComeInCanBeTakenBeforeTheEnd) {
  const auto gate = std::make_shared<Gate>();
  Use([gate](const std::string&, const auto& found) {
    found({"first"});
    gate->Pass();
    found({"second"});
  });
  const int listing = mLister->Start("folder");
  WaitForNews();
  const std::vector<FolderLister::News> news = mLister->TakeNews();
  ASSERT_EQ(news.size(), 1u);
  EXPECT_EQ(news[0].Listing, listing);
  EXPECT_THAT(news[0].Names, ElementsAre("first"));
  EXPECT_FALSE(news[0].Ended);
  gate->Open();
  EXPECT_THAT(WaitForEnd(listing).Names, ElementsAre("second"));
}

TEST_F(FolderListerTest, OneThatHangsKeepsNobodyElseWaiting) {
  const auto gate = std::make_shared<Gate>();
  Use([gate](const std::string& path, const auto& found) {
    if (path == "dead") gate->Pass();
    found({path + "'s child"});
  });
  const int dead = mLister->Start("dead");
  EXPECT_THAT(WaitForEnd(mLister->Start("alive")).Names, ElementsAre("alive's child"));
  EXPECT_FALSE(mSoFar[dead].Ended);
  gate->Open();
  EXPECT_THAT(WaitForEnd(dead).Names, ElementsAre("dead's child"));
}

TEST_F(FolderListerTest, OneThatHangsDoesNotKeepTheListerAlive) {
  const auto gate = std::make_shared<Gate>();
  const auto left = std::make_shared<Gate>();
  const auto told = std::make_shared<std::atomic<bool>>(false);
  Use([=](const std::string&, const auto& found) {
    gate->Pass();
    try {
      found({"too late"});
      *told = true;
    } catch (...) {
      left->Open();
      throw;
    }
  });
  mLister->Start("dead");
  mLister.reset();
  gate->Open();
  left->Pass();
  EXPECT_FALSE(*told);
  EXPECT_EQ(mBell->Rings, 0);
}

TEST_F(FolderListerTest, ManyListingsAtOnceAllArrive) {
  Use([](const std::string& path, const auto& found) {
    for (int i = 0; i < 50; ++i) found({path + std::to_string(i)});
  });
  std::vector<int> listings;
  for (int i = 0; i < 100; ++i) listings.push_back(mLister->Start("folder"));
  for (const int listing : listings) EXPECT_EQ(WaitForEnd(listing).Names.size(), 50u);
}

}  // namespace
}  // namespace brackwell
