#include "replace/FileCounter.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

class FileCounterTest : public testing::Test {
 protected:
  std::string Add(const std::string& name, const std::string& content = "x") {
    Tree.File(name, content);
    return AddAgain(name);
  }
  /// A list may name a file any number of times.
  std::string AddAgain(const std::string& name) {
    Rows.push_back({Tree.Path(name), {}});
    return Rows.back().Path;
  }

  /// Of many encodings and sizes, and some of no size.
  void AddFilesOfAllKinds(std::size_t count) {
    std::string large(700'000, '.');
    for (std::size_t at = 1; at < large.size(); at += 1000) large.replace(at, 2, "\xC3\xA9");
    const Lines contents{
        "caf\xC3\xA9, CAF\xC3\x89", "", "caf\xE9", "nothing", "\xFF\xFE\xE9\0\xC9\0"s, "\xFE\xFF\0\xE9"s,
        "\xEF\xBB\xBF\xC3\xA9\xE9"};
    for (std::size_t i = 0; i < count; ++i)
      Add(std::to_string(i), i % 400 == 399 ? large : contents[i % contents.size()]);
  }

  /// Up to `most` counts, "-" for no bytes; the error that ended it comes last.
  static Lines Take(FileCounter& counter, std::size_t most) {
    Lines lines;
    try {
      while (lines.size() < most) {
        const auto count = counter.Next();
        lines.push_back(count ? std::to_string(*count) : "-");
      }
    } catch (const FileSystemError& error) {
      lines.push_back("error " + std::to_string(error.Number()) + " " + error.Path());
    }
    return lines;
  }
  Lines TakeAll(std::size_t threads) {
    FileCounter counter(
        *Files, "\xC3\xA9", Rows, [] {}, threads);
    return Take(counter, Rows.size());
  }

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  ReplaceRows Rows;
};

TEST_F(FileCounterTest, CountsComeInTheOrderOfTheList) {
  AddFilesOfAllKinds(7);
  EXPECT_EQ(TakeAll(0), (Lines{"2", "-", "1", "0", "2", "1", "1"}));
}

TEST_F(FileCounterTest, ThreadsCountTheSame) {
  AddFilesOfAllKinds(3000);
  const Lines expected = TakeAll(0);
  EXPECT_EQ(expected[399], "700");
  for (const std::size_t threads : {1, 2, 3, 8}) EXPECT_TRUE(TakeAll(threads) == expected) << threads;
}

TEST_F(FileCounterTest, AHandfulIsCountedByWhoeverTakes) {
  FailingFileSystem files;
  std::atomic<int> here = 0;
  std::atomic<int> elsewhere = 0;
  files.OnCall = [&, me = std::this_thread::get_id()] {
    ++(std::this_thread::get_id() == me ? here : elsewhere);
  };
  Add("a");
  for (int i = 0; i < 9; ++i) AddAgain("a");
  FileCounter few(
      files, "x", Rows, [] {}, 2);
  few.LookAhead();
  EXPECT_EQ(Take(few, 10), Lines(10, "1"));
  EXPECT_GT(here.exchange(0), 0);
  EXPECT_EQ(elsewhere, 0);

  for (int i = 0; i < 90; ++i) AddAgain("a");
  FileCounter many(
      files, "x", Rows, [] {}, 2);
  EXPECT_EQ(Take(many, 100), Lines(100, "1"));
  EXPECT_EQ(here, 0);
  EXPECT_GT(elsewhere, 0);
}

TEST_F(FileCounterTest, CountsWhileTheListGrows) {
  FailingFileSystem files;
  FileCounter counter(
      files, "x", Rows, [] {}, 2);
  Add("0");
  for (int i = 1; i < 2000; ++i) {
    i % 3 == 0 ? AddAgain("0") : Add(std::to_string(i), std::string(static_cast<std::size_t>(i % 3), 'x'));
    counter.LookAhead();
  }
  while (files.Calls() < 1000) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  const Lines lines = Take(counter, Rows.size());
  for (std::size_t i = 0; i < lines.size(); ++i) ASSERT_EQ(lines[i], i % 3 == 2 ? "2" : "1") << i;
}

TEST_F(FileCounterTest, ItWaitsForWhoeverTakes) {
  constexpr std::size_t Many = 80'000;
  FailingFileSystem files;
  Add("a");
  while (Rows.size() < Many) AddAgain("a");
  FileCounter counter(
      files, "x", Rows, [] {}, 3);
  EXPECT_EQ(counter.Next(), 1);
  // Until they count no more.
  for (int before = -1; before != files.Calls();) {
    before = files.Calls();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  EXPECT_LT(static_cast<std::size_t>(files.Calls()), Many);  // two for each file
  EXPECT_TRUE(Take(counter, Many - 1) == Lines(Many - 1, "1"));
}

TEST_F(FileCounterTest, AnErrorComesAtItsPlace) {
  AddFilesOfAllKinds(1500);
  Lines expected = TakeAll(0);
  Tree.Remove("900");
  Tree.Remove("700");
  expected.resize(700);
  expected.push_back("error 53 " + Rows[700].Path);
  for (const std::size_t threads : {0, 1, 2, 4}) EXPECT_TRUE(TakeAll(threads) == expected) << threads;
}

TEST_F(FileCounterTest, CountsGoOnBehindAnError) {
  AddFilesOfAllKinds(200);
  const Lines expected = TakeAll(0);
  Tree.Remove("100");
  for (const std::size_t threads : {0, 2}) {
    FileCounter counter(
        *Files, "\xC3\xA9", Rows, [] {}, threads);
    EXPECT_EQ(Take(counter, 200).back(), "error 53 " + Rows[100].Path);
    const Lines rest = Take(counter, 99);
    EXPECT_TRUE(std::equal(rest.begin(), rest.end(), expected.begin() + 101, expected.end())) << threads;
  }
}

TEST_F(FileCounterTest, WhateverCallFailsTheCountsBeforeAreRight) {
  AddFilesOfAllKinds(600);
  const Lines expected = TakeAll(0);
  for (int failAt = 1; failAt < 1000; failAt = failAt * 3 / 2 + 1) {
    FailingFileSystem files(failAt, FileError::DeviceError);
    FileCounter counter(
        files, "\xC3\xA9", Rows, [] {}, 3);
    const Lines lines = Take(counter, Rows.size());
    ASSERT_TRUE(lines.back().starts_with("error 57 ")) << failAt;
    ASSERT_TRUE(std::equal(lines.begin(), lines.end() - 1, expected.begin())) << failAt;
    ASSERT_EQ(lines.back(), "error 57 " + Rows[lines.size() - 1].Path);
  }
}

TEST_F(FileCounterTest, TicksWhileNothingComes) {
  FailingFileSystem files;
  std::atomic<bool> mayGoOn = false;
  files.OnCall = [&] {
    while (!mayGoOn) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  Add("a");
  while (Rows.size() < 50) AddAgain("a");
  int ticks = 0;
  FileCounter counter(
      files, "x", Rows,
      [&] {
        if (++ticks == 3) mayGoOn = true;
      },
      2);
  EXPECT_EQ(counter.Next(), 1);
  EXPECT_GE(ticks, 3);
}

TEST_F(FileCounterTest, EndsInTheMiddleOfALargeFile) {
  constexpr int Pieces = 1000;
  struct Enough {};
  Add("large");
  std::filesystem::resize_file(Rows[0].Path, Pieces * (std::uintmax_t{256} << 10));
  while (Rows.size() < 50) AddAgain("large");
  for (const std::size_t threads : {0, 2}) {
    FailingFileSystem files;
    std::atomic<bool> mayGoOn = threads == 0;
    files.OnCall = [&] {
      while (!mayGoOn && files.Calls() > 20) std::this_thread::yield();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    const auto taken = [&] {
      FileCounter(
          files, "x", Rows,
          [&] {
            mayGoOn = true;
            throw Enough();
          },
          threads)
          .Next();
    };
    EXPECT_THROW(taken(), Enough);
    EXPECT_LT(files.Calls(), Pieces) << threads;
  }
}

TEST_F(FileCounterTest, GoesInTheMiddleOfItsWork) {
  AddFilesOfAllKinds(1000);
  const Lines expected = TakeAll(0);
  for (const std::size_t taken : {0, 1, 10, 100, 500, 999}) {
    FileCounter counter(
        *Files, "\xC3\xA9", Rows, [] {}, 3);
    counter.LookAhead();
    const Lines lines = Take(counter, taken);
    EXPECT_TRUE(std::equal(lines.begin(), lines.end(), expected.begin())) << taken;
  }
}

}  // namespace
}  // namespace brackwell
