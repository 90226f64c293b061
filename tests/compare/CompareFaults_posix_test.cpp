#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>

#include "compare/ComparedTrees.h"
#include "support/WithoutPrivileges_posix.h"

// Comparing, and fixing what was found, on trees as they are met in the wild on POSIX.

namespace brackwell {
namespace {

class CompareFaults : public ComparedTrees {
 protected:
  void Both(const std::string& name) {
    Tree.File("s/" + name, "same", 0);
    Tree.File("t/" + name, "same", 0);
  }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), Tree.Path(name).c_str()), 0) << name;
  }
  void BothLink(const std::string& text, const std::string& name) {
    Link(text, "s/" + name);
    Link(text, "t/" + name);
  }
  /// Gives a link itself a modification time `seconds` after the start of 2020.
  void LinkModified(const std::string& name, int seconds) {
    const timespec time{.tv_sec = TempTree::Time(seconds).time_since_epoch().count(), .tv_nsec = 0};
    const timespec times[] = {time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, Tree.Path(name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << name;
  }
  std::string LinkText(const std::string& name) {
    std::string text(100, '\0');
    const auto length = readlink(Tree.Path(name).c_str(), text.data(), text.size());
    return length < 0 ? "<no link>" : text.substr(0, static_cast<std::size_t>(length));
  }
  void Pipe(const std::string& name) {
    ASSERT_EQ(mkfifo(Tree.Path(name).c_str(), 0666), 0);
    Tree.SetModified(name, 0);
  }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(Tree.Path(name).c_str(), mode), 0); }

  /// Does `step` once, as soon as `count` rows have been found.
  void AfterRows(std::size_t count, const std::function<void()>& step) {
    OnEvents = [this, count, step, done = false]() mutable {
      if (done || Rows.size() < count) return;
      done = true;
      step();
    };
  }
};

using Names = CompareFaults;
using Links = CompareFaults;
using SpecialFiles = CompareFaults;
using Rights = CompareFaults;
using Vanishing = CompareFaults;
using Roots = CompareFaults;
using Sizes = CompareFaults;

// --- Names

TEST_F(Names, AreBytesAndCopiedAsTheyAre) {
  const Lines odd{"\xff\xfe", "a\nb",  "\"quoted\" 'name'",  "<b>&amp;<i>", "back\\slash", " ", "-rf",
                  "...",      "tab\t", "caf\xe9 caf\xc3\xa9"};
  for (const std::string& name : odd) Tree.File("s/" + name + "/" + name, "content of " + name, 0);
  Both("same\xff");
  ASSERT_EQ(Compare().size(), odd.size() + 1);
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Tree.List("t"), Tree.List("s"));
  for (const std::string& name : odd) EXPECT_EQ(Tree.Read("t/" + name + "/" + name), "content of " + name);

  Lines same{"- same\xff"};
  for (const std::string& name : odd) {
    same.push_back("d " + name);
    same.push_back("- " + name + "/" + name);
  }
  Lines shown = Compare();
  std::ranges::sort(same);
  std::ranges::sort(shown);
  EXPECT_EQ(shown, same);
}

TEST_F(Names, ThatAreNoTextAreExcludedByTheirText) {
  Both("\xff.tmp");
  Both("~\xff");
  Both("\xff~");
  Options.ExtensionList = {"TMP"};
  Options.PrefixList = {"~"};
  EXPECT_EQ(Compare(), Lines{"- \xff~"});
}

TEST_F(Names, ThatDifferInCaseOnlyAreDifferentFiles) {
  Both("Both");
  Both("both");
  Both("Folder/file");
  Both("folder/file");
  Both("One");
  Tree.File("s/one", "source", 0);
  Tree.File("t/ONE", "target", 0);
  EXPECT_EQ(Compare(), (Lines{"- Both", "- both", "d Folder", "d folder", "- Folder/file", "- folder/file",
                              "- One", "- one only in source", "- ONE only in target"}));
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Tree.Read("t/one"), "source");
  EXPECT_EQ(Tree.Read("t/One"), "same");
}

TEST_F(Names, AsLongAsTheyCanBeAreFixed) {
  const std::string name(255, 'n');
  Tree.File("s/" + name, "new", 10);
  Tree.File("t/" + name, "old", 0);
  EXPECT_EQ(Compare(), Lines{"- " + name + " newer in source"});
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Tree.Read("t/" + name), "new");
  EXPECT_EQ(Tree.List("t"), Lines{name});
}

// --- Links

TEST_F(Links, AreComparedAsTheLinksTheyAreAndNeverEntered) {
  Both("folder/inside");
  BothLink("folder", "to folder");
  BothLink("..", "folder/up");
  BothLink(".", "to itself");
  BothLink("nowhere", "dangling");
  for (const char* name : {"to folder", "folder/up", "to itself", "dangling"})
    for (const char* side : {"s/", "t/"}) LinkModified(side + std::string(name), 5);
  EXPECT_EQ(Compare(), (Lines{"- dangling", "d folder", "- folder/inside", "- folder/up", "- to folder",
                              "- to itself"}));
}

TEST_F(Links, DifferByTheirOwnDatesAndSizes) {
  BothLink("file", "newer");
  LinkModified("s/newer", 7);
  LinkModified("t/newer", 5);
  Link("short", "s/longer");
  Link("much longer", "t/longer");
  LinkModified("s/longer", 5);
  LinkModified("t/longer", 5);
  EXPECT_EQ(Compare(), (Lines{"- longer differs", "- newer newer in source"}));
}

TEST_F(Links, FixedAreTheSameAfterwardsWhereverTheyLead) {
  Tree.File("s/file", "same", 0);
  Link("file", "s/to file");
  Link("nowhere", "s/dangling");
  Link("..", "s/up");
  Link("file", "s/replaced");
  LinkModified("s/replaced", 9);
  Tree.File("t/replaced", "an old file", 5);
  EXPECT_EQ(Compare().size(), 5u);
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(LinkText("t/to file"), "file");
  EXPECT_EQ(LinkText("t/dangling"), "nowhere");
  EXPECT_EQ(LinkText("t/up"), "..");
  EXPECT_EQ(LinkText("t/replaced"), "file");
  EXPECT_EQ(Compare(), (Lines{"- dangling", "- file", "- replaced", "- to file", "- up"}));
}

TEST_F(Links, AFolderWithLinksIsTheSameOnceItIsFixed) {
  Tree.File("s/folder/file", "text", 3);
  Link("nowhere", "s/folder/dangling");
  Link("../..", "s/folder/above");
  EXPECT_EQ(Compare(), Lines{"d folder only in source"});
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Compare(), (Lines{"d folder", "- folder/above", "- folder/dangling", "- folder/file"}));
}

TEST_F(Links, AFileFixedOntoOneTakesItsPlace) {
  Tree.File("outside/precious", "precious", 0);
  Tree.File("s/file", "new", 9);
  Link("../outside/precious", "t/file");
  LinkModified("t/file", 5);
  EXPECT_EQ(Compare(), Lines{"- file newer in source"});
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(LinkText("t/file"), "<no link>");
  EXPECT_EQ(Tree.Read("t/file"), "new");
  EXPECT_EQ(Tree.Read("outside/precious"), "precious");
}

TEST_F(Links, AreNotPutInThePlaceOfWhatTheyLeadTo) {
  Tree.File("t/file", "the only copy", 5);
  Link("../t/file", "s/file");
  LinkModified("s/file", 9);
  Tree.File("t/folder/file", "the only copy", 5);
  Tree.Folder("s/folder");
  Link("../../t/folder/file", "s/folder/file");
  EXPECT_EQ(Compare(), (Lines{"- file newer in source", "d folder", "- folder/file newer in source"}));
  EXPECT_EQ(FixTargets(), (Lines{"file 70", "folder/file 70"}));
  EXPECT_EQ(Tree.Read("t/file"), "the only copy");
  EXPECT_EQ(Tree.Read("t/folder/file"), "the only copy");
}

TEST_F(Links, PutThereBetweenComparisonAndFixAreNotGoneThrough) {
  Tree.File("outside/sub/file", "precious", 0);
  Tree.File("s/sub/file", "new", 9);
  Tree.File("t/sub/file", "old", 5);
  Tree.Folder("s/folder");
  EXPECT_EQ(Compare(), (Lines{"d folder only in source", "d sub", "- sub/file newer in source"}));
  Tree.Remove("t/sub");
  Link("../outside/sub", "t/sub");
  Link("../outside", "t/folder");
  EXPECT_EQ(FixTargets(), (Lines{"folder 58", "sub/file 76"}));
  EXPECT_EQ(Tree.Read("outside/sub/file"), "precious");
  EXPECT_EQ(Tree.List("outside"), (Lines{"sub/", "sub/file"}));
}

TEST_F(Links, FacingFoldersAreWhatFilesFacingFoldersAre) {
  Link("elsewhere", "s/link or folder");
  Tree.File("t/link or folder/file");
  EXPECT_EQ(Compare(), (Lines{"- link or folder only in source", "d link or folder only in target"}));
  EXPECT_EQ(FixTargets(), Lines{"link or folder 70"});
  Compare();
  EXPECT_EQ(FixSources(), Lines{"link or folder 58"});
  EXPECT_EQ(LinkText("s/link or folder"), "elsewhere");
  EXPECT_EQ(Tree.List("t"), (Lines{"link or folder/", "link or folder/file"}));
}

// --- Pipes and sockets

TEST_F(SpecialFiles, AreComparedAndNeverOpened) {
  Pipe("s/both");
  Pipe("t/both");
  Pipe("s/only");
  const int socketFile = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const std::string path = Tree.Path("s/socket");
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(bind(socketFile, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  Tree.File("s/was file", "x", 0);
  Pipe("t/was file");
  EXPECT_EQ(Compare(),
            (Lines{"- both", "- only only in source", "- socket only in source", "- was file differs"}));
  EXPECT_EQ(FixTargets(), (Lines{"only 75", "socket 75", "was file 75"}));
  EXPECT_EQ(Tree.List("t"), (Lines{"both", "was file"}));
  Walk();
  EXPECT_EQ(FixSources(), Lines{"was file 75"});
  EXPECT_EQ(Tree.Read("s/was file"), "x");
  close(socketFile);
}

TEST_F(SpecialFiles, InAFolderLeaveTheRestFixed) {
  Tree.File("s/folder/a", "a");
  Tree.File("s/folder/z", "z");
  Pipe("s/folder/pipe");
  Compare();
  EXPECT_EQ(FixTargets(), Lines{"folder 75"});
  EXPECT_EQ(Tree.List("t"), (Lines{"folder/", "folder/a", "folder/z"}));
  EXPECT_FALSE(Rows[0].IsFixed);
}

// --- Rights

TEST_F(Rights, AnUnreadableSourceFolderEndsIt) {
  Both("a");
  Both("locked/inside");
  Both("z/file");
  Mode("s/locked", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Walk(), (Lines{"- a", "d locked", "70 s/locked"}));
}

TEST_F(Rights, AnUnreadableTargetFolderEndsItAfterAllRowsOfTheSource) {
  Both("a");
  Both("locked/inside");
  Both("z/file");
  Tree.File("s/z/only");
  for (const mode_t mode : {0, 0111}) {
    Mode("t/locked", mode);
    const WithoutPrivileges asAnyUser;
    EXPECT_EQ(Walk(),
              (Lines{"- a", "d locked", mode == 0 ? "- locked/inside only in source" : "- locked/inside",
                     "d z", "- z/file", "- z/only only in source", "70 t/locked"}));
  }
}

TEST_F(Rights, UnreadableRootsAreTold) {
  Both("a");
  Mode("t", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Walk(), (Lines{"- a only in source", "70 t/"}));
  Mode("s", 0);
  EXPECT_EQ(Walk(), Lines{"70 s/"});
}

TEST_F(Rights, ASourceFolderThatMayNotBeLookedIntoEndsIt) {
  Both("a");
  Both("listed/file");
  Mode("s/listed", 0444);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Walk(), (Lines{"- a", "d listed", "70 s/listed/file"}));
}

TEST_F(Rights, InATargetFolderThatMayNotBeLookedIntoNothingIsFound) {
  Both("listed/file");
  Mode("t/listed", 0444);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Walk(), (Lines{"d listed", "- listed/file only in source"}));
  EXPECT_EQ(FixTargets(), Lines{"listed/file 70"});
}

TEST_F(Rights, AnUnreadableFileIsAProblemOfItsRow) {
  Tree.File("s/a", "new", 10);
  Tree.File("t/a", "old", 0);
  Tree.File("s/b", "new");
  Mode("s/a", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Compare(), (Lines{"- a newer in source", "- b only in source"}));
  EXPECT_EQ(FixTargets(), Lines{"a 70"});
  EXPECT_EQ(Tree.Read("t/a"), "old");
  EXPECT_EQ(Tree.Read("t/b"), "new");
}

TEST_F(Rights, ReadOnlyTargetsStayAsTheyAreForAnAdministratorToo) {
  Tree.File("s/a", "new", 10);
  Tree.File("t/a", "old", 0);
  Tree.File("s/folder/b", "new", 10);
  Tree.File("t/folder/b", "old", 0);
  Tree.File("s/free", "new", 10);
  Tree.File("t/free", "old", 0);
  Tree.SetReadOnly("t/a");
  Tree.SetReadOnly("t/folder/b");
  EXPECT_EQ(Compare().size(), 4u);
  EXPECT_EQ(FixTargets(), (Lines{"a 70", "folder/b 70"}));
  EXPECT_EQ(Tree.Read("t/a"), "old");
  EXPECT_EQ(Tree.Read("t/folder/b"), "old");
  EXPECT_EQ(Tree.Read("t/free"), "new");
  EXPECT_EQ(Compare(), (Lines{"- a newer in source", "d folder", "- folder/b newer in source", "- free"}));
}

TEST_F(Rights, ReadOnlyTargetFoldersTakeNothing) {
  Tree.File("s/folder/new");
  Tree.File("s/folder/sub/new");
  Tree.Folder("t/folder");
  Compare();
  Mode("t/folder", 0555);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(FixTargets(), (Lines{"folder/new 70", "folder/sub 70"}));
  EXPECT_EQ(Tree.List("t"), Lines{"folder/"});
}

// --- What changes meanwhile

TEST_F(Vanishing, FilesThatBecameFoldersAreNoFilesAnyMore) {
  for (const char* name : {"a", "b", "c", "d"}) Both(name);
  AfterRows(1, [this] {
    Tree.Remove("s/b");
    Tree.Folder("s/b");
    Tree.Remove("t/c");
    Tree.Folder("t/c");
  });
  EXPECT_EQ(Walk(), (Lines{"- a", "- c only in source", "- d", "d c only in target"}));
}

TEST_F(Vanishing, FoldersAreNotEntered) {
  Both("a");
  Both("first/file");
  Both("second/file");
  Tree.File("outside/file");
  Both("swapped/file");
  AfterRows(1, [this] {
    Tree.Remove("s/first");
    Tree.Remove("s/swapped");
    Link("../outside", "s/swapped");
  });
  EXPECT_EQ(Walk(), (Lines{"- a", "d first", "d second", "- second/file", "d swapped",
                           "- first/file only in target", "- swapped/file only in target"}));
}

TEST_F(Vanishing, TheChosenFolderItselfEndsTheComparison) {
  Both("a");
  Both("first/file");
  AfterRows(1, [this] { Tree.Remove("s"); });
  EXPECT_EQ(Walk().back(), "76 s/first");
}

TEST_F(Vanishing, TargetFoldersAreNotEntered) {
  Options.FlagTargetFolderMissing = false;
  Tree.File("t/a");
  Tree.File("t/first/file");
  Tree.File("t/second/file");
  Tree.File("outside/file");
  Tree.File("t/swapped/file");
  AfterRows(1, [this] {
    Tree.Remove("t/first");
    Tree.Remove("t/swapped");
    Link("../outside", "t/swapped");
  });
  EXPECT_EQ(Walk(), (Lines{"- a only in target", "- second/file only in target"}));
}

TEST_F(Vanishing, AFolderThatIsMovedAwayAboveTheWalkDoesNotEndIt) {
  Both("a/b/c/file");
  Both("z/file");
  AfterRows(2, [this] { std::filesystem::rename(Tree.Path("s/a"), Tree.Path("moved")); });
  EXPECT_EQ(Walk(), (Lines{"d a", "d a/b", "d a/b/c", "d z", "- z/file", "- a/b/c/file only in target"}));
}

TEST_F(Vanishing, AFolderThatBecameAFileIsNotEntered) {
  Both("a");
  Both("folder/file");
  AfterRows(1, [this] {
    Tree.Remove("s/folder");
    Tree.File("s/folder", "now a file");
  });
  EXPECT_EQ(Walk(), (Lines{"- a", "d folder", "- folder/file only in target"}));
}

TEST_F(Vanishing, ARootIsMissed) {
  Tree.Remove("s");
  EXPECT_EQ(Walk(), Lines{"76 s/"});
  Both("a");
  Tree.Remove("t");
  EXPECT_EQ(Walk(), (Lines{"- a only in source", "76 t/"}));
}

TEST_F(Vanishing, WhatIsGoneWhenItIsFixedIsAProblemOfItsRow) {
  Tree.File("s/a", "x");
  Tree.File("s/folder/file", "x");
  Tree.File("s/z", "x");
  Compare();
  Tree.Remove("s/a");
  Tree.Remove("s/folder");
  EXPECT_EQ(FixTargets(), (Lines{"a 53", "folder 76"}));
  EXPECT_EQ(Tree.List("t"), Lines{"z"});
}

// --- Roots

TEST_F(Roots, OneInsideTheOtherIsNotCopiedIntoItself) {
  Tree.File("s/a", "a");
  Tree.File("s/sub/b", "b");
  Options.TargetRoot = Tree.Root("s/copy");
  Tree.Folder("s/copy");
  EXPECT_EQ(Compare(), (Lines{"- a only in source", "d copy only in source", "d sub only in source"}));
  EXPECT_EQ(FixTargets(), Lines{"copy 75"});
  EXPECT_EQ(Tree.List("s"), (Lines{"a", "copy/", "copy/a", "copy/sub/", "copy/sub/b", "sub/", "sub/b"}));
  EXPECT_EQ(Compare(), (Lines{"- a", "d copy only in source", "d sub", "- sub/b"}));
}

TEST_F(Roots, OneInsideTheOtherIsNotCopiedOutOfItself) {
  Tree.File("t/s/a", "a");
  Tree.Folder("t/s/other");
  Options.SourceRoot = Tree.Root("t/s");
  EXPECT_EQ(Compare(), (Lines{"- a only in source", "d other only in source", "d s only in target"}));
  EXPECT_EQ(FixSources(), Lines{"s 75"});
  EXPECT_EQ(Tree.List("t"), (Lines{"s/", "s/a", "s/other/"}));
}

TEST_F(Roots, TheSameByAnotherPathIsTheSame) {
  Tree.File("s/a", "a");
  Tree.File("s/sub/b", "b");
  Tree.Remove("t");
  Link("s", "t");
  EXPECT_EQ(Compare(), (Lines{"- a", "d sub", "- sub/b"}));
  Rows = {MakeRow(ResultKind::SizesDiffer, "a"), MakeRow(ResultKind::SourceFolderMissingInTarget, "sub")};
  EXPECT_EQ(FixTargets(), (Lines{"a 70", "sub 75"}));
  EXPECT_EQ(Tree.Read("s/a"), "a");
}

TEST_F(Roots, TheWholeMachineHasItsPathsRight) {
  Tree.File("t/usr/bin/env", "no program", 0);
  Options.SourceRoot = "/";
  OnEvents = [this] { Stop = Rows.size() > 0 && Rows.back().Name.starts_with("usr/bin/"); };
  Walk();
  ASSERT_TRUE(Stop);
  const CompareRow& row = Rows.back();
  const FixPaths paths = PathsOf(row, {.SourceRoot = "/", .TargetRoot = Options.TargetRoot});
  EXPECT_EQ(paths.Source, "/" + row.Name);
  EXPECT_EQ(paths.Target, Tree.Path("t/" + row.Name));
  const auto usr = std::ranges::find(Rows, std::string("usr"), &CompareRow::Name);
  ASSERT_NE(usr, Rows.end());
  EXPECT_EQ(usr->Kind, ResultKind::FolderSame);

  Stop = false;
  OnEvents = nullptr;
  std::swap(Options.SourceRoot, Options.TargetRoot);
  Walk();
  const auto env = std::ranges::find(Rows, std::string("usr/bin/env"), &CompareRow::Name);
  ASSERT_NE(env, Rows.end());
  EXPECT_EQ(env->Kind, ResultKind::TargetFileNewer);
  EXPECT_TRUE(std::ranges::none_of(Rows, [](const CompareRow& each) { return each.Name.starts_with('/'); }));
}

// --- Sizes and numbers

TEST_F(Sizes, AreComparedBeyondFourGigabytes) {
  constexpr off_t GiB = off_t{1} << 30;
  const auto hole = [this](const std::string& name, off_t size) {
    Tree.File(name, "begin");
    ASSERT_EQ(truncate(Tree.Path(name).c_str(), size), 0);
    Tree.SetModified(name, 0);
  };
  hole("s/big", 5 * GiB + 1);
  hole("t/big", 1 * GiB + 1);  // the same in 32 bits
  EXPECT_EQ(Compare(), Lines{"- big differs"});
  EXPECT_EQ(FixTargets(), Lines{});
  struct stat fixed {};
  ASSERT_EQ(stat(Tree.Path("t/big").c_str(), &fixed), 0);
  EXPECT_EQ(fixed.st_size, 5 * GiB + 1);
  EXPECT_LT(fixed.st_blocks * 512, 1 << 20);
  EXPECT_EQ(Compare(), Lines{"- big"});
}

TEST_F(Sizes, ManyFilesInOneFolder) {
  constexpr int Count = 100000;
  constexpr int InBoth = 10000;
  // Links to a few files are made much faster than files.
  for (const char* number : {"0", "1", "2", "3"}) Tree.File(number);
  const auto fill = [this](const char* side, int first, int end) {
    const int folder = open(Tree.Path(side).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int i = first; i < end; ++i)
      ASSERT_EQ(linkat(AT_FDCWD, Tree.Path(std::to_string(i % 4)).c_str(), folder,
                       ("file" + std::to_string(i)).c_str(), 0),
                0);
    close(folder);
  };
  fill("s", 0, Count - 1);
  fill("t", Count - InBoth - 1, Count);
  Compare();
  EXPECT_EQ(Rows.size(), std::size_t{Count});
  const auto count = [this](ResultKind kind) { return std::ranges::count(Rows, kind, &CompareRow::Kind); };
  EXPECT_EQ(count(ResultKind::SourceFileMissingInTarget), Count - InBoth - 1);
  EXPECT_EQ(count(ResultKind::TargetFileMissingInSource), 1);
  EXPECT_EQ(count(ResultKind::FileSame), InBoth);
  EXPECT_EQ(FixSources(), Lines{});
  EXPECT_TRUE(Tree.Exists("s/file99999"));
}

class Deep : public CompareFaults {
 protected:
  static constexpr int Depth = 3000;

  /// A chain of folders below `top` with a file in the last one.
  void Dig(const std::string& top, const std::string& content, int seconds) {
    int folder = open(Tree.Path(top).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < Depth; ++level) {
      mkdirat(folder, "d", 0755);
      const int next = openat(folder, "d", O_PATH | O_DIRECTORY | O_CLOEXEC);
      close(folder);
      folder = next;
    }
    const int file = openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    EXPECT_EQ(write(file, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    const time_t time = TempTree::Time(seconds).time_since_epoch().count();
    const timespec times[] = {{time, 0}, {time, 0}};
    EXPECT_EQ(futimens(file, times), 0);
    close(file);
    close(folder);
  }

  std::string Bottom(const std::string& top) const {
    std::string path = Tree.Path(top);
    for (int level = 0; level < Depth; ++level) path += "/d";
    return path + "/file";
  }
};

TEST_F(Deep, FilesAreComparedAndFixed) {
  Dig("s", "new", 10);
  Dig("t", "old", 0);
  const Lines rows = Compare();
  ASSERT_EQ(rows.size(), Depth + 1u);
  EXPECT_TRUE(rows.back().ends_with("/d/file newer in source"));
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Files->OpenTextFile(Bottom("t"))->ReadAll(), "new");
  EXPECT_TRUE(Compare().back().ends_with("/d/file"));
}

TEST_F(Deep, FoldersAreFixedAsAWhole) {
  Tree.Folder("s/top");
  Dig("s/top", "deep", 0);
  EXPECT_EQ(Compare(), Lines{"d top only in source"});
  EXPECT_EQ(FixTargets(), Lines{});
  EXPECT_EQ(Files->OpenTextFile(Bottom("t/top"))->ReadAll(), "deep");
  const Lines rows = Compare();
  EXPECT_EQ(rows.size(), Depth + 2u);
  EXPECT_TRUE(rows.back().ends_with("/d/file"));
}

}  // namespace
}  // namespace brackwell
