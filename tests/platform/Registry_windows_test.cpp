#include <gtest/gtest.h>

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

TEST_F(RegistryOnWindows, WhatIsNotThere) { EXPECT_EQ(Read("missing"), "none"); }

}  // namespace
}  // namespace brackwell
