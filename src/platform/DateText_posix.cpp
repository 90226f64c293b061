#include <langinfo.h>

#include <clocale>
#include <ctime>
#include <string_view>

#include "platform/DateText.h"

namespace brackwell {
namespace {

/// The user's locale for dates, whatever the program itself runs under.
locale_t UserLocale() {
  static const locale_t user = [] {
    const locale_t chosen = newlocale(LC_ALL_MASK, "", nullptr);
    return chosen ? chosen : newlocale(LC_ALL_MASK, "C", nullptr);
  }();
  return user;
}

/// A locale's own format, with the year written out.
std::string WithLongYear(std::string_view format) {
  std::string result;
  for (std::size_t at = 0; at < format.size(); ++at) {
    if (format[at] != '%' || at + 1 == format.size()) {
      result += format[at];
      continue;
    }
    const char field = format[++at];
    if (field == 'D')
      result += "%m/%d/%Y";
    else
      result += {'%', field == 'y' ? 'Y' : field};
  }
  return result;
}

std::string Format(const std::string& format, const std::tm& time) {
  char text[200];
  return std::string(text, strftime_l(text, sizeof text, format.c_str(), &time, UserLocale()));
}

}  // namespace

std::string GeneralDate(DateTime time) {
  const std::time_t seconds = time.time_since_epoch().count();
  std::tm local{};
  if (!localtime_r(&seconds, &local)) return {};
  static const std::string dateFormat = WithLongYear(nl_langinfo_l(D_FMT, UserLocale()));
  static const std::string timeFormat = nl_langinfo_l(T_FMT, UserLocale());
  const std::string date = Format(dateFormat, local);
  const bool isMidnight = local.tm_hour == 0 && local.tm_min == 0 && local.tm_sec == 0;
  return isMidnight ? date : date + " " + Format(timeFormat, local);
}

}  // namespace brackwell
