#include <gtest/gtest.h>

#include <ctime>

#include "drives/DriveList.h"
#include "platform/DateText.h"
#include "platform/NumberText.h"
#include "platform/Win32.h"

// Dates and numbers come in the formats that the user has chosen for the whole system.

namespace brackwell {
namespace {

/// For as long as it lives, the user has chosen another format.
class ChosenFormat {
 public:
  ChosenFormat(LCTYPE kind, const wchar_t* format) : mKind(kind) {
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, mKind, mBefore, 80);
    EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, mKind, format));
  }
  ~ChosenFormat() { SetLocaleInfoW(LOCALE_USER_DEFAULT, mKind, mBefore); }
  ChosenFormat(const ChosenFormat&) = delete;
  ChosenFormat& operator=(const ChosenFormat&) = delete;

 private:
  const LCTYPE mKind;
  wchar_t mBefore[80] = L"";
};

/// The fifth of March 2026 here, at that time of day.
DateTime MarchFifth(int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = 2026 - 1900;
  time.tm_mon = 2;
  time.tm_mday = 5;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  time.tm_isdst = -1;
  return DateTime(std::chrono::seconds(std::mktime(&time)));
}

std::string DateIn(const wchar_t* format) {
  const ChosenFormat date(LOCALE_SSHORTDATE, format);
  return GeneralDate(MarchFifth(0, 0, 0));
}

std::string TimeIn(const wchar_t* format, int hour = 19) {
  const ChosenFormat date(LOCALE_SSHORTDATE, L"yyyy-MM-dd");
  const ChosenFormat time(LOCALE_STIMEFORMAT, format);
  return GeneralDate(MarchFifth(hour, 8, 9));
}

TEST(UserFormats, OfDates) {
  EXPECT_EQ(DateIn(L"yyyy-MM-dd"), "2026-03-05");
  EXPECT_EQ(DateIn(L"M/d/yyyy"), "3/5/2026");
  EXPECT_EQ(DateIn(L"dd.MM.yyyy"), "05.03.2026");
  EXPECT_EQ(DateIn(L"d. M. yyyy"), "5. 3. 2026");
}

TEST(UserFormats, OfDatesHaveTheYearInFull) {
  EXPECT_EQ(DateIn(L"dd.MM.yy"), "05.03.2026");
  EXPECT_EQ(DateIn(L"yy/MM/dd"), "2026/03/05");
}

TEST(UserFormats, OfTimes) {
  EXPECT_EQ(TimeIn(L"HH:mm:ss"), "2026-03-05 19:08:09");
  EXPECT_EQ(TimeIn(L"H.mm.ss", 7), "2026-03-05 7.08.09");
  EXPECT_EQ(TimeIn(L"h:mm:ss tt"), "2026-03-05 7:08:09 PM");
  EXPECT_EQ(TimeIn(L"h:mm:ss tt", 7), "2026-03-05 7:08:09 AM");
}

TEST(UserFormats, OfNumbers) {
  for (const auto& [chosen, separator] : {std::pair{L",", ","}, {L".", "."}, {L"\u066b", "\xd9\xab"}}) {
    const ChosenFormat format(LOCALE_SDECIMAL, chosen);
    EXPECT_EQ(DecimalSeparator(), separator);
    EXPECT_EQ(FormatDriveSize(1536), std::string("1") + separator + "50 KB");
  }
}

}  // namespace
}  // namespace brackwell
