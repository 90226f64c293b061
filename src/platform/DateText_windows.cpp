#include "platform/DateText.h"
#include "platform/Win32.h"

namespace brackwell {
namespace {

/// The user's short date, with the year written out.
std::wstring DateFormat() {
  wchar_t format[80] = L"";
  GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SSHORTDATE, format, 80);
  std::wstring result(format);
  const std::size_t year = result.find(L"yy");
  if (year != std::wstring::npos && result.compare(year, 4, L"yyyy") != 0) result.insert(year, L"yy");
  return result;
}

}  // namespace

std::string GeneralDate(DateTime time) {
  constexpr std::int64_t SecondsFrom1601To1970 = 11644473600;
  const std::int64_t ticks = (time.time_since_epoch().count() + SecondsFrom1601To1970) * 10000000;
  const FILETIME file{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  if (!FileTimeToSystemTime(&file, &universal) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local))
    return {};
  wchar_t date[120] = L"";
  wchar_t clock[120] = L"";
  GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, DateFormat().c_str(), date, 120, nullptr);
  GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, nullptr, clock, 120);
  const bool isMidnight = local.wHour == 0 && local.wMinute == 0 && local.wSecond == 0;
  return win32::Narrow(isMidnight ? std::wstring(date) : std::wstring(date) + L" " + clock);
}

}  // namespace brackwell
