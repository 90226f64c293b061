#include "platform/Places.h"
#include "platform/Win32.h"

namespace brackwell {

std::vector<Volume> Volumes() {
  std::vector<Volume> volumes;
  const DWORD letters = GetLogicalDrives();
  for (int letter = 0; letter < 26; ++letter) {
    if ((letters & (1U << letter)) == 0) continue;
    const std::string root = std::string(1, static_cast<char>('A' + letter)) + ":\\";
    volumes.push_back({.Root = root, .MayHang = GetDriveTypeW(win32::Widen(root).c_str()) == DRIVE_REMOTE});
  }
  return volumes;
}

std::string HomeFolder() {
  const std::wstring folder = win32::FetchText(
      [](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(L"USERPROFILE", buffer, size); });
  return win32::Narrow(folder);
}

}  // namespace brackwell
