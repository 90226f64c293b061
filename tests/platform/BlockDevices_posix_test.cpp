#include "platform/BlockDevices_posix.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "support/MadeDevices_posix.h"

namespace brackwell::posix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Each device as "name number of disk", with its marks, sorted.
std::vector<std::string> Devices(const MadeDevices& made) {
  std::vector<std::string> lines;
  for (const BlockDevice& device : ReadBlockDevices(made.BlockFolder()))
    lines.push_back(device.Name + " " + device.Number + " of " + device.Disk +
                    (device.Mapped.empty() ? "" : " as " + device.Mapped) +
                    (device.IsRemovable ? " removable" : "") + (device.HasMedium ? "" : " empty"));
  std::ranges::sort(lines);
  return lines;
}

TEST(BlockDevices, DisksAndTheirPartitions) {
  MadeDevices made;
  made.Disk("sda", "8:0");
  made.Partition("sda", "sda1", "8:1");
  made.Partition("sda", "sda2", "8:2");
  made.Disk("sdb", "8:16", {.IsRemovable = true});
  made.Partition("sdb", "sdb1", "8:17");
  made.Disk("sdc", "8:32", {.IsRemovable = true, .Sectors = 0});
  EXPECT_THAT(Devices(made),
              ElementsAre("sda 8:0 of sda", "sda1 8:1 of sda", "sda2 8:2 of sda", "sdb 8:16 of sdb removable",
                          "sdb1 8:17 of sdb removable", "sdc 8:32 of sdc removable empty"));
}

TEST(BlockDevices, WhatIsMadeOfARemovableOneIsRemovable) {
  MadeDevices made;
  made.Disk("sdb", "8:16", {.IsRemovable = true});
  made.Partition("sdb", "sdb1", "8:17");
  made.Disk("sda", "8:0");
  made.Disk("dm-0", "254:0", {.Mapped = "secret", .MadeOf = {"sdb1"}});
  made.Disk("dm-1", "254:1", {.Mapped = "secret-part", .MadeOf = {"dm-0"}});
  made.Disk("dm-2", "254:2", {.Mapped = "vg-home", .MadeOf = {"sda"}});
  made.Disk("dm-3", "254:3", {.Mapped = "circle", .MadeOf = {"dm-3"}});
  EXPECT_THAT(
      Devices(made),
      ElementsAre("dm-0 254:0 of dm-0 as secret removable", "dm-1 254:1 of dm-1 as secret-part removable",
                  "dm-2 254:2 of dm-2 as vg-home", "dm-3 254:3 of dm-3 as circle", "sda 8:0 of sda",
                  "sdb 8:16 of sdb removable", "sdb1 8:17 of sdb removable"));
}

TEST(BlockDevices, NoFolderNoDevices) { EXPECT_THAT(ReadBlockDevices("/no/such/folder"), IsEmpty()); }

TEST(BlockDevices, Kinds) {
  const auto device = [](const char* name) {
    BlockDevice made;
    made.Name = made.Disk = name;
    return made;
  };
  EXPECT_TRUE(device("sr0").IsOptical());
  EXPECT_FALSE(device("sr").IsOptical());
  EXPECT_FALSE(device("srv").IsOptical());
  EXPECT_TRUE(device("loop7").IsLoop());
  EXPECT_TRUE(device("zram0").IsMemory());
  EXPECT_TRUE(device("ram1").IsMemory());
  EXPECT_FALSE(device("sda").IsMemory());
}

class Volumes : public testing::Test {
 protected:
  VolumeFacts Find() const {
    BlockDevice device;
    device.Name = "sda1";
    device.Number = "8:1";
    return VolumeIndex(mMade.FactFolders()).Find(device);
  }
  MadeDevices mMade;
};

TEST_F(Volumes, NothingIsKnown) {
  EXPECT_EQ(Find().Label, "");
  EXPECT_EQ(Find().Identifier, "");
  EXPECT_EQ(Find().FileSystem, "");
}

TEST_F(Volumes, TheLinksAreTheDevices) {
  mMade.Label("Other", "sda2");
  mMade.Label("My\\x20Disk\\x2f\\xc3\\xa4\\x5cx20\\xzz\\x4", "sda1");
  mMade.Identifier("1234-ABCD", "sda1");
  mMade.Identifier("0000-0000", "sda11");
  EXPECT_EQ(Find().Label, "My Disk/\xc3\xa4\\x20\\xzz\\x4");
  EXPECT_EQ(Find().Identifier, "1234-ABCD");
}

TEST_F(Volumes, TheDatabaseKnowsMore) {
  mMade.Label("Twin", "sda2");
  mMade.Udev("8:1",
             "S:disk/by-label/Twin\nI:12345\nE:ID_FS_LABEL=Twin_1\nE:ID_FS_LABEL_ENC=Twin\\x201\n"
             "E:ID_FS_UUID=01D9A0B1C2D3E4F5\nE:ID_FS_TYPE=ntfs\n");
  EXPECT_EQ(Find().Label, "Twin 1");
  EXPECT_EQ(Find().Identifier, "01D9A0B1C2D3E4F5");
  EXPECT_EQ(Find().FileSystem, "ntfs");
}

TEST_F(Volumes, AKeyCountsAtTheStartOfALineOnly) {
  mMade.Udev("8:1", "E:OLD_ID_FS_TYPE=a\nE:MORE=E:ID_FS_TYPE=b\nE:ID_FS_TYPE_2=c");
  EXPECT_EQ(Find().FileSystem, "");
}

}  // namespace
}  // namespace brackwell::posix
