#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the system tells about itself under a hive, a key path and a value name: the registry of Windows.
// Other systems answer the few questions that the program asks out of what they have. Only ever read.
//
// On POSIX there are two keys, both below HkeyLocalMachine:
// - "SOFTWARE\Microsoft\Shared Tools\MSINFO" has the value "PATH", the path of an installed system
//   information program, where there is one.
// - "SOFTWARE\Microsoft\Windows NT\CurrentVersion\Fonts" has one value for each name under which a font can
//   be shown, "DejaVu Sans (TrueType)" say, with the path of its file; in the order of the names.

namespace brackwell {

using Hive = std::uint32_t;
inline constexpr Hive HkeyLocalMachine = 0x80000002;

/// The values of a key: how many there are, and of each its name, its type and its data as text, at one index
/// in all three lists.
struct KeyValues {
  std::int32_t Count = 0;
  std::vector<std::string> Names;
  std::vector<std::uint32_t> Types;
  std::vector<std::string> Data;

  void Add(std::string name, std::uint32_t type, std::string data);
};

/// All values of a key, in the system's order; none where the key cannot be opened. `hive` is the handle in
/// decimal digits, as a signed or an unsigned number of 32 bits.
KeyValues RegEnumKeyValues(const std::string& hive, const std::string& keyPath);

/// The value as text; false, and an empty value, where there is none or it takes more than 1024 characters.
bool GetKeyValue(Hive hive, const std::string& keyPath, const std::string& valueName, std::string& value);

/// The name of a value's type, "REG_SZ", and what stands before its data in an exported file, "hex:". Empty
/// for types without.
std::string_view RegTypeName(std::uint32_t type);
std::string_view RegTypeExportPrefix(std::uint32_t type);

/// "HKEY_LOCAL_MACHINE" and so on; empty for what is no hive.
std::string_view HiveName(Hive hive);

/// The hive that a text of decimal digits stands for.
std::optional<Hive> ParseHive(std::string_view decimal);

/// How a list of values shows data of a type: a text up to its first zero, the texts of a list (type 7) one
/// after another, a 32-bit number (type 4; `data` from its lowest byte up) as "&h" and eight hexadecimal
/// digits. Other types have no text.
std::string ListedValueText(std::uint32_t type, std::string_view data);

/// The text that stands for a single value of the given type. A 32-bit number (type 4) is `data` from its
/// lowest byte up and becomes decimal digits; everything else is text, whose terminating zero is cut off if
/// it has one.
std::string KeyValueText(std::uint32_t type, std::string_view data);

}  // namespace brackwell
