#include "rename/RenamedFolder.h"
#include "support/DriveRoot_windows.h"
#include "support/ErrorNumber.h"
#include "support/LockedFile_windows.h"
#include "support/LongPaths_windows.h"

// Renaming on what Windows alone has: drives, files that are kept locked, paths beyond the old limit.

namespace brackwell {
namespace {

class RenameOnWindows : public testing::Test, protected RenamedFolder {
 protected:
  /// Numbers and renames what `folder` has of JPG files, wherever it is.
  bool RenameIn(const std::string& folder, bool preserve) {
    WorkList list =
        ListFiles(FolderFiles(FileSystem).Read(folder), {.Extensions = {"JPG"}, .OtherExtensions = {}});
    const Naming naming = ReadNaming("x", "1").value();
    AssignNewNames(list, naming);
    return RenameFiles(FileSystem,
                       {.Folder = folder, .Preserve = preserve, .Names = naming, .Items = std::move(list)},
                       Events);
  }

  Lines NamesIn(const std::string& folder) const {
    Lines names;
    const auto listing = FileSystem.GetFolder(folder);
    for (const Member& file : listing->Files()) names.emplace_back(file.Name);
    return names;
  }
};

TEST_F(RenameOnWindows, FilesInTheRootOfADriveAreRenamedAndCopied) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  DriveRoot drive('H');
  drive.File("a.jpg", "a");
  drive.File("b.jpg", "b");
  EXPECT_TRUE(RenameIn(drive.Path(), true));
  EXPECT_EQ(drive.List(),
            (Lines{"Renamed Files/", "Renamed Files/x1.JPG", "Renamed Files/x2.JPG", "a.jpg", "b.jpg"}));
  EXPECT_TRUE(RenameIn(drive.Path(), false));
  EXPECT_EQ(drive.List(),
            (Lines{"Renamed Files/", "Renamed Files/x1.JPG", "Renamed Files/x2.JPG", "x1.JPG", "x2.JPG"}));
  EXPECT_EQ(drive.Read("x1.JPG") + drive.Read("x2.JPG") + drive.Read("Renamed Files/x2.JPG"), "abb");
}

TEST_F(RenameOnWindows, ADriveWithoutAMediumCannotBeListed) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  for (const char* root : {"B:\\", "E:\\"}) EXPECT_NE(ErrorNumber([&] { RenameIn(root, false); }), 0);
}

TEST_F(RenameOnWindows, ALockedFileKeepsItsNameAndTheRestAreRenamed) {
  Files({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
  {
    const LockedFile alone(Tree.Path("images/b.jpg"), 0);
    const LockedFile read(Tree.Path("images/c.jpg"), FILE_SHARE_READ);
    ASSERT_TRUE(alone.IsOpen() && read.IsOpen());
    EXPECT_TRUE(Rename(List(), "x", "1"));
  }
  EXPECT_EQ(Found(), (Lines{"b.jpg: b.jpg", "c.jpg: c.jpg", "x1.JPG: a.jpg", "x4.JPG: d.jpg"}));
}

TEST_F(RenameOnWindows, ALockedFileIsNotCopiedAndOneThatIsReadIs) {
  Files({"a.jpg", "b.jpg", "c.jpg"});
  const LockedFile alone(Tree.Path("images/a.jpg"), 0);
  const LockedFile read(Tree.Path("images/b.jpg"), FILE_SHARE_READ);
  ASSERT_TRUE(alone.IsOpen() && read.IsOpen());
  EXPECT_TRUE(Rename(List(), "x", "1", true));
  EXPECT_EQ(Tree.List("images/Renamed Files"), (Lines{"x2.JPG", "x3.JPG"}));
}

TEST_F(RenameOnWindows, ALockedCopyFromBeforeIsLeftWhole) {
  Files({"a.jpg", "b.jpg"});
  Tree.File("images/Renamed Files/x1.JPG", "old copy");
  {
    const LockedFile locked(Tree.Path("images/Renamed Files/x1.JPG"), 0);
    ASSERT_TRUE(locked.IsOpen());
    EXPECT_TRUE(Rename(List(), "x", "1", true));
  }
  EXPECT_EQ(Found(), (Lines{"Renamed Files/x1.JPG: old copy", "Renamed Files/x2.JPG: b.jpg", "a.jpg: a.jpg",
                            "b.jpg: b.jpg"}));
}

TEST_F(RenameOnWindows, PathsBeyondTheOldLimitAreRenamedAndCopied) {
  const std::string folder = MakeFolders(FileSystem, Tree.Path("images"), LongFolder);
  for (const std::string& name : {std::string("a.jpg"), std::string(251, 'n') + ".jpg"})
    FileSystem.CreateTextFile(JoinPath(folder, name), false)->Close();
  EXPECT_TRUE(RenameIn(folder, true));
  EXPECT_EQ(NamesIn(JoinPath(folder, "Renamed Files")), (Lines{"x1.JPG", "x2.JPG"}));
  EXPECT_TRUE(RenameIn(folder, false));
  EXPECT_EQ(NamesIn(folder), (Lines{"x1.JPG", "x2.JPG"}));
  RemoveTree(FileSystem, Tree.Path("images"));
}

}  // namespace
}  // namespace brackwell
