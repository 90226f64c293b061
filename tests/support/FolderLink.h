#pragma once

#include <string>

namespace brackwell {

/// Makes a symbolic link to a folder. False where this user may make none, as on Windows outside its
/// developer mode.
bool MakeFolderLink(const std::string& path, const std::string& target);

/// Why a test is skipped that needs one.
inline constexpr char NoLinks[] = "no links can be made here";

}  // namespace brackwell
