#include "platform/DateText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace brackwell {
namespace {

/// Noon and midnight of a day here, wherever here is.
DateTime Local(int hour) {
  std::tm time{};
  time.tm_year = 2026 - 1900;
  time.tm_mon = 10;
  time.tm_mday = 20;
  time.tm_hour = hour;
  time.tm_min = hour ? 5 : 0;
  time.tm_isdst = -1;
  return DateTime(std::chrono::seconds(std::mktime(&time)));
}

TEST(GeneralDate, HasDateAndTimeWithALongYear) {
  const std::string text = GeneralDate(Local(13));
  EXPECT_NE(text.find("2026"), std::string::npos) << text;
  EXPECT_NE(text.find("20"), std::string::npos) << text;
  EXPECT_NE(text.find(":05"), std::string::npos) << text;
}

TEST(GeneralDate, IsTheDateAloneAtMidnight) {
  const std::string text = GeneralDate(Local(0));
  EXPECT_NE(text.find("2026"), std::string::npos) << text;
  EXPECT_EQ(text.find(':'), std::string::npos) << text;
}

}  // namespace
}  // namespace brackwell
