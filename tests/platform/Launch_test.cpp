#include "platform/Launch.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace brackwell {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int Opened = 33;

void Write(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

std::string Read(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// Waits for a file that a script puts in place under its final name.
bool Appears(const fs::path& path) {
  for (int i = 0; i < 500 && !fs::exists(path); ++i) std::this_thread::sleep_for(10ms);
  return fs::exists(path);
}

/// Waits for the children to end and to be collected.
bool NoChildIsLeft() {
  bool anyChild = true;
  for (int i = 0; i < 500 && anyChild; ++i) {
    std::this_thread::sleep_for(10ms);
    siginfo_t ended{};
    anyChild = waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0;
  }
  return !anyChild;
}

/// A temporary folder with a stand-in for the opener, found before any real one.
class LaunchTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "launch-XXXXXX").string();
    mFolder = mkdtemp(name.data());
    fs::permissions(mFolder, fs::perms(0755));
    fs::create_directory(mFolder / "bin");
    mPath = std::getenv("PATH");
    setenv("PATH", ((mFolder / "bin").string() + ":" + mPath).c_str(), 1);
  }

  void TearDown() override {
    setenv("PATH", mPath.c_str(), 1);
    fs::remove_all(mFolder);
  }

  void OpenerIs(const std::string& script) {
    const fs::path opener = mFolder / "bin" / "xdg-open";
    Write(opener, "#!/bin/sh\n" + script + "\n");
    fs::permissions(opener, fs::perms(0755));
  }

  /// An opener that leaves in `seen` what `command` prints.
  void OpenerWrites(const std::string& command) {
    OpenerIs("{ " + command + "; } > '" + (mFolder / "part").string() + "'; mv '" +
             (mFolder / "part").string() + "' '" + Seen().string() + "'");
  }

  /// A program that leaves in `seen` what `command` prints.
  std::string ProgramWrites(const std::string& command) {
    OpenerWrites(command);
    fs::rename(mFolder / "bin" / "xdg-open", mFolder / "a program's file");
    return (mFolder / "a program's file").string();
  }

  fs::path Seen() const { return mFolder / "seen"; }

  std::string Document(const std::string& name) const {
    const fs::path path = mFolder / name;
    Write(path, "text");
    return path.string();
  }

  fs::path mFolder;
  std::string mPath;
};

TEST_F(LaunchTest, ADocumentThatTheOpenerTakesIsASuccess) {
  OpenerIs("exit 0");
  EXPECT_EQ(OpenDocument(Document("report.htm"), nullptr), Opened);
}

TEST_F(LaunchTest, AWebAddressIsHandedOverAsItIs) {
  OpenerWrites("echo \"$1\"");
  EXPECT_EQ(OpenWebAddress("https://example.org/a%20b?c=d#e", nullptr), Opened);
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()), "https://example.org/a%20b?c=d#e\n");
}

TEST_F(LaunchTest, NothingElseIsAWebAddress) {
  OpenerWrites("echo started");
  for (const char* address :
       {"", "file:///etc/passwd", "javascript:alert(1)", "ftp://example.org", "-h", "/bin/sh"})
    EXPECT_EQ(OpenWebAddress(address, nullptr), 2) << address;
  EXPECT_FALSE(fs::exists(Seen()));
}

TEST_F(LaunchTest, AFolderIsADocumentToo) {
  OpenerIs("exit 0");
  EXPECT_EQ(OpenDocument(mFolder.string(), nullptr), Opened);
}

TEST_F(LaunchTest, ExitCodesBecomeShellCodes) {
  const std::string document = Document("report.htm");
  const int expected[] = {Opened, 0, 2, 31, 31, 0};
  for (int exitCode = 0; exitCode < 6; ++exitCode) {
    OpenerIs("exit " + std::to_string(exitCode));
    EXPECT_EQ(OpenDocument(document, nullptr), expected[exitCode]) << "exit " << exitCode;
  }
}

TEST_F(LaunchTest, AnOpenerThatDiesIsNoSuccess) {
  OpenerIs("kill -9 $$");
  EXPECT_EQ(OpenDocument(Document("report.htm"), nullptr), 0);
}

TEST_F(LaunchTest, FaultsOfTheDocumentAreFoundBeforeAnythingStarts) {
  OpenerWrites("echo started");
  const std::string file = Document("file");
  EXPECT_EQ(OpenDocument((mFolder / "none.htm").string(), nullptr), 2);
  EXPECT_EQ(OpenDocument((mFolder / "none" / "report.htm").string(), nullptr), 3);
  EXPECT_EQ(OpenDocument(file + "/report.htm", nullptr), 3);
  EXPECT_EQ(OpenDocument("", nullptr), 3);
  fs::create_symlink(mFolder / "nowhere", mFolder / "dangling");
  EXPECT_EQ(OpenDocument((mFolder / "dangling").string(), nullptr), 2);
  EXPECT_FALSE(fs::exists(Seen()));
}

TEST_F(LaunchTest, AnUnreadableDocumentIsDenied) {
  OpenerWrites("echo started");
  const std::string document = Document("secret.htm");
  chmod(document.c_str(), 0);
  const uid_t user = geteuid();
  if (user == 0) {
    ASSERT_EQ(seteuid(65534), 0);  // nothing is unreadable for the administrator
  }
  const int code = OpenDocument(document, nullptr);
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_EQ(code, 5);
  EXPECT_FALSE(fs::exists(Seen()));
}

TEST_F(LaunchTest, NoOpenerInstalled) {
  const std::string document = Document("report.htm");
  setenv("PATH", (mFolder / "bin").c_str(), 1);
  EXPECT_EQ(OpenDocument(document, nullptr), 31);
}

TEST_F(LaunchTest, HostileNamesArriveAsOneUri) {
  OpenerWrites("printf '%s|' \"$@\"");
  const std::string document = Document("-a 'b\" #1?100%25\n$(id);\xff\xc3\xa4.htm");
  EXPECT_EQ(OpenDocument(document, nullptr), Opened);
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()),
            "file://" + mFolder.string() + "/-a%20'b%22%20%231%3F100%2525%0A$(id)%3B%FF%C3%A4.htm|");
}

TEST_F(LaunchTest, ARelativePathIsMadeAbsolute) {
  OpenerWrites("printf '%s' \"$1\"");
  Document("report.htm");
  const fs::path before = fs::current_path();
  fs::current_path(mFolder);
  EXPECT_EQ(OpenDocument("report.htm", nullptr), Opened);
  fs::current_path(before);
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()), "file://" + mFolder.string() + "/report.htm");
}

TEST_F(LaunchTest, AnOpenerThatRunsOnIsASuccess) {
  const fs::path end = mFolder / "end";
  OpenerIs("until [ -e '" + end.string() + "' ]; do sleep 0.01; done; echo >'" + Seen().string() + "'");
  EXPECT_EQ(OpenDocument(Document("report.htm"), nullptr), Opened);
  EXPECT_FALSE(fs::exists(Seen()));
  Write(end, "");
  EXPECT_TRUE(Appears(Seen()));
}

TEST_F(LaunchTest, NoZombieIsLeft) {
  OpenerIs("sleep 1.5");
  EXPECT_EQ(OpenDocument(Document("report.htm"), nullptr), Opened);
  EXPECT_TRUE(NoChildIsLeft());
}

TEST_F(LaunchTest, TheOpenerGetsNothingOfOurs) {
  const std::string document = Document("report.htm");
  const int leaked = open(document.c_str(), O_RDONLY);  // without close-on-exec
  ASSERT_GT(leaked, 2);
  OpenerWrites("readlink /proc/$$/fd/0 /proc/$$/fd/2; test -e /proc/$$/fd/" + std::to_string(leaked) +
               " && echo leaked; test $(ps -o sid= -p $$) -eq $$ && echo session");
  EXPECT_EQ(OpenDocument(document, nullptr), Opened);
  close(leaked);
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()), "/dev/null\n/dev/null\nsession\n");
}

TEST_F(LaunchTest, AProgramIsStartedWithoutArguments) {
  EXPECT_TRUE(StartProgram(ProgramWrites("echo $#")));
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()), "0\n");
}

TEST_F(LaunchTest, AProgramThatRunsOnHoldsNobodyUpAndIsOnItsOwn) {
  EXPECT_TRUE(
      StartProgram(ProgramWrites("sleep 1; test $(ps -o sid= -p $$) -eq $$ && readlink /proc/$$/fd/0")));
  EXPECT_FALSE(fs::exists(Seen()));
  ASSERT_TRUE(Appears(Seen()));
  EXPECT_EQ(Read(Seen()), "/dev/null\n");
  EXPECT_TRUE(NoChildIsLeft());
}

TEST_F(LaunchTest, WhatIsNoProgramIsNotStarted) {
  EXPECT_FALSE(StartProgram((mFolder / "none").string()));
  EXPECT_FALSE(StartProgram(mFolder.string()));
  EXPECT_FALSE(StartProgram(Document("text")));
  EXPECT_FALSE(StartProgram(""));
}

}  // namespace
}  // namespace brackwell
