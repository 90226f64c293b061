#include "platform/NumberText.h"
#include "platform/Win32.h"

namespace brackwell {

std::string DecimalSeparator() {
  wchar_t separator[8] = L"";
  if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, separator, 8) == 0) return ".";
  return win32::Narrow(separator);
}

}  // namespace brackwell
