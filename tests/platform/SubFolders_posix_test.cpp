#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystemError.h"
#include "platform/SubFolders.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"
#include "support/WithoutPrivileges_posix.h"

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::vector<std::string>> Batches(const std::string& path) {
  std::vector<std::vector<std::string>> batches;
  ListSubFolders(path, [&](std::vector<std::string> names) { batches.push_back(std::move(names)); });
  return batches;
}

void Link(const TempTree& tree, const char* to, const std::string& name) {
  ASSERT_EQ(symlink(to, tree.Path(name).c_str()), 0);
}

TEST(SubFolders, FoldersComeFirstThenTheLinksToFolders) {
  TempTree tree;
  tree.Folder("a");
  tree.Folder("\xff");
  tree.File("file");
  Link(tree, "a", "link");
  Link(tree, "file", "to a file");
  Link(tree, "gone", "nowhere");
  Link(tree, "round", "round");
  ASSERT_EQ(mkfifo(tree.Path("pipe").c_str(), 0600), 0);
  EXPECT_THAT(Batches(tree.Path()), ElementsAre(UnorderedElementsAre("a", "\xff"), ElementsAre("link")));
}

TEST(SubFolders, ALinkToAFolderIsListedAsTheFolder) {
  TempTree tree;
  tree.Folder("a/inner");
  Link(tree, "a", "link");
  EXPECT_THAT(Batches(tree.Path("link")), ElementsAre(ElementsAre("inner")));
}

TEST(SubFolders, WhatIsNoFolderCannotBeListed) {
  TempTree tree;
  tree.File("file");
  EXPECT_EQ(ErrorNumber([&] { Batches(tree.Path("gone")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { Batches(tree.Path("file")); }), 76);
}

TEST(SubFolders, AFolderThatMayNotBeReadIsRefused) {
  TempTree tree;
  tree.Folder("closed/inner");
  chmod(tree.Path("closed").c_str(), 0300);
  {
    const WithoutPrivileges asAnyUser;
    EXPECT_EQ(ErrorNumber([&] { Batches(tree.Path("closed")); }), 70);
  }
  chmod(tree.Path("closed").c_str(), 0700);
}

}  // namespace
}  // namespace brackwell
