#pragma once

#include <map>
#include <optional>
#include <string>

namespace brackwell {

/// What a compiled help file holds, by name: "welcome.html", "images/drives.png", "toc.hhc".
using ChmObjects = std::map<std::string, std::string, std::less<>>;

/// All objects of the compiled help file, but for those that only its compiler knows. Nothing for a file that
/// is not there, is something else or is damaged, whatever it holds: it cannot bring this process down or
/// keep it busy for long.
std::optional<ChmObjects> ReadChm(const std::string& path);

}  // namespace brackwell
