#include "support/OwnHive_windows.h"

#include <stdexcept>

namespace brackwell {
namespace {

void Check(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw std::runtime_error("registry: error " + std::to_string(status));
}

HKEY MakeKey(HKEY parent, const std::wstring& path) {
  HKEY key = nullptr;
  Check(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr));
  return key;
}

}  // namespace

OwnHive::OwnHive(HKEY hive) : mHive(hive), mHome(MakeKey(HKEY_CURRENT_USER, L"Software")) {
  static int count = 0;
  mName = L"Brackwell test " + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
  mKey = MakeKey(mHome, mName);
  Check(RegOverridePredefKey(mHive, mKey));
}

OwnHive::~OwnHive() {
  RegOverridePredefKey(mHive, nullptr);
  RegCloseKey(mKey);
  RegDeleteTreeW(mHome, mName.c_str());
  RegCloseKey(mHome);
}

void OwnHive::Store(const std::string& keyPath, const std::string& valueName, const std::string& text) const {
  const std::wstring wide = win32::Widen(text);
  const HKEY key = MakeKey(mKey, win32::Widen(keyPath));
  const LSTATUS status = RegSetValueExW(key, win32::Widen(valueName).c_str(), 0, REG_SZ,
                                        reinterpret_cast<const BYTE*>(wide.c_str()),
                                        static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
  Check(status);
}

void OwnHive::Clear() const { Check(RegDeleteTreeW(mKey, nullptr)); }

}  // namespace brackwell
