#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "platform/Registry.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

/// Folders of programs, of which PATH names some.
class RegistryOnPosix : public testing::Test {
 protected:
  void SetUp() override { mPath = std::getenv("PATH"); }
  void TearDown() override { setenv("PATH", mPath.c_str(), 1); }

  void PathIs(const std::string& path) { setenv("PATH", path.c_str(), 1); }

  void Program(const std::string& name, mode_t mode = 0755) {
    mTree.File(name, "#!/bin/sh\n");
    ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0);
  }

  std::string SystemInformation() {
    std::string value = "before";
    const bool found =
        GetKeyValue(HkeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", value);
    EXPECT_EQ(found, !value.empty());
    return value;
  }

  TempTree mTree;
  std::string mPath;
};

TEST_F(RegistryOnPosix, NoneInstalled) {
  Program("bin/other");
  PathIs(mTree.Path("bin"));
  EXPECT_EQ(SystemInformation(), "");
}

TEST_F(RegistryOnPosix, AnInstalledProgramHasItsFullPath) {
  Program("usr/bin/kinfocenter");
  PathIs(mTree.Path("bin") + ":" + mTree.Path("usr/bin"));
  EXPECT_EQ(SystemInformation(), mTree.Path("usr/bin/kinfocenter"));
}

TEST_F(RegistryOnPosix, TheBestKnownComesFirstWhereverItIs) {
  Program("a/kinfocenter");
  Program("b/hardinfo");
  PathIs(mTree.Path("a") + ":" + mTree.Path("b"));
  EXPECT_EQ(SystemInformation(), mTree.Path("b/hardinfo"));
  Program("a/hardinfo");
  EXPECT_EQ(SystemInformation(), mTree.Path("a/hardinfo"));
}

TEST_F(RegistryOnPosix, WhatCannotBeStartedDoesNotCount) {
  Program("bin/hardinfo", 0644);
  mTree.Folder("bin/hardinfo2");
  PathIs(mTree.Path("bin"));
  EXPECT_EQ(SystemInformation(), "");
}

TEST_F(RegistryOnPosix, OddPaths) {
  Program("bin/hardinfo");
  PathIs("");
  EXPECT_EQ(SystemInformation(), "");
  PathIs("::bin:." + std::string(":") + mTree.Path("bin") + "/:");
  EXPECT_EQ(SystemInformation(), mTree.Path("bin/hardinfo"));
  unsetenv("PATH");
  EXPECT_EQ(SystemInformation(), "");
}

TEST_F(RegistryOnPosix, TheCurrentFolderDoesNotCount) {
  Program("hardinfo");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(mTree.Path());
  PathIs(":.");
  EXPECT_EQ(SystemInformation(), "");
  std::filesystem::current_path(before);
}

TEST_F(RegistryOnPosix, NamesAreFoundWhateverTheirCase) {
  Program("bin/hardinfo");
  PathIs(mTree.Path("bin"));
  std::string value;
  EXPECT_TRUE(GetKeyValue(HkeyLocalMachine, "Software\\Microsoft\\Shared Tools\\MSInfo", "Path", value));
  EXPECT_EQ(value, mTree.Path("bin/hardinfo"));
}

TEST_F(RegistryOnPosix, TheKeyIsListedToo) {
  const std::string key = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
  PathIs(mTree.Path("bin"));
  EXPECT_EQ(RegEnumKeyValues("2147483650", key).Count, 0);
  Program("bin/hardinfo");
  const KeyValues values = RegEnumKeyValues("2147483650", key);
  EXPECT_EQ(values.Count, 1);
  EXPECT_EQ(values.Names, std::vector<std::string>{"PATH"});
  EXPECT_EQ(values.Types, std::vector<std::uint32_t>{1});
  EXPECT_EQ(values.Data, std::vector<std::string>{mTree.Path("bin/hardinfo")});
}

TEST_F(RegistryOnPosix, NothingElseIsAnswered) {
  Program("bin/hardinfo");
  PathIs(mTree.Path("bin"));
  const std::string key = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
  std::string value;
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine + 1, key, "PATH", value));
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine, key, "", value));
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine, key + " Location", "PATH", value));
}

}  // namespace
}  // namespace brackwell
