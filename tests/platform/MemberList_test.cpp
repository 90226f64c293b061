#include "platform/MemberList.h"

#include <gtest/gtest.h>

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

struct Interrupted {};

Names NamesOf(const std::vector<Member>& members) {
  Names names;
  for (const Member& member : members) names.push_back(std::string(member.Name) + (member.IsLink ? "@" : ""));
  return names;
}

/// Backwards, so that all has to be put in order.
void GatherMany(MemberList& members, int count) {
  for (int number = count; number > 0; --number)
    members.Gather(std::to_string(1'000'000 + number), false, false);
}

TEST(MemberList, TellsFilesFromFoldersAndOrdersBoth) {
  MemberList members({});
  members.Gather("b", false, false);
  members.Gather("Z", true, true);
  members.Gather("C", false, true);
  members.Gather("a", false, false);
  members.Gather("y", true, false);
  members.Order();
  EXPECT_EQ(NamesOf(members.Files()), (Names{"a", "b", "C@"}));
  EXPECT_EQ(NamesOf(members.SubFolders()), (Names{"y", "Z@"}));
}

TEST(MemberList, TicksWhileItGathersAndWhileItOrders) {
  int ticks = 0;
  MemberList members([&] { ++ticks; });
  GatherMany(members, 20'000);
  const int whileGathering = ticks;
  members.Order();
  EXPECT_EQ(whileGathering, 20);
  EXPECT_GT(ticks, whileGathering);
}

TEST(MemberList, CanBeginAnewAfterATickThatThrew) {
  bool interrupts = false;
  MemberList members([&] {
    if (interrupts) throw Interrupted();
  });
  GatherMany(members, 20'000);
  interrupts = true;
  EXPECT_THROW(members.Order(), Interrupted);
  members.Clear();
  members.Gather("only", false, false);
  members.Order();
  EXPECT_EQ(NamesOf(members.Files()), Names{"only"});
}

}  // namespace
}  // namespace brackwell
