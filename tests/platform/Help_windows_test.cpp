#include "platform/Help.h"

#include <gtest/gtest.h>

#include "platform/FileSystemObject.h"
#include "platform/Win32.h"
#include "support/TempTree.h"
#include "support/VisibleWindows_windows.h"

namespace brackwell {
namespace {

/// The help as it was built, shown in the system's own viewer.
class HelpOnWindows : public testing::Test {
 protected:
  ~HelpOnWindows() override { CloseHelp(); }

  const std::string File = BRACKWELL_PROGRAM_FOLDER "/Brackwell.chm";
  const std::vector<std::string> OneWindow{"Brackwell Help"};
};

TEST_F(HelpOnWindows, ContentsSearchAndTopicsAreShownInOneWindow) {
  EXPECT_TRUE(ShowHelpContents(File));
  EXPECT_EQ(VisibleWindows(), OneWindow);
  EXPECT_TRUE(ShowHelpSearch(File));
  EXPECT_TRUE(ShowHelpTopic(File, "compare.html"));
  EXPECT_EQ(VisibleWindows(), OneWindow);
}

TEST_F(HelpOnWindows, TheSearchPageCanComeFirst) {
  EXPECT_TRUE(ShowHelpSearch(File));
  EXPECT_EQ(VisibleWindows(), OneWindow);
}

TEST_F(HelpOnWindows, ItsWindowIsClosed) {
  EXPECT_TRUE(ShowHelpContents(File));
  CloseHelp();
  EXPECT_EQ(VisibleWindows(), std::vector<std::string>());
}

TEST_F(HelpOnWindows, AFileIsFoundWhereverTheProgramIs) {
  TempTree tree;
  tree.Folder("a folder of \xc3\xbc");
  ASSERT_TRUE(CopyFileW(win32::Widen(File).c_str(),
                        win32::Widen(tree.Path("a folder of \xc3\xbc/Brackwell.chm")).c_str(), TRUE));
  EXPECT_TRUE(ShowHelpContents(tree.Path("a folder of \xc3\xbc/Brackwell.chm")));
  EXPECT_EQ(VisibleWindows(), OneWindow);
  CloseHelp();
}

TEST_F(HelpOnWindows, AFileThatIsNotThereOrNoHelpIsNotShown) {
  TempTree tree;
  tree.File("no help.chm", "nothing");
  for (const std::string& file : {tree.Path("none.chm"), tree.Path("no help.chm")}) {
    EXPECT_FALSE(ShowHelpContents(file));
    EXPECT_FALSE(ShowHelpSearch(file));
    EXPECT_FALSE(ShowHelpTopic(file, "welcome.html"));
  }
  EXPECT_EQ(VisibleWindows(), std::vector<std::string>());
}

TEST_F(HelpOnWindows, ADamagedFileIsNotShown) {
  TempTree tree;
  std::string content = CreateFileSystemObject()->OpenTextFile(File)->ReadAll();
  tree.File("cut.chm", content.substr(0, content.size() / 2));
  tree.File("short.chm", content.substr(0, 40));
  content.replace(0, 4, "XXXX");
  tree.File("mark.chm", content);
  for (const char* name : {"cut.chm", "mark.chm", "short.chm"})
    EXPECT_FALSE(ShowHelpContents(tree.Path(name))) << name;
}

TEST_F(HelpOnWindows, AViewerThatIsNotOpenCanBeClosed) {
  CloseHelp();
  CloseHelp();
}

}  // namespace
}  // namespace brackwell
