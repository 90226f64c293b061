#include "platform/Win32.h"
#include "support/OwnFolders.h"

namespace brackwell {

OwnVariable::OwnVariable(const char* name, const std::string& value) : mName(name) {
  const std::wstring wide = win32::Widen(name);
  mBefore = win32::Narrow(win32::FetchText(
      [&](wchar_t* text, DWORD size) { return GetEnvironmentVariableW(wide.c_str(), text, size); }));
  SetEnvironmentVariableW(wide.c_str(), win32::Widen(value).c_str());
}

OwnVariable::~OwnVariable() {
  SetEnvironmentVariableW(win32::Widen(mName).c_str(),
                          mBefore.empty() ? nullptr : win32::Widen(mBefore).c_str());
}

OwnTempFolder::OwnTempFolder(const std::string& path) : mVariable("TMP", path) {}

OwnHomeFolder::OwnHomeFolder(const std::string& path) : mVariable("USERPROFILE", path) {}

}  // namespace brackwell
