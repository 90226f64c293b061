#include "common/Files.h"

#include <gtest/gtest.h>

#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

TEST(WriteTextFile, WritesTheBytesAsTheyAre) {
  TempTree tree;
  const auto files = CreateFileSystemObject();
  const std::string text("line\nline\r\n\xff\0end", 16);
  WriteTextFile(*files, tree.Path("report.htm"), false, text);
  EXPECT_EQ(tree.Read("report.htm"), text);
}

TEST(WriteTextFile, OverwritesOnlyWhenTold) {
  TempTree tree;
  const auto files = CreateFileSystemObject();
  tree.File("report.htm", "old");
  try {
    WriteTextFile(*files, tree.Path("report.htm"), false, "new");
    FAIL() << "overwrote";
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Number(), 58);
  }
  EXPECT_EQ(tree.Read("report.htm"), "old");
  WriteTextFile(*files, tree.Path("report.htm"), true, "new");
  EXPECT_EQ(tree.Read("report.htm"), "new");
}

TEST(WriteTextFile, RaisesWhereThereIsNoFolder) {
  TempTree tree;
  const auto files = CreateFileSystemObject();
  try {
    WriteTextFile(*files, tree.Path("gone/report.htm"), true, "new");
    FAIL() << "wrote";
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Number(), 76);
  }
}

TEST(WriteTextFile, AFullDiskLeavesTheOldFileWhole) {
  for (int call = 1; call <= 3; ++call) {
    TempTree tree;
    tree.File("report.htm", "old");
    FailingFileSystem files(call);
    EXPECT_THROW(WriteTextFile(files, tree.Path("report.htm"), true, "new"), FileSystemError) << call;
    EXPECT_EQ(tree.Read("report.htm"), "old");
    EXPECT_EQ(tree.List(), std::vector<std::string>{"report.htm"});
  }
}

}  // namespace
}  // namespace brackwell
