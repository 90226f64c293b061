#include <gtest/gtest.h>

#include <set>

#include "platform/Registry.h"
#include "platform/Win32.h"

namespace brackwell {
namespace {

constexpr Hive HkeyCurrentUser = 0x80000001;
const std::string KeyPath = "Software\\Brackwell test \xc3\xa4";

/// A key of the user's own, gone with the test.
class RegistryOnWindows : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Path().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &mKey, nullptr),
              ERROR_SUCCESS);
  }
  void TearDown() override {
    RegCloseKey(mKey);
    RegDeleteKeyW(HKEY_CURRENT_USER, Path().c_str());
  }

  void Store(const wchar_t* name, DWORD type, const void* data, std::size_t size) {
    ASSERT_EQ(RegSetValueExW(mKey, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }
  void StoreText(const wchar_t* name, DWORD type, const std::wstring& text) {
    Store(name, type, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  }

  static std::string Read(const std::string& name) {
    std::string value = "before";
    return GetKeyValue(HkeyCurrentUser, KeyPath, name, value) ? value : "none" + value;
  }

  /// "name type data" of each value; their order is the system's.
  static std::set<std::string> List() {
    const KeyValues values = RegEnumKeyValues("2147483649", KeyPath);
    EXPECT_EQ(values.Names.size(), static_cast<std::size_t>(values.Count));
    std::set<std::string> lines;
    for (std::size_t i = 0; i < values.Names.size(); ++i)
      lines.insert(values.Names[i] + " " + std::to_string(values.Types[i]) + " " + values.Data[i]);
    return lines;
  }

 private:
  static std::wstring Path() { return win32::Widen(KeyPath); }
  HKEY mKey = nullptr;
};

TEST_F(RegistryOnWindows, Texts) {
  StoreText(L"text", REG_SZ, L"C:\\Gr\u00fc\u00dfe");
  StoreText(L"expandable", REG_EXPAND_SZ, L"%windir%\\x");
  StoreText(L"", REG_SZ, L"of the key itself");
  Store(L"unterminated", REG_SZ, L"ab", 2 * sizeof(wchar_t));
  EXPECT_EQ(Read("text"),
            "C:\\Gr\xc3\xbc\xc3\x9f"
            "e");
  EXPECT_EQ(Read("TEXT"), Read("text"));
  EXPECT_EQ(Read("expandable"), "%windir%\\x");
  EXPECT_EQ(Read(""), "of the key itself");
  EXPECT_EQ(Read("unterminated"), "ab");
}

TEST_F(RegistryOnWindows, Numbers) {
  const DWORD number = 4660;
  Store(L"number", REG_DWORD, &number, sizeof number);
  EXPECT_EQ(Read("number"), "4660");
}

TEST_F(RegistryOnWindows, ATextOfMoreThan1024CharactersIsNotRead) {
  StoreText(L"fits", REG_SZ, std::wstring(1023, L'x'));
  StoreText(L"long", REG_SZ, std::wstring(1024, L'x'));
  EXPECT_EQ(Read("fits"), std::string(1023, 'x'));
  EXPECT_EQ(Read("long"), "none");
}

TEST_F(RegistryOnWindows, AKeyIsListedValueByValue) {
  const DWORD number = 0xBEEF;
  const std::wstring names(L"one\0two\0", 9);
  StoreText(L"Arial Bold (TrueType)", REG_SZ, L"arialbd.ttf");
  StoreText(L"Gr\u00fc\u00dfe", REG_EXPAND_SZ, L"%windir%\\\u00fc.ttf");
  Store(L"list", REG_MULTI_SZ, names.data(), names.size() * sizeof(wchar_t));
  Store(L"number", REG_DWORD, &number, sizeof number);
  Store(L"bytes", REG_BINARY, "\1\2", 2);
  Store(L"cut", REG_SZ, L"ab\0cd", 6 * sizeof(wchar_t));
  Store(L"nothing", REG_SZ, "", 0);
  Store(L"half a character", REG_SZ, "a\0b", 3);
  EXPECT_EQ(List(), (std::set<std::string>{"Arial Bold (TrueType) 1 arialbd.ttf",
                                           "Gr\xc3\xbc\xc3\x9f"
                                           "e 2 %windir%\\\xc3\xbc.ttf",
                                           "list 7 onetwo", "number 4 &h0000BEEF", "bytes 3 ", "cut 1 ab",
                                           "nothing 1 ", "half a character 1 a"}));
}

TEST_F(RegistryOnWindows, NamesAndDataOfAnyLengthAreListed) {
  const std::wstring name(16383, L'n');
  StoreText(name.c_str(), REG_SZ, std::wstring(100000, L'd'));
  StoreText(L"short", REG_SZ, L"text");
  EXPECT_EQ(List(), (std::set<std::string>{std::string(16383, 'n') + " 1 " + std::string(100000, 'd'),
                                           "short 1 text"}));
}

TEST_F(RegistryOnWindows, AKeyWithoutValuesIsEmpty) { EXPECT_EQ(List(), std::set<std::string>()); }

TEST_F(RegistryOnWindows, TheFontsOfTheMachineAreListed) {
  const KeyValues fonts =
      RegEnumKeyValues("2147483650", "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts");
  ASSERT_GT(fonts.Names.size(), 0U);
  for (std::size_t i = 0; i < fonts.Names.size(); ++i) {
    EXPECT_NE(fonts.Names[i], "");
    EXPECT_EQ(fonts.Types[i], 1U) << fonts.Names[i];
    EXPECT_NE(fonts.Data[i].find('.'), std::string::npos) << fonts.Names[i] << ": " << fonts.Data[i];
  }
}

TEST_F(RegistryOnWindows, ThousandsOfValues) {
  for (int i = 0; i < 3000; ++i) StoreText(std::to_wstring(i).c_str(), REG_SZ, L"x");
  EXPECT_EQ(List().size(), 3000U);
}

TEST_F(RegistryOnWindows, WhatIsNotThere) { EXPECT_EQ(Read("missing"), "none"); }

}  // namespace
}  // namespace brackwell
