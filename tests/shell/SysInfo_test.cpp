#include "shell/SysInfo.h"

#include <gtest/gtest.h>

#include <map>

#include "support/TempTree.h"

namespace brackwell {
namespace {

const std::string MsInfo = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO:PATH";
const std::string Location = "SOFTWARE\\Microsoft\\Shared Tools Location:MSINFO";

/// What the program would be with these entries, "key:value name" to text, in the registry.
std::string ProgramWith(const std::map<std::string, std::string>& entries) {
  const auto read = [&entries](Hive hive, const std::string& key, const std::string& name,
                               std::string& value) {
    const auto entry = entries.find(key + ":" + name);
    const bool found = hive == 0x80000002 && entry != entries.end();
    value = found ? entry->second : "";
    return found;
  };
  return SysInfoProgram(read, *CreateFileSystemObject());
}

TEST(SysInfo, WithNeitherEntryThereIsNone) { EXPECT_EQ(ProgramWith({}), ""); }

TEST(SysInfo, TheProgramsOwnEntryCountsWithoutLookingAtTheDisk) {
  EXPECT_EQ(ProgramWith({{MsInfo, "X:\\none.exe"}}), "X:\\none.exe");
}

TEST(SysInfo, TheFolderOfSharedToolsIsLookedInOtherwise) {
  TempTree tree;
  tree.File("tools/MSINFO32.EXE");
  EXPECT_EQ(ProgramWith({{Location, tree.Path("tools")}}), tree.Path("tools/MSINFO32.EXE"));
  EXPECT_EQ(ProgramWith({{Location, tree.Path("tools")}, {MsInfo, "first"}}), "first");
}

TEST(SysInfo, AFolderWithoutTheProgramIsNone) {
  TempTree tree;
  tree.Folder("tools/MSINFO32.EXE");
  EXPECT_EQ(ProgramWith({{Location, tree.Path("tools")}}), "");
  EXPECT_EQ(ProgramWith({{Location, tree.Path("none")}}), "");
}

}  // namespace
}  // namespace brackwell
