#include "common/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace brackwell {
namespace {

constexpr double None = -999;  // is not numeric

struct Case {
  std::string Text;
  double Value;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) { return stream << '"' << c.Text << '"'; }

class Numeric : public testing::TestWithParam<Case> {};

TEST_P(Numeric, HasOneAnswer) {
  const auto number = ParseNumber(GetParam().Text);
  EXPECT_EQ(number.value_or(None), GetParam().Value);
  EXPECT_EQ(IsNumeric(GetParam().Text), GetParam().Value != None);
}

INSTANTIATE_TEST_SUITE_P(Digits, Numeric,
                         testing::Values(Case{"0", 0}, Case{"7", 7}, Case{"007", 7}, Case{"0000", 0},
                                         Case{"12abc", None}, Case{"x1", None}, Case{"", None},
                                         Case{" ", None}, Case{"one", None}, Case{"1 2", None},
                                         Case{"1_000", None}, Case{std::string("1\0", 2), None}));

INSTANTIATE_TEST_SUITE_P(Points, Numeric,
                         testing::Values(Case{"1.5", 1.5}, Case{"1.", 1}, Case{".5", 0.5}, Case{".", None},
                                         Case{"1.2.3", None}, Case{"1..", None}, Case{"-.5", -0.5},
                                         Case{"1 .5", None}));

INSTANTIATE_TEST_SUITE_P(Commas, Numeric,
                         testing::Values(Case{"1,5", 15}, Case{"1,000", 1000}, Case{"1,000.5", 1000.5},
                                         Case{"1,,5", 15}, Case{"5,", 5}, Case{",5", None}, Case{",", None},
                                         Case{"1.5,0", None}, Case{"1;5", None}, Case{"1'000", None}));

INSTANTIATE_TEST_SUITE_P(Exponents, Numeric,
                         testing::Values(Case{"1e2", 100}, Case{"1E2", 100}, Case{"1d2", 100},
                                         Case{"1D+2", 100}, Case{"5e-1", 0.5}, Case{"1.e1", 10},
                                         Case{".5e1", 5}, Case{"1e", None}, Case{"1e+", None},
                                         Case{"e2", None}, Case{".e2", None}, Case{"1e2.5", None},
                                         Case{"1e 2", None}, Case{"1e999", None}, Case{"-1e999", None},
                                         Case{"1e99999999999999999999", None}, Case{"1e-999", 0},
                                         Case{"inf", None}, Case{"nan", None}));

INSTANTIATE_TEST_SUITE_P(Signs, Numeric,
                         testing::Values(Case{"-3", -3}, Case{"+4", 4}, Case{"3-", -3}, Case{"4+", 4},
                                         Case{"- 3", -3}, Case{"3 -", -3}, Case{"-3-", None},
                                         Case{"--3", None}, Case{"+-3", None}, Case{"-", None},
                                         Case{"(3)", -3}, Case{"( 3 )", -3}, Case{"(3", None},
                                         Case{"3)", None}, Case{"((3))", None}, Case{")3(", None},
                                         Case{"(-3)", None}, Case{"()", None}));

INSTANTIATE_TEST_SUITE_P(Currencies, Numeric,
                         testing::Values(Case{"$5", 5}, Case{"5$", 5}, Case{"-$5", -5}, Case{"$-5", -5},
                                         Case{"($5)", -5}, Case{"$ 5", 5}, Case{"$$5", None},
                                         Case{"$5$", None}, Case{"$", None}, Case{"€5", None}));

INSTANTIATE_TEST_SUITE_P(Blanks, Numeric,
                         testing::Values(Case{" 7", 7}, Case{"7 ", 7}, Case{"\t7\r\n", 7}, Case{"  -7  ", -7},
                                         Case{"\xC2\xA0"
                                              "7",
                                              None}));

INSTANTIATE_TEST_SUITE_P(OtherBases, Numeric,
                         testing::Values(Case{"&H1F", 31}, Case{"&hff", 255}, Case{"&O17", 15},
                                         Case{"&o7", 7}, Case{" &H1F ", 31}, Case{"&HFFFF", 65535},
                                         Case{"&H", None}, Case{"&HG", None}, Case{"&O8", None},
                                         Case{"&17", None}, Case{"&", None}, Case{"&H 1", None},
                                         Case{"&H-1", None}, Case{"-&H1", None}, Case{"0x1F", None},
                                         Case{"1F", None}, Case{"%101", None},
                                         Case{"&HFFFFFFFFFFFFFFFFF", None}));

INSTANTIATE_TEST_SUITE_P(OtherScripts, Numeric,
                         testing::Values(Case{"٣", None}, Case{"７", None}, Case{"Ⅶ", None}, Case{"½", None},
                                         Case{"²", None}, Case{"−3", None},
                                         Case{"\xFF"
                                              "1",
                                              None}));

TEST(NumericValue, IsThatOfAllDigits) {
  EXPECT_EQ(ParseNumber("1" + std::string(300, '0')), 1e300);
  EXPECT_EQ(ParseNumber(std::string(400, '0') + "1"), 1);
  EXPECT_FALSE(IsNumeric("1" + std::string(400, '0')));
  EXPECT_EQ(ParseNumber("0.1"), 0.1);
}

TEST(WholeNumber, RoundsHalvesToTheEvenNeighbour) {
  EXPECT_EQ(ParseWholeNumber("007"), 7);
  EXPECT_EQ(ParseWholeNumber("0.5"), 0);
  EXPECT_EQ(ParseWholeNumber("1.5"), 2);
  EXPECT_EQ(ParseWholeNumber("2.5"), 2);
  EXPECT_EQ(ParseWholeNumber("-2.5"), -2);
  EXPECT_EQ(ParseWholeNumber("2.51"), 3);
}

TEST(WholeNumber, IsNoneWhereItDoesNotFit) {
  EXPECT_EQ(ParseWholeNumber("2147483647"), 2147483647);
  EXPECT_EQ(ParseWholeNumber("-2147483648"), -2147483648);
  EXPECT_EQ(ParseWholeNumber("2147483648"), std::nullopt);
  EXPECT_EQ(ParseWholeNumber("2147483647.5"), std::nullopt);
  EXPECT_EQ(ParseWholeNumber("-2147483649"), std::nullopt);
  EXPECT_EQ(ParseWholeNumber("1e300"), std::nullopt);
  EXPECT_EQ(ParseWholeNumber("&H80000000"), std::nullopt);
  EXPECT_EQ(ParseWholeNumber("abc"), std::nullopt);
}

}  // namespace
}  // namespace brackwell
