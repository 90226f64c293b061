#include "platform/CaseRules.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

TEST(CaseRules, MapCharacterByCharacterWhateverTheLocale) {
  EXPECT_EQ(Upper("readMe.txt"), "README.TXT");
  EXPECT_EQ(Lower("ÄÖÜ İ ÉLAN"), "äöü i élan");
  EXPECT_EQ(Upper("straße éλ"), Upper("STRAßE ÉΛ"));
}

TEST(CaseRules, KeepBytesThatAreNoText) {
  EXPECT_EQ(Upper("a\xff"
                  "b\xc3"),
            "A\xff"
            "B\xc3");
  EXPECT_EQ(Lower(std::string_view("A\0B", 3)), std::string_view("a\0b", 3));
}

TEST(CaseRules, CompareIgnoringCase) {
  EXPECT_TRUE(CompareIgnoreCase("Énorme", "éNORME") == 0);
  EXPECT_TRUE(CompareIgnoreCase("a", "B") < 0);
  EXPECT_TRUE(CompareIgnoreCase("ab", "ABC") < 0);
  EXPECT_TRUE(CompareIgnoreCase("Z", "_") < 0);  // upper case decides, as in Windows' folders
  EXPECT_TRUE(CompareIgnoreCase("z", "é") < 0);
  EXPECT_TRUE(CompareIgnoreCase("é", "\xff") < 0);
}

TEST(CaseRules, PutOneCharacterBeforeAllOthers) {
  EXPECT_TRUE(CompareIgnoreCase("a b", "a/b") < 0);
  EXPECT_TRUE(CompareIgnoreCaseWithFirst("a b", "a/b", '/') > 0);
  EXPECT_TRUE(CompareIgnoreCaseWithFirst("a\x01", "a/", '/') > 0);
  EXPECT_TRUE(CompareIgnoreCaseWithFirst("a", "a/", '/') < 0);
}

TEST(CaseRules, OrderNamesThatDifferInCaseOnlyByTheirBytes) {
  EXPECT_TRUE(OrderOfNames("README", "readme") < 0);
  EXPECT_TRUE(OrderOfNames("readme", "READMF") < 0);
  EXPECT_TRUE(OrderOfNames("x", "x") == 0);
}

}  // namespace
}  // namespace brackwell
