#include "platform/Registry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/CaseRules.h"
#include "platform/InstalledFonts_posix.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

/// The best known first. All show the machine and its system when they are started without arguments.
constexpr const char* SystemInformationPrograms[] = {"hardinfo2", "hardinfo", "kinfocenter", "cpu-x",
                                                     "lshw-gtk"};

constexpr std::uint32_t RegSz = 1;

bool SameName(std::string_view a, std::string_view b) { return CompareIgnoreCase(a, b) == 0; }

bool IsProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

/// The full path; empty where it is not installed. What PATH says of the current folder does not count: that
/// is wherever the program happened to be started.
std::string FindProgram(std::string_view name) {
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable ? variable : "";
  while (!folders.empty()) {
    const std::string_view folder = folders.substr(0, folders.find(':'));
    folders.remove_prefix(folder.size() < folders.size() ? folder.size() + 1 : folder.size());
    const std::string path = JoinPath(folder, name);
    if (folder.starts_with('/') && IsProgram(path)) return path;
  }
  return {};
}

std::string SystemInformationProgram() {
  for (const char* name : SystemInformationPrograms) {
    std::string path = FindProgram(name);
    if (!path.empty()) return path;
  }
  return {};
}

KeyValues SystemInformationValues() {
  KeyValues values;
  const std::string program = SystemInformationProgram();
  if (!program.empty()) values.Add("PATH", RegSz, program);
  return values;
}

KeyValues FontValues() {
  KeyValues values;
  for (posix::InstalledFont& font : posix::InstalledFonts())
    values.Add(std::move(font.Name), RegSz, std::move(font.File));
  return values;
}

KeyValues ValuesOf(Hive hive, std::string_view keyPath) {
  if (hive != HkeyLocalMachine) return {};
  if (SameName(keyPath, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO")) return SystemInformationValues();
  if (SameName(keyPath, "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts")) return FontValues();
  return {};
}

}  // namespace

KeyValues RegEnumKeyValues(const std::string& hive, const std::string& keyPath) {
  const std::optional<Hive> handle = ParseHive(hive);
  return handle ? ValuesOf(*handle, keyPath) : KeyValues();
}

bool GetKeyValue(Hive hive, const std::string& keyPath, const std::string& valueName, std::string& value) {
  value.clear();
  const KeyValues values = ValuesOf(hive, keyPath);
  const auto name = std::ranges::find_if(
      values.Names, [&valueName](const std::string& each) { return SameName(each, valueName); });
  if (name == values.Names.end()) return false;
  value = values.Data[static_cast<std::size_t>(name - values.Names.begin())];
  return true;
}

}  // namespace brackwell
