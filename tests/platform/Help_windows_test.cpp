#include "platform/Help.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace brackwell {
namespace {

TEST(HelpOnWindows, AFileThatIsNotThereOrNoHelpIsNotShown) {
  TempTree tree;
  tree.File("no help.chm", "nothing");
  for (const std::string& file : {tree.Path("none.chm"), tree.Path("no help.chm")}) {
    EXPECT_FALSE(ShowHelpContents(file));
    EXPECT_FALSE(ShowHelpTopic(file, "welcome.html"));
  }
}

TEST(HelpOnWindows, AViewerThatIsNotOpenCanBeClosed) {
  CloseHelp();
  CloseHelp();
}

}  // namespace
}  // namespace brackwell
