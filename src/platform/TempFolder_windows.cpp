#include "platform/TempFolder.h"

#include "platform/Paths.h"
#include "platform/Win32.h"

namespace brackwell {

std::string GetTempFolder() {
  const std::wstring folder =
      win32::FetchText([](wchar_t* text, DWORD size) { return GetTempPathW(size, text); });
  if (folder.empty()) win32::Raise(GetLastError(), {});
  return WithSeparator(win32::Narrow(folder));
}

std::string ReportPath(const std::string& fileName) { return GetTempFolder() + fileName; }

}  // namespace brackwell
