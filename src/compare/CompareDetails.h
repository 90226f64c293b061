#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// The names of the properties shown of a file or a folder, in their order.
std::span<const std::string_view> PropertyNames(bool isFile);

/// Reads the properties of one item and gives each as (position in PropertyNames, text), the costly ones
/// last. Gives nothing where there is no such file, or folder. Raises FileSystemError; what was given by then
/// is good.
void ReadProperties(const FileSystemObject& files, const std::string& path, bool isFile,
                    const std::function<void(std::size_t, std::string)>& give, const Tick& tick = {});

}  // namespace brackwell
