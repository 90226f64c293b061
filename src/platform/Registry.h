#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What the system tells about itself under a hive, a key path and a value name: the registry of Windows.
// Other systems answer the few questions that the program asks out of what they have.

namespace brackwell {

using Hive = std::uint32_t;
inline constexpr Hive HkeyLocalMachine = 0x80000002;

/// The value as text; false, and an empty value, where there is none or it takes more than 1024 characters.
/// On POSIX there is one answer: the path of an installed system information program, for the value "PATH" of
/// the key "SOFTWARE\Microsoft\Shared Tools\MSINFO".
bool GetKeyValue(Hive hive, const std::string& keyPath, const std::string& valueName, std::string& value);

/// The text that stands for a value of the given type. A 32-bit number (type 4) is `data` from its lowest
/// byte up and becomes decimal digits; everything else is text, whose terminating zero is cut off if it has
/// one.
std::string KeyValueText(std::uint32_t type, std::string_view data);

}  // namespace brackwell
