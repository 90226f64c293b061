#include <gtest/gtest.h>

#include "platform/FileSystemObject.h"
#include "support/ErrorNumber.h"
#include "support/ExFatDisk_posix.h"
#include "support/TempTree.h"

// Copies onto a disk that ignores case and knows neither links nor renames that do not replace.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class ExFat : public testing::Test {
 protected:
  void SetUp() override {
    if (!mDisk.IsThere()) GTEST_SKIP() << "needs an administrator, loop devices, exfatprogs and exfat-fuse";
  }

  int Copy(const std::string& source, const std::string& target, bool overwrite = true) {
    return ErrorNumber([&] { mFiles->CopyFile(mTree.Path(source), mDisk.Path(target), overwrite); });
  }
  int CopyFolder(const std::string& source, const std::string& target) {
    return ErrorNumber([&] { mFiles->CopyFolder(mTree.Path(source), mDisk.Path(target), true); });
  }
  int Rename(const std::string& name, const std::string& newName) {
    return ErrorNumber([&] { mFiles->GetFolder(mDisk.Path())->Rename(name, newName); });
  }
  std::string Read(const std::string& name) { return mFiles->OpenTextFile(mDisk.Path(name))->ReadAll(); }
  Names List(const std::string& name = {}) {
    Names names;
    const auto folder = mFiles->GetFolder(mDisk.Path(name));
    for (const Member& member : folder->SubFolders()) names.push_back(std::string(member.Name) + "/");
    for (const Member& member : folder->Files()) names.emplace_back(member.Name);
    return names;
  }

  ExFatDisk mDisk;
  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

TEST_F(ExFat, TakesFilesNewOnesAndOverOldOnes) {
  mTree.File("source", "new", 30);
  EXPECT_EQ(Copy("source", "file", false), 0);
  EXPECT_EQ(Copy("source", "file", false), 58);
  mTree.File("source", "newer", 40);
  EXPECT_EQ(Copy("source", "file"), 0);
  EXPECT_EQ(Read("file"), "newer");
  EXPECT_EQ(mFiles->GetFile(mDisk.Path("file")).DateLastModified, TempTree::Time(40));
  mFiles->CopyAsNewFile(mTree.Path("source"), mDisk.Path("copy"));
  mFiles->CreateTextFile(mDisk.Path("report"), false)->Close();
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mDisk.Path("report"), false)->Close(); }), 58);
  EXPECT_EQ(List(), (Names{"copy", "file", "report"}));
}

TEST_F(ExFat, TellsThatItCannotHoldAName) {
  mTree.File("source", "text");
  mTree.Folder("folder");
  for (const std::string name : {"a:b?.txt", "a*", "\xff.txt"}) {
    EXPECT_EQ(Copy("source", name), 52) << name;
    EXPECT_EQ(Copy("source", name, false), 52) << name;
    EXPECT_EQ(ErrorNumber([&] { mFiles->CreateFolder(mDisk.Path(name)); }), 52) << name;
    EXPECT_EQ(CopyFolder("folder", name), 52) << name;
  }
  try {
    mFiles->CopyFile(mTree.Path("source"), mDisk.Path("a:b?.txt"), true);
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Description(), "The target's disk cannot hold this name");
  }
  EXPECT_EQ(Copy("source", "none/a:b?.txt"), 76);
  EXPECT_EQ(List(), Names{});
}

TEST_F(ExFat, OfTwoFilesThatDifferInCaseTheSecondIsAnError) {
  mTree.File("X.txt", "first");
  mTree.File("x.TXT", "second");
  mTree.File("y", "alone");
  EXPECT_EQ(Copy("X.txt", "X.txt"), 0);
  EXPECT_EQ(Copy("x.TXT", "x.TXT"), 58);
  EXPECT_EQ(Copy("X.txt", "X.txt"), 0);
  EXPECT_EQ(Copy("y", "Y"), 0);
  EXPECT_EQ(Copy("y", "y"), 0);
  EXPECT_EQ(List().size(), 2U);
  EXPECT_EQ(Read("X.txt"), "first");
  mTree.Remove("X.txt");
  EXPECT_EQ(Copy("x.TXT", "x.TXT"), 0);
  EXPECT_EQ(Read("X.txt"), "second");
}

TEST_F(ExFat, OfTwoFoldersThatDifferInCaseTheSecondIsAnError) {
  mTree.File("source/Sub/file", "first");
  mTree.File("source/sub/file", "second");
  mTree.File("source/sub/other", "second");
  mTree.File("source/z/X", "first");
  mTree.File("source/z/x", "second");
  EXPECT_EQ(CopyFolder("source", "target"), 58);
  EXPECT_EQ(List("target"), (Names{"Sub/", "z/"}));
  EXPECT_EQ(List("target/Sub"), Names{"file"});
  EXPECT_EQ(Read("target/Sub/file"), "first");
  EXPECT_EQ(Read("target/z/X"), "first");
  EXPECT_EQ(CopyFolder("source/sub", "target/sub"), 58);
  EXPECT_EQ(CopyFolder("source/Sub", "target/Sub"), 0);
  EXPECT_EQ(Read("target/Sub/file"), "first");
  mTree.Remove("source/Sub");
  EXPECT_EQ(CopyFolder("source/sub", "target/sub"), 0);
  EXPECT_EQ(Read("target/Sub/file"), "second");
}

TEST_F(ExFat, RenamesAndNeverOverwrites) {
  mTree.File("a", "a");
  mTree.File("b", "b");
  ASSERT_EQ(Copy("a", "a") + Copy("b", "b"), 0);
  EXPECT_EQ(Rename("a", "x"), 0);
  EXPECT_EQ(Rename("b", "x"), 58);
  EXPECT_EQ(Rename("b", "X"), 58);
  EXPECT_EQ(Rename("x", "X"), 0);
  EXPECT_EQ(List(), (Names{"b", "X"}));
  EXPECT_EQ(Read("X"), "a");
}

}  // namespace
}  // namespace brackwell
