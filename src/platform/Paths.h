#pragma once

#include <string>
#include <string_view>

// A path is a std::string: on POSIX the very bytes of the name, valid UTF-8 or not; on Windows UTF-8.

namespace brackwell {

#ifdef _WIN32
inline constexpr char PathSeparator = '\\';
#else
inline constexpr char PathSeparator = '/';
#endif

bool EndsWithSeparator(std::string_view path);

/// `path` with one separator at its end; an empty path stays empty.
std::string WithSeparator(std::string_view path);

/// `path` without separators at its end, a root ("/", "C:\") kept as it is.
std::string_view WithoutSeparator(std::string_view path);

/// folder + name with exactly one separator between them.
std::string JoinPath(std::string_view folder, std::string_view name);

/// The last element; empty for a root.
std::string_view FileName(std::string_view path);

/// The path of the folder that holds `path`; empty for a root or a bare name.
std::string_view ParentPath(std::string_view path);

/// Whether a file can have this name on every system, so that a name is never taken for a path, a stream or a
/// device, nor changed on its way to the disk. It may still be too long.
bool IsFileName(std::string_view name);

}  // namespace brackwell
