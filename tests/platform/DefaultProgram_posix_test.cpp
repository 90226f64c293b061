// Which program opens a document, and where a report is written for it, on made-up desktops.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Launch.h"
#include "platform/TempFolder.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/NoThreads_posix.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

constexpr int Opened = 33;
constexpr int NoProgram = 31;

/// A home, and a desktop that knows web pages and plain text. GIO reads what is installed once, so each
/// question is asked in a process of its own.
class DefaultProgramTest : public testing::Test {
 protected:
  DefaultProgramTest() {
    mTree.File("share/mime/globs2",
               "50:text/html:*.htm\n50:text/html:*.html\n50:text/plain:*.txt\n50:image/png:*.png\n");
    mTree.Folder("home/user");
    mTree.Folder("tmp");
    mTree.File("bin/xdg-open", "#!/bin/sh\nexit 0\n");
    chmod(mTree.Path("bin/xdg-open").c_str(), 0755);
    mTree.File("page.htm", "<p>");
  }

  /// Installs a program as the default for a type; `more` are further lines of its description.
  void Install(const std::string& id, const std::string& type, const std::string& more = {}) {
    mTree.File("share/applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\nName=" + id +
                                                            "\n" +
                                                            (more.empty() ? "Exec=/bin/true %u\n" : more));
    mDefaults += type + "=" + id + ".desktop\n";
    mTree.File("share/applications/mimeapps.list", mDefaults);
  }

  void InstallSnap(const std::string& name, const std::string& type) {
    Install(name + "_" + name, type,
            "X-SnapInstanceName=" + name + "\nExec=env HINT=x /bin/true /snap/bin/" + name + " %u\n");
  }

  void Set(const char* variable, const std::string& value) { mVariables.emplace_back(variable, value); }

  int Ask(const std::function<int()>& question) const {
    return InChild([&] {
      setenv("HOME", mTree.Path("home/user").c_str(), 1);
      setenv("XDG_DATA_DIRS", mTree.Path("share").c_str(), 1);
      for (const char* none : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
        setenv(none, mTree.Path("none").c_str(), 1);
      for (const char* unset : {"BROWSER", "XDG_CURRENT_DESKTOP"}) unsetenv(unset);
      setenv("TMPDIR", mTree.Path("tmp").c_str(), 1);
      setenv("PATH", (mTree.Path("bin") + ":" + std::getenv("PATH")).c_str(), 1);
      for (const auto& [variable, value] : mVariables) setenv(variable, value.c_str(), 1);
      return question();
    });
  }

  int Open(const std::string& name) const {
    return Ask([&] { return OpenDocument(mTree.Path(name), nullptr); });
  }

  /// Below the tree; what went wrong otherwise.
  std::string ReportPlace(const std::string& fileName) {
    const std::string note = mTree.Path("answer");
    const int error = Ask([&] {
      std::string path;
      const int number = ErrorNumber([&] { path = ReportPath(fileName); });
      mTree.File("answer", path);
      return number;
    });
    if (error != 0) return "error " + std::to_string(error);
    const std::string path = mTree.Read("answer");
    return path.starts_with(mTree.Path()) ? path.substr(mTree.Path().size() + 1) : path;
  }

  TempTree mTree;

 private:
  std::string mDefaults = "[Default Applications]\n";
  std::vector<std::pair<const char*, std::string>> mVariables;
};

TEST_F(DefaultProgramTest, OpensWhatItIsTheDefaultFor) {
  Install("browser", "text/html");
  EXPECT_EQ(Open("page.htm"), Opened);
  mTree.File("empty.htm");
  EXPECT_EQ(Open("empty.htm"), Opened);
}

TEST_F(DefaultProgramTest, TypesWithoutOneAreNotHandedOver) {
  mTree.File("bin/xdg-open", "#!/bin/sh\n: >" + mTree.Path("started") + "\n");
  Install("editor", "text/plain");
  mTree.File("picture.png");
  EXPECT_EQ(Open("picture.png"), NoProgram);
  EXPECT_EQ(Open(""), NoProgram) << "a folder";
  Install("browser", "text/html");
  mTree.Folder("folder.htm");
  EXPECT_EQ(Open("folder.htm"), NoProgram) << "a folder";
  EXPECT_FALSE(mTree.Exists("started"));
}

TEST_F(DefaultProgramTest, NamesThatTellNoTypeAreLookedInto) {
  Install("editor", "text/plain");
  mTree.File("README", "plain text\n");
  mTree.File("data", std::string("\0\1\2", 3));
  EXPECT_EQ(Open("README"), Opened);
  EXPECT_EQ(Open("data"), NoProgram);
}

TEST_F(DefaultProgramTest, WebAddressesNeedABrowser) {
  const auto open = [] { return OpenWebAddress("https://example.org/", nullptr); };
  EXPECT_EQ(Ask(open), NoProgram);
  Install("browser", "x-scheme-handler/https");
  EXPECT_EQ(Ask(open), Opened);
}

TEST_F(DefaultProgramTest, TheUsersOwnChoiceCountsAsOne) {
  Set("BROWSER", "/bin/true");
  EXPECT_EQ(Open("page.htm"), Opened);
  EXPECT_EQ(Ask([] { return OpenWebAddress("https://example.org/", nullptr); }), Opened);
}

TEST_F(DefaultProgramTest, WithoutThreadsNothingIsAskedAndNothingDies) {
  EXPECT_EQ(Ask([this] {
              const NoThreads none;
              return ReportPath("page.htm") == mTree.Root("tmp") + "page.htm" ? 0 : 1;
            }),
            0);
  EXPECT_EQ(Ask([this] {
              const NoThreads none;
              return OpenDocument(mTree.Path("page.htm"), nullptr);
            }),
            Opened);
}

TEST_F(DefaultProgramTest, ReportsLieInTheTemporaryFolder) {
  EXPECT_EQ(ReportPlace("page.htm"), "tmp/page.htm") << "no program";
  Install("browser", "text/html");
  EXPECT_EQ(ReportPlace("page.htm"), "tmp/page.htm");
}

TEST_F(DefaultProgramTest, ReportsForASnapLieWhereItSeesThem) {
  InstallSnap("firebird", "text/html");
  EXPECT_EQ(ReportPlace("page.htm"), "home/user/snap/firebird/common/brackwell/page.htm");
  EXPECT_EQ(ReportPlace("page.html"), "home/user/snap/firebird/common/brackwell/page.html");
  EXPECT_EQ(ReportPlace("list.txt"), "tmp/list.txt") << "a type that the snap does not open";
  struct stat status {};
  ASSERT_EQ(stat(mTree.Path("home/user/snap/firebird/common/brackwell").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, mode_t{S_IFDIR | 0700});
}

TEST_F(DefaultProgramTest, AFolderThatTheSnapSeesIsLeftAsItIs) {
  InstallSnap("firebird", "text/html");
  Set("TMPDIR", mTree.Path("home/user/reports"));
  EXPECT_EQ(ReportPlace("page.htm"), "home/user/reports/page.htm");
  Set("TMPDIR", mTree.Path("home/user/.cache"));
  EXPECT_EQ(ReportPlace("page.htm"), "home/user/snap/firebird/common/brackwell/page.htm") << "hidden";
  Set("TMPDIR", mTree.Path("home/username"));
  EXPECT_EQ(ReportPlace("page.htm"), "home/user/snap/firebird/common/brackwell/page.htm") << "another home";
}

TEST_F(DefaultProgramTest, ASnapsFolderThatOthersCanReadIsRefused) {
  InstallSnap("firebird", "text/html");
  mTree.Folder("home/user/snap/firebird/common/brackwell");
  chmod(mTree.Path("home/user/snap/firebird/common/brackwell").c_str(), 0755);
  EXPECT_EQ(ReportPlace("page.htm"), "error 70");
}

}  // namespace
}  // namespace brackwell
