#include "platform/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "support/Child_posix.h"
#include "support/ErrorNumber.h"

namespace brackwell {
namespace {

/// A user that nobody is, so that no real user's folder is touched, and another one in each test that runs at
/// the same time.
const uid_t Stranger = 20'000 + getpid() % 40'000;

class TempFolderTest : public testing::Test {
 protected:
  ~TempFolderTest() override {
    if (mFolder == OfStranger()) RemoveFolder();
  }

  static std::string OfStranger() { return "/tmp/brackwell-" + std::to_string(Stranger); }

  /// Only an administrator can become somebody else. The others have their own folder made, as the program
  /// does.
  static std::string FolderOfTest() {
    return geteuid() == 0 ? OfStranger() : "/tmp/brackwell-" + std::to_string(geteuid());
  }

  void RemoveFolder() {
    rmdir(mFolder.c_str());
    unlink(mFolder.c_str());
  }

  /// As the program with nothing chosen: 0, or the number of the error; 252 for a wrong answer.
  int AskForFolder(const char* chosen = nullptr) {
    return InChild([this, chosen] {
      chosen ? setenv("TMPDIR", chosen, 1) : unsetenv("TMPDIR");
      if (geteuid() == 0 &&
          (setresgid(Stranger, Stranger, Stranger) != 0 || setresuid(Stranger, Stranger, Stranger) != 0))
        return 253;
      umask(0);
      std::string found;
      const int error = ErrorNumber([&] { found = GetTempFolder(); });
      return error == 0 && found != mFolder + "/" ? 252 : error;
    });
  }

  const std::string mFolder = FolderOfTest();
};

TEST_F(TempFolderTest, IsTheOneThatTheUserChose) {
  EXPECT_EQ(InChild([] {
              setenv("TMPDIR", "/chosen/folder", 1);
              return GetTempFolder() == "/chosen/folder/" ? 0 : 1;
            }),
            0);
  EXPECT_EQ(InChild([] {
              setenv("TMPDIR", "/chosen/", 1);
              return GetTempFolder() == "/chosen/" ? 0 : 1;
            }),
            0);
}

TEST_F(TempFolderTest, IsElseAPrivateOneMadeOnFirstUse) {
  EXPECT_EQ(AskForFolder(nullptr), 0);
  EXPECT_EQ(AskForFolder(""), 0);
  struct stat status {};
  ASSERT_EQ(lstat(mFolder.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, mode_t{S_IFDIR | 0700});
  EXPECT_EQ(status.st_uid, geteuid() == 0 ? Stranger : geteuid());
}

TEST_F(TempFolderTest, IsRefusedWhereOthersCouldReadOrPlantReports) {
  if (geteuid() != 0) GTEST_SKIP() << "only an administrator can prepare another user's folder";
  ASSERT_EQ(mkdir(mFolder.c_str(), 0700), 0);
  EXPECT_EQ(AskForFolder(), 70) << "owned by somebody else";
  ASSERT_EQ(chown(mFolder.c_str(), Stranger, Stranger), 0);
  EXPECT_EQ(AskForFolder(), 0);
  for (const mode_t mode : {0755, 0710, 0701, 0777}) {
    ASSERT_EQ(chmod(mFolder.c_str(), mode), 0);
    EXPECT_EQ(AskForFolder(), 70) << "open to others";
  }
  RemoveFolder();
  ASSERT_EQ(symlink("/tmp", mFolder.c_str()), 0);
  EXPECT_EQ(AskForFolder(), 70) << "a link";
}

}  // namespace
}  // namespace brackwell
