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

}  // namespace
}  // namespace brackwell
