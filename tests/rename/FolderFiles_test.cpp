#include "rename/FolderFiles.h"

#include <gtest/gtest.h>

#include "support/ErrorNumber.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class FolderFilesTest : public testing::Test {
 protected:
  FolderFilesTest() {
    for (const char* name : {"b.jpg", "A.jpg", "c"}) mTree.File(std::string("folder/") + name);
    mTree.Folder("folder/sub");
    mTree.SetModified("folder", 0);
  }
  Names Read(const std::string& name = "folder") { return mFolder.Read(mTree.Path(name)); }
  /// How many calls that look at the disk one Read takes.
  int CallsOfRead(const std::string& name = "folder") {
    const int before = mFiles.Calls();
    Read(name);
    return mFiles.Calls() - before;
  }

  TempTree mTree;
  FailingFileSystem mFiles;
  FolderFiles mFolder{mFiles};
};

TEST_F(FolderFilesTest, AreTheFilesInTheOrderOfEveryListing) {
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "c"}));
}

TEST_F(FolderFilesTest, AreReadOnceWhereNothingChanges) {
  const int first = CallsOfRead();
  const int second = CallsOfRead();
  EXPECT_LT(second, first);
  EXPECT_EQ(CallsOfRead(), second);
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "c"}));
}

TEST_F(FolderFilesTest, AreReadAgainWhenTheFolderHasChanged) {
  Read();
  mTree.File("folder/new.jpg");
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "c", "new.jpg"}));
  mTree.Remove("folder/c");
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "new.jpg"}));
}

TEST_F(FolderFilesTest, AreReadAgainInAnotherFolder) {
  mTree.File("other/x");
  mTree.SetModified("other", 0);
  Read();
  EXPECT_EQ(Read("other"), Names{"x"});
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "c"}));
}

TEST_F(FolderFilesTest, AreReadAgainInAnotherFolderOfTheSameNameAndTime) {
  Read();
  mTree.Remove("folder");
  mTree.Folder("taken");  // so that the new one is not made where the old one was
  mTree.File("folder/x");
  mTree.SetModified("folder", 0);
  EXPECT_EQ(Read(), Names{"x"});
}

TEST_F(FolderFilesTest, AreReadAgainWhenForgotten) {
  const int first = CallsOfRead();
  mFolder.Forget();
  EXPECT_EQ(CallsOfRead(), first);
}

TEST_F(FolderFilesTest, OfAFolderThatCannotBeReachedRaise) {
  EXPECT_EQ(ErrorNumber([&] { Read("none"); }), 76);
  EXPECT_EQ(ErrorNumber([&] { Read("folder/c"); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mFolder.Read(""); }), 76);
  Read();
  mTree.Remove("folder");
  EXPECT_EQ(ErrorNumber([&] { Read(); }), 76);
}

TEST_F(FolderFilesTest, RaiseWhateverFailsAndKeepNothing) {
  const int calls = CallsOfRead();
  for (int failAt = 1; failAt <= calls; ++failAt) {
    FailingFileSystem failing(failAt, FileError::PermissionDenied);
    FolderFiles folder(failing);
    EXPECT_EQ(ErrorNumber([&] { folder.Read(mTree.Path("folder")); }), 70);
    EXPECT_EQ(ErrorNumber([&] { folder.Read(mTree.Path("folder")); }), 70);
  }
}

}  // namespace
}  // namespace brackwell
