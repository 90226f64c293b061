#include "platform/Registry.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

namespace brackwell {
namespace {

enum RegType : std::uint32_t { RegSz = 1, RegExpandSz = 2, RegBinary = 3, RegDword = 4, RegMultiSz = 7 };

struct TypeNames {
  std::uint32_t Type;
  std::string_view Name;
  std::string_view ExportPrefix;
};

constexpr TypeNames Types[] = {
    {RegSz, "REG_SZ", ""},
    {RegExpandSz, "REG_EXPAND_SZ", "hex(2):"},
    {RegBinary, "REG_BINARY", "hex:"},
    {RegDword, "REG_DWORD", "dword:"},
};

struct NamedHive {
  Hive Handle;
  std::string_view Name;
};

constexpr NamedHive Hives[] = {
    {0x80000000, "HKEY_CLASSES_ROOT"},
    {0x80000001, "HKEY_CURRENT_USER"},
    {HkeyLocalMachine, "HKEY_LOCAL_MACHINE"},
    {0x80000003, "HKEY_USERS"},
    {0x80000004, "HKEY_PERFORMANCE_DATA"},
    {0x80000005, "HKEY_CURRENT_CONFIG"},
    {0x80000006, "HKEY_DYN_DATA"},
};

const TypeNames* FindType(std::uint32_t type) {
  const auto* found = std::ranges::find(Types, type, &TypeNames::Type);
  return found == std::end(Types) ? nullptr : found;
}

/// "&h" and the digits of all bytes, the highest first.
std::string HexNumber(std::string_view lowestByteFirst) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text = "&h";
  for (auto byte = lowestByteFirst.rbegin(); byte != lowestByteFirst.rend(); ++byte) {
    const auto bits = static_cast<unsigned char>(*byte);
    text += digits[bits >> 4];
    text += digits[bits & 15];
  }
  return text;
}

std::string Decimal(std::string_view hexNumber) {
  std::uint32_t number = 0;
  std::from_chars(hexNumber.data() + 2, hexNumber.data() + hexNumber.size(), number, 16);
  return std::to_string(number);
}

/// The four bytes of a number; what is missing of it is zero.
std::string FourBytes(std::string_view data) {
  std::string bytes(data.substr(0, 4));
  bytes.resize(4, '\0');
  return bytes;
}

std::string WithoutZeros(std::string_view data) {
  std::string text(data);
  std::erase(text, '\0');
  return text;
}

}  // namespace

void KeyValues::Add(std::string name, std::uint32_t type, std::string data) {
  ++Count;
  Names.push_back(std::move(name));
  Types.push_back(type);
  Data.push_back(std::move(data));
}

std::string_view RegTypeName(std::uint32_t type) {
  const TypeNames* names = FindType(type);
  return names ? names->Name : std::string_view();
}

std::string_view RegTypeExportPrefix(std::uint32_t type) {
  const TypeNames* names = FindType(type);
  return names ? names->ExportPrefix : std::string_view();
}

std::string_view HiveName(Hive hive) {
  const auto* found = std::ranges::find(Hives, hive, &NamedHive::Handle);
  return found == std::end(Hives) ? std::string_view() : found->Name;
}

std::optional<Hive> ParseHive(std::string_view decimal) {
  std::int64_t number = 0;
  const char* end = decimal.data() + decimal.size();
  const auto [stop, error] = std::from_chars(decimal.data(), end, number);
  const bool fits = number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::uint32_t>::max();
  if (error != std::errc() || stop != end || !fits) return std::nullopt;
  return static_cast<Hive>(number);
}

std::string ListedValueText(std::uint32_t type, std::string_view data) {
  switch (type) {
    case RegSz:
    case RegExpandSz:
      return std::string(data.substr(0, data.find('\0')));
    case RegDword:
      return HexNumber(FourBytes(data));
    case RegMultiSz:
      return WithoutZeros(data);
    default:
      return {};
  }
}

std::string KeyValueText(std::uint32_t type, std::string_view data) {
  if (type == RegDword) return Decimal(HexNumber(data.substr(0, 4)));
  if (data.ends_with('\0')) data.remove_suffix(1);
  return std::string(data);
}

}  // namespace brackwell
