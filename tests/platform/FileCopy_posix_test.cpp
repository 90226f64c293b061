#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What a copied file keeps on POSIX, which targets are refused, and that a target is whole whatever happens.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

constexpr int Nobody = 65534;

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

void SetTimes(const std::string& path, timespec modified) {
  const timespec times[] = {modified, modified};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

class FileCopyTest : public testing::Test {
 protected:
  FileCopyTest() { chmod(mTree.Path().c_str(), 0777); }

  int CopyError(const std::string& source, const std::string& target, bool overwrite = true) {
    return ErrorNumber([&] { mFiles->CopyFile(mTree.Path(source), mTree.Path(target), overwrite); });
  }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0); }
  mode_t ModeOf(const std::string& name) { return StatusOf(mTree.Path(name)).st_mode & 07777; }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), mTree.Path(name).c_str()), 0);
  }
  std::string LinkText(const std::string& name) {
    char text[256] = {};
    return readlink(mTree.Path(name).c_str(), text, sizeof text - 1) < 0 ? "<no link>" : text;
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using Kept = FileCopyTest;
using Targets = FileCopyTest;
using Sources = FileCopyTest;

// --- What a copy keeps

TEST_F(Kept, ModeAndTimeToTheNanosecond) {
  mTree.File("source", "text");
  for (const mode_t mode : {0640, 0755, 0400, 0444}) {
    mTree.Remove("target");
    Mode("source", mode);
    SetTimes(mTree.Path("source"), {1600000000, 123456789});
    ASSERT_EQ(CopyError("source", "target"), 0);
    EXPECT_EQ(ModeOf("target"), mode);
    EXPECT_EQ(StatusOf(mTree.Path("target")).st_mtim.tv_sec, 1600000000);
    EXPECT_EQ(StatusOf(mTree.Path("target")).st_mtim.tv_nsec, 123456789);
  }
}

TEST_F(Kept, DatesAreWholeSecondsRoundedDown) {
  mTree.File("file");
  SetTimes(mTree.Path("file"), {1600000000, 999999999});
  EXPECT_EQ(mFiles->GetFile(mTree.Path("file")).DateLastModified, DateTime(std::chrono::seconds(1600000000)));
  SetTimes(mTree.Path("file"), {-2, 500000000});
  EXPECT_EQ(mFiles->GetFile(mTree.Path("file")).DateLastModified, DateTime(std::chrono::seconds(-2)));
  EXPECT_EQ(mFiles->GetFolder(mTree.Path())->Find("file")->DateLastModified,
            DateTime(std::chrono::seconds(-2)));
}

TEST_F(Kept, TheSetUidBitOnlyForItsOwner) {
  mTree.File("own", "program");
  Mode("own", 04755);
  EXPECT_EQ(CopyError("own", "own copy"), 0);
  EXPECT_EQ(ModeOf("own copy"), 04755u);

  std::string foreign = "/usr/bin/su";
  if (geteuid() == 0) {
    mTree.File("foreign", "program");
    foreign = mTree.Path("foreign");
    ASSERT_EQ(chown(foreign.c_str(), Nobody, Nobody), 0);
    Mode("foreign", 04755);
  }
  ASSERT_NE(StatusOf(foreign).st_mode & 04000, 0u);
  mFiles->CopyFile(foreign, mTree.Path("foreign copy"), false);
  EXPECT_EQ(ModeOf("foreign copy"), 0755u);
}

TEST_F(Kept, HolesOfAFileBeyondFourGigabytes) {
  constexpr off_t Size = 5LL << 30;
  constexpr off_t Inside = (9LL << 29) + 12345;
  const int file = open(mTree.Path("source").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644);
  ASSERT_EQ(ftruncate(file, Size), 0);
  ASSERT_EQ(pwrite(file, "begin", 5, 0), 5);
  ASSERT_EQ(pwrite(file, "inside", 6, Inside), 6);
  close(file);
  ASSERT_EQ(CopyError("source", "target"), 0);

  const struct stat copied = StatusOf(mTree.Path("target"));
  EXPECT_EQ(copied.st_size, Size);
  EXPECT_LT(copied.st_blocks * 512, 1 << 20);
  char text[16] = {};
  const int copy = open(mTree.Path("target").c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(pread(copy, text, 6, 0), 6);
  EXPECT_EQ(std::string(text, 6), std::string("begin\0", 6));
  EXPECT_EQ(pread(copy, text, 8, Inside - 1), 8);
  EXPECT_EQ(std::string(text, 8), std::string("\0inside\0", 8));
  close(copy);
  EXPECT_EQ(mFiles->GetFile(mTree.Path("target")).Size, static_cast<std::uint64_t>(Size));
}

// --- Which targets are written, and how

TEST_F(Targets, ALinkIsReplacedAndNeverFollowed) {
  mTree.File("source", "new", 30);
  mTree.File("sub/real", "kept");
  Mode("sub/real", 0444);
  Link("sub/real", "to a file");
  Link("sub", "to a folder");
  Link("none", "to nothing");
  Link("source", "to the source");
  for (const std::string name : {"to a file", "to a folder", "to nothing", "to the source"}) {
    EXPECT_EQ(CopyError("source", name, false), 58) << name;
    EXPECT_EQ(CopyError("source", name), 0) << name;
    EXPECT_EQ(LinkText(name), "<no link>") << name;
    EXPECT_EQ(mTree.Read(name), "new") << name;
    EXPECT_EQ(ModeOf(name), ModeOf("source")) << name;
  }
  EXPECT_EQ(mTree.Read("sub/real"), "kept");
  EXPECT_EQ(mTree.List("sub"), Names{"real"});
  EXPECT_FALSE(mTree.Exists("none"));
}

TEST_F(Targets, AnotherNameOfTheSourceIsTheSource) {
  mTree.File("source", "text");
  ASSERT_EQ(link(mTree.Path("source").c_str(), mTree.Path("hard link").c_str()), 0);
  EXPECT_EQ(CopyError("source", "hard link"), 70);
  EXPECT_EQ(mTree.Read("source"), "text");
}

TEST_F(Targets, WhatTheUserMayNotWriteIsLeftAlone) {
  mTree.File("source", "new");
  mTree.File("target", "kept");
  Mode("target", 0464);  // neither its owner nor a stranger
  const auto copy = [&] {
    BecomeOrdinaryUser();
    return CopyError("source", "target");
  };
  EXPECT_EQ(InChild(copy), 70);
  EXPECT_EQ(mTree.Read("target"), "kept");
}

TEST_F(Targets, AFolderThatMayNotBeWrittenIsDenied) {
  mTree.File("source", "new");
  mTree.Folder("locked");
  Mode("locked", 0555);
  const auto copy = [&] {
    BecomeOrdinaryUser();
    return CopyError("source", "locked/target");
  };
  EXPECT_EQ(InChild(copy), 70);
}

TEST_F(Targets, PipesAndDevicesAreNeverReplacedNorOpened) {
  mTree.File("source", "new");
  ASSERT_EQ(mkfifo(mTree.Path("pipe").c_str(), 0666), 0);
  EXPECT_EQ(CopyError("source", "pipe"), 75);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyFile(mTree.Path("source"), "/dev/null", true); }), 75);
  EXPECT_TRUE(S_ISFIFO(StatusOf(mTree.Path("pipe")).st_mode));
  EXPECT_TRUE(S_ISCHR(StatusOf("/dev/null").st_mode));
}

TEST_F(Targets, NamesMayBeAsLongAsNamesCanBe) {
  const std::string longest(255, 'n');
  const std::string tooLong(256, 'n');
  mTree.File("source", "new");
  mTree.File(longest, "old");
  EXPECT_EQ(CopyError("source", longest), 0);
  EXPECT_EQ(mTree.Read(longest), "new");
  EXPECT_EQ(CopyError("source", tooLong), 52);
  EXPECT_EQ(CopyError("source", "none/" + tooLong), 76);
  EXPECT_EQ(CopyError(tooLong, "target"), 53);
}

// --- Which sources are read

TEST_F(Sources, ALinkIsCopiedAsTheLinkItIs) {
  mTree.File("real", "text");
  mTree.Folder("folder");
  for (const std::string text : {"real", "folder", "none", "link to none"}) {
    Link(text, "link to " + text);
    SetTimes(mTree.Path("link to " + text), {1600000000, 123456789});
    ASSERT_EQ(CopyError("link to " + text, "copy"), 0) << text;
    EXPECT_EQ(LinkText("copy"), text);
    EXPECT_EQ(StatusOf(mTree.Path("copy")).st_mtim.tv_sec, 1600000000);
    EXPECT_EQ(StatusOf(mTree.Path("copy")).st_mtim.tv_nsec, 123456789);
    mTree.Remove("copy");
  }
}

TEST_F(Sources, ALinkTakesThePlaceOfAFileOrLinkInOneStep) {
  mTree.File("real", "kept");
  mTree.File("file", "old");
  mTree.File("read-only", "kept");
  mTree.SetReadOnly("read-only");
  mTree.Folder("folder");
  Link("real", "link");
  Link("real", "other");
  Link("new", "source");
  SetTimes(mTree.Path("source"), {1600000000, 0});
  EXPECT_EQ(CopyError("source", "file", false), 58);
  EXPECT_EQ(CopyError("source", "folder"), 70);
  EXPECT_EQ(CopyError("source", "read-only"), 70);
  for (const std::string& name : {std::string("file"), std::string("link"), std::string(255, 'n')}) {
    EXPECT_EQ(CopyError("source", name), 0) << name;
    EXPECT_EQ(LinkText(name), "new");
    EXPECT_EQ(StatusOf(mTree.Path(name)).st_mtim.tv_sec, 1600000000) << name;
  }
  EXPECT_EQ(mTree.Read("real"), "kept");
  EXPECT_EQ(mTree.Read("read-only"), "kept");
  EXPECT_EQ(mTree.List(), (Names{"file", "folder/", "link", std::string(255, 'n'), "other", "read-only",
                                 "real", "source"}));
}

TEST_F(Sources, PipesSocketsAndDevicesAreNeverOpened) {
  ASSERT_EQ(mkfifo(mTree.Path("pipe").c_str(), 0666), 0);
  ASSERT_EQ(mknod(mTree.Path("socket").c_str(), S_IFSOCK | 0666, 0), 0);
  for (const char* name : {"pipe", "socket"}) EXPECT_EQ(CopyError(name, "target"), 75) << name;
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyFile("/dev/zero", mTree.Path("target"), false); }), 75);
  EXPECT_FALSE(mTree.Exists("target"));
}

TEST_F(Sources, WhatTheUserMayNotReadIsDenied) {
  mTree.File("source", "secret");
  Mode("source", 0);
  const auto copy = [&] {
    BecomeOrdinaryUser();
    return CopyError("source", "target");
  };
  EXPECT_EQ(InChild(copy), 70);
  EXPECT_FALSE(mTree.Exists("target"));
}

TEST_F(Sources, FilesOfTheKernelThatTellNoSizeAreReadToTheirEnd) {
  mFiles->CopyFile("/proc/version", mTree.Path("target"), false);
  EXPECT_EQ(mTree.Read("target"), mFiles->OpenTextFile("/proc/version")->ReadAll());
  EXPECT_FALSE(mTree.Read("target").empty());
}

// --- Whatever happens, the target is whole. Once with a file that has no name until it is complete, once
// with a neighbour of the target, as file systems without such files need it.

enum class Route { Unnamed, Neighbour };

class Whole : public FileCopyTest, public testing::WithParamInterface<Route> {
 protected:
  /// In a process of its own that takes the route.
  int Copying(const std::function<int()>& step) {
    return InChild([&] {
      if (GetParam() == Route::Neighbour) ForbidUnnamedFiles();
      return step();
    });
  }

  static std::string Content(char letter, std::size_t size) { return std::string(size, letter); }
};

INSTANTIATE_TEST_SUITE_P(Routes, Whole, testing::Values(Route::Unnamed, Route::Neighbour),
                         [](const auto& tested) {
                           return tested.param == Route::Unnamed ? "Unnamed" : "Neighbour";
                         });

TEST_P(Whole, CopiesAndOverwritesOnlyWhenTold) {
  mTree.File("source", "new", 20);
  mTree.File("target", "old");
  EXPECT_EQ(Copying([&] { return CopyError("source", "target", false); }), 58);
  EXPECT_EQ(mTree.Read("target"), "old");
  EXPECT_EQ(Copying([&] { return CopyError("source", "target", true); }), 0);
  EXPECT_EQ(Copying([&] { return CopyError("source", "added", false); }), 0);
  EXPECT_EQ(Copying([&] { return CopyError("source", std::string(255, 'n'), true); }), 0);
  EXPECT_EQ(mTree.Read("target"), "new");
  EXPECT_EQ(mTree.Read("added"), "new");
  EXPECT_EQ(mTree.List(), (Names{"added", std::string(255, 'n'), "source", "target"}));
}

TEST_P(Whole, ATargetThatComesInBetweenIsNotOverwritten) {
  mTree.File("source", "ours");
  const auto copy = [&] {
    return ErrorNumber([&] {
      mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), false,
                       [&] { mTree.File("target", "theirs"); });
    });
  };
  EXPECT_EQ(Copying(copy), 58);
  EXPECT_EQ(mTree.Read("target"), "theirs");
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_P(Whole, ADiskThatFillsUpInTheMiddleLeavesTheOldFile) {
  mTree.File("source", Content('n', 3 << 20));
  mTree.File("target", "old", 10);
  const auto onAFullDisk = [&](const std::function<int()>& step) {
    return Copying([&] {
      signal(SIGXFSZ, SIG_IGN);
      constexpr rlimit OneMegabyte{1 << 20, 1 << 20};
      return setrlimit(RLIMIT_FSIZE, &OneMegabyte) == 0 ? step() : 255;
    });
  };
  EXPECT_EQ(onAFullDisk([&] { return CopyError("source", "target"); }), 61);
  EXPECT_EQ(onAFullDisk([&] { return CopyError("source", "added"); }), 61);
  EXPECT_EQ(onAFullDisk([&] {
              return ErrorNumber([&] {
                const auto writer = mFiles->CreateTextFile(mTree.Path("target"), true);
                writer->Write(Content('w', 3 << 20));
                writer->Close();
              });
            }),
            61);
  EXPECT_EQ(mTree.Read("target"), "old");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("target")).DateLastModified, TempTree::Time(10));
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_P(Whole, ADroppedTextWriterLeavesNothing) {
  mTree.File("old", "old");
  EXPECT_EQ(Copying([&] {
              mFiles->CreateTextFile(mTree.Path("old"), true)->Write("new");
              mFiles->CreateTextFile(mTree.Path("new"), false)->Write("new");
              return 0;
            }),
            0);
  EXPECT_EQ(mTree.Read("old"), "old");
  EXPECT_EQ(mTree.List(), Names{"old"});
}

TEST_P(Whole, AProgramThatIsKilledLeavesAWholeTarget) {
  const std::string contents[] = {Content('a', 400'000), Content('b', 300'000)};
  mTree.File("a", contents[0]);
  mTree.File("b", contents[1]);
  mTree.File("target", contents[0]);
  std::minstd_rand random(7);
  for (int round = 0; round < 100; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      if (GetParam() == Route::Neighbour) ForbidUnnamedFiles();
      for (;;)
        for (const char* source : {"a", "b"}) CopyError(source, "target");
    }
    usleep(500 + random() % 8000);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string found = mTree.Read("target");
    ASSERT_TRUE(found == contents[0] || found == contents[1]) << "round " << round << ": " << found.size();
    ASSERT_EQ(CopyError("a", "target"), 0);
    ASSERT_EQ(mTree.List(), (Names{"a", "b", "target"})) << "round " << round;
  }
}

/// Whoever finds that the other is at the target, or has been there meanwhile, leaves it alone.
TEST_P(Whole, TwoWritersOfOneTargetDoNotDisturbEachOther) {
  const std::string contents[] = {Content('a', 5000), Content('b', 4000)};
  mTree.File("a", contents[0]);
  mTree.File("b", contents[1]);
  mTree.File("target", contents[0]);
  const auto manyTimes = [&](const std::string& source) {
    return [this, source] {
      if (GetParam() == Route::Neighbour) ForbidUnnamedFiles();
      for (int copy = 0; copy < 1000; ++copy) {
        const int error = CopyError(source, "target");
        if (error != 0 && error != 70 && error != 75) return error;
      }
      return 0;
    };
  };
  const pid_t other = fork();
  if (other == 0) _exit(manyTimes("a")());
  EXPECT_EQ(InChild(manyTimes("b")), 0);
  int status = -1;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
  const std::string found = mTree.Read("target");
  EXPECT_TRUE(found == contents[0] || found == contents[1]) << found.size();
  EXPECT_EQ(mTree.List(), (Names{"a", "b", "target"}));
}

}  // namespace
}  // namespace brackwell
