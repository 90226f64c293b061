#include "shell/SysInfo.h"

#include "platform/Paths.h"

namespace brackwell {

std::string SysInfoProgram(const KeyReader& getKeyValue, const FileSystemObject& files) {
  std::string path;
  if (getKeyValue(HkeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", path)) return path;

  std::string folder;
  if (!getKeyValue(HkeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", folder))
    return {};
  path = JoinPath(folder, "MSINFO32.EXE");
  return files.FileExists(path) ? path : std::string();
}

}  // namespace brackwell
