#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/NumberText.h"

namespace brackwell {
namespace {

TEST(DecimalSeparatorOnPosix, OfALocaleThatIsNotInstalled) {
  setenv("LC_ALL", "no such locale", 1);
  EXPECT_EQ(DecimalSeparator(), ".");
  unsetenv("LC_ALL");
}

}  // namespace
}  // namespace brackwell
