#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"
#include "support/WithoutPrivileges_posix.h"

// Renaming inside an open folder, where names are bytes and case counts.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class FolderRenameOnPosix : public testing::Test {
 protected:
  FolderRenameOnPosix() { mTree.Folder("folder"); }

  int Rename(const std::string& name, const std::string& newName) {
    if (!mFolder) mFolder = mFiles->GetFolder(mTree.Path("folder"));
    return ErrorNumber([&] { mFolder->Rename(name, newName); });
  }
  void File(const std::string& name) { mTree.File("folder/" + name, name); }
  std::string Read(const std::string& name) { return mTree.Read("folder/" + name); }

  /// From here on this process finds no file system that can rename without replacing, as on network drives.
  static void ForbidSafeRenames() { RefuseCall(SYS_renameat2, 4, RENAME_NOREPLACE, EINVAL); }
  /// The same without second names of a file, as on exFAT in user space.
  static void ForbidSafeRenamesAndLinks() {
    ForbidSafeRenames();
    RefuseCall(SYS_linkat, 4, 0, EPERM);
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
  std::unique_ptr<Folder> mFolder;
};

TEST_F(FolderRenameOnPosix, NamesMayBeAnyBytes) {
  File("\xff.jpg");
  EXPECT_EQ(Rename("\xff.jpg", "\xfe.jpg"), 0);
  EXPECT_EQ(mTree.List("folder"), Names{"\xfe.jpg"});
}

TEST_F(FolderRenameOnPosix, OneOfTwoThatDifferInCaseCannotBecomeAThird) {
  File("a.jpg");
  File("A.jpg");
  EXPECT_EQ(Rename("a.jpg", "A.JPG"), 58);
  EXPECT_EQ(Rename("a.jpg", "b.jpg"), 0);
  EXPECT_EQ(Rename("b.jpg", "a.JPG"), 58);
  EXPECT_EQ(Rename("A.jpg", "A.JPG"), 0);
  EXPECT_EQ(mTree.List("folder"), (Names{"A.JPG", "b.jpg"}));
}

TEST_F(FolderRenameOnPosix, WhatOthersMadeMeanwhileIsNotOverwritten) {
  File("a");
  File("b");
  EXPECT_EQ(Rename("b", "c"), 0);
  File("x");
  File("A");
  EXPECT_EQ(Rename("a", "x"), 58);
  EXPECT_EQ(Rename("a", "A"), 58);
  EXPECT_EQ(Read("x"), "x");
  EXPECT_EQ(Read("A"), "A");
}

TEST_F(FolderRenameOnPosix, TwoNamesOfOneFileBothStay) {
  File("a");
  File("b");
  EXPECT_EQ(Rename("b", "c"), 0);
  ASSERT_EQ(link(mTree.Path("folder/a").c_str(), mTree.Path("folder/A").c_str()), 0);
  Rename("a", "A");
  EXPECT_EQ(Read("A"), "a");
}

TEST_F(FolderRenameOnPosix, LinksPipesAndFilesWithoutRightsAreRenamedUnopened) {
  ASSERT_EQ(symlink("nowhere", mTree.Path("folder/link").c_str()), 0);
  ASSERT_EQ(mkfifo(mTree.Path("folder/pipe").c_str(), 0666), 0);
  File("closed");
  ASSERT_EQ(chmod(mTree.Path("folder/closed").c_str(), 0), 0);
  for (const char* name : {"link", "pipe", "closed"}) EXPECT_EQ(Rename(name, name + std::string("2")), 0);
  EXPECT_EQ(mTree.List("folder"), (Names{"closed2", "link2", "pipe2"}));
}

TEST_F(FolderRenameOnPosix, AReadOnlyFolderKeepsItsNames) {
  const WithoutPrivileges asAnyUser;
  File("a");
  ASSERT_EQ(chmod(mTree.Path("folder").c_str(), 0555), 0);
  EXPECT_EQ(Rename("a", "x"), 70);
  EXPECT_EQ(Read("a"), "a");
}

TEST_F(FolderRenameOnPosix, TheFolderMayBeMovedMeanwhile) {
  File("a");
  File("b");
  EXPECT_EQ(Rename("a", "x"), 0);
  ASSERT_EQ(rename(mTree.Path("folder").c_str(), mTree.Path("moved").c_str()), 0);
  mTree.File("folder/b", "another");
  EXPECT_EQ(Rename("b", "y"), 0);
  EXPECT_EQ(mTree.Read("moved/y"), "b");
  EXPECT_EQ(Read("b"), "another");
}

TEST_F(FolderRenameOnPosix, NeedsNoFileSystemThatKnowsAboutNotReplacing) {
  File("a");
  File("b");
  ASSERT_EQ(symlink("nowhere", mTree.Path("folder/link").c_str()), 0);
  ASSERT_EQ(InChild([&] {
              ForbidSafeRenames();
              return Rename("a", "x") + Rename("link", "LINK") + Rename("b", "B") +
                     (Rename("B", "x") == 58 ? 0 : 1);
            }),
            0);
  EXPECT_EQ(mTree.List("folder"), (Names{"B", "LINK", "x"}));
  EXPECT_EQ(Read("x"), "a");
  EXPECT_EQ(Read("B"), "b");
}

TEST_F(FolderRenameOnPosix, WithoutThatItDoesNotOverwriteEither) {
  File("a");
  File("b");
  EXPECT_EQ(InChild([&] {
              ForbidSafeRenames();
              Rename("b", "c");
              File("x");
              return Rename("a", "x");
            }),
            58);
  EXPECT_EQ(mTree.List("folder"), (Names{"a", "c", "x"}));
  EXPECT_EQ(Read("x"), "x");
}

TEST_F(FolderRenameOnPosix, NeedsNoSecondNamesEither) {
  File("a");
  File("b");
  ASSERT_EQ(symlink("nowhere", mTree.Path("folder/link").c_str()), 0);
  ASSERT_EQ(InChild([&] {
              ForbidSafeRenamesAndLinks();
              return Rename("a", "x") + Rename("link", "LINK") + Rename("b", "B");
            }),
            0);
  EXPECT_EQ(mTree.List("folder"), (Names{"B", "LINK", "x"}));
  EXPECT_EQ(Read("x"), "a");
  EXPECT_EQ(Read("B"), "b");
}

TEST_F(FolderRenameOnPosix, WithoutBothItDoesNotOverwriteWhatIsThere) {
  File("a");
  File("b");
  const auto rename = [&] {
    ForbidSafeRenamesAndLinks();
    Rename("b", "c");
    File("x");
    if (symlink("nowhere", mTree.Path("folder/link").c_str()) != 0) return 255;
    return Rename("a", "link") == 58 ? Rename("a", "x") : 255;
  };
  EXPECT_EQ(InChild(rename), 58);
  EXPECT_EQ(mTree.List("folder"), (Names{"a", "c", "link", "x"}));
  EXPECT_EQ(Read("x"), "x");
}

}  // namespace
}  // namespace brackwell
