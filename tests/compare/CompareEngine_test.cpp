#include "compare/CompareEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "common/Progress.h"
#include "common/Text.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using Lines = std::vector<std::string>;

class TestProgress final : public Progress {
 public:
  void Message(std::string_view text) override { Messages.emplace_back(text); }
  void DoEvents() override {
    ++Events;
    if (OnEvents) OnEvents();
  }
  bool Stopped() const override { return Stop; }

  Lines Messages;
  int Events = 0;
  bool Stop = false;
  std::function<void()> OnEvents;
};

class CompareEngineTest : public testing::Test {
 protected:
  CompareEngineTest() {
    Tree.Folder("s");
    Tree.Folder("t");
    Options.SourceRoot = Tree.Root("s");
    Options.TargetRoot = Tree.Root("t");
  }

  /// The rows as found; sorted ones by Compare.
  Lines Walk() {
    mRows.clear();
    CompareEngine engine(*Files, Options, Watch, [this](CompareRow row) { mRows.push_back(std::move(row)); });
    Finished = engine.RunComparison();
    return Shown();
  }

  Lines Compare() {
    Walk();
    SortByName(mRows);
    return Shown();
  }

  /// "icon result-icon name: message"
  Lines Shown() const {
    Lines lines;
    for (const CompareRow& row : mRows) {
      std::string name = row.Name;
      std::ranges::replace(name, PathSeparator, '/');
      const std::string message = ResultMessage(row);
      lines.push_back(std::string(IsFile(row.Kind) ? "- " : "d ") + name +
                      (message.empty() ? "" : ": " + message));
    }
    return lines;
  }

  void Both(const std::string& name, const std::string& content = "same") {
    Tree.File("s/" + name, content, 0);
    Tree.File("t/" + name, content, 0);
  }

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  CompareOptions Options;
  TestProgress Watch;
  bool Finished = false;

 private:
  CompareRows mRows;
};

const std::string NotInTarget = ": Source file was not found in target folder";
const std::string NotInSource = ": Target file was not found in source folder";
const std::string SourceNewer = ": Source file is newer than target file";
const std::string TargetNewer = ": Target file is newer than source file";
const std::string SizesDiffer = ": Source and target files are different size";
const std::string FolderNotInTarget = ": Sub-folder was not found in target folder";
const std::string FolderNotInSource = ": Sub-folder was not found in source folder";

TEST_F(CompareEngineTest, EmptyFoldersGiveNoRow) {
  EXPECT_EQ(Compare(), Lines{});
  EXPECT_TRUE(Finished);
}

TEST_F(CompareEngineTest, IdenticalTreesAreListedOnce) {
  Both("a.txt");
  Both("sub/b.txt");
  Both("sub/deep/c.txt");
  EXPECT_EQ(Compare(), (Lines{"- a.txt", "d sub", "- sub/b.txt", "d sub/deep", "- sub/deep/c.txt"}));
}

TEST_F(CompareEngineTest, EveryKindOfDifferenceHasItsRow) {
  Tree.File("s/only-source", "x");
  Tree.File("t/only-target", "x");
  Tree.File("s/newer", "x", 10);
  Tree.File("t/newer", "x", 0);
  Tree.File("s/older", "x", 0);
  Tree.File("t/older", "x", 10);
  Tree.File("s/size", "x", 0);
  Tree.File("t/size", "xx", 0);
  Both("same");
  Tree.Folder("s/source-folder");
  Tree.Folder("t/target-folder");
  EXPECT_EQ(Compare(), (Lines{"- newer" + SourceNewer, "- older" + TargetNewer, "- only-source" + NotInTarget,
                              "- only-target" + NotInSource, "- same", "- size" + SizesDiffer,
                              "d source-folder" + FolderNotInTarget, "d target-folder" + FolderNotInSource}));
}

TEST_F(CompareEngineTest, TheTargetWalkComesLastAndTheSortPutsItInPlace) {
  Tree.File("s/a.txt");
  Tree.File("s/c.txt");
  Tree.File("t/b.txt");
  Tree.File("t/c.txt");
  Tree.SetModified("s/c.txt", 0);
  Tree.SetModified("t/c.txt", 0);
  EXPECT_EQ(Walk(), (Lines{"- a.txt" + NotInTarget, "- c.txt", "- b.txt" + NotInSource}));
  EXPECT_EQ(Compare(), (Lines{"- a.txt" + NotInTarget, "- b.txt" + NotInSource, "- c.txt"}));
}

TEST_F(CompareEngineTest, EachWalkIsDepthFirstFilesBeforeFolders) {
  Both("a/one");
  Both("z");
  Tree.File("t/a/deep/two");
  Tree.Folder("s/a/deep");
  Tree.File("t/b");
  EXPECT_EQ(Walk(),
            (Lines{"- z", "d a", "- a/one", "d a/deep", "- b" + NotInSource, "- a/deep/two" + NotInSource}));
}

TEST_F(CompareEngineTest, NewerAndOfAnotherSizeIsReportedOnceAsNewer) {
  Tree.File("s/a", "long content", 10);
  Tree.File("t/a", "short", 0);
  EXPECT_EQ(Compare(), Lines{"- a" + SourceNewer});
}

TEST_F(CompareEngineTest, WithoutTheNewerTestTheSizeDecides) {
  Options.FlagSourceNewer = false;
  Tree.File("s/a", "same", 10);
  Tree.File("t/a", "same", 0);
  Tree.File("s/b", "same", 10);
  Tree.File("t/b", "other size", 0);
  EXPECT_EQ(Compare(), (Lines{"- a", "- b" + SizesDiffer}));
}

TEST_F(CompareEngineTest, EachFlagCanBeSwitchedOff) {
  Tree.File("s/older", "x", 0);
  Tree.File("t/older", "x", 10);
  Tree.File("s/size", "x", 0);
  Tree.File("t/size", "xx", 0);
  Tree.File("t/only-target", "x");
  Tree.File("t/folder/inside", "x");
  Options.FlagTargetNewer = Options.FlagSizes = Options.FlagTargetFileMissing = false;
  EXPECT_EQ(Compare(), (Lines{"d folder" + FolderNotInSource, "- older", "- size"}));
  Options.FlagTargetFolderMissing = false;
  EXPECT_EQ(Compare(), (Lines{"- older", "- size"}));
  Options.FlagTargetFileMissing = true;
  EXPECT_EQ(Compare(),
            (Lines{"- folder/inside" + NotInSource, "- older", "- only-target" + NotInSource, "- size"}));
}

TEST_F(CompareEngineTest, PartsOfASecondDoNotCount) {
  Tree.File("s/a", "x", 0);
  Tree.File("t/a", "x", 0);
  std::filesystem::last_write_time(
      Tree.Path("s/a"), std::filesystem::last_write_time(Tree.Path("s/a")) + std::chrono::milliseconds(900));
  EXPECT_EQ(Compare(), Lines{"- a"});
}

TEST_F(CompareEngineTest, AFolderMissingInTargetIsNotEntered) {
  Tree.File("s/sub/a");
  EXPECT_EQ(Compare(), Lines{"d sub" + FolderNotInTarget});
  Options.FlagSourceFolderMissing = false;
  EXPECT_EQ(Compare(), (Lines{"d sub", "- sub/a" + NotInTarget}));
}

TEST_F(CompareEngineTest, WithoutSubfoldersOnlyTheRootsAreCompared) {
  Both("a");
  Tree.File("s/sub/b");
  Tree.Folder("t/other");
  Options.CompareSubfolders = false;
  EXPECT_EQ(Compare(), Lines{"- a"});
}

TEST_F(CompareEngineTest, AFileWhereTheOtherSideHasAFolderIsMissingOnBothSides) {
  Tree.File("s/x", "file");
  Tree.File("t/x/inside", "file");
  EXPECT_EQ(Compare(), (Lines{"- x" + NotInTarget, "d x" + FolderNotInSource}));
}

TEST_F(CompareEngineTest, ExtensionsExcludeFilesAndFolders) {
  Both("a.TMP");
  Both("b.bak");
  Both("c.tmp.txt");
  Both("old.bak/inside.txt");
  Tree.File("t/only.Bak");
  Options.ExtensionList = SplitList(TidyList(" tmp ; bak;"));
  EXPECT_EQ(Compare(), Lines{"- c.tmp.txt"});
}

TEST_F(CompareEngineTest, AnEmptyExtensionExcludesNamesWithoutOne) {
  Both("README");
  Both("a.txt");
  Both("sub/b.txt");
  Options.ExtensionList = SplitList("tmp;;bak");
  EXPECT_EQ(Compare(), Lines{"- a.txt"});
}

TEST_F(CompareEngineTest, PrefixesExcludeFilesAndWholeFolders) {
  Both("~backup.doc");
  Both("~old/inside.txt");
  Both("a~b");
  Both("Ärger.txt");
  Options.PrefixList = SplitList("~;ä");
  EXPECT_EQ(Compare(), Lines{"- a~b"});
}

TEST_F(CompareEngineTest, ExclusionsCountInTheTargetToo) {
  Tree.File("t/~a");
  Tree.File("t/a.tmp");
  Tree.File("t/~old/inside");
  Tree.File("t/old.tmp/inside");
  Tree.File("t/deep/~a");  // in a folder that the walk over the source has not seen
  Tree.File("t/deep/~old/inside");
  Options.FlagTargetFolderMissing = false;
  Options.ExtensionList = {"tmp"};
  Options.PrefixList = {"~"};
  EXPECT_EQ(Compare(), Lines{});
}

TEST_F(CompareEngineTest, AnEmptyPrefixExcludesEverything) {
  Both("x");
  Both("sub/y");
  Tree.File("t/z");
  Options.PrefixList = SplitList("a;;b");
  EXPECT_EQ(Compare(), Lines{});
}

TEST_F(CompareEngineTest, FullPathsNameEachSidesOwnPlace) {
  Options.ShowFullPath = true;
  Both("a");
  Tree.File("t/b");
  std::string root = Tree.Path();
  std::ranges::replace(root, PathSeparator, '/');
  EXPECT_EQ(Compare(), (Lines{"- " + root + "/s/a", "- " + root + "/t/b" + NotInSource}));
}

TEST_F(CompareEngineTest, RootsWithoutSeparatorLeaveItToTheNames) {
  Both("sub/a");
  Options.SourceRoot = Tree.Path("s");
  Options.TargetRoot = Tree.Path("t");
  EXPECT_EQ(Compare(), (Lines{"d /sub", "- /sub/a"}));
}

TEST_F(CompareEngineTest, RootsOfWhichOneEndsInASeparatorJoinTheNames) {
  Both("a.txt");
  Tree.File("ta2.txt", "x", 0);
  Tree.File("s/a2.txt", "x", 0);
  Options.TargetRoot = Tree.Path("t");
  EXPECT_EQ(Compare(), (Lines{"- a.txt" + NotInTarget, "- a2.txt"}));
}

TEST_F(CompareEngineTest, TheSameFolderTwiceIsAllGreen) {
  Tree.File("s/a");
  Tree.File("s/sub/b");
  Options.TargetRoot = Options.SourceRoot;
  EXPECT_EQ(Compare(), (Lines{"- a", "d sub", "- sub/b"}));
}

TEST_F(CompareEngineTest, OneRootMayLieInsideTheOther) {
  Tree.File("s/a", "x", 0);
  Tree.File("s/copy/a", "x", 0);
  Options.TargetRoot = Tree.Root("s/copy");
  EXPECT_EQ(Compare(), (Lines{"- a", "d copy" + FolderNotInTarget}));
  std::swap(Options.SourceRoot, Options.TargetRoot);
  EXPECT_EQ(Compare(), (Lines{"- a", "d copy" + FolderNotInSource}));
}

TEST_F(CompareEngineTest, ASourceFileWithoutCounterpartEndsItWhereThatIsNotFlagged) {
  Options.FlagSourceFileMissing = false;
  Both("a");
  Tree.File("s/b");
  Both("c");
  Tree.File("t/d");
  try {
    Walk();
    FAIL() << "went on";
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Number(), 53);
    EXPECT_EQ(error.Path(), Tree.Path("t/b"));
  }
  EXPECT_EQ(Shown(), Lines{"- a"});
}

TEST_F(CompareEngineTest, EveryFailingCallEndsItAndKeepsTheRowsSoFar) {
  Both("a");
  Both("sub/b");
  Tree.File("t/sub/c");
  const Lines whole = Walk();
  int failAt = 1;
  for (;; ++failAt) {
    Files = std::make_unique<FailingFileSystem>(failAt, FileError::DeviceError);
    try {
      EXPECT_EQ(Walk(), whole);
      break;
    } catch (const FileSystemError& error) {
      EXPECT_EQ(error.Number(), 57);
      const Lines rows = Shown();
      ASSERT_LE(rows.size(), whole.size());
      EXPECT_TRUE(std::equal(rows.begin(), rows.end(), whole.begin())) << failAt;
    }
  }
  EXPECT_GT(failAt, 4);
}

TEST_F(CompareEngineTest, TellsWhatIsInHandAndLetsEventsRunForEveryItem) {
  Both("a");
  Both("no.tmp");
  Both("sub/b");
  Tree.File("t/c");
  Options.ExtensionList = {"tmp"};
  Walk();
  EXPECT_EQ(Watch.Messages, (Lines{"Checking " + Tree.Path("s/a"), "Checking " + Tree.Path("s/sub"),
                                   "Checking " + Tree.Path("s/sub/b"), "Checking " + Tree.Path("t/c"),
                                   "Checking " + Tree.Path("t/sub")}));
  EXPECT_GE(Watch.Events, 6);
}

TEST_F(CompareEngineTest, StopsAfterTheItemInHand) {
  for (int i = 0; i < 9; ++i) Both("file" + std::to_string(i));
  Watch.OnEvents = [this] { Watch.Stop = Watch.Events == 3; };
  EXPECT_EQ(Walk(), (Lines{"- file0", "- file1", "- file2"}));
  EXPECT_FALSE(Finished);
}

TEST_F(CompareEngineTest, WhatVanishesDuringTheWalkIsNotShown) {
  Both("a");
  Both("b");
  Both("c");
  Watch.OnEvents = [this] {
    Tree.Remove("s/b");
    Tree.Remove("t/c");
  };
  EXPECT_EQ(Walk(), (Lines{"- a", "- c" + NotInTarget}));
}

TEST_F(CompareEngineTest, NamesWithMarkupAndQuotesAreJustNames) {
  Both("a & b");
  Both("it's");
  Tree.File("s/r\xc3\xa9sum\xc3\xa9.doc", "x");
  EXPECT_EQ(Compare(), (Lines{"- a & b", "- it's", "- r\xc3\xa9sum\xc3\xa9.doc" + NotInTarget}));
}

TEST_F(CompareEngineTest, AnotherCaseOnTheOtherSideIsWhatTheFileSystemSays) {
  Tree.File("s/Name.txt", "x", 0);
  Tree.File("t/NAME.TXT", "x", 0);
  if (Files->FileExists(Tree.Path("s/NAME.TXT")))
    EXPECT_EQ(Compare(), Lines{"- Name.txt"});
  else
    EXPECT_EQ(Compare(), (Lines{"- Name.txt" + NotInTarget, "- NAME.TXT" + NotInSource}));
}

}  // namespace
}  // namespace brackwell
