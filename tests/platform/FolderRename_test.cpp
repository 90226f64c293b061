#include <gtest/gtest.h>

#include "platform/FileSystemObject.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// Renaming inside an open folder. The same tests run on all systems.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class FolderRename : public testing::Test {
 protected:
  int Rename(const std::string& name, const std::string& newName) {
    if (!mFolder) mFolder = mFiles->GetFolder(mTree.Path("folder"));
    return ErrorNumber([&] { mFolder->Rename(name, newName); });
  }
  void File(const std::string& name) { mTree.File("folder/" + name, name); }
  std::string Read(const std::string& name) { return mTree.Read("folder/" + name); }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
  std::unique_ptr<Folder> mFolder;
};

TEST_F(FolderRename, GivesAnotherName) {
  mTree.File("folder/a.jpg", "text", 30);
  EXPECT_EQ(Rename("a.jpg", "x1.JPG"), 0);
  EXPECT_EQ(mTree.List("folder"), Names{"x1.JPG"});
  EXPECT_EQ(Read("x1.JPG"), "text");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("folder/x1.JPG")).DateLastModified, TempTree::Time(30));
}

TEST_F(FolderRename, NeverOverwrites) {
  File("a.jpg");
  File("b.jpg");
  mTree.Folder("folder/sub");
  EXPECT_EQ(Rename("a.jpg", "b.jpg"), 58);
  EXPECT_EQ(Rename("a.jpg", "sub"), 58);
  EXPECT_EQ(Read("a.jpg"), "a.jpg");
  EXPECT_EQ(Read("b.jpg"), "b.jpg");
}

TEST_F(FolderRename, TakesANameInAnotherCaseForTaken) {
  File("a.jpg");
  File("X1.jpg");
  File("Ärger.jpg");
  mTree.Folder("folder/Sub");
  EXPECT_EQ(Rename("a.jpg", "x1.JPG"), 58);
  EXPECT_EQ(Rename("a.jpg", "äRGER.JPG"), 58);
  EXPECT_EQ(Rename("a.jpg", "SUB"), 58);
  EXPECT_EQ(mTree.List("folder"), (Names{"Sub/", "X1.jpg", "a.jpg", "Ärger.jpg"}));
}

TEST_F(FolderRename, KnowsTheNamesThatItGaveItself) {
  for (const char* name : {"a", "b", "c"}) File(name);
  EXPECT_EQ(Rename("a", "x"), 0);
  EXPECT_EQ(Rename("b", "X"), 58);
  EXPECT_EQ(Rename("x", "y"), 0);
  EXPECT_EQ(Rename("b", "X"), 0);
  EXPECT_EQ(Rename("c", "A"), 0);
  EXPECT_EQ(Rename("X", "a"), 58);
  EXPECT_EQ(mTree.List("folder"), (Names{"A", "X", "y"}));
  EXPECT_EQ(Read("X"), "b");
}

TEST_F(FolderRename, AFailedRenameTakesNoName) {
  File("a");
  File("b");
  EXPECT_EQ(Rename("none", "x"), 53);
  EXPECT_NE(Rename("none", "A"), 0);
  EXPECT_EQ(Rename("b", "x"), 0);
}

TEST_F(FolderRename, ToItsOwnNameChangesNothing) {
  File("a.jpg");
  EXPECT_EQ(Rename("a.jpg", "a.jpg"), 0);
  EXPECT_EQ(Read("a.jpg"), "a.jpg");
}

TEST_F(FolderRename, AFileMayChangeItsCase) {
  File("a.jpg");
  EXPECT_EQ(Rename("a.jpg", "A.JPG"), 0);
  EXPECT_EQ(mTree.List("folder"), Names{"A.JPG"});
  EXPECT_EQ(Rename("A.JPG", "a.Jpg"), 0);
  EXPECT_EQ(mTree.List("folder"), Names{"a.Jpg"});
}

TEST_F(FolderRename, TakesNoPath) {
  File("a");
  mTree.Folder("folder/sub");
  mTree.Folder("sub");
  for (const std::string name :
       {"", ".", "..", "../x", "sub/x", "..\\x", "sub\\x", "./x", "x/", "a:b", "x.", "x ", "nul"})
    EXPECT_EQ(Rename("a", name), 75) << name;
  EXPECT_EQ(Rename("a", mTree.Path("x")), 75);
  EXPECT_EQ(mTree.List(), (Names{"folder/", "folder/a", "folder/sub/", "sub/"}));
}

TEST_F(FolderRename, NamesMayBeTooLong) {
  File("a");
  EXPECT_NE(Rename("a", std::string(256, 'x')), 0);
  EXPECT_NE(Rename("a", std::string(5000, 'x')), 0);
  EXPECT_EQ(Rename("a", std::string(200, 'x')), 0);
  EXPECT_EQ(mTree.List("folder"), Names{std::string(200, 'x')});
}

TEST_F(FolderRename, AFolderThatIsGoneRenamesNothing) {
  File("a");
  mFolder = mFiles->GetFolder(mTree.Path("folder"));
  mFolder->Files();
  mTree.Remove("folder/a");
  mTree.Remove("folder");
  EXPECT_NE(Rename("a", "x"), 0);
  EXPECT_EQ(mTree.List(), Names{});
}

}  // namespace
}  // namespace brackwell
