#include "help/HelpSearch.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

class HelpSearchTest : public testing::Test {
 protected:
  void Add(const std::string& topic, const std::string& title, const std::string& text) {
    mSearch.AddPage(topic, "<head><title>" + title + "</title></head><body><p>" + text + "</p></body>");
  }

  std::string Search(const std::string& query) const {
    std::string topics;
    for (const HelpHit& hit : mSearch.Search(query)) topics += hit.Topic + " ";
    return topics;
  }

  HelpSearch mSearch;
};

TEST_F(HelpSearchTest, AllWordsWhateverTheirOrderAndCase) {
  Add("1", "One", "apples and pears");
  Add("2", "Two", "apples only");
  EXPECT_EQ(Search("PEARS apples"), "1 ");
  EXPECT_EQ(Search("apples"), "1 2 ");
  EXPECT_EQ(Search("apples plums"), "");
}

TEST_F(HelpSearchTest, BeginningsOfWords) {
  Add("1", "One", "excluding files");
  EXPECT_EQ(Search("exclu fi"), "1 ");
  EXPECT_EQ(Search("cluding"), "");
}

TEST_F(HelpSearchTest, ATitleCountsMoreThanManyWordsOfTheText) {
  Add("1", "Other",
      "fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix fix");
  Add("2", "Fixing", "nothing");
  EXPECT_EQ(Search("fix"), "2 1 ");
}

TEST_F(HelpSearchTest, TheMoreOftenTheBetter) {
  Add("1", "One", "drive");
  Add("2", "Two", "drive drive");
  Add("3", "Three", "drive");
  EXPECT_EQ(Search("drive"), "2 1 3 ");
}

TEST_F(HelpSearchTest, AHitHasItsTitle) {
  Add("1.html", "A &amp; B", "x");
  EXPECT_EQ(mSearch.Search("x"), (std::vector<HelpHit>{{.Topic = "1.html", .Title = "A & B"}}));
}

TEST_F(HelpSearchTest, NothingForNoWords) {
  Add("1", "One", "x");
  EXPECT_EQ(Search(""), "");
  EXPECT_EQ(Search(" ;-) "), "");
}

}  // namespace
}  // namespace brackwell
