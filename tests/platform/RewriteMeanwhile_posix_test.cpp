#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <fstream>
#include <optional>
#include <thread>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What others do with a file while it is rewritten, and to the process that copies into it.

namespace brackwell {
namespace {

class RewriteMeanwhile : public testing::Test {
 protected:
  std::unique_ptr<TextWriter> Rewrite(const std::string& name) {
    return mFiles->OpenTextFile(mTree.Path(name))->Rewrite();
  }
  int RewriteError(const std::string& name, const std::string& content) {
    return ErrorNumber([&] {
      const auto writer = Rewrite(name);
      writer->Write(content);
      writer->Close();
    });
  }

  /// A file of two names, so that nothing takes its place.
  void TwoNames(const std::string& content) {
    mTree.File("one", content, 10);
    ASSERT_EQ(link(mTree.Path("one").c_str(), mTree.Path("two").c_str()), 0);
  }
  void Append(const std::string& text) { std::ofstream(mTree.Path("one"), std::ios::app) << text; }
  void Cut(off_t size) { ASSERT_EQ(truncate(mTree.Path("one").c_str(), size), 0); }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using InUse = RewriteMeanwhile;

/// Another program's file, as it were.
class OpenFile {
 public:
  OpenFile(const std::string& path, int flags) : mFile(open(path.c_str(), flags | O_CLOEXEC)) {}
  ~OpenFile() { close(mFile); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  int Get() const { return mFile; }

 private:
  const int mFile;
};

// --- Files that others have open

TEST_F(InUse, AFileThatIsOpenForWritingIsRefusedAtOnce) {
  TwoNames("old");
  mTree.File("alone", "old");
  for (const char* name : {"one", "alone"})
    for (const int flags : {O_WRONLY, O_RDWR, O_WRONLY | O_APPEND}) {
      const OpenFile other(mTree.Path(name), flags);
      const auto reader = mFiles->OpenTextFile(mTree.Path(name));
      EXPECT_EQ(ErrorNumber([&] { reader->Rewrite(); }), 70) << name;
      EXPECT_EQ(reader->ReadAll(), "old");
    }
  EXPECT_EQ(mTree.List(), (std::vector<std::string>{"alone", "one", "two"}));
}

TEST_F(InUse, AFileThatIsOpenedForWritingMeanwhileIsRefused) {
  TwoNames("old");
  mTree.File("alone", "old");
  for (const char* name : {"one", "alone"}) {
    const auto writer = Rewrite(name);
    writer->Write("new");
    const OpenFile other(mTree.Path(name), O_WRONLY | O_APPEND);
    EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 70) << name;
    ASSERT_EQ(write(other.Get(), " and more", 9), 9);
    EXPECT_EQ(mTree.Read(name), "old and more");
  }
}

TEST_F(InUse, AFileWhoseContentIsMappedForWritingIsRefused) {
  mTree.File("file", "old");
  std::optional<OpenFile> other(std::in_place, mTree.Path("file"), O_RDWR);
  void* const content = mmap(nullptr, 3, PROT_READ | PROT_WRITE, MAP_SHARED, other->Get(), 0);
  ASSERT_NE(content, MAP_FAILED);
  other.reset();
  EXPECT_EQ(RewriteError("file", "new"), 70);
  munmap(content, 3);
  EXPECT_EQ(RewriteError("file", "new"), 0);
}

TEST_F(InUse, AFileThatOthersReadIsRewritten) {
  mTree.File("file", "old");
  const OpenFile other(mTree.Path("file"), O_RDONLY);
  EXPECT_EQ(RewriteError("file", "new"), 0);
  char content[4] = {};
  EXPECT_EQ(read(other.Get(), content, 3), 3);
  EXPECT_STREQ(content, "old");
}

TEST_F(InUse, WhereTheSystemDoesNotTellFilesAreRewritten) {
  mTree.File("file", "old");
  for (const int error : {EINVAL, EACCES, EPERM, ENOLCK}) {
    const OpenFile other(mTree.Path("file"), O_WRONLY);
    EXPECT_EQ(InChild([&] {
                RefuseCall(SYS_fcntl, 1, F_SETLEASE, error);
                return RewriteError("file", "new");
              }),
              0)
        << error;
  }
}

/// Whoever opens a file that is under a lease has a signal sent to its holder, which ends most programs.
TEST_F(InUse, AProgramThatOpensTheFileAtAnyMomentDoesNotEndOurs) {
  mTree.File("file", "old");
  std::atomic<bool> isDone = false;
  std::thread other([&] {
    while (!isDone) const OpenFile opened(mTree.Path("file"), O_WRONLY);
  });
  const int result = InChild([&] {
    for (int round = 0; round < 3000; ++round) {
      const auto reader = mFiles->OpenTextFile(mTree.Path("file"));
      ErrorNumber([&] { reader->Rewrite(); });
    }
    return 0;
  });
  isDone = true;
  other.join();
  EXPECT_EQ(result, 0);
}

// --- The copy into the very file

/// Comes back when nothing is left of the process that could go on.
void Kill(pid_t process) {
  const int watched = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  kill(process, SIGKILL);
  pollfd ended{.fd = watched, .events = POLLIN, .revents = 0};
  while (poll(&ended, 1, -1) != 1) continue;
  close(watched);
}

const std::string Old(250'000, 'o');
const std::string Shorter(100'000, 'n');
const std::string Longer(400'001, 'n');

/// A system call in the copying process, by its number and an argument.
struct Moment {
  int Call;
  int Position;
  unsigned Value;
};
const Moment Start{SYS_prctl, 0, PR_SET_NAME};
const Moment FirstPiece{SYS_pwrite64, 3, 0};
const Moment ThirdPiece{SYS_pwrite64, 3, 2U << 16};
const Moment LastOfShorter{SYS_pwrite64, 3, 1U << 16};
const Moment LastOfLonger{SYS_pread64, 3, 6U << 16};
const Moment BehindTheOldEnd{SYS_pwrite64, 3, 5U << 16};
const Moment TheCut{SYS_ftruncate, 1, 100'000};
const Moment OnDisk{SYS_fdatasync, -1, 0};

class Copying : public RewriteMeanwhile {
 protected:
  /// What rewriting the file of two names gives where `step` is done right before that moment.
  int RewriteErrorWith(const Moment& moment, const std::string& content, std::function<void(pid_t)> step) {
    return InChild([&] {
      BeforeCall(moment.Call, moment.Position, moment.Value, [&, own = getpid()](pid_t caller) {
        if (caller != own) step(caller);
      });
      return RewriteError("one", content);
    });
  }
};

TEST_F(Copying, TheOldContentIsPutBackWhereTheCopyingProcessIsKilled) {
  TwoNames(Old);
  const auto expectOld = [&](const Moment& moment, const std::string& content) {
    EXPECT_EQ(RewriteErrorWith(moment, content, Kill), 57);
    EXPECT_TRUE(mTree.Read("two") == Old) << moment.Call << " " << moment.Value << " " << content.size();
    EXPECT_EQ(mFiles->GetFile(mTree.Path("one")).DateLastModified, TempTree::Time(10));
  };
  for (const Moment& moment : {Start, FirstPiece, TheCut}) expectOld(moment, Shorter);
  for (const Moment& moment : {Start, FirstPiece, ThirdPiece, BehindTheOldEnd}) expectOld(moment, Longer);
  EXPECT_EQ(mTree.List(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(Copying, IsDoneWhereItsProcessIsKilledAfterTheLastByte) {
  for (const std::string& content : {Shorter, Longer, std::string()}) {
    mTree.Remove("two");
    TwoNames(Old);
    EXPECT_EQ(RewriteErrorWith(OnDisk, content, Kill), 0);
    EXPECT_TRUE(mTree.Read("two") == content);
  }
}

TEST_F(Copying, KeepsWhatOthersAddMeanwhileBehindTheOldContent) {
  const auto expectBoth = [&](const Moment& moment, const std::string& content) {
    TwoNames(Old);
    EXPECT_EQ(RewriteErrorWith(moment, content, [&](pid_t) { Append(" and more"); }), 75);
    EXPECT_TRUE(mTree.Read("two") == Old + " and more")
        << moment.Call << " " << moment.Value << " " << content.size();
    mTree.Remove("two");
  };
  for (const Moment& moment : {Start, FirstPiece, LastOfShorter}) expectBoth(moment, Shorter);
  for (const Moment& moment : {Start, FirstPiece, ThirdPiece, LastOfLonger}) expectBoth(moment, Longer);
}

TEST_F(Copying, KeepsWhatIsAddedBehindContentThatIsComplete) {
  TwoNames(Old);
  EXPECT_EQ(RewriteErrorWith(OnDisk, Longer, [&](pid_t) { Append(" and more"); }), 0);
  EXPECT_TRUE(mTree.Read("two") == Longer + " and more");
}

TEST_F(Copying, KeepsWhatIsAddedWhereItsProcessIsKilledAsWell) {
  const auto expectBoth = [&](const Moment& moment, const std::string& content) {
    TwoNames(Old);
    EXPECT_EQ(RewriteErrorWith(moment, content,
                               [&](pid_t copying) {
                                 Append(" and more");
                                 Kill(copying);
                               }),
              57);
    EXPECT_TRUE(mTree.Read("two") == Old + " and more") << moment.Call << " " << content.size();
    mTree.Remove("two");
  };
  expectBoth(TheCut, Shorter);
  expectBoth(ThirdPiece, Longer);
}

TEST_F(Copying, LeavesAFileThatOthersCutToThem) {
  const auto contentAfter = [&](const Moment& moment, const std::string& content) {
    TwoNames(Old);
    EXPECT_EQ(RewriteErrorWith(moment, content,
                               [&](pid_t) {
                                 Cut(0);
                                 Append("theirs");
                               }),
              75);
    const std::string found = mTree.Read("two");
    mTree.Remove("two");
    return found;
  };
  EXPECT_EQ(contentAfter(Start, Shorter), "theirs");
  EXPECT_EQ(contentAfter(Start, Longer), "theirs");
  EXPECT_TRUE(contentAfter(ThirdPiece, Longer).starts_with("theirs"));
}

}  // namespace
}  // namespace brackwell
