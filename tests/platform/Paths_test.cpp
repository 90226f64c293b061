#include "platform/Paths.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

#ifdef _WIN32
constexpr std::string_view RootOfAll = "C:\\";
#else
constexpr std::string_view RootOfAll = "/";
#endif

std::string Under(std::string rest) {
  for (char& c : rest)
    if (c == '/') c = PathSeparator;
  return std::string(RootOfAll) + rest;
}

TEST(Paths, JoinWithExactlyOneSeparator) {
  EXPECT_EQ(JoinPath(Under("a"), "b"), Under("a/b"));
  EXPECT_EQ(JoinPath(Under("a/"), "b"), Under("a/b"));
  EXPECT_EQ(JoinPath(RootOfAll, "b"), Under("b"));
  EXPECT_EQ(JoinPath("", "b"), "b");
}

TEST(Paths, ARootKeepsItsSingleSeparator) {
  EXPECT_EQ(WithSeparator(RootOfAll), RootOfAll);
  EXPECT_EQ(WithoutSeparator(RootOfAll), RootOfAll);
  EXPECT_EQ(WithSeparator(Under("a")), Under("a/"));
  EXPECT_EQ(WithoutSeparator(Under("a//")), Under("a"));
  EXPECT_EQ(WithSeparator(""), "");
}

TEST(Paths, GiveTheLastElementAndWhatHoldsIt) {
  EXPECT_EQ(FileName(Under("a/b.txt")), "b.txt");
  EXPECT_EQ(FileName(Under("a/b/")), "b");
  EXPECT_EQ(FileName(RootOfAll), "");
  EXPECT_EQ(ParentPath(Under("a/b.txt")), Under("a"));
  EXPECT_EQ(ParentPath(Under("a")), RootOfAll);
  EXPECT_EQ(ParentPath(RootOfAll), "");
  EXPECT_EQ(ParentPath("bare"), "");
}

#ifdef _WIN32
TEST(Paths, KnowDrivesAndShares) {
  EXPECT_EQ(ParentPath("\\\\server\\share\\a"), "\\\\server\\share\\");
  EXPECT_EQ(JoinPath("C:/a", "b"), "C:/a\\b");
  EXPECT_EQ(FileName("C:/a/b"), "b");
}
#endif

}  // namespace
}  // namespace brackwell
