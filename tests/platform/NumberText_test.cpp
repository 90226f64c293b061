#include "platform/NumberText.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

TEST(DecimalSeparator, IsAShortText) {
  const std::string separator = DecimalSeparator();
  EXPECT_FALSE(separator.empty());
  EXPECT_EQ(separator.find_first_of("0123456789"), std::string::npos);
}

}  // namespace
}  // namespace brackwell
