#pragma once

#include <functional>
#include <string>

#include "platform/FileSystemObject.h"
#include "platform/Registry.h"

namespace brackwell {

/// As GetKeyValue.
using KeyReader =
    std::function<bool(Hive, const std::string& keyPath, const std::string& valueName, std::string& value)>;

/// The path of the system's "System Information" program; empty where the system knows of none.
std::string SysInfoProgram(const KeyReader& getKeyValue, const FileSystemObject& files);

}  // namespace brackwell
