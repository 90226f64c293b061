#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/FileSystemObject.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What a copy onto a file leaves alone, and sources that change meanwhile. The same tests run on all systems.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class FileCopies : public testing::Test {
 protected:
  int Copy(const std::string& source, const std::string& target, const Tick& tick = {}) {
    return ErrorNumber([&] { mFiles->CopyFile(mTree.Path(source), mTree.Path(target), true, tick); });
  }
  void HardLink(const std::string& name, const std::string& newName) {
    std::filesystem::create_hard_link(mTree.Path(name), mTree.Path(newName));
  }
  /// As a program that writes to it all the time: where nobody does, nobody can while it is copied on
  /// Windows.
  std::ofstream OpenForWriting(const std::string& name) {
    return std::ofstream(mTree.Path(name), std::ios::app);
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

TEST_F(FileCopies, OntoAFileChangeItsContentAndTime) {
  mTree.File("source", "new", 30);
  mTree.File("target", "old content", 10);
  EXPECT_EQ(Copy("source", "target"), 0);
  EXPECT_EQ(mTree.Read("target"), "new");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("target")).DateLastModified, TempTree::Time(30));
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_F(FileCopies, OntoAFileReachAllItsNames) {
  mTree.File("source", "new", 30);
  mTree.File("target", "old content", 10);
  HardLink("target", "other name");
  EXPECT_EQ(Copy("source", "target"), 0);
  EXPECT_EQ(mTree.Read("other name"), "new");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("other name")).DateLastModified, TempTree::Time(30));
  EXPECT_EQ(mTree.List(), (Names{"other name", "source", "target"}));
}

TEST_F(FileCopies, OfTheRenamersReachNoOtherName) {
  mTree.File("source", "new", 30);
  mTree.File("copy", "original");
  HardLink("copy", "original");
  mFiles->CopyAsNewFile(mTree.Path("source"), mTree.Path("copy"));
  EXPECT_EQ(mTree.Read("copy"), "new");
  EXPECT_EQ(mTree.Read("original"), "original");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("copy")).DateLastModified, TempTree::Time(30));
}

TEST_F(FileCopies, RefuseReadOnlyFilesAndTheSourceItself) {
  mTree.File("source", "new");
  mTree.File("read-only", "kept");
  HardLink("source", "other name");
  mTree.SetReadOnly("read-only");
  EXPECT_EQ(Copy("source", "read-only"), 70);
  EXPECT_EQ(Copy("source", "source"), 70);
  EXPECT_EQ(Copy("source", "other name"), 70);
  EXPECT_EQ(mTree.Read("read-only"), "kept");
  EXPECT_EQ(mTree.Read("source"), "new");
}

TEST_F(FileCopies, AreMadeOnceMoreWhereTheSourceHasChanged) {
  mTree.File("source", "first");
  const std::ofstream writer = OpenForWriting("source");
  bool isFirst = true;
  const auto changeOnce = [&] {
    if (isFirst) mTree.File("source", "first and second");
    isFirst = false;
  };
  EXPECT_EQ(Copy("source", "target", changeOnce), 0);
  EXPECT_EQ(mTree.Read("target"), "first and second");
}

TEST_F(FileCopies, OfASourceThatGoesOnChangingAreNone) {
  mTree.File("source", "text");
  mTree.File("target", "old");
  const std::ofstream writer = OpenForWriting("source");
  std::string content = "text";
  const auto change = [&] { mTree.File("source", content += " and more"); };
  try {
    mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true, change);
    ADD_FAILURE() << "copied";
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Number(), 75);
    EXPECT_EQ(error.Description(), "The file keeps changing while it is copied");
    EXPECT_EQ(error.Path(), mTree.Path("source"));
  }
  EXPECT_EQ(Copy("source", "new", change), 75);
  EXPECT_EQ(mTree.Read("target"), "old");
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

}  // namespace
}  // namespace brackwell
