#include "compare/CompareFixer.h"

#include <gtest/gtest.h>

#include "common/Text.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using Lines = std::vector<std::string>;

class CompareFixerTest : public testing::Test {
 protected:
  CompareFixerTest() {
    Tree.Folder("s");
    Tree.Folder("t");
    Options.SourceRoot = Tree.Root("s");
    Options.TargetRoot = Tree.Root("t");
  }

  CompareRow& Add(ResultKind kind, const std::string& name) {
    Rows.push_back(MakeRow(kind, name));
    return Rows.back();
  }

  std::size_t Fix() {
    Problems.clear();
    FixEvents events{
        .Fixing = [this](std::size_t row) { Fixing.push_back(Rows[row].Name); },
        .Problem =
            [this](std::size_t row, const FileSystemError& error) {
              Problems.push_back(Rows[row].Name + ": " + std::to_string(error.Number()) + " " +
                                 error.Description());
            },
        .Fixed = [this](std::size_t row) { Fixed.push_back(Rows[row].Name); },
        .Working = [this] { ++Ticks; },
    };
    return FixSelected(*Files, Options, Rows, events);
  }

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  FixOptions Options;
  CompareRows Rows;
  Lines Fixing, Problems, Fixed;
  int Ticks = 0;
};

TEST_F(CompareFixerTest, NothingTickedCopiesNothing) {
  Tree.File("s/a", "new");
  Add(ResultKind::SourceFileMissingInTarget, "a");
  Add(ResultKind::FileSame, "b");
  EXPECT_EQ(Fix(), 0u);
  EXPECT_EQ(Tree.List("t"), Lines{});
}

TEST_F(CompareFixerTest, FixSourceCopiesTheTargetOverTheSource) {
  Tree.File("s/sub/a", "source", 10);
  Tree.File("t/sub/a", "target", 20);
  ToggleFixSource(Add(ResultKind::TargetFileNewer, JoinPath("sub", "a")));
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Tree.Read("s/sub/a"), "target");
  EXPECT_EQ(Tree.Read("t/sub/a"), "target");
  EXPECT_EQ(Files->GetFile(Tree.Path("s/sub/a")).DateLastModified, TempTree::Time(20));
  EXPECT_EQ(ResultMessage(Rows[0]), "Target file is newer than source file (FIXED)");
  EXPECT_EQ(Fixed, Rows.size() == 1 ? Lines{Rows[0].Name} : Lines{});
  EXPECT_GT(Ticks, 0);
}

TEST_F(CompareFixerTest, FixTargetCopiesTheSourceOverTheTarget) {
  Tree.File("s/a", "source", 0);
  Tree.File("t/a", "target", 0);
  ToggleFixTarget(Add(ResultKind::SizesDiffer, "a"));
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Tree.Read("t/a"), "source");
}

TEST_F(CompareFixerTest, RowsOfTheTargetWalkNameTargetPaths) {
  Tree.File("t/a", "target");
  Tree.File("t/folder/b", "inside");
  ToggleFixSource(Add(ResultKind::TargetFileMissingInSource, "a"));
  ToggleFixSource(Add(ResultKind::TargetFolderMissingInSource, "folder"));
  EXPECT_EQ(Fix(), 2u);
  EXPECT_EQ(Tree.List("s"), (Lines{"a", "folder/", "folder/b"}));
  EXPECT_EQ(Fixing, (Lines{"a", "folder"}));
}

TEST_F(CompareFixerTest, FullPathsFindBothSides) {
  Options.ShowFullPath = true;
  Tree.File("s/a", "source");
  Tree.File("t/b", "target");
  ToggleFixTarget(Add(ResultKind::SourceFileMissingInTarget, Tree.Path("s/a")));
  ToggleFixSource(Add(ResultKind::TargetFileMissingInSource, Tree.Path("t/b")));
  EXPECT_EQ(Fix(), 2u);
  EXPECT_EQ(Problems, Lines{});
  EXPECT_EQ(Tree.Read("t/a"), "source");
  EXPECT_EQ(Tree.Read("s/b"), "target");
}

TEST_F(CompareFixerTest, ARootThatRecursInAPathIsReplacedAtItsFrontOnly) {
  FixOptions options{.SourceRoot = "/", .TargetRoot = "/copy/"};
  const FixPaths paths = PathsOf(MakeRow(ResultKind::SourceFileMissingInTarget, "a/b/c"), options);
  EXPECT_EQ(paths.Source, "/a/b/c");
  EXPECT_EQ(paths.Target, "/copy/a/b/c");
}

TEST_F(CompareFixerTest, RootsChangedSinceTheComparisonAreTheOnesUsed) {
  Tree.File("s/a", "source");
  Tree.Folder("elsewhere");
  Options.TargetRoot = Tree.Root("elsewhere");
  ToggleFixTarget(Add(ResultKind::SourceFileMissingInTarget, "a"));
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Tree.List("t"), Lines{});
  EXPECT_EQ(Tree.Read("elsewhere/a"), "source");
}

TEST_F(CompareFixerTest, AFolderIsMergedAndNothingIsDeleted) {
  Tree.File("s/folder/a", "new");
  Tree.File("s/folder/deep/b", "new");
  Tree.File("t/folder/a", "old");
  Tree.File("t/folder/only-target", "kept");
  ToggleFixTarget(Add(ResultKind::SourceFolderMissingInTarget, "folder"));
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Tree.List("t"),
            (Lines{"folder/", "folder/a", "folder/deep/", "folder/deep/b", "folder/only-target"}));
  EXPECT_EQ(Tree.Read("t/folder/a"), "new");
  EXPECT_EQ(Tree.Read("t/folder/only-target"), "kept");
}

TEST_F(CompareFixerTest, AProblemIsToldAndTheRestIsDone) {
  Tree.File("s/b", "source");
  ToggleFixTarget(Add(ResultKind::SourceFileMissingInTarget, "gone"));
  ToggleFixTarget(Add(ResultKind::SourceFileMissingInTarget, "b"));
  EXPECT_EQ(Fix(), 2u);
  EXPECT_EQ(Problems, Lines{"gone: 53 File not found"});
  EXPECT_EQ(Tree.List("t"), Lines{"b"});
  EXPECT_EQ(ResultMessage(Rows[0]), "Source file was not found in target folder");
  EXPECT_EQ(Rows[0].FixTarget, FixBox::On);
  EXPECT_EQ(ResultMessage(Rows[1]), "Source file was not found in target folder (FIXED)");
}

TEST_F(CompareFixerTest, AFolderCopiedIntoItselfIsAProblemOfTheRow) {
  Tree.File("s/folder/a", "x");
  Options.TargetRoot = Tree.Root("s/folder");
  ToggleFixTarget(Add(ResultKind::SourceFolderMissingInTarget, "folder"));
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Problems, Lines{"folder: 75 Path/File access error"});
  EXPECT_EQ(Tree.List("s"), (Lines{"folder/", "folder/a"}));
}

TEST_F(CompareFixerTest, AnUnchangedPathIsNotCopiedOntoItself) {
  Options.ShowFullPath = true;
  Tree.File("s/a", "source");
  ToggleFixTarget(Add(ResultKind::SizesDiffer, Tree.Path("s/a")));
  Options.SourceRoot = Tree.Root("elsewhere");
  EXPECT_EQ(Fix(), 1u);
  EXPECT_EQ(Problems.size(), 1u);
  EXPECT_EQ(Tree.Read("s/a"), "source");
}

TEST_F(CompareFixerTest, AFailedDirectionKeepsTheRowUnfixedThoughTheOtherSucceeds) {
  Tree.File("s/a", "source");
  CompareRow& row = Add(ResultKind::SizesDiffer, "a");
  row.FixSource = row.FixTarget = FixBox::On;  // the target is missing: the first direction fails
  EXPECT_EQ(Fix(), 2u);
  EXPECT_EQ(Problems, Lines{"a: 53 File not found"});
  EXPECT_EQ(Tree.Read("t/a"), "source");
  EXPECT_FALSE(Rows[0].IsFixed);
}

TEST_F(CompareFixerTest, AFullDiskAtAnyMomentLosesNothing) {
  const std::string big(3 << 20, 'n');
  for (int failAt = 1;; ++failAt) {
    Tree.File("s/a", big, 20);
    Tree.File("t/a", "old", 10);
    Rows.clear();
    ToggleFixTarget(Add(ResultKind::SourceFileNewer, "a"));
    Files = std::make_unique<FailingFileSystem>(failAt, FileError::DiskFull);
    Fix();
    EXPECT_EQ(Tree.List("t"), Lines{"a"}) << failAt;
    if (Problems.empty()) {
      EXPECT_EQ(Tree.Read("t/a"), big);
      EXPECT_GT(failAt, 2);
      break;
    }
    EXPECT_EQ(Problems, Lines{"a: 61 Disk full"});
    EXPECT_EQ(Tree.Read("t/a"), "old") << failAt;
    EXPECT_FALSE(Rows[0].IsFixed);
  }
}

}  // namespace
}  // namespace brackwell
