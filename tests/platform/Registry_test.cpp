#include "platform/Registry.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

using namespace std::string_literals;

constexpr std::uint32_t Text = 1;
constexpr std::uint32_t ExpandableText = 2;
constexpr std::uint32_t Number = 4;

TEST(KeyValueText, ATextLosesItsTerminatingZero) {
  EXPECT_EQ(KeyValueText(Text, "C:\\Tools\\info.exe\0"s), "C:\\Tools\\info.exe");
  EXPECT_EQ(KeyValueText(Text, "\0"s), "");
}

TEST(KeyValueText, ATextWithoutOneKeepsItsLength) {
  EXPECT_EQ(KeyValueText(Text, "info.exe"), "info.exe");
  EXPECT_EQ(KeyValueText(Text, ""), "");
}

TEST(KeyValueText, OnlyTheLastZeroIsCutOff) { EXPECT_EQ(KeyValueText(Text, "a\0b\0\0"s), "a\0b\0"s); }

TEST(KeyValueText, OtherTypesAreTextAsTheyAre) {
  EXPECT_EQ(KeyValueText(ExpandableText, "%ProgramFiles%\\info.exe\0"s), "%ProgramFiles%\\info.exe");
  EXPECT_EQ(KeyValueText(3, "\x01\x02"), "\x01\x02");
}

TEST(KeyValueText, ANumberIsDecimal) {
  EXPECT_EQ(KeyValueText(Number, "\0\0\0\0"s), "0");
  EXPECT_EQ(KeyValueText(Number, "\x01\x02\0\0"s), "513");
  EXPECT_EQ(KeyValueText(Number, "\x0a\0\0\x10"s), "268435466");
  EXPECT_EQ(KeyValueText(Number, "\xff\xff\xff\x7f"), "2147483647");
  EXPECT_EQ(KeyValueText(Number, "\xff\xff\xff\xff"), "4294967295");
}

TEST(KeyValueText, ANumberOfAnOddSizeIsReadAsFarAsItGoes) {
  EXPECT_EQ(KeyValueText(Number, ""), "0");
  EXPECT_EQ(KeyValueText(Number, "\x07"), "7");
  EXPECT_EQ(KeyValueText(Number, "\x01\0\0\0\x09"s), "1");
}

TEST(GetKeyValue, AnUnknownKeyOrValueGivesNothing) {
  std::string value = "before";
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine, "SOFTWARE\\Brackwell\\None", "PATH", value));
  EXPECT_EQ(value, "");
  value = "before";
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine, "SOFTWARE\\Microsoft", "brackwell-none", value));
  EXPECT_EQ(value, "");
}

}  // namespace
}  // namespace brackwell
