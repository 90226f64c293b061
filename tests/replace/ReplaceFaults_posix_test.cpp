#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "replace/ReplacedTree.h"
#include "support/Child_posix.h"
#include "support/FailingFileSystem.h"
#include "support/FullDisk_posix.h"
#include "support/WithoutPrivileges_posix.h"

// Finding and replacing on trees as they are met in the wild on POSIX, and on disks that fail.

namespace brackwell {
namespace {

class ReplaceFaults : public ReplacedTree {
 protected:
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), Tree.Path(name).c_str()), 0) << name;
  }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(Tree.Path(name).c_str(), mode), 0); }
  struct stat StatusOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(lstat(Tree.Path(name).c_str(), &status), 0) << name;
    return status;
  }

  /// Does `step` once, as soon as so many rows have their result.
  void AfterResults(std::size_t count, const std::function<void()>& step) {
    OnEvents = [this, count, step, done = false]() mutable {
      if (done || Rows.size() < count || Rows[count - 1].Result.What == ReplaceResult::Kind::None) return;
      done = true;
      step();
    };
  }
};

using Names = ReplaceFaults;
using Links = ReplaceFaults;
using SpecialFiles = ReplaceFaults;
using Rights = ReplaceFaults;
using Changing = ReplaceFaults;
using Sizes = ReplaceFaults;
using FailingDisk = ReplaceFaults;

// --- Names

TEST_F(Names, AreBytes) {
  const Lines odd{"\xFF\xFE", "a\nb",   "\"quoted\" 'name'", "<b>&amp;<i>", "back\\slash", " ",
                  "-rf",      "caf\xE9"};
  for (const std::string& name : odd) Tree.File("t/" + name + "/" + name + ".txt", "x");
  EXPECT_EQ(Replace("x", "y").back(), std::to_string(odd.size()) + " total matches were replaced");
  for (const std::string& name : odd) EXPECT_EQ(Tree.Read("t/" + name + "/" + name + ".txt"), "y");
}

TEST_F(Names, ThatAreNoTextAreExcludedByTheirBytes) {
  Tree.File("t/\xFF-a.txt", "x");
  Tree.File("t/b\xFF.TXT", "x");
  Tree.File("t/b.\xFFtxt", "x");
  Options.ExclusionList = {"\xFF"};
  EXPECT_EQ(Scan(), Lines{"b\xFF.TXT"});
}

// --- Links

TEST_F(Links, AreLeftOutWhateverTheyLeadTo) {
  Tree.File("outside/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  Link("../outside/a.txt", "t/link.txt");
  Link("../outside", "t/lib");
  Link("..", "t/sub/to parent");
  Link("b.txt", "t/sub/again.txt");
  Link("nowhere", "t/dangling.txt");
  EXPECT_EQ(Replace("x", "y"), (Lines{"sub/b.txt: 1 matches replaced", "1 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("outside/a.txt"), "x");
  EXPECT_EQ(Tree.Read("t/sub/b.txt"), "y");
}

TEST_F(Links, PutInTheWayOfAListedFileAreNotFollowed) {
  Tree.File("outside/b.txt", "x");
  Tree.File("t/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  AfterResults(1, [this] {
    Tree.Remove("t/sub");
    Link("../outside", "t/sub");
  });
  Replace("x", "y");
  EXPECT_EQ(Tree.Read("t/a.txt"), "y");
  EXPECT_EQ(Tree.Read("outside/b.txt"), "x");
}

TEST_F(Links, InThePlaceOfAListedFileAreAsIfItWereGone) {
  Tree.File("outside/b.txt", "x");
  for (const char* name : {"t/a.txt", "t/b.txt", "t/c.txt"}) Tree.File(name, "x");
  AfterResults(1, [this] {
    Tree.Remove("t/b.txt");
    Link("../outside/b.txt", "t/b.txt");
  });
  EXPECT_EQ(Replace("x", "y"), (Lines{"a.txt: 1 matches replaced", "b.txt: ", "c.txt: 1 matches replaced",
                                      "2 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("outside/b.txt"), "x");
}

TEST_F(Links, TheChosenFolderMayBeOne) {
  Tree.File("outside/a.txt", "x");
  Tree.Remove("t");
  Link("outside", "t");
  EXPECT_EQ(Replace("x", "y"), (Lines{"a.txt: 1 matches replaced", "1 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("outside/a.txt"), "y");
}

TEST_F(Links, OfTheHardKindStayTogether) {
  Tree.File("t/a.txt", "x");
  ASSERT_EQ(link(Tree.Path("t/a.txt").c_str(), Tree.Path("t/b.other").c_str()), 0);
  EXPECT_EQ(Replace("x", "yy").back(), "1 total matches were replaced");
  EXPECT_EQ(Tree.Read("t/b.other"), "yy");
  EXPECT_EQ(StatusOf("t/a.txt").st_ino, StatusOf("t/b.other").st_ino);
}

TEST_F(Links, OfTheHardKindAreNotOpenedAgain) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/b.txt", "x");
  ASSERT_EQ(link(Tree.Path("t/a.txt").c_str(), Tree.Path("t/c.txt").c_str()), 0);
  AfterResults(2, [this] { Mode("t/a.txt", 0); });
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Replace("x", "y"), (Lines{"a.txt: 1 matches replaced", "b.txt: 1 matches replaced",
                                      "c.txt: 0 matches replaced", "2 total matches were replaced"}));
}

// --- Pipes and sockets

TEST_F(SpecialFiles, AreNeverOpened) {
  ASSERT_EQ(mkfifo(Tree.Path("t/pipe.txt").c_str(), 0666), 0);
  const int socketFile = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const std::string path = Tree.Path("t/socket.txt");
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(bind(socketFile, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(Replace("x", "y"), (Lines{"pipe.txt: File has 0 size", "socket.txt: File has 0 size",
                                      "0 total matches were replaced"}));
  close(socketFile);
}

TEST_F(SpecialFiles, EmptyFilesAreNeverOpened) {
  Tree.File("t/empty.txt");
  Tree.File("t/full.txt", "x");
  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(inotify_add_watch(watch, Tree.Path("t").c_str(), IN_OPEN), 0);
  EXPECT_EQ(Replace("x", "y").front(), "empty.txt: File has 0 size");
  std::string events(10000, '\0');
  ASSERT_GT(read(watch, events.data(), events.size()), 0);
  close(watch);
  EXPECT_NE(events.find("full.txt"), std::string::npos);
  EXPECT_EQ(events.find("empty.txt"), std::string::npos);
}

TEST_F(SpecialFiles, EmptyFilesNeedNoRights) {
  Tree.File("t/empty.txt");
  Mode("t/empty.txt", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Find("x"), (Lines{"empty.txt: File has 0 size", "0 total matches were found"}));
}

// --- Rights

TEST_F(Rights, AnUnreadableFolderEndsTheScan) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/locked/b.txt", "x");
  Tree.File("t/z/c.txt", "x");
  Mode("t/locked", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Find("x"), (Lines{"a.txt: ", "error 70 locked"}));
}

TEST_F(Rights, WithoutSubfoldersAnUnreadableFolderIsEmpty) {
  Tree.File("t/a.txt", "x");
  Options.Subfolders = false;
  Mode("t", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Find("x"), Lines{"0 total matches were found"});
}

TEST_F(Rights, AnUnreadableFileEndsTheRun) {
  for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "x");
  Mode("t/b.txt", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Replace("x", "y"), (Lines{"a.txt: 1 matches replaced", "b.txt: ", "c.txt: ", "error 70 b.txt"}));
  EXPECT_EQ(Tree.Read("t/c.txt"), "x");
}

TEST_F(Rights, AnUnreadableFileAmongManyEndsTheRunAtItsPlace) {
  constexpr std::size_t Count = 500;
  Lines expected;
  for (std::size_t i = 0; i < Count; ++i) {
    const std::string name = std::to_string(1000 + i) + ".txt";
    Tree.File("t/" + name, "x");
    expected.push_back(name + (i < 250 ? ": 1 matches found" : ": "));
  }
  expected.push_back("error 70 1250.txt");
  for (const char* name : {"1250", "1251", "1400"}) Mode(std::string("t/") + name + ".txt", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Find("x"), expected);
  EXPECT_EQ(Item, 251u);
}

TEST_F(Rights, AFolderThatTakesNoFilesKeepsItsOwn) {
  Tree.File("t/a.txt", "x");
  Mode("t", 0555);
  const WithoutPrivileges asAnyUser;
  const Lines lines = Replace("x", "y");
  EXPECT_EQ(lines.back(), "1 total matches were replaced");
  EXPECT_EQ(Tree.Read("t/a.txt"), lines.size() == 2 ? "y" : "x");
  EXPECT_EQ(Tree.List("t"), Lines{"a.txt"});
}

TEST_F(Rights, ModesAndOwnersStay) {
  Tree.File("t/a.txt", "x");
  Mode("t/a.txt", 0640);
  EXPECT_EQ(Replace("x", "y").back(), "1 total matches were replaced");
  EXPECT_EQ(StatusOf("t/a.txt").st_mode & 07777, 0640u);
}

// --- What changes meanwhile

TEST_F(Changing, FoldersThatGoDuringTheScanAreLeftOut) {
  Tree.File("outside/d.txt", "x");
  Tree.File("t/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  Tree.File("t/swapped/d.txt", "x");
  Tree.File("t/there/c.txt", "x");
  OnEvents = [this] {
    if (Rows.empty() || !Tree.Exists("t/sub")) return;
    Tree.Remove("t/sub");
    Tree.Remove("t/swapped");
    Link("../outside", "t/swapped");
  };
  EXPECT_EQ(Find("x"),
            (Lines{"a.txt: 1 matches found", "there/c.txt: 1 matches found", "2 total matches were found"}));
}

TEST_F(Changing, TheChosenFolderThatGoesDuringTheScanEndsIt) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  OnEvents = [this] {
    if (!Rows.empty()) Tree.Remove("t");
  };
  EXPECT_EQ(Find("x"), (Lines{"a.txt: ", "error 76 sub"}));
}

TEST_F(Changing, FilesThatComeAfterTheScanAreNotLookedInto) {
  Tree.File("t/a.txt", "x");
  AfterResults(1, [this] { Tree.File("t/b.txt", "x"); });
  EXPECT_EQ(Find("x"), (Lines{"a.txt: 1 matches found", "1 total matches were found"}));
}

TEST_F(Changing, AGrowingFileHasTheSizeItWasOpenedWith) {
  const std::string begin(2 << 20, 'x');
  Tree.File("t/log.txt", begin);
  OnEvents = [this] { std::ofstream(Tree.Path("t/log.txt"), std::ios::app) << std::string(1 << 20, 'x'); };
  const Lines lines = Find("x");
  const auto counted = std::stoll(lines.back());
  EXPECT_GE(counted, static_cast<long long>(begin.size()));
  EXPECT_LT(counted, static_cast<long long>(Tree.Read("t/log.txt").size()));
}

TEST_F(Changing, AFileThatGrowsWhileItIsReplacedKeepsWhatWasAdded) {
  const std::string begin(2 << 20, 'x');
  Tree.File("t/log.txt", begin);
  OnEvents = [this, added = false]() mutable {
    if (added || !Messages.back().starts_with("Working")) return;
    added = true;
    std::ofstream(Tree.Path("t/log.txt"), std::ios::app) << "added";
  };
  EXPECT_EQ(Replace("x", "y"), (Lines{"log.txt: 2097152 matches replaced", "!open log.txt",
                                      "2097152 total matches were replaced"}));
  EXPECT_TRUE(Tree.Read("t/log.txt") == begin + "added");
}

// --- Sizes and numbers

/// The most memory that this process has had so far, in bytes.
std::uint64_t PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

/// A file of any size, which takes no room where nothing has been written.
class SparseFile {
 public:
  SparseFile(const std::string& path, off_t size)
      : mFile(open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644)) {
    Resize(size);
  }
  ~SparseFile() { close(mFile); }
  SparseFile(const SparseFile&) = delete;
  SparseFile& operator=(const SparseFile&) = delete;

  void Resize(off_t size) { ASSERT_EQ(ftruncate(mFile, size), 0); }
  void Write(const std::string& text, off_t at) {
    ASSERT_EQ(pwrite(mFile, text.data(), text.size(), at), static_cast<ssize_t>(text.size()));
  }

 private:
  const int mFile;
};

TEST_F(Sizes, FiveGigabytesAreSearchedInLittleMemory) {
  constexpr off_t GiB = off_t{1} << 30;
  SparseFile file(Tree.Path("t/big.txt"), 5 * GiB);
  file.Write("needle", 0);
  file.Write("Needle", 4 * GiB - 3);  // where 32 bits end
  file.Write("NEEDLE", 5 * GiB - 6);
  const std::uint64_t before = PeakMemory();
  EXPECT_EQ(Find("needle"), (Lines{"big.txt: 3 matches found", "3 total matches were found"}));
  EXPECT_LT(PeakMemory() - before, 4u << 20);
}

TEST_F(Sizes, StopsInTheMiddleOfGigabytes) {
  SparseFile file(Tree.Path("t/1000.txt"), off_t{1} << 40);
  for (int i = 1; i < 100; ++i)
    ASSERT_EQ(
        link(Tree.Path("t/1000.txt").c_str(), Tree.Path("t/" + std::to_string(1000 + i) + ".txt").c_str()),
        0);
  OnEvents = [this, events = 0]() mutable {
    Stop = !Messages.empty() && Messages.back().starts_with("Working") && ++events == 3;
  };
  EXPECT_EQ(Find("needle").back(), "0 total matches were found");
  EXPECT_FALSE(Finished);
  EXPECT_EQ(Item, 0u);
  EXPECT_EQ(Rows[0].Result.What, ReplaceResult::Kind::None);
}

TEST_F(Sizes, LargeFilesAreReplacedInLittleMemory) {
  constexpr off_t MiB = off_t{1} << 20;
  Tree.File("t/big.txt", "\xC3\xA9");
  ASSERT_EQ(truncate(Tree.Path("t/big.txt").c_str(), 100 * MiB), 0);
  const std::uint64_t before = PeakMemory();
  EXPECT_EQ(Replace("\xC3\x89", "\xE2\x82\xAC").back(), "1 total matches were replaced");
  EXPECT_LT(PeakMemory() - before, 8u << 20);
  EXPECT_EQ(StatusOf("t/big.txt").st_size, 100 * MiB + 1);
}

TEST_F(Sizes, MoreMatchesThanACountHoldsAreAnOverflow) {
  constexpr off_t Most = 0x7FFFFFFF;
  const std::string zero(1, '\0');
  SparseFile file(Tree.Path("t/a.txt"), Most);
  Tree.File("t/b.txt", zero);
  EXPECT_EQ(Find(zero),
            (Lines{"a.txt: 2147483647 matches found", "b.txt: 1 matches found", "error 6 b.txt"}));
  file.Resize(Most + 1);
  EXPECT_EQ(Replace(zero, "x"), (Lines{"a.txt: ", "b.txt: ", "error 6 a.txt"}));
  EXPECT_EQ(Tree.Read("t/b.txt"), zero);
}

TEST_F(Sizes, ManyFiles) {
  constexpr int Count = 20000;
  // Links to a file are made much faster than files.
  Tree.File("content", "x");
  const int folder = open(Tree.Path("t").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  for (int i = 0; i < Count; ++i)
    ASSERT_EQ(linkat(AT_FDCWD, Tree.Path("content").c_str(), folder, (std::to_string(i) + ".txt").c_str(), 0),
              0);
  close(folder);
  EXPECT_EQ(Find("X").back(), std::to_string(Count) + " total matches were found");
}

TEST_F(Sizes, ManyFilesWithoutThreads) {
  constexpr int Count = 100;
  for (int i = 0; i < Count; ++i) Tree.File("t/" + std::to_string(i) + ".txt", "x");
  EXPECT_EQ(InChild([this] {
              RefuseCall(SYS_clone3, -1, 0, EAGAIN);
              return Find("X").back() == "100 total matches were found" ? 0 : 1;
            }),
            0);
}

TEST_F(Sizes, FoldersOfAnyDepth) {
  std::string name = "t";
  for (int level = 0; level < 100; ++level) name += "/" + std::string(20, 'd');
  Tree.File(name + "/a.txt", "x");
  EXPECT_EQ(Replace("x", "y").back(), "1 total matches were replaced");
  EXPECT_EQ(Tree.Read(name + "/a.txt"), "y");
}

// --- A disk that fails

TEST_F(FailingDisk, AFullOneLeavesEveryFileWhole) {
  const std::string large(100000, 'x');
  Tree.File("t/a.txt", large);
  Tree.File("t/b.txt", "x");
  Lines lines;
  {
    const FullDisk full;
    lines = Replace("x", "yy");
  }
  EXPECT_EQ(lines, (Lines{"a.txt: 100000 matches replaced", "b.txt: 1 matches replaced", "!open a.txt",
                          "!open b.txt", "100001 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt"), large);
  EXPECT_EQ(Tree.Read("t/b.txt"), "x");
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt"}));
}

TEST_F(FailingDisk, AtEveryCallFilesAreWhollyOldOrWhollyNewAndItIsTold) {
  const Lines names{"a.txt", "b.txt", "sub/c.txt", "sub/deep/d.txt"};
  const auto old = [](std::size_t file) { return "x" + std::string(file * 200000, '-') + "X\xE9"; };
  const auto changed = [](std::size_t file) { return "\xE8" + std::string(file * 200000, '-') + "\xE8\xE9"; };
  int calls = 0;
  for (int failAt = 0; failAt <= calls; ++failAt) {
    for (std::size_t file = 0; file < names.size(); ++file) Tree.File("t/" + names[file], old(file));
    auto disk = std::make_unique<FailingFileSystem>(failAt, FileError::DiskFull);
    const FailingFileSystem& failing = *disk;
    Files = std::move(disk);
    const Lines lines = Replace("X", "\xC3\xA8");
    if (failAt == 0) calls = failing.Calls();
    bool isAllChanged = true;
    for (std::size_t file = 0; file < names.size(); ++file) {
      const std::string content = Tree.Read("t/" + names[file]);
      ASSERT_TRUE(content == old(file) || content == changed(file)) << names[file] << " at " << failAt;
      isAllChanged = isAllChanged && content == changed(file);
    }
    const bool isTold = std::ranges::any_of(lines, [](const std::string& line) {
      return line.starts_with("!open") || line.starts_with("error");
    });
    ASSERT_EQ(isTold, failAt > 0) << failAt;
    ASSERT_TRUE(isTold || isAllChanged);
    ASSERT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt", "sub/", "sub/c.txt", "sub/deep/", "sub/deep/d.txt"}));
  }
  EXPECT_GT(calls, 30);
}

}  // namespace
}  // namespace brackwell
