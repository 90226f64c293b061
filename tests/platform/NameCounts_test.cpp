#include "platform/NameCounts.h"

#include <gtest/gtest.h>

#include <string>

namespace brackwell {
namespace {

NameCounts::Key Key(int number) { return NameCounts::KeyOf("name " + std::to_string(number)); }

TEST(NameCounts, IgnoreCase) {
  EXPECT_EQ(NameCounts::KeyOf("Straße Ä.jpg"), NameCounts::KeyOf("sTRAßE ä.JPG"));
  EXPECT_NE(NameCounts::KeyOf("a"), NameCounts::KeyOf("b"));
  EXPECT_NE(NameCounts::KeyOf("\xff"), NameCounts::KeyOf("\xfe"));
}

TEST(NameCounts, CountUpAndDown) {
  NameCounts names;
  EXPECT_EQ(names.Count(Key(1)), 0);
  names.Add(Key(1));
  names.Add(Key(1));
  EXPECT_EQ(names.Count(Key(1)), 2);
  names.Remove(Key(1));
  EXPECT_EQ(names.Count(Key(1)), 1);
  names.Remove(Key(1));
  names.Remove(Key(1));
  EXPECT_EQ(names.Count(Key(1)), 0);
  names.Remove(Key(2));
  EXPECT_EQ(names.Count(Key(2)), 0);
}

TEST(NameCounts, HoldThoughVeryManyComeAndGo) {
  NameCounts names;
  constexpr int Many = 20000;
  for (int number = 0; number < Many; ++number) names.Add(Key(number));
  for (int number = 0; number < Many; ++number) {
    names.Remove(Key(number));
    names.Add(Key(Many + number));
  }
  int wrong = 0;
  for (int number = 0; number < 2 * Many; ++number)
    wrong += names.Count(Key(number)) != (number < Many ? 0 : 1);
  EXPECT_EQ(wrong, 0);
}

TEST(NameCounts, KeysThatMeetInOnePlaceAreToldApart) {
  NameCounts names;
  for (NameCounts::Key key = 0; key < 100; ++key) names.Add(key << 40);
  for (NameCounts::Key key = 0; key < 50; ++key) names.Remove(key << 40);
  for (NameCounts::Key key = 0; key < 100; ++key) EXPECT_EQ(names.Count(key << 40), key < 50 ? 0 : 1);
}

}  // namespace
}  // namespace brackwell
