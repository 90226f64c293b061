#include "platform/CodePage_windows.h"

#include "platform/Win32.h"

namespace brackwell {
namespace win32 {

UpperHalf ReadCodePage(unsigned number) {
  CPINFO information{};
  if (!GetCPInfo(number, &information) || information.MaxCharSize != 1) return CodePage1252;
  UpperHalf page{};
  for (std::size_t i = 0; i < page.size(); ++i) {
    const char byte = static_cast<char>(0x80 + i);
    wchar_t character = 0;
    if (MultiByteToWideChar(number, MB_ERR_INVALID_CHARS, &byte, 1, &character, 1) == 1) page[i] = character;
  }
  return page;
}

}  // namespace win32

/// Not the one that the functions of this program take for text: its manifest makes that UTF-8.
const UpperHalf& SystemCodePage() {
  static const UpperHalf page = [] {
    DWORD number = 0;
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&number), sizeof number / sizeof(wchar_t));
    return win32::ReadCodePage(number);
  }();
  return page;
}

}  // namespace brackwell
