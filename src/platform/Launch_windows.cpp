#include "platform/Launch.h"

#include <algorithm>
#include <cstdint>

#include "platform/FileSystemObject.h"
#include "platform/Win32.h"

namespace brackwell {

namespace {

int Open(const std::wstring& document, void* ownerWindow) {
  const HINSTANCE code =
      ShellExecuteW(static_cast<HWND>(ownerWindow), L"open", document.c_str(), L"", L"", SW_SHOWNORMAL);
  // Above 32 the value is an arbitrary one that may be wider than an int.
  return static_cast<int>(std::min<std::intptr_t>(reinterpret_cast<std::intptr_t>(code), 33));
}

/// The shell takes no longer ones, whatever the manifest says, and knows no long-path form.
std::wstring PathForShell(const std::string& path) {
  const std::wstring usual = win32::Widen(win32::UsualPath(win32::NativePath(path)));
  return usual.size() < MAX_PATH ? usual : win32::Widen(CreateFileSystemObject()->ShortPath(path));
}

}  // namespace

int OpenDocument(const std::string& path, void* ownerWindow) { return Open(PathForShell(path), ownerWindow); }

int OpenWebAddress(const std::string& address, void* ownerWindow) {
  return IsWebAddress(address) ? Open(win32::Widen(address), ownerWindow) : ERROR_FILE_NOT_FOUND;
}

bool StartProgram(const std::string& path) {
  const std::wstring program = win32::Widen(path);
  SHELLEXECUTEINFOW start{};
  start.cbSize = sizeof start;
  // The paths of the system's own programs may begin with "%ProgramFiles%".
  start.fMask = SEE_MASK_DOENVSUBST | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  start.lpFile = program.c_str();
  start.nShow = SW_SHOWNORMAL;
  return ShellExecuteExW(&start) != 0;
}

}  // namespace brackwell
