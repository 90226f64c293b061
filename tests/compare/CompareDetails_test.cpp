#include "compare/CompareDetails.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/DateText.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

std::map<std::string, std::string> Read(const std::string& path, bool isFile) {
  const auto files = CreateFileSystemObject();
  std::map<std::string, std::string> values;
  ReadProperties(*files, path, isFile, [&](std::size_t row, std::string value) {
    values[std::string(PropertyNames(isFile)[row])] = std::move(value);
  });
  return values;
}

TEST(CompareDetails, AFileHasTwelveProperties) {
  TempTree tree;
  tree.File("folder/a.txt", "12345", 3600);
  const auto values = Read(tree.Path("folder/a.txt"), true);
  EXPECT_EQ(values.size(), 12u);
  EXPECT_EQ(values.at("Name"), "a.txt");
  EXPECT_EQ(values.at("Path"), tree.Path("folder/a.txt"));
  EXPECT_EQ(values.at("ParentFolder"), tree.Path("folder"));
  EXPECT_EQ(values.at("Size"), "5");
  EXPECT_EQ(values.at("DateLastModified"), GeneralDate(TempTree::Time(3600)));
  for (const auto& [name, value] : values) EXPECT_NE(value, "") << name;
}

TEST(CompareDetails, AFolderHasFourteenAndTheSizeOfEverythingBelow) {
  TempTree tree;
  tree.File("folder/a", "12345");
  tree.File("folder/sub/b", "123");
  tree.File("folder/sub/deep/c", "1");
  tree.Folder("folder/empty");
  const auto values = Read(tree.Path("folder"), false);
  EXPECT_EQ(values.size(), 14u);
  EXPECT_EQ(values.at("Files"), "1");
  EXPECT_EQ(values.at("Subfolders"), "2");
  EXPECT_EQ(values.at("Size"), "9");
  EXPECT_EQ(values.at("Name"), "folder");
  EXPECT_EQ(std::stoi(values.at("Attributes")) & 16, 16);
}

TEST(CompareDetails, WhatIsNotThereHasNone) {
  TempTree tree;
  tree.File("file");
  tree.Folder("folder");
  EXPECT_TRUE(Read(tree.Path("gone"), true).empty());
  EXPECT_TRUE(Read(tree.Path("gone"), false).empty());
  EXPECT_TRUE(Read(tree.Path("folder"), true).empty());
  EXPECT_TRUE(Read(tree.Path("file"), false).empty());
}

TEST(CompareDetails, ATickMayEndIt) {
  TempTree tree;
  for (int i = 0; i < 20; ++i) tree.File("folder/file" + std::to_string(i), "x");
  const auto files = CreateFileSystemObject();
  int given = 0;
  struct Ended {};
  EXPECT_THROW(ReadProperties(
                   *files, tree.Path("folder"), false, [&](std::size_t, std::string) { ++given; },
                   [] { throw Ended{}; }),
               Ended);
  EXPECT_EQ(given, 13);  // all but the size
}

TEST(CompareDetails, NamesStandInTheirOrder) {
  const auto joined = [](bool isFile) {
    std::string names;
    for (const std::string_view name : PropertyNames(isFile)) names += std::string(name) + " ";
    return names;
  };
  EXPECT_EQ(joined(true),
            "Attributes DateCreated DateLastAccessed DateLastModified Drive Name ParentFolder Path ShortName "
            "ShortPath Size Type ");
  EXPECT_EQ(
      joined(false),
      "Attributes DateCreated DateLastAccessed DateLastModified Drive Files Name ParentFolder Path ShortName "
      "ShortPath Size Subfolders Type ");
}

}  // namespace
}  // namespace brackwell
