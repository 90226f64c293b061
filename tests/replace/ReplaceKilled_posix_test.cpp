#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "replace/ReplacedTree.h"
#include "support/Child_posix.h"

// A replacement that is killed at any moment leaves every file wholly old or wholly new.

namespace brackwell {
namespace {

class ReplaceKilled : public ReplacedTree, public testing::WithParamInterface<bool> {
 protected:
  static constexpr int FileCount = 1000;
  static constexpr int Rounds = 8;

  static std::string NameOf(int file) {
    return "t/folder" + std::to_string(file % 7) + "/file" + std::to_string(file) + ".txt";
  }
  static std::string Content(int file, const std::string& phrase) {
    constexpr std::array<std::size_t, 5> Sizes{10, 4096, 300, 70000, 1};
    const std::size_t size = file == 500 ? 1 << 20 : Sizes[static_cast<std::size_t>(file) % Sizes.size()];
    return phrase + std::string(size, '-') + phrase;
  }

  /// "0" for each file with the first phrase, "1" for each with the second, "?" for any other.
  std::string Versions() const {
    std::string versions;
    for (int file = 0; file < FileCount; ++file) {
      const std::string content = Tree.Read(NameOf(file));
      versions += content == Content(file, "zero") ? '0' : content == Content(file, "number one") ? '1' : '?';
    }
    return versions;
  }

  /// Replaces in a process of its own, which is killed some time after it began with the file of that number.
  /// Gives whether the kill came in time.
  bool ReplaceAndKill(const std::string& find, const std::string& replacement, int file,
                      std::chrono::microseconds later) {
    int began[2];
    EXPECT_EQ(pipe(began), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (GetParam()) ForbidUnnamedFiles();
      OnEvents = [&, told = std::size_t{0}]() mutable {
        for (; told < Rows.size() && Rows[told].Result.What != ReplaceResult::Kind::None; ++told)
          static_cast<void>(write(began[1], "", 1) == 1);
      };
      Replace(find, replacement);
      _exit(0);
    }
    close(began[1]);
    char byte;
    for (int i = 0; i < file && read(began[0], &byte, 1) == 1; ++i) continue;
    std::this_thread::sleep_for(later);
    kill(child, SIGKILL);
    close(began[0]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
  }

  int ReplaceAll(const std::string& find, const std::string& replacement) {
    return InChild([&] {
      if (GetParam()) ForbidUnnamedFiles();
      const Lines lines = Replace(find, replacement);
      return std::ranges::any_of(lines, [](const std::string& line) { return line.starts_with("!"); }) ? 1
                                                                                                       : 0;
    });
  }
};

TEST_P(ReplaceKilled, AtAnyMomentEveryFileIsWhollyOldOrWhollyNew) {
  for (int file = 0; file < FileCount; ++file) Tree.File(NameOf(file), Content(file, "zero"));
  const std::size_t members = Tree.List("t").size();
  std::mt19937 random(20);
  int partly = 0;
  for (int round = 0; round < Rounds; ++round) {
    const std::string from = round % 2 == 0 ? "zero" : "number one";
    const std::string to = round % 2 == 0 ? "number one" : "zero";
    const bool killed = ReplaceAndKill(from, to, static_cast<int>(random() % FileCount),
                                       std::chrono::microseconds(random() % 500));
    const std::string found = Versions();
    ASSERT_EQ(found.find('?'), std::string::npos)
        << NameOf(static_cast<int>(found.find('?'))) << " in round " << round;
    if (killed && found.find('0') != std::string::npos && found.find('1') != std::string::npos) ++partly;

    ASSERT_EQ(ReplaceAll(from, to), 0);
    ASSERT_EQ(Versions(), std::string(FileCount, round % 2 == 0 ? '1' : '0'));
  }
  EXPECT_GT(partly, Rounds / 3);
  // A kill between two calls leaves a neighbour at most, which the next replacement of that file takes away.
  EXPECT_LE(Tree.List("t").size(), members + (GetParam() ? 0 : Rounds));
}

INSTANTIATE_TEST_SUITE_P(Disks, ReplaceKilled, testing::Bool(), [](const auto& info) {
  return info.param ? "WithoutUnnamedFiles" : "WithUnnamedFiles";
});

}  // namespace
}  // namespace brackwell
