#include "platform/Registry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/CaseRules.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

/// The best known first. All show the machine and its system when they are started without arguments.
constexpr const char* SystemInformationPrograms[] = {"hardinfo2", "hardinfo", "kinfocenter", "cpu-x",
                                                     "lshw-gtk"};

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

}  // namespace

bool GetKeyValue(Hive hive, const std::string& keyPath, const std::string& valueName, std::string& value) {
  value.clear();
  if (hive != HkeyLocalMachine || !SameName(keyPath, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO") ||
      !SameName(valueName, "PATH"))
    return false;
  value = SystemInformationProgram();
  return !value.empty();
}

}  // namespace brackwell
