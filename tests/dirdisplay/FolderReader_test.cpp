#include "dirdisplay/FolderReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using Lines = std::vector<std::string>;

class FolderReaderTest : public testing::Test {
 protected:
  /// The folders with their depths, each file after its folder.
  static Lines All(FolderReader& reader) {
    Lines lines;
    while (const auto part = reader.Next([] {})) {
      if (part->FirstFile == 0)
        lines.push_back(std::to_string(part->Depth) + std::string(FileName(part->Object->Path())));
      for (std::size_t file = part->FirstFile; file < part->EndFile; ++file)
        lines.push_back(std::string(part->Object->Files()[file].Name));
    }
    return lines;
  }

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
};

TEST_F(FolderReaderTest, FoldersComeInTheOrderOfTheWalk) {
  Tree.File("top/z");
  Tree.File("top/b/d/deep");
  Tree.File("top/a/file");
  FolderReader reader(*Files, {.Folder = Tree.Path("top")});
  EXPECT_EQ(All(reader), (Lines{"0top", "z", "1a", "file", "1b", "2d", "deep"}));
  EXPECT_FALSE(reader.Next([] {}));  // and again
}

TEST_F(FolderReaderTest, OneFolderWithVeryManyFilesComesInParts) {
  constexpr int Many = 10'000;
  for (int i = 0; i < Many; ++i) Tree.File("top/" + std::to_string(i), "x");
  FolderReader reader(*Files, {.Folder = Tree.Path("top")});
  std::size_t next = 0;
  int parts = 0;
  for (; const auto part = reader.Next([] {}); ++parts) {
    EXPECT_EQ(part->FirstFile, next);
    ASSERT_EQ(part->Details.size(), part->EndFile - part->FirstFile);
    EXPECT_TRUE(std::ranges::all_of(part->Details, [](const auto& one) { return one->Size == 1; }));
    next = part->EndFile;
  }
  EXPECT_EQ(next, std::size_t{Many});
  EXPECT_GT(parts, 1);
}

TEST_F(FolderReaderTest, ItWaitsForWhoeverTakes) {
  for (int i = 0; i < 1000; ++i) Tree.Folder("top/" + std::to_string(i));
  FailingFileSystem all;
  FolderReader whole(all, {.Folder = Tree.Path("top")});
  EXPECT_EQ(All(whole).size(), 1001u);
  FailingFileSystem files;
  FolderReader reader(files, {.Folder = Tree.Path("top")});
  const auto first = reader.Next([] {});
  // Until it reads no more.
  for (int before = -1; before != files.Calls();) {
    before = files.Calls();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  EXPECT_LT(files.Calls(), all.Calls() / 2);
  EXPECT_EQ(All(reader).size(), 1000u);
}

TEST_F(FolderReaderTest, WhatWasReadBeforeAnErrorComesFirst) {
  Tree.File("top/a");
  Tree.Folder("top/sub");
  std::vector<std::size_t> before;
  for (int failAt = 1;; ++failAt) {
    FailingFileSystem files(failAt);
    FolderReader reader(files, {.Folder = Tree.Path("top")});
    std::size_t parts = 0;
    try {
      while (reader.Next([] {})) ++parts;
      EXPECT_EQ(parts, 2u);
      break;
    } catch (const FileSystemError&) {
      before.push_back(parts);
    }
  }
  EXPECT_TRUE(std::ranges::is_sorted(before));
  EXPECT_THAT(before, testing::Contains(0u));
  EXPECT_THAT(before, testing::Contains(1u));
}

TEST_F(FolderReaderTest, TicksWhileNothingComes) {
  Tree.Folder("top");
  FailingFileSystem files;
  std::atomic<bool> mayGoOn = false;
  files.OnCall = [&] {
    while (!mayGoOn) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  FolderReader reader(files, {.Folder = Tree.Path("top")});
  int ticks = 0;
  EXPECT_TRUE(reader.Next([&] {
    if (++ticks == 3) mayGoOn = true;
  }));
  EXPECT_GE(ticks, 3);
}

TEST_F(FolderReaderTest, GoesInTheMiddleOfItsWork) {
  for (int i = 0; i < 300; ++i) Tree.File("top/" + std::to_string(i) + "/file");
  for (int taken = 0; taken < 200; taken += 20) {
    FolderReader reader(*Files, {.Folder = Tree.Path("top")});
    for (int i = 0; i < taken; ++i) EXPECT_TRUE(reader.Next([] {}));
  }
  FolderReader reader(*Files, {.Folder = Tree.Path("top")});
  struct Enough {};
  FailingFileSystem slow;
  std::atomic<bool> mayGoOn = false;
  slow.OnCall = [&] {
    while (!mayGoOn) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  const auto giveUp = [&] {
    mayGoOn = true;
    throw Enough();
  };
  EXPECT_THROW(FolderReader(slow, {.Folder = Tree.Path("top")}).Next(giveUp), Enough);
}

TEST_F(FolderReaderTest, WhatIsNotPlannedIsNotRead) {
  Tree.File("top/a", "four");
  Tree.File("top/sub/file");
  ReadingPlan plan{.Folder = Tree.Path("top"),
                   .IncludesSubFolders = false,
                   .ReadsDetails = false,
                   .FolderProperties = {InfoKey::Files, InfoKey::Size}};
  FolderReader names(*Files, plan);
  auto part = names.Next([] {});
  ASSERT_TRUE(part);
  EXPECT_EQ(part->EndFile, 1u);
  EXPECT_TRUE(part->Details.empty());
  EXPECT_EQ(part->Properties, (std::vector<PropertyValue>{std::uint64_t{1}, std::uint64_t{4}}));
  EXPECT_FALSE(names.Next([] {}));

  plan.IncludesSubFolders = true;
  plan.ReadsSizes = true;
  FolderReader sizes(*Files, plan);
  part = sizes.Next([] {});
  ASSERT_TRUE(part);
  EXPECT_EQ(part->Details.at(0)->Size, 4u);
  EXPECT_EQ(part->Properties.at(1), PropertyValue());  // whoever takes the parts adds them up
}

}  // namespace
}  // namespace brackwell
