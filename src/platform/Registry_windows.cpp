#include "platform/Registry.h"

#include "platform/Win32.h"

namespace brackwell {
namespace {

constexpr DWORD BufferSize = 1024;  // characters

HKEY ToHandle(Hive hive) {
  // The handles of the hives are 32-bit numbers with their sign.
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(hive)));
}

/// Owns an opened key.
class Key {
 public:
  /// Only to read: the right to change what belongs to the whole machine is an administrator's.
  Key(Hive hive, const std::wstring& path) {
    if (RegOpenKeyExW(ToHandle(hive), path.c_str(), 0, KEY_READ, &mKey) != ERROR_SUCCESS) mKey = nullptr;
  }
  ~Key() {
    if (mKey) RegCloseKey(mKey);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  HKEY Get() const { return mKey; }

 private:
  HKEY mKey = nullptr;
};

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

}  // namespace

bool GetKeyValue(Hive hive, const std::string& keyPath, const std::string& valueName, std::string& value) {
  value.clear();
  const Key key(hive, win32::Widen(keyPath));
  if (!key.Get()) return false;

  wchar_t buffer[BufferSize];
  DWORD type = REG_NONE;
  DWORD size = sizeof buffer;
  if (RegQueryValueExW(key.Get(), win32::Widen(valueName).c_str(), nullptr, &type,
                       reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS)
    return false;
  value = KeyValueText(type, IsText(type) ? win32::Narrow({buffer, size / sizeof(wchar_t)})
                                          : std::string(reinterpret_cast<char*>(buffer), size));
  return true;
}

}  // namespace brackwell
