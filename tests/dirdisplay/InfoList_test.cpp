#include "dirdisplay/InfoList.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

/// "+Caption|Key" for a checked item, "-Caption|Key" for another.
std::string Shown(const InfoChoices& list) {
  std::string text;
  for (const InfoChoice& choice : list)
    text += (choice.Checked ? "+" : "-") + choice.Item.Caption + "|" + choice.Item.Key + " ";
  return text;
}

InfoChoices Restored(std::string_view order, std::string_view checks = {}) {
  InfoChoices list;
  RestoreInfoOrder(list, order);
  RestoreInfoChecks(list, checks);
  return list;
}

TEST(InfoList, AnOrderIsCaptionsAndKeys) {
  EXPECT_EQ(Shown(Restored("Name|Name;Date Created|DateCreated;")), "-Name|Name -Date Created|DateCreated ");
  EXPECT_EQ(Shown(Restored("Name|Name;Size|Size")), "-Name|Name -Size|Size ");
}

TEST(InfoList, TheFirstBarEndsTheCaption) {
  EXPECT_EQ(Shown(Restored("A|B|C;|Key;Caption|;")), "-A|B|C -|Key -Caption| ");
  EXPECT_EQ(Restored("A|B|C;")[0].Item, (InfoItem{"A", "B|C"}));
}

TEST(InfoList, WhatIsNoItemIsLeftOut) {
  EXPECT_EQ(Shown(Restored("")), "");
  EXPECT_EQ(Shown(Restored(";;nonsense;Size|Size;;")), "-Size|Size ");
}

TEST(InfoList, AKeyIsThereOnce) {
  InfoChoices list = Restored("My Date|datecreated;Size|Size;Again|Size;");
  AddInfoItem(list, {"Date Created", "DateCreated"});
  AddInfoItem(list, {"Name", "Name"});
  EXPECT_EQ(Shown(list), "-My Date|datecreated -Size|Size -Name|Name ");
}

TEST(InfoList, CheckMarksAreFoundAsTheyAreWritten) {
  const char* const order = "Path|Path;Short Path|ShortPath;Name|Name;Short Name|ShortName;Size|Size;";
  EXPECT_EQ(Shown(Restored(order, "Size;Name;")),
            "-Path|Path -Short Path|ShortPath +Name|Name -Short Name|ShortName +Size|Size ");
  EXPECT_EQ(Shown(Restored(order, "size;Name")),
            "-Path|Path -Short Path|ShortPath -Name|Name -Short Name|ShortName -Size|Size ");
}

TEST(InfoList, AKeyThatEndsAnotherIsCheckedWithIt) {
  const char* const order = "Path|Path;Short Path|ShortPath;Name|Name;Short Name|ShortName;";
  EXPECT_EQ(Shown(Restored(order, "ShortPath;")),
            "+Path|Path +Short Path|ShortPath -Name|Name -Short Name|ShortName ");
  EXPECT_EQ(Shown(Restored(order, "ShortName;")),
            "-Path|Path -Short Path|ShortPath +Name|Name +Short Name|ShortName ");
}

TEST(InfoList, NoSavedCheckMarksChangeNothingOthersEverything) {
  InfoChoices list{{{"Name", "Name"}, true}, {{"Size", "Size"}, false}};
  RestoreInfoChecks(list, "");
  EXPECT_EQ(Shown(list), "+Name|Name -Size|Size ");
  RestoreInfoChecks(list, "Size;");
  EXPECT_EQ(Shown(list), "-Name|Name +Size|Size ");
}

TEST(InfoList, ASavedOrderWinsAndWhatItLacksFollows) {
  const std::vector<InfoItem> catalogue{{"Name", "Name"}, {"Size", "Size"}, {"Type", "Type"}};
  EXPECT_EQ(Shown(RestoreInfoList("", "", catalogue)), "-Name|Name -Size|Size -Type|Type ");
  EXPECT_EQ(Shown(RestoreInfoList("Type|Type;Colour|Colour;", "Colour;Name;", catalogue)),
            "-Type|Type +Colour|Colour +Name|Name -Size|Size ");
}

TEST(InfoList, TextsReadBackAsTheyWereWritten) {
  const InfoChoices list{
      {{"Size", "Size"}, true}, {{"Date Created", "DateCreated"}, false}, {{"Name", "Name"}, true}};
  EXPECT_EQ(InfoOrderText(list), "Size|Size;Date Created|DateCreated;Name|Name;");
  EXPECT_EQ(InfoChecksText(list), "Size;Name;");
  EXPECT_EQ(Shown(RestoreInfoList(InfoOrderText(list), InfoChecksText(list), {})), Shown(list));
  EXPECT_EQ(InfoOrderText({}) + InfoChecksText({}), "");
}

TEST(InfoList, CheckedItemsComeInTheOrderOfTheList) {
  const InfoChoices list{{{"Size", "Size"}, true}, {{"Type", "Type"}, false}, {{"Name", "Name"}, true}};
  EXPECT_EQ(CheckedItems(list), (std::vector<InfoItem>{{"Size", "Size"}, {"Name", "Name"}}));
}

}  // namespace
}  // namespace brackwell
