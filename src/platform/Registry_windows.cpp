#include "platform/Registry.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

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

/// The bytes of a value as the functions that make text of them take them.
std::string Utf8Data(DWORD type, std::span<const BYTE> data) {
  const auto* bytes = reinterpret_cast<const char*>(data.data());
  if (!IsText(type)) return {bytes, data.size()};
  std::wstring text(data.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes, text.size() * sizeof(wchar_t));
  return win32::Narrow(text);
}

/// Reads the values of one key by their index. The buffers have room for the longest name and data that the
/// key told of, and grow where a longer one has come since.
class ValueReader {
 public:
  explicit ValueReader(HKEY key) : mKey(key) {
    DWORD longestName = 0, longestData = 0;
    if (RegQueryInfoKeyW(mKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &mCount, &longestName,
                         &longestData, nullptr, nullptr) != ERROR_SUCCESS)
      mCount = 0;
    mName.resize(longestName + 1);  // the terminating zero is not counted
    mData.resize(longestData + 1);  // without room it would only be told the size, and as a success
  }

  void AddAll(KeyValues& values) {
    for (DWORD index = 0; index < mCount; ++index) AddTo(values, index);
  }

 private:
  void AddTo(KeyValues& values, DWORD index) {
    DWORD type = REG_NONE, nameLength = 0, dataSize = 0;
    LSTATUS result = ERROR_SUCCESS;
    for (;;) {
      nameLength = static_cast<DWORD>(mName.size());
      dataSize = static_cast<DWORD>(mData.size());
      result = RegEnumValueW(mKey, index, mName.data(), &nameLength, nullptr, &type, mData.data(), &dataSize);
      if (result != ERROR_MORE_DATA) break;
      mName.resize(LongestName + 1);
      mData.resize(std::max<std::size_t>(mData.size() * 2, dataSize));
    }
    if (result != ERROR_SUCCESS) return;
    const std::wstring name(mName.data(), nameLength);
    values.Add(win32::Narrow(name.substr(0, name.find(L'\0'))), type,
               ListedValueText(type, Utf8Data(type, {mData.data(), dataSize})));
  }

  static constexpr std::size_t LongestName = 16383;

  HKEY mKey;
  DWORD mCount = 0;
  std::vector<wchar_t> mName;
  std::vector<BYTE> mData;
};

}  // namespace

KeyValues RegEnumKeyValues(const std::string& hive, const std::string& keyPath) {
  KeyValues values;
  const std::optional<Hive> handle = ParseHive(hive);
  if (!handle) return values;
  const Key key(*handle, win32::Widen(keyPath));
  if (key.Get()) ValueReader(key.Get()).AddAll(values);
  return values;
}

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
