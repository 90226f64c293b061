#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What a rewritten file keeps on POSIX, which are refused, and that it is whole whatever happens.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

constexpr int Nobody = 65534;
constexpr int NotAllowedHere = 200;  // what a child gives where the system does not let it do its test

class TextFileTest : public testing::Test {
 protected:
  TextFileTest() { chmod(mTree.Path().c_str(), 0777); }

  std::unique_ptr<TextReader> Open(const std::string& name) { return mFiles->OpenTextFile(mTree.Path(name)); }
  int RewriteError(const std::string& name, const std::string& content) {
    return ErrorNumber([&] {
      const auto writer = Open(name)->Rewrite();
      writer->Write(content);
      writer->Close();
    });
  }
  int RewriteErrorOfUser(const std::string& name, const std::string& content) {
    return InChild([&] {
      setenv("TMPDIR", mTree.Path("temporary").c_str(), 1);
      BecomeOrdinaryUser();
      return RewriteError(name, content);
    });
  }

  struct stat StatusOf(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(lstat(mTree.Path(name).c_str(), &status), 0) << name;
    return status;
  }
  mode_t ModeOf(const std::string& name) { return StatusOf(name).st_mode & 07777; }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0); }
  void Owner(const std::string& name, int owner) {
    ASSERT_EQ(lchown(mTree.Path(name).c_str(), owner, owner), 0);
  }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), mTree.Path(name).c_str()), 0);
  }
  void HardLink(const std::string& old, const std::string& name) {
    ASSERT_EQ(link(mTree.Path(old).c_str(), mTree.Path(name).c_str()), 0);
  }
  bool SetAttribute(const std::string& name, const char* attribute, const std::string& value) {
    return setxattr(mTree.Path(name).c_str(), attribute, value.data(), value.size(), 0) == 0;
  }
  std::string AttributeOf(const std::string& name, const char* attribute) {
    char value[256];
    const auto length = getxattr(mTree.Path(name).c_str(), attribute, value, sizeof value);
    return length < 0 ? "<none>" : std::string(value, static_cast<std::size_t>(length));
  }
  void MakeTemporaryFolder() {
    mTree.Folder("temporary");
    Mode("temporary", 0777);
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using Kept = TextFileTest;
using Refused = TextFileTest;
using InPlace = TextFileTest;

/// An access list in the form in which the kernel keeps it: nobody may read, beside the owner.
std::string AccessList() {
  struct Entry {
    std::uint16_t Tag, Rights;
    std::uint32_t Id;
  };
  constexpr std::uint32_t Version = 2;
  constexpr std::uint32_t NoId = 0xFFFFFFFF;
  const Entry entries[] = {
      {0x01, 6, NoId}, {0x02, 4, Nobody}, {0x04, 0, NoId}, {0x10, 4, NoId}, {0x20, 0, NoId}};
  return std::string(reinterpret_cast<const char*>(&Version), sizeof Version) +
         std::string(reinterpret_cast<const char*>(entries), sizeof entries);
}

// --- What a file keeps

TEST_F(Kept, OwnerAndMode) {
  if (geteuid() != 0) GTEST_SKIP() << "needs an administrator";
  for (const mode_t mode : {0600, 0640, 0666, 0755, 0711, 01644, 02644, 02755, 04755, 06777}) {
    mTree.File("file", "old");
    ASSERT_EQ(chown(mTree.Path("file").c_str(), 1234, 5678), 0);
    Mode("file", mode | 0006);
    EXPECT_EQ(RewriteError("file", "new"), 0) << std::oct << mode;
    EXPECT_EQ(ModeOf("file"), mode | 0006) << std::oct << mode;
    EXPECT_EQ(StatusOf("file").st_uid, 1234U);
    EXPECT_EQ(StatusOf("file").st_gid, 5678U);
    EXPECT_EQ(mTree.Read("file"), "new");
    mTree.Remove("file");
  }
}

TEST_F(Kept, AUsersModeIsWhatWritingToTheFileWouldLeave) {
  for (const mode_t mode : {0600, 0666, 0755, 01644, 02644, 02755, 04755, 06777}) {
    const auto make = [&](const std::string& name) {
      mTree.File(name, "old");
      Mode(name, mode);
    };
    EXPECT_EQ(InChild([&] {
                BecomeOrdinaryUser();
                make("rewritten");
                make("written");
                std::ofstream(mTree.Path("written"), std::ios::app) << "new";
                return RewriteError("rewritten", "new");
              }),
              0);
    EXPECT_EQ(ModeOf("rewritten"), ModeOf("written")) << std::oct << mode;
    mTree.Remove("rewritten");
    mTree.Remove("written");
  }
}

TEST_F(Kept, ExtendedAttributes) {
  mTree.File("file", "old");
  if (!SetAttribute("file", "user.author", "somebody")) GTEST_SKIP() << "none on this file system";
  ASSERT_TRUE(SetAttribute("file", "user.empty", ""));
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(mTree.Read("file"), "new");
  EXPECT_EQ(AttributeOf("file", "user.author"), "somebody");
  EXPECT_EQ(AttributeOf("file", "user.empty"), "");
}

TEST_F(Kept, AccessListsOfTheFileButNotOnesOfItsFolder) {
  mTree.File("listed", "old");
  mTree.File("plain", "old");
  Mode("plain", 0640);
  if (!SetAttribute("listed", "system.posix_acl_access", AccessList())) GTEST_SKIP() << "none here";
  ASSERT_TRUE(SetAttribute("", "system.posix_acl_default", AccessList()));
  const mode_t mode = ModeOf("listed");
  EXPECT_EQ(RewriteError("listed", "new"), 0);
  EXPECT_EQ(RewriteError("plain", "new"), 0);
  EXPECT_EQ(AttributeOf("listed", "system.posix_acl_access"), AccessList());
  EXPECT_EQ(ModeOf("listed"), mode);
  EXPECT_EQ(AttributeOf("plain", "system.posix_acl_access"), "<none>");
  EXPECT_EQ(ModeOf("plain"), 0640U);
}

TEST_F(Kept, WhatALinkLeadsTo) {
  mTree.File("real/file", "old");
  Link("real/file", "link");
  EXPECT_EQ(RewriteError("link", "new"), 75);
  EXPECT_EQ(mTree.Read("real/file"), "old");
  EXPECT_TRUE(S_ISLNK(StatusOf("link").st_mode));
  EXPECT_EQ(mTree.List(), (Names{"link", "real/", "real/file"}));
}

TEST_F(Kept, NamesThatAreNoTextAndPathsOfAnyLength) {
  const std::string folder(250, 'f');
  const int start = open(mTree.Path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  std::string path = mTree.Path();
  int at = start;
  while (path.size() < 2 * PATH_MAX) {
    ASSERT_EQ(mkdirat(at, folder.c_str(), 0777), 0);
    const int next = openat(at, folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    close(at);
    at = next;
    path = JoinPath(path, folder);
  }
  close(at);
  path = JoinPath(path, "\xff\n.txt");
  const auto made = mFiles->CreateTextFile(path, false);
  made->Write("old");
  made->Close();
  const auto writer = mFiles->OpenTextFile(path)->Rewrite();
  writer->Write("new");
  writer->Close();
  EXPECT_EQ(mFiles->OpenTextFile(path)->ReadAll(), "new");
}

TEST_F(Kept, NoFileStaysOpen) {
  const auto opened = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  mTree.File("file", "old");
  mTree.File("one", "old");
  HardLink("one", "two");
  const auto before = opened();
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(RewriteError("one", "new"), 0);
  mTree.SetReadOnly("file");
  EXPECT_EQ(RewriteError("file", "new"), 70);
  EXPECT_EQ(opened(), before);
}

// --- What is refused

TEST_F(Refused, WhatTheUserMayNotWrite) {
  if (geteuid() != 0) GTEST_SKIP() << "needs an administrator";
  mTree.File("file", "old");
  Mode("file", 0644);
  EXPECT_EQ(InChild([&] {
              BecomeOrdinaryUser();
              const auto reader = Open("file");
              return ErrorNumber([&] { reader->Rewrite(); });
            }),
            70);
  EXPECT_EQ(mTree.Read("file"), "old");
}

TEST_F(Refused, WhatTheFileSystemKeepsFromEverybody) {
  mTree.File("file", "old");
  const int file = open(mTree.Path("file").c_str(), O_RDONLY | O_CLOEXEC);
  int immutable = FS_IMMUTABLE_FL;
  const bool done = ioctl(file, FS_IOC_SETFLAGS, &immutable) == 0;
  const int error = RewriteError("file", "new");
  int none = 0;
  ioctl(file, FS_IOC_SETFLAGS, &none);
  close(file);
  if (!done) GTEST_SKIP() << "not possible here";
  EXPECT_EQ(error, 70);
  EXPECT_EQ(mTree.Read("file"), "old");
}

TEST_F(Refused, WhatHasChangedInAnyWay) {
  const std::vector<std::function<void(const std::string&)>> changes = {
      [&](const std::string& name) { Mode(name, 0600); },
      [&](const std::string& name) {
        std::ofstream(mTree.Path(name), std::ios::in | std::ios::out) << "OLD";
      },
      [&](const std::string& name) { mTree.Remove(name); },
      [&](const std::string& name) {
        mTree.Remove(name);
        mTree.File(name, "another");
      },
      [&](const std::string& name) {
        mTree.Remove(name);
        ASSERT_EQ(mkfifo(mTree.Path(name).c_str(), 0666), 0);
      },
  };
  for (std::size_t which = 0; which < changes.size(); ++which) {
    const std::string name = "file" + std::to_string(which);
    mTree.File(name, "old");
    usleep(10'000);  // so that its dates differ, where the clock of the file system is coarse
    const auto writer = Open(name)->Rewrite();
    writer->Write("new");
    changes[which](name);
    EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 75) << which;
  }
  EXPECT_EQ(mTree.Read("file0"), "old");
  EXPECT_EQ(mTree.Read("file1"), "OLD");
  EXPECT_EQ(mTree.Read("file3"), "another");
  EXPECT_EQ(mTree.List(), (Names{"file0", "file1", "file3", "file4"}));
}

// --- Files that nothing else can take the place of

TEST_F(InPlace, AFileOfSomebodyElsesStaysTheirs) {
  if (geteuid() != 0) GTEST_SKIP() << "needs an administrator";
  MakeTemporaryFolder();
  mTree.File("file", "old");
  Mode("file", 0666);
  const auto inode = StatusOf("file").st_ino;
  EXPECT_EQ(RewriteErrorOfUser("file", "new and longer"), 0);
  EXPECT_EQ(mTree.Read("file"), "new and longer");
  EXPECT_EQ(StatusOf("file").st_uid, 0U);
  EXPECT_EQ(StatusOf("file").st_ino, inode);
  EXPECT_EQ(mTree.List(), (Names{"file", "temporary/"}));
}

TEST_F(InPlace, AFolderThatMayNotBeChangedStaysAsItIs) {
  MakeTemporaryFolder();
  mTree.File("folder/file", "old");
  if (geteuid() == 0) Owner("folder/file", Nobody);
  Mode("folder", 0555);
  const auto inode = StatusOf("folder/file").st_ino;
  EXPECT_EQ(RewriteErrorOfUser("folder/file", "new"), 0);
  EXPECT_EQ(mTree.Read("folder/file"), "new");
  EXPECT_EQ(StatusOf("folder/file").st_ino, inode);
  EXPECT_EQ(mTree.List(), (Names{"folder/", "folder/file", "temporary/"}));
}

TEST_F(InPlace, AFolderThatTakesAdditionsOnly) {
  mTree.File("folder/file", "old");
  mTree.Folder("temporary");
  const int folder = open(mTree.Path("folder").c_str(), O_RDONLY | O_CLOEXEC);
  int additionsOnly = FS_APPEND_FL;
  const bool done = ioctl(folder, FS_IOC_SETFLAGS, &additionsOnly) == 0;
  const int error = InChild([&] {
    setenv("TMPDIR", mTree.Path("temporary").c_str(), 1);
    return RewriteError("folder/file", "new");
  });
  int none = 0;
  ioctl(folder, FS_IOC_SETFLAGS, &none);
  close(folder);
  if (!done) GTEST_SKIP() << "not possible here";
  EXPECT_EQ(error, 0);
  EXPECT_EQ(mTree.Read("folder/file"), "new");
  EXPECT_EQ(mTree.List(), (Names{"folder/", "folder/file", "temporary/"}));
}

TEST_F(InPlace, AFileThatIsMountedThere) {
  mTree.File("real", "old");
  mTree.File("folder/place", "hidden");
  const int error = InChild([&] {
    if (!TakeMountsOfItsOwn() ||
        mount(mTree.Path("real").c_str(), mTree.Path("folder/place").c_str(), nullptr, MS_BIND, nullptr) != 0)
      return NotAllowedHere;
    const int result = RewriteError("folder/place", "new");
    return mTree.List("folder") == Names{"place"} ? result : 1;
  });
  if (error == NotAllowedHere) GTEST_SKIP() << "mounting is not allowed here";
  EXPECT_EQ(error, 0);
  EXPECT_EQ(mTree.Read("real"), "new");
  EXPECT_EQ(mTree.Read("folder/place"), "hidden");
}

TEST_F(InPlace, WithoutRoomBeingReservedWhereThatCannotBe) {
  mTree.File("one", "old");
  HardLink("one", "two");
  const std::string content(300'000, 'n');
  EXPECT_EQ(InChild([&] {
              RefuseCall(SYS_fallocate, 1, FALLOC_FL_KEEP_SIZE, EOPNOTSUPP);
              return RewriteError("one", content);
            }),
            0);
  EXPECT_EQ(mTree.Read("two"), content);
}

TEST_F(InPlace, TheOldContentIsPutBackWhereTheNewCannotBeWritten) {
  const std::string old(250'000, 'o');
  mTree.File("one", old, 10);
  HardLink("one", "two");
  // Wherever it fails, in the part that both have or behind it.
  for (const unsigned failing : {0U, 2U << 16, 4U << 16})
    for (const std::size_t size : {280'001U, 400'001U}) {
      EXPECT_EQ(InChild([&] {
                  RefuseCall(SYS_pwrite64, 3, failing, ENOSPC);
                  return RewriteError("one", std::string(size, 'n'));
                }),
                61);
      EXPECT_TRUE(mTree.Read("two") == old) << failing;
      EXPECT_EQ(mFiles->GetFile(mTree.Path("one")).DateLastModified, TempTree::Time(10));
    }
  EXPECT_EQ(mTree.List(), (Names{"one", "two"}));
}

// --- A full disk

class FullDisk : public TextFileTest {
 protected:
  static constexpr std::size_t MiB = 1 << 20;

  /// Rewrites a file of 1 MiB with one or two names by `size` bytes, on a disk of 4 MiB; true where the disk
  /// was full and the file and its folder are as they were.
  void ExpectOldFile(bool twoNames, std::size_t size) {
    const std::string old(MiB, 'o');
    mTree.Folder("disk");
    const int error = InChild([&] {
      if (!ShrinkDisk(mTree.Path("disk"), 4 * MiB)) return NotAllowedHere;
      mTree.File("disk/one", old, 10);
      if (twoNames) HardLink("disk/one", "disk/two");
      const auto before = mTree.List("disk");
      const int result = RewriteError("disk/one", std::string(size, 'n'));
      const bool isWhole = mTree.Read("disk/one") == old && mTree.List("disk") == before &&
                           mFiles->GetFile(mTree.Path("disk/one")).DateLastModified == TempTree::Time(10);
      return isWhole ? result : 1;
    });
    if (error == NotAllowedHere) GTEST_SKIP() << "mounting is not allowed here";
    EXPECT_EQ(error, 61) << size;
  }
};

TEST_F(FullDisk, LeavesTheOldFile) { ExpectOldFile(false, 9 * MiB); }
TEST_F(FullDisk, LeavesTheOldFileOfTwoNames) { ExpectOldFile(true, 9 * MiB); }
TEST_F(FullDisk, LeavesTheOldFileWhereTheNewContentFitsOnlyOnce) { ExpectOldFile(true, 9 * MiB / 5); }

// --- A program that is killed

enum class Kind { Unnamed, Neighbour, TwoNames };

class Killed : public TextFileTest, public testing::WithParamInterface<Kind> {
 protected:
  /// Rewrites again and again until it is killed.
  [[noreturn]] void RewriteForEver(const std::string (&contents)[2]) {
    if (GetParam() == Kind::Neighbour) ForbidUnnamedFiles();
    for (;;)
      for (const std::string& content : contents)
        if (RewriteError("file", content) != 0) _exit(1);
  }
};

std::string NameOf(const testing::TestParamInfo<Kind>& tested) {
  constexpr const char* Names[] = {"Unnamed", "Neighbour", "TwoNames"};
  return Names[static_cast<int>(tested.param)];
}

INSTANTIATE_TEST_SUITE_P(Kinds, Killed, testing::Values(Kind::Unnamed, Kind::Neighbour, Kind::TwoNames),
                         NameOf);

TEST_P(Killed, LeavesAWholeFile) {
  const std::size_t size = GetParam() == Kind::TwoNames ? 6'000'000 : 800'000;  // its copying takes long
  const std::string contents[] = {std::string(size, 'a'), std::string(size / 2, 'b')};
  mTree.File("file", contents[0]);
  if (GetParam() == Kind::TwoNames) HardLink("file", "two");
  const Names names = mTree.List();
  std::minstd_rand random(11);
  for (int round = 0; round < 50; ++round) {
    int alive[2];
    ASSERT_EQ(pipe2(alive, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(alive[0]);
      RewriteForEver(contents);
    }
    close(alive[1]);
    usleep(500 + random() % (size / 50));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a rewrite failed";
    char nothing;
    ASSERT_EQ(read(alive[0], &nothing, 1), 0);  // ends with the last process of this round
    close(alive[0]);
    const std::string found = mTree.Read("file");
    ASSERT_TRUE(found == contents[0] || found == contents[1]) << "round " << round << ": " << found.size();
    int error = 70;
    while (error == 70)
      error = RewriteError("file", contents[0]);  // that process may still let go of the file
    ASSERT_EQ(error, 0);
    ASSERT_EQ(mTree.List(), names) << "round " << round;
  }
}

}  // namespace
}  // namespace brackwell
