#include "support/VisibleWindows_windows.h"

#include "platform/Win32.h"

namespace brackwell {

std::vector<std::string> VisibleWindows() {
  std::vector<std::string> titles;
  const auto add = [](HWND window, LPARAM found) -> BOOL {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window)) {
      wchar_t title[200] = L"";
      GetWindowTextW(window, title, 200);
      reinterpret_cast<std::vector<std::string>*>(found)->push_back(win32::Narrow(title));
    }
    return TRUE;
  };
  EnumWindows(add, reinterpret_cast<LPARAM>(&titles));
  return titles;
}

}  // namespace brackwell
