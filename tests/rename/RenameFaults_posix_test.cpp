#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "rename/RenamedFolder.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/FullDisk_posix.h"
#include "support/WithoutPrivileges_posix.h"

// Renaming where the disk does not play along, and names that only POSIX has.

namespace brackwell {
namespace {

class RenameFaults : public testing::Test, protected RenamedFolder {
 protected:
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(Tree.Path(name).c_str(), mode), 0); }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), Tree.Path(name).c_str()), 0);
  }
};

TEST_F(RenameFaults, NamesThatAreNoTextAreRenamedAndCopied) {
  Files({"\xff\xfe.jpg", "b.\xff"});
  Rename(List(), "y", "1", true);
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), (Lines{"Renamed Files/y1.\xff: b.\xff", "Renamed Files/y2.JPG: \xff\xfe.jpg",
                            "x1.\xff: b.\xff", "x2.JPG: \xff\xfe.jpg"}));
}

TEST_F(RenameFaults, NamesWithALineBreakAreRenamed) {
  Files({"a\nb.jpg", "c.j\npg"});
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), (Lines{"c.j\npg: c.j\npg", "x1.JPG: a\nb.jpg"}));
}

TEST_F(RenameFaults, AnExtensionThatEndsInABlankLeavesTheFile) {
  File("a.jp ");
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), Lines{"a.jp : a.jp "});
}

TEST_F(RenameFaults, TwinsInOtherCaseAreNumberedOneAfterTheOther) {
  Files({"a.jpg", "A.jpg", "A.JPG"});
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), (Lines{"x1.JPG: A.JPG", "x2.JPG: A.jpg", "x3.JPG: a.jpg"}));
}

TEST_F(RenameFaults, AReadOnlyFolderIsLeftAsItIs) {
  const WithoutPrivileges asAnyUser;
  Files({"a.jpg", "b.jpg"});
  const WorkList list = List();
  Mode("images", 0555);
  EXPECT_TRUE(Rename(list, "x", "1"));
  EXPECT_TRUE(Rename(list, "x", "1", true));
  EXPECT_EQ(Found(), (Lines{"a.jpg: a.jpg", "b.jpg: b.jpg"}));
}

TEST_F(RenameFaults, AnUnreadableFolderCannotBeListed) {
  const WithoutPrivileges asAnyUser;
  File("a.jpg");
  const WorkList list = List();
  Mode("images", 0);
  EXPECT_EQ(ErrorNumber([&] { List(); }), 70);
  EXPECT_TRUE(Rename(list, "x", "1"));
  Mode("images", 0777);
  EXPECT_EQ(Found(), Lines{"a.jpg: a.jpg"});
}

TEST_F(RenameFaults, WhatCannotBeReadIsNotCopiedAndTheRestIs) {
  const WithoutPrivileges asAnyUser;
  Files({"a.jpg", "b.jpg", "c.jpg"});
  Mode("images/b.jpg", 0);
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Tree.List("images/Renamed Files"), (Lines{"x1.JPG", "x3.JPG"}));
}

TEST_F(RenameFaults, AFullDiskLeavesOldCopiesWhole) {
  Files({"a.jpg", "b.jpg"});
  Tree.File("images/Renamed Files/x1.JPG", "old copy");
  const FullDisk full;
  EXPECT_TRUE(Rename(List(), "x", "1", true));
  EXPECT_EQ(Found(), (Lines{"Renamed Files/x1.JPG: old copy", "a.jpg: a.jpg", "b.jpg: b.jpg"}));
}

TEST_F(RenameFaults, ASubFolderThatLeadsBackGetsNoCopies) {
  Files({"a.jpg", "x1.JPG"});
  Link(".", "images/Renamed Files");
  EXPECT_TRUE(Rename(List({.Extensions = {"JPG"}, .OtherExtensions = {}}), "x", "1", true));
  EXPECT_EQ(Found(), (Lines{"Renamed Files: ", "a.jpg: a.jpg", "x1.JPG: x1.JPG"}));
}

TEST_F(RenameFaults, ACopyThatLeadsToAnOriginalDoesNotReplaceIt) {
  Files({"a.jpg", "b.jpg", "c.jpg"});
  Tree.Folder("images/Renamed Files");
  Link("../b.jpg", "images/Renamed Files/x1.JPG");
  Link("nowhere", "images/Renamed Files/x2.JPG");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Tree.Read("images/b.jpg"), "b.jpg");
  EXPECT_EQ(Tree.List("images/Renamed Files"), (Lines{"x1.JPG", "x2.JPG", "x3.JPG"}));
  EXPECT_EQ(Tree.Read("images/Renamed Files/x3.JPG"), "c.jpg");
}

TEST_F(RenameFaults, ASubFolderElsewhereGetsNoCopies) {
  File("a.jpg");
  Tree.Folder("elsewhere");
  Link("../elsewhere", "images/Renamed Files");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Found("elsewhere"), Lines{});
}

TEST_F(RenameFaults, ALinkIsRenamedAndCopiedAsThePictureThatItLeadsTo) {
  Tree.File("elsewhere/real.jpg", "picture", 50);
  Link("../elsewhere/real.jpg", "images/a.jpg");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Found("images/Renamed Files"), Lines{"x1.JPG: picture"});
  EXPECT_FALSE(std::filesystem::is_symlink(Tree.Path("images/Renamed Files/x1.JPG")));
  Rename(List(), "y", "1");
  EXPECT_TRUE(std::filesystem::is_symlink(Tree.Path("images/y1.JPG")));
  EXPECT_EQ(Tree.List("elsewhere"), Lines{"real.jpg"});
}

TEST_F(RenameFaults, LinksAndPipesAreRenamedAndPipesAreNotCopied) {
  Link("nowhere", "images/a.jpg");
  ASSERT_EQ(mkfifo(Tree.Path("images/b.jpg").c_str(), 0666), 0);
  File("c.jpg");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Tree.List("images/Renamed Files"), Lines{"x3.JPG"});
  Tree.Remove("images/Renamed Files");
  Rename(List(), "x", "1");
  EXPECT_EQ(Tree.List("images"), (Lines{"x1.JPG", "x2.JPG", "x3.JPG"}));
}

TEST_F(RenameFaults, AKilledRunLosesNothing) {
  for (int file = 0; file < 40; ++file) File("a" + std::to_string(file) + ".jpg");
  for (const int events : {1, 5, 20}) {
    EXPECT_EQ(InChild([&] {
                Events.OnEvents = [&] {
                  if (Events.Events == events) raise(SIGKILL);
                };
                Rename(List(), "x" + std::to_string(events) + "-", "01");
                return 0;
              }),
              -1);
    Lines contents;
    for (const std::string& name : Tree.List("images")) contents.push_back(Tree.Read("images/" + name));
    std::ranges::sort(contents);
    EXPECT_EQ(contents.size(), 40u);
    EXPECT_EQ(std::ranges::unique(contents).size(), 0u);
  }
}

TEST_F(RenameFaults, APathOfAnyLengthIsGoodEnough) {
  std::string path = Tree.Path("images");
  for (int level = 0; level < 30; ++level) {
    path += "/" + std::string(200, 'd');
    FileSystem.CreateFolder(path);
  }
  const auto writer = FileSystem.CreateTextFile(JoinPath(path, "a.jpg"), false);
  writer->Write("text");
  writer->Close();
  WorkList list =
      ListFiles(FolderFiles(FileSystem).Read(path), {.Extensions = {"JPG"}, .OtherExtensions = {}});
  const Naming naming = ReadNaming("x", "1").value();
  AssignNewNames(list, naming);
  for (const bool preserve : {true, false})
    EXPECT_TRUE(RenameFiles(FileSystem,
                            {.Folder = path, .Preserve = preserve, .Names = naming, .Items = list}, Events));
  EXPECT_TRUE(FileSystem.FileExists(JoinPath(path, "x1.JPG")));
  EXPECT_TRUE(FileSystem.FileExists(JoinPath(JoinPath(path, RenamedFilesFolder), "x1.JPG")));
}

}  // namespace
}  // namespace brackwell
