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

TEST(ListedValueText, ATextEndsAtItsFirstZero) {
  EXPECT_EQ(ListedValueText(Text, "arial.ttf\0"s), "arial.ttf");
  EXPECT_EQ(ListedValueText(Text, "arial.ttf\0rest\0"s), "arial.ttf");
  EXPECT_EQ(ListedValueText(Text, "unterminated"), "unterminated");
  EXPECT_EQ(ListedValueText(ExpandableText, "%windir%\0"s), "%windir%");
  EXPECT_EQ(ListedValueText(Text, ""), "");
}

TEST(ListedValueText, ANumberHasEightHexadecimalDigits) {
  EXPECT_EQ(ListedValueText(Number, "\0\0\0\0"s), "&h00000000");
  EXPECT_EQ(ListedValueText(Number, "\x0c\0\0\0"s), "&h0000000C");
  EXPECT_EQ(ListedValueText(Number, "\xef\xbe\xad\xde"), "&hDEADBEEF");
  EXPECT_EQ(ListedValueText(Number, "\x07"), "&h00000007");
  EXPECT_EQ(ListedValueText(Number, "\1\2\3\4\5"), "&h04030201");
}

TEST(ListedValueText, TheTextsOfAListFollowOneAnother) {
  EXPECT_EQ(ListedValueText(7, "one\0two\0three\0\0"s), "onetwothree");
  EXPECT_EQ(ListedValueText(7, "\0"s), "");
}

TEST(ListedValueText, OtherTypesHaveNoText) {
  for (const std::uint32_t type : {0U, 3U, 5U, 6U, 8U, 11U, 4711U})
    EXPECT_EQ(ListedValueText(type, "text"), "");
}

TEST(RegistryNames, Types) {
  EXPECT_EQ(RegTypeName(1), "REG_SZ");
  EXPECT_EQ(RegTypeExportPrefix(1), "");
  EXPECT_EQ(RegTypeName(2), "REG_EXPAND_SZ");
  EXPECT_EQ(RegTypeExportPrefix(2), "hex(2):");
  EXPECT_EQ(RegTypeName(3), "REG_BINARY");
  EXPECT_EQ(RegTypeExportPrefix(3), "hex:");
  EXPECT_EQ(RegTypeName(4), "REG_DWORD");
  EXPECT_EQ(RegTypeExportPrefix(4), "dword:");
  EXPECT_EQ(RegTypeName(0), "");
  EXPECT_EQ(RegTypeExportPrefix(5), "");
}

TEST(RegistryNames, Hives) {
  EXPECT_EQ(HiveName(0x80000000), "HKEY_CLASSES_ROOT");
  EXPECT_EQ(HiveName(0x80000001), "HKEY_CURRENT_USER");
  EXPECT_EQ(HiveName(0x80000002), "HKEY_LOCAL_MACHINE");
  EXPECT_EQ(HiveName(0x80000003), "HKEY_USERS");
  EXPECT_EQ(HiveName(0x80000004), "HKEY_PERFORMANCE_DATA");
  EXPECT_EQ(HiveName(0x80000005), "HKEY_CURRENT_CONFIG");
  EXPECT_EQ(HiveName(0x80000006), "HKEY_DYN_DATA");
  EXPECT_EQ(HiveName(0), "");
  EXPECT_EQ(HiveName(0x80000007), "");
}

TEST(ParseHive, SignedOrUnsigned) {
  EXPECT_EQ(ParseHive("2147483650"), HkeyLocalMachine);
  EXPECT_EQ(ParseHive("-2147483646"), HkeyLocalMachine);
  EXPECT_EQ(ParseHive("0"), 0U);
  EXPECT_EQ(ParseHive("4294967295"), 0xFFFFFFFF);
}

TEST(ParseHive, WhatIsNoHandle) {
  for (const char* text : {"", " 1", "1 ", "0x80000002", "HKEY_LOCAL_MACHINE", "4294967296", "-2147483649",
                           "99999999999999999999"})
    EXPECT_EQ(ParseHive(text), std::nullopt) << text;
}

TEST(RegEnumKeyValues, AnUnknownHiveOrKeyHasNoValues) {
  for (const char* hive : {"2147483650", "12", "no number", ""}) {
    const KeyValues values = RegEnumKeyValues(hive, "SOFTWARE\\Brackwell\\None");
    EXPECT_EQ(values.Count, 0);
    EXPECT_TRUE(values.Names.empty() && values.Types.empty() && values.Data.empty());
  }
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
