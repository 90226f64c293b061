#include "platform/Paths.h"

#include <algorithm>

#include "platform/CaseRules.h"

namespace brackwell {
namespace {

constexpr bool IsSeparator(char c) { return c == PathSeparator || (PathSeparator == '\\' && c == '/'); }

/// How many leading characters are the root: "/" on POSIX; "C:\", "\\server\share\" or "\" on Windows.
std::size_t RootLength(std::string_view path) {
  if (path.empty()) return 0;
  if constexpr (PathSeparator == '/') {
    return IsSeparator(path[0]) ? 1 : 0;
  } else {
    if (path.size() >= 2 && path[1] == ':') return path.size() > 2 && IsSeparator(path[2]) ? 3 : 2;
    if (!IsSeparator(path[0])) return 0;
    if (path.size() < 2 || !IsSeparator(path[1])) return 1;
    std::size_t at = 2;
    for (int element = 0; element < 2; ++element) {
      while (at < path.size() && !IsSeparator(path[at])) ++at;
      if (at < path.size()) ++at;
    }
    return at;
  }
}

std::size_t LastElement(std::string_view path) {
  const std::size_t root = RootLength(path);
  std::size_t at = path.size();
  while (at > root && !IsSeparator(path[at - 1])) --at;
  return at;
}

constexpr bool MayStandInNames(char c) {
  switch (c) {
    case '"':
    case '*':
    case '/':
    case ':':
    case '<':
    case '>':
    case '?':
    case '\\':
    case '|':
      return false;
    default:
      return static_cast<unsigned char>(c) >= ' ';
  }
}

/// "nul.txt" is the device as well.
bool IsDevice(std::string_view name) {
  std::string_view stem = name.substr(0, name.find('.'));
  while (stem.ends_with(' ')) stem.remove_suffix(1);
  const auto is = [](std::string_view text, std::string_view device) {
    return CompareIgnoreCase(text, device) == 0;
  };
  if (stem.size() == 4 && stem[3] >= '1' && stem[3] <= '9')
    return is(stem.substr(0, 3), "COM") || is(stem.substr(0, 3), "LPT");
  return is(stem, "CON") || is(stem, "PRN") || is(stem, "AUX") || is(stem, "NUL");
}

}  // namespace

bool EndsWithSeparator(std::string_view path) { return !path.empty() && IsSeparator(path.back()); }

std::string WithSeparator(std::string_view path) {
  std::string result(path);
  if (!path.empty() && !EndsWithSeparator(path)) result += PathSeparator;
  return result;
}

std::string_view WithoutSeparator(std::string_view path) {
  const std::size_t root = RootLength(path);
  while (path.size() > root && EndsWithSeparator(path)) path.remove_suffix(1);
  return path;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path = folder;
  if (!folder.empty() && !EndsWithSeparator(folder)) path += PathSeparator;
  path += name;
  return path;
}

std::string_view FileName(std::string_view path) {
  path = WithoutSeparator(path);
  return path.substr(LastElement(path));
}

std::string_view ParentPath(std::string_view path) {
  path = WithoutSeparator(path);
  if (path.size() == RootLength(path)) return {};
  return WithoutSeparator(path.substr(0, LastElement(path)));
}

bool IsFileName(std::string_view name) {
  const bool endsWell = !name.empty() && name.back() != '.' && name.back() != ' ';
  return endsWell && std::ranges::all_of(name, MayStandInNames) && !IsDevice(name);
}

}  // namespace brackwell
