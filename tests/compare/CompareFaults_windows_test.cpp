#include <map>
#include <optional>

#include "common/Files.h"
#include "compare/CompareDetails.h"
#include "compare/ComparedTrees.h"
#include "support/DriveRoot_windows.h"
#include "support/FileTimes.h"
#include "support/LockedFile_windows.h"
#include "support/LongPaths_windows.h"

// Comparing, and fixing what was found, on what Windows alone has: drives, files that are kept locked, paths
// beyond the old limit.

namespace brackwell {
namespace {

using CompareOnWindows = ComparedTrees;

// --- Drive roots

class DriveRoots : public ComparedTrees {
 protected:
  void SetUp() override {
    if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
    Source.emplace('H');
    Target.emplace('N');
    Options.SourceRoot = Source->Path();
    Options.TargetRoot = Target->Path();
    Options.PrefixList = {"."};
  }

  std::optional<DriveRoot> Source;
  std::optional<DriveRoot> Target;
};

TEST_F(DriveRoots, AreComparedAndFixedLikeFolders) {
  Source->File("a.txt", "new", 10);
  Target->File("a.txt", "old");
  Source->File("both/b.txt", "same");
  Target->File("both/B.TXT", "same");
  Source->File("both/c.txt", "only");
  Source->File("folder/deep/d.txt", "deep", 5);
  Target->File("e.txt", "only");
  Target->File("other/f.txt", "other");
  EXPECT_EQ(Compare(),
            (Lines{"- a.txt newer in source", "d both", "- both\\b.txt", "- both\\c.txt only in source",
                   "- e.txt only in target", "d folder only in source", "d other only in target"}));
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Target->List(), (Lines{"a.txt", "both/", "both/B.TXT", "both/c.txt", "e.txt", "folder/",
                                   "folder/deep/", "folder/deep/d.txt", "other/", "other/f.txt"}));
  EXPECT_EQ(Target->Read("a.txt"), "new");
  EXPECT_EQ(Files->GetFile(Target->Path("folder/deep/d.txt")).DateLastModified, TempTree::Time(5));
  Compare();
  EXPECT_EQ(FixSources(), Lines{});
  EXPECT_EQ(Source->List().size(), Target->List().size());
  for (const std::string& line : Compare()) EXPECT_EQ(line.find(" in "), std::string::npos) << line;
}

TEST_F(DriveRoots, AreShownInFullWithOneSeparator) {
  Options.ShowFullPath = true;
  Source->File("a.txt", "a");
  Source->File("both/b.txt", "b");
  Target->File("both/c.txt", "c");
  EXPECT_EQ(Compare(), (Lines{"- H:\\a.txt only in source", "d H:\\both", "- H:\\both\\b.txt only in source",
                              "- N:\\both\\c.txt only in target"}));
  EXPECT_EQ(FixTargets(), Lines{});
  Compare();
  EXPECT_EQ(FixSources(), Lines{});
  EXPECT_EQ(Source->List(), (Lines{"a.txt", "both/", "both/b.txt", "both/c.txt"}));
  EXPECT_EQ(Target->List(), Source->List());
}

TEST_F(DriveRoots, AreComparedWithFoldersToo) {
  Options.TargetRoot = Tree.Root("t");
  Source->File("a.txt", "new", 10);
  Source->File("sub/b.txt", "b");
  Tree.File("t/a.txt", "old", 0);
  EXPECT_EQ(Compare(), (Lines{"- a.txt newer in source", "d sub only in source"}));
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "sub/", "sub/b.txt"}));
  std::swap(Options.SourceRoot, Options.TargetRoot);
  Tree.File("t/c.txt", "c");
  EXPECT_EQ(Compare(), (Lines{"- a.txt", "- c.txt only in source", "d sub", "- sub\\b.txt"}));
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Source->Read("c.txt"), "c");
}

TEST_F(DriveRoots, BesideARootWithoutSeparatorJoinTheNamesAsTheyStand) {
  Options.TargetRoot = "N:\\copy";
  Source->File("a.txt", "a");
  Target->File("copy/b.txt", "b");
  EXPECT_EQ(Compare(), (Lines{"- \\b.txt only in target", "- a.txt only in source"}));
  FixTargets();
  EXPECT_EQ(Target->List(), (Lines{"copy/", "copy/b.txt", "copya.txt"}));
}

TEST_F(DriveRoots, AreNotCopiedIntoThemselves) {
  Options.TargetRoot = Source->Path("copy\\");
  Source->File("copy/a.txt", "a");
  EXPECT_EQ(Compare(), (Lines{"- a.txt only in target", "d copy only in source"}));
  EXPECT_EQ(FixTargets(), Lines{"copy 75"});
  EXPECT_EQ(Source->List(), (Lines{"copy/", "copy/a.txt"}));
}

TEST_F(DriveRoots, TellTheirProperties) {
  std::map<std::string, std::string> values;
  Source->File("sub/a.txt", "12345");
  ReadProperties(*Files, Source->Path(), false, [&](std::size_t row, std::string value) {
    values[std::string(PropertyNames(false)[row])] = std::move(value);
  });
  EXPECT_EQ(values.size(), 14u);
  EXPECT_EQ(values["Drive"], "H:");
  EXPECT_EQ(values["Name"], "");
  EXPECT_EQ(values["ParentFolder"], "");
  EXPECT_EQ(values["Path"], "H:\\");
  EXPECT_EQ(values["ShortPath"], "H:\\");
  EXPECT_EQ(values["Subfolders"], "1");
  EXPECT_NE(values["Type"], "");
  EXPECT_NE(values["DateLastModified"], "");
}

TEST_F(DriveRoots, WithoutAMediumAreNoFolders) {
  Source->File("a.txt", "a");
  for (const char* root : {"B:\\", "E:\\", "Q:\\"}) {
    EXPECT_FALSE(Files->FolderExists(root));
    EXPECT_FALSE(Files->FileExists(root + std::string("a.txt")));
    Options.TargetRoot = root;
    const Lines lines = Compare();  // the target went after the window had looked for it
    ASSERT_EQ(lines.size(), 2u) << root;
    EXPECT_EQ(lines[0], "- a.txt only in source");
    EXPECT_TRUE(lines[1].ends_with(root)) << lines[1];
    EXPECT_EQ(FixTargets().size(), 1u);
  }
  EXPECT_EQ(Source->List(), Lines{"a.txt"});
}

// --- Locked files

TEST_F(CompareOnWindows, ALockedFileIsComparedButNotCopied) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
    Tree.File(std::string("s/") + name, "new", 10);
    Tree.File(std::string("t/") + name, "old", 0);
  }
  Tree.File("s/new.txt", "new", 10);
  const LockedFile source(Tree.Path("s/a.txt"), 0);
  const LockedFile missing(Tree.Path("s/new.txt"), 0);
  ASSERT_TRUE(source.IsOpen() && missing.IsOpen());
  EXPECT_EQ(Compare(), (Lines{"- a.txt newer in source", "- b.txt newer in source", "- c.txt newer in source",
                              "- new.txt only in source"}));
  {
    const LockedFile target(Tree.Path("t/b.txt"), 0);
    ASSERT_TRUE(target.IsOpen());
    EXPECT_EQ(FixTargets(), (Lines{"a.txt 70", "b.txt 70", "new.txt 70"}));
  }
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt", "c.txt"}));
  EXPECT_EQ(Tree.Read("t/a.txt") + Tree.Read("t/b.txt") + Tree.Read("t/c.txt"), "oldoldnew");
  EXPECT_EQ(Files->GetFile(Tree.Path("t/b.txt")).DateLastModified, TempTree::Time(0));
  EXPECT_EQ(Files->GetFile(Tree.Path("t/b.txt")).Attributes & Attribute::Hidden, 0u);
}

TEST_F(CompareOnWindows, AFileThatIsReadElsewhereIsCopiedFromAndNotReplaced) {
  Tree.File("s/a.txt", "new", 10);
  Tree.File("t/a.txt", "old", 0);
  Tree.File("s/b.txt", "new", 10);
  Tree.File("t/b.txt", "old", 0);
  const LockedFile source(Tree.Path("s/a.txt"), FILE_SHARE_READ);
  const LockedFile target(Tree.Path("t/b.txt"), FILE_SHARE_READ);
  ASSERT_TRUE(source.IsOpen() && target.IsOpen());
  Compare();
  EXPECT_EQ(FixTargets(), Lines{"b.txt 70"});
  EXPECT_EQ(Tree.Read("t/a.txt"), "new");
  EXPECT_EQ(Tree.Read("t/b.txt"), "old");
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt"}));
}

TEST_F(CompareOnWindows, ALockedFileInAFolderLeavesTheRestCopied) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) Tree.File(std::string("s/sub/") + name, name, 10);
  const LockedFile locked(Tree.Path("s/sub/b.txt"), 0);
  ASSERT_TRUE(locked.IsOpen());
  Compare();
  EXPECT_EQ(FixTargets(), Lines{"sub 70"});
  EXPECT_EQ(Tree.List("t"), (Lines{"sub/", "sub/a.txt", "sub/c.txt"}));
}

TEST_F(CompareOnWindows, ALockedFileTellsItsProperties) {
  Tree.File("s/a.txt", "12345", 10);
  const LockedFile locked(Tree.Path("s/a.txt"), 0);
  ASSERT_TRUE(locked.IsOpen());
  std::map<std::string, std::string> values;
  ReadProperties(*Files, Tree.Path("s/a.txt"), true, [&](std::size_t row, std::string value) {
    values[std::string(PropertyNames(true)[row])] = std::move(value);
  });
  EXPECT_EQ(values.size(), 12u);
  EXPECT_EQ(values["Size"], "5");
  EXPECT_EQ(values["Name"], "a.txt");
  for (const auto& [name, value] : values) EXPECT_NE(value, "") << name;
}

// --- Long paths

class LongPaths : public ComparedTrees {
 protected:
  ~LongPaths() override {
    for (const char* name : {"s", "t"}) RemoveTree(*Files, Tree.Path(name));
  }

  void Write(const std::string& path, const std::string& content, int seconds) {
    WriteTextFile(*Files, path, true, content);
    SetModificationTime(path, TempTree::Time(seconds));
  }
};

TEST_F(LongPaths, OfFilesAreComparedAndFixed) {
  const std::string source = MakeFolders(*Files, Tree.Path("s"), LongFolder);
  const std::string target = MakeFolders(*Files, Tree.Path("t"), LongFolder);
  Write(JoinPath(source, "a.txt"), "new", 10);
  Write(JoinPath(target, "a.txt"), "old", 0);
  Write(JoinPath(source, LongName), "only", 20);
  Write(JoinPath(target, "b.txt"), "target", 0);
  Lines rows = Compare();
  rows.erase(rows.begin(), rows.begin() + 4);  // the folders
  EXPECT_EQ(rows, (Lines{"- " + JoinPath(LongFolder, "a.txt") + " newer in source",
                         "- " + JoinPath(LongFolder, "b.txt") + " only in target",
                         "- " + JoinPath(LongFolder, LongName) + " only in source"}));
  EXPECT_EQ(FixTargets(), Lines{});
  Compare();
  EXPECT_EQ(FixSources(), Lines{});
  EXPECT_EQ(Files->OpenTextFile(JoinPath(target, "a.txt"))->ReadAll(), "new");
  EXPECT_EQ(Files->OpenTextFile(JoinPath(target, LongName))->ReadAll(), "only");
  EXPECT_EQ(Files->GetFile(JoinPath(target, LongName)).DateLastModified, TempTree::Time(20));
  EXPECT_EQ(Files->OpenTextFile(JoinPath(source, "b.txt"))->ReadAll(), "target");
  EXPECT_EQ(Files->GetFolder(target)->Files().size(), 3u);
}

TEST_F(LongPaths, OfFoldersAreCopied) {
  const std::string source = MakeFolders(*Files, Tree.Path("s"), LongFolder);
  Write(JoinPath(source, LongName), "content", 20);
  EXPECT_EQ(Compare(), Lines{"d " + LongFolder.substr(0, LongFolder.find('\\')) + " only in source"});
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Files->OpenTextFile(JoinPath(Tree.Root("t") + LongFolder, LongName))->ReadAll(), "content");
  EXPECT_EQ(Compare().size(), 5u);
}

TEST_F(LongPaths, TellTheirProperties) {
  const std::string folder = MakeFolders(*Files, Tree.Path("s"), LongFolder);
  const std::string path = JoinPath(folder, LongName);
  Write(path, "12345", 20);
  std::map<std::string, std::string> values;
  ReadProperties(*Files, path, true, [&](std::size_t row, std::string value) {
    values[std::string(PropertyNames(true)[row])] = std::move(value);
  });
  EXPECT_EQ(values["Path"], path);
  EXPECT_EQ(values["Name"], LongName);
  EXPECT_EQ(values["ParentFolder"], folder);
  EXPECT_EQ(values["Drive"], path.substr(0, 2));
  EXPECT_EQ(values["Size"], "5");
  EXPECT_EQ(Files->OpenTextFile(values["ShortPath"])->ReadAll(), "12345");
  EXPECT_LT(values["ShortPath"].size(), 260u);
}

}  // namespace
}  // namespace brackwell
