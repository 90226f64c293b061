#include "rename/FolderFiles.h"

#include <gtest/gtest.h>

#include "support/ErrorNumber.h"
#include "support/FailingFileSystem.h"
#include "support/LetTimePass.h"
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
    const FolderState state = mFiles.GetFolder(mTree.Path("folder"))->State();
    mNow = state.LastChanged + std::chrono::hours(1);
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
  DateTime mNow;  // when the folder has been the same for a while, unless a test says otherwise
  FolderFiles mFolder{mFiles, [this] { return mNow; }};
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
  LetTimePass();
  mTree.Remove("folder/c");
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "new.jpg"}));
}

TEST_F(FolderFilesTest, AreReadAgainWhereTheModificationTimeWasPutBack) {
  Read();
  LetTimePass();
  mTree.File("folder/new.jpg");
  mTree.SetModified("folder", 0);
  EXPECT_EQ(Read(), (Names{"A.jpg", "b.jpg", "c", "new.jpg"}));
}

TEST_F(FolderFilesTest, AreReadAgainWhereTheFolderHadChangedJustBefore) {
  mNow -= std::chrono::hours(1);
  const int first = CallsOfRead();
  EXPECT_EQ(CallsOfRead(), first);
  mNow += std::chrono::hours(1);
  EXPECT_EQ(CallsOfRead(), first);
  EXPECT_LT(CallsOfRead(), first);
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
  LetTimePass();
  mTree.Remove("folder");
  mTree.File("folder/x");  // some file systems put the new folder where the old one was
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
