#include "platform/Win32.h"
#include "support/OwnTempFolder.h"

namespace brackwell {

OwnTempFolder::OwnTempFolder(const std::string& path) {
  mBefore = win32::Narrow(win32::FetchText(
      [](wchar_t* text, DWORD size) { return GetEnvironmentVariableW(L"TMP", text, size); }));
  SetEnvironmentVariableW(L"TMP", win32::Widen(path).c_str());
}

OwnTempFolder::~OwnTempFolder() { SetEnvironmentVariableW(L"TMP", win32::Widen(mBefore).c_str()); }

}  // namespace brackwell
