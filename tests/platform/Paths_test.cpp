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

TEST(Paths, AFileNameIsOneOnEverySystem) {
  for (const char* name : {"a", "a.jpg", ".profile", "a b", " a", "...a", "Ärger", "\xff", "a'b", "a;b",
                           "com", "com0.jpg", "com10.jpg", "comet1.jpg", "null.jpg", "a.nul", "-"})
    EXPECT_TRUE(IsFileName(name)) << name;
  for (const char* name :
       {"",     ".",    "..",  "...",     "a.",  "a ",      " ",      "a/b",  "/a",       "a/",
        "../a", "a\\b", "a:b", "C:",      "a*",  "a?",      "a\"",    "<a",   "a>",       "a|b",
        "a\nb", "\x1f", "nul", "NUL.txt", "Con", "prn.jpg", "aux .c", "COM1", "com1.JPG", "lpt9.a.b"})
    EXPECT_FALSE(IsFileName(name)) << name;
  EXPECT_FALSE(IsFileName(std::string_view("a\0b", 3)));
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
