#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <random>
#include <thread>

#include "compare/ComparedTrees.h"
#include "support/Child_posix.h"

// A fix that is cut short, by a full disk or by a kill at any moment, leaves every file wholly old or wholly
// new.

namespace brackwell {
namespace {

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status;
}

// --- A full disk

class FullDisk : public ComparedTrees {
 protected:
  static constexpr std::size_t MiB = 1 << 20;

  /// Runs the steps in a process of its own; what they find wrong is printed there.
  static bool Passes(const std::function<void()>& steps) {
    std::fflush(nullptr);
    return InChild([&] {
             steps();
             std::fflush(nullptr);
             return HasFailure() ? 1 : 0;
           }) == 0;
  }
};

TEST_F(FullDisk, LeavesFilesWholeAndTheRestIsTried) {
  const std::string fits(1 * MiB, 'n');
  const std::string tooBig(9 * MiB, 'n');
  Tree.File("s/a", fits, 10);
  Tree.File("s/b big", tooBig, 10);
  Tree.File("s/c new big", tooBig, 10);
  Tree.File("s/d", fits, 10);
  EXPECT_TRUE(Passes([&] {
    ShrinkDisk(Tree.Path("t"), 6 * MiB);
    for (const char* name : {"a", "b big"}) Tree.File(std::string("t/") + name, "old", 0);
    Compare();
    EXPECT_EQ(FixTargets(), (Lines{"b big 61", "c new big 61"}));
    EXPECT_EQ(Tree.List("t"), (Lines{"a", "b big", "d"}));
    EXPECT_TRUE(Tree.Read("t/a") == fits);
    EXPECT_EQ(Tree.Read("t/b big"), "old");
    EXPECT_EQ(StatusOf(Tree.Path("t/b big")).st_mtime, TempTree::Time(0).time_since_epoch().count());
    EXPECT_TRUE(Tree.Read("t/d") == fits);
    EXPECT_EQ(Compare(), (Lines{"- a", "- b big newer in source", "- c new big only in source", "- d"}));
  }));
}

TEST_F(FullDisk, InTheMiddleOfAFolderKeepsWhatIsThere) {
  const std::string fits(1 * MiB, 'n');
  Tree.File("s/a folder/first", fits, 10);
  Tree.File("s/a folder/middle", std::string(9 * MiB, 'n'), 10);
  Tree.File("s/z", "small", 10);
  EXPECT_TRUE(Passes([&] {
    ShrinkDisk(Tree.Path("t"), 6 * MiB);
    Compare();
    EXPECT_EQ(FixTargets(), Lines{"a folder 61"});
    EXPECT_EQ(Tree.List("t"), (Lines{"a folder/", "a folder/first", "z"}));
    EXPECT_TRUE(Tree.Read("t/a folder/first") == fits);
    EXPECT_EQ(Tree.Read("t/z"), "small");
  }));
}

// --- A kill

class Killed : public ComparedTrees, public testing::WithParamInterface<bool> {
 protected:
  static constexpr int FileCount = 50;
  static constexpr int Rounds = 100;

  /// Half of the files are only in the source.
  static bool IsNew(int file) { return file % 2 == 0; }

  static std::string NameOf(int file) {
    return "folder" + std::to_string(file % 3) + "/file" + std::to_string(file);
  }

  /// Most files are small, one has three megabytes. Versions differ in content, size and time.
  static std::string Content(int file, int version) {
    constexpr std::array<std::size_t, 10> Sizes{0, 100, 4096, 300, 70000, 1, 5000, 1 << 20, 9999, 200000};
    const std::size_t size = file == 17 ? 3 << 20 : Sizes[file % Sizes.size()];
    return std::string(size + version, static_cast<char>('a' + version)) + std::to_string(file);
  }

  void WriteSource(int version) {
    for (int file = 0; file < FileCount; ++file)
      Tree.File(SourceOf(version) + "/" + NameOf(file), Content(file, version), version);
  }
  static std::string SourceOf(int version) { return "s" + std::to_string(version); }
  void CompareWith(int version) {
    Options.SourceRoot = Tree.Root(SourceOf(version));
    Compare();
  }
  void RemoveNew() {
    for (int file = 0; file < FileCount; ++file)
      if (IsNew(file)) Tree.Remove("t/" + NameOf(file));
  }

  /// "0" or "1" for each file that is wholly of that version, its time included, "-" for each that is not
  /// there, "?" for any other.
  std::string Versions() const {
    std::string versions;
    for (int file = 0; file < FileCount; ++file) versions += VersionOf(file);
    return versions;
  }

  char VersionOf(int file) const {
    const std::string name = "t/" + NameOf(file);
    if (!Tree.Exists(name)) return '-';
    const std::string content = Tree.Read(name);
    const struct stat status = StatusOf(Tree.Path(name));
    const auto time = status.st_mtim.tv_nsec == 0 ? status.st_mtim.tv_sec : 0;
    for (int version : {0, 1})
      if (content == Content(file, version) && time == TempTree::Time(version).time_since_epoch().count())
        return static_cast<char>('0' + version);
    return '?';
  }

  /// Fixes every row in a process of its own, which is killed some time after it began with the row of that
  /// number. Gives whether the kill came in time.
  bool FixAndKill(int version, int row, std::chrono::microseconds later) {
    CompareWith(version);
    int began[2];
    EXPECT_EQ(pipe(began), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (GetParam()) ForbidUnnamedFiles();
      for (CompareRow& each : Rows) ToggleFixTarget(each);
      FixSelected(*Files, {.SourceRoot = Options.SourceRoot, .TargetRoot = Options.TargetRoot}, Rows,
                  {.Fixing = [&](std::size_t) { static_cast<void>(write(began[1], "", 1) == 1); },
                   .Problem = [](std::size_t, const FileSystemError&) { _exit(1); },
                   .Fixed = [](std::size_t) {},
                   .Working = {}});
      _exit(0);
    }
    close(began[1]);
    char byte;
    for (int i = 0; i <= row && read(began[0], &byte, 1) == 1; ++i) continue;
    std::this_thread::sleep_for(later);
    kill(child, SIGKILL);
    close(began[0]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
  }

  int FixAll(int version) {
    return InChild([&] {
      if (GetParam()) ForbidUnnamedFiles();
      CompareWith(version);
      return static_cast<int>(FixTargets().size());
    });
  }

  Lines Leftovers() const {
    Lines leftovers;
    for (const std::string& name : Tree.List("t"))
      if (name.find(".brackwell-") != std::string::npos) leftovers.push_back(name);
    return leftovers;
  }
};

TEST_P(Killed, AtAnyMomentEveryFileIsWhollyOldOrWhollyNew) {
  WriteSource(0);
  WriteSource(1);
  CompareWith(0);
  ASSERT_EQ(FixTargets(), Lines{});
  std::mt19937 random(20);
  int partly = 0;
  for (int round = 1; round <= Rounds; ++round) {
    const int version = round % 2;
    const char newVersion = static_cast<char>('0' + version);
    const char oldVersion = static_cast<char>('1' - version);
    RemoveNew();
    const bool killed = FixAndKill(version, random() % FileCount, std::chrono::microseconds(random() % 3000));
    const std::string found = Versions();
    for (int file = 0; file < FileCount; ++file)
      ASSERT_TRUE(found[file] == newVersion || found[file] == (IsNew(file) ? '-' : oldVersion))
          << NameOf(file) << " in round " << round << ": " << found;
    if (killed && found != std::string(FileCount, newVersion)) ++partly;

    ASSERT_EQ(FixAll(version), 0);
    ASSERT_EQ(Versions(), std::string(FileCount, newVersion));
    ASSERT_EQ(Leftovers(), Lines{});
  }
  EXPECT_GT(partly, Rounds / 4);
}

INSTANTIATE_TEST_SUITE_P(Disks, Killed, testing::Bool(), [](const auto& info) {
  return info.param ? "WithoutUnnamedFiles" : "WithUnnamedFiles";
});

}  // namespace
}  // namespace brackwell
