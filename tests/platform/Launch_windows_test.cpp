#include <gtest/gtest.h>

#include "platform/Launch.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

TEST(LaunchOnWindows, AMissingFileAndAnUnknownTypeHaveTheCodesOfTheShell) {
  TempTree tree;
  tree.File("a.brackwell-unknown");
  EXPECT_EQ(OpenDocument(tree.Path("none.htm"), nullptr), 2);
  EXPECT_EQ(OpenDocument(tree.Path("a.brackwell-unknown"), nullptr), 31);
}

TEST(LaunchOnWindows, AMissingFolderHasTheCodeOfTheShell) {
  TempTree tree;
  EXPECT_EQ(OpenDocument(tree.Path("none/report.htm"), nullptr), 3);
}

TEST(LaunchOnWindows, ProgramsAreStartedAlsoByTheSystemsVariables) {
  EXPECT_TRUE(StartProgram("%windir%\\system32\\hostname.exe"));
}

TEST(LaunchOnWindows, AMissingProgramIsNotStarted) {
  TempTree tree;
  EXPECT_FALSE(StartProgram(tree.Path("none.exe")));
}

}  // namespace
}  // namespace brackwell
