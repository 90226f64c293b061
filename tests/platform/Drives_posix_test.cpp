#include "platform/Drives_posix.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include "platform/FileSystemError.h"
#include "support/ErrorNumber.h"
#include "support/MadeDevices_posix.h"

namespace brackwell::posix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string RootLine = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";

/// A machine of made-up mounts and disks. Every mount has the space of `mStatus`.
class DrivesOnPosix : public testing::Test {
 protected:
  DrivesOnPosix() {
    mStatus.f_frsize = 4096;
    mStatus.f_blocks = 1000;
    mStatus.f_bfree = 500;
    mStatus.f_bavail = 400;
  }

  void Mounts(const std::string& table) { mTree.File("mountinfo", table); }

  DriveSources Sources() const {
    return {.MountTable = mTree.Path("mountinfo"),
            .BlockFolder = mMade.BlockFolder(),
            .Facts = mMade.FactFolders(),
            .Stat = [status = mStatus](const std::string&, std::uint64_t, struct statvfs& given) {
              given = status;
              return 0;
            }};
  }

  DriveCollection Read() const { return posix::Drives(Sources()); }

  /// Each drive as "letter type path".
  std::vector<std::string> List() const {
    std::vector<std::string> lines;
    for (const auto& drive : Read())
      lines.push_back(drive->DriveLetter() + " " + std::to_string(static_cast<int>(drive->Type())) + " " +
                      drive->Path() + (drive->IsReady() ? "" : " not ready"));
    return lines;
  }

  TempTree mTree;
  MadeDevices mMade;
  struct statvfs mStatus {};
};

TEST_F(DrivesOnPosix, EverythingOfAVolume) {
  mMade.Disk("sda", "8:0");
  mMade.Partition("sda", "sda1", "8:1");
  mMade.Label("Data\\x20disk", "sda1");
  mMade.Identifier("f0e1d2c3-0000-4000-8000-000000000000", "sda1");
  Mounts("1 0 8:1 / /mnt/my\\040data rw - ext4 /dev/sda1 rw\n");
  const DriveCollection drives = Read();
  ASSERT_EQ(drives.size(), 1U);
  const Drive& drive = *drives[0];
  EXPECT_EQ(drive.DriveLetter(), "sda1");
  EXPECT_EQ(drive.Type(), DriveType::Fixed);
  EXPECT_TRUE(drive.IsReady());
  EXPECT_EQ(drive.Path(), "/mnt/my data");
  EXPECT_EQ(drive.RootFolder(), "/mnt/my data/");
  EXPECT_EQ(drive.ShareName(), "");
  EXPECT_EQ(drive.FileSystem(), "ext4");
  EXPECT_EQ(drive.VolumeName(), "Data disk");
  EXPECT_EQ(drive.SerialNumber(), static_cast<std::int32_t>(0xf0e1d2c3));
  ASSERT_TRUE(drive.Space());
  EXPECT_EQ(drive.Space()->AvailableSpace, 400 * 4096.0);
  EXPECT_EQ(drive.Space()->FreeSpace, 500 * 4096.0);
  EXPECT_EQ(drive.Space()->TotalSize, 1000 * 4096.0);
}

TEST_F(DrivesOnPosix, Types) {
  mMade.Disk("sda", "8:0");
  mMade.Partition("sda", "sda1", "8:1");
  mMade.Disk("sdb", "8:16", {.IsRemovable = true});
  mMade.Partition("sdb", "sdb1", "8:17");
  mMade.Disk("sr0", "11:0", {.IsRemovable = true});
  mMade.Disk("loop3", "7:3");
  mMade.Disk("loop4", "7:4");
  mMade.Disk("ram0", "1:0");
  mMade.Disk("dm-0", "254:0", {.Mapped = "vg-home", .MadeOf = {"sdb1"}});
  Mounts(RootLine +
         "2 1 8:17 / /media/stick rw - vfat /dev/sdb1 rw\n"
         "3 1 11:0 / /media/disc ro - iso9660 /dev/sr0 ro\n"
         "4 1 7:3 / /mnt/image ro - iso9660 /dev/loop3 ro\n"
         "5 1 7:4 / /mnt/disk rw - ext4 /dev/loop4 rw\n"
         "6 1 1:0 / /mnt/ram rw - ext2 /dev/ram0 rw\n"
         "7 1 254:0 / /home rw - xfs /dev/mapper/vg-home rw\n"
         "8 1 0:40 / /mnt/nas rw - nfs4 server:/export rw\n"
         "9 1 8:99 / /mnt/odd rw - ext4 /dev/sdz9 rw\n"
         "10 1 0:50 / /tank rw - zfs tank rw\n"
         "11 1 0:51 / /mnt/b rw - btrfs /dev/sdb rw\n");
  EXPECT_THAT(List(), ElementsAre("loop3 4 /mnt/image", "loop4 2 /mnt/disk", "nas 3 /mnt/nas",
                                  "ram0 5 /mnt/ram", "sda1 2 /", "sdb 1 /mnt/b", "sdb1 1 /media/stick",
                                  "sdz9 0 /mnt/odd", "sr0 4 /media/disc", "tank 2 /tank", "vg-home 1 /home"));
}

TEST_F(DrivesOnPosix, NumbersInNamesCountAsNumbers) {
  Mounts("1 0 8:10 / /ten rw - ext4 /dev/sda10 rw\n2 0 8:9 / /nine rw - ext4 /dev/sda9 rw\n");
  EXPECT_THAT(List(), ElementsAre("sda9 0 /nine", "sda10 0 /ten"));
}

TEST_F(DrivesOnPosix, DrivesWithoutAMedium) {
  mMade.Disk("sda", "8:0");
  mMade.Disk("sdb", "8:16", {.IsRemovable = true, .Sectors = 0});
  mMade.Disk("sdc", "8:32", {.IsRemovable = true});                       // a stick that is not mounted
  mMade.Disk("sr0", "11:0", {.IsRemovable = true, .Sectors = 0x1fffff});  // an empty one says so
  mMade.Disk("cciss!c0d0", "104:0", {.IsRemovable = true, .Sectors = 0});
  mMade.Disk("loop0", "7:0", {.Sectors = 0});
  Mounts("");
  EXPECT_THAT(List(), ElementsAre("cciss!c0d0 1 /dev/cciss/c0d0 not ready", "sdb 1 /dev/sdb not ready",
                                  "sr0 4 /dev/sr0 not ready"));
}

TEST_F(DrivesOnPosix, WhatADriveWithoutMediumIsAskedIsAnError) {
  mMade.Disk("sr0", "11:0", {.IsRemovable = true, .Sectors = 0});
  Mounts("");
  const DriveCollection drives = Read();
  ASSERT_EQ(drives.size(), 1U);
  EXPECT_EQ(drives[0]->ShareName(), "");
  EXPECT_EQ(ErrorNumber([&] { drives[0]->Space(); }), 71);
  EXPECT_EQ(ErrorNumber([&] { drives[0]->FileSystem(); }), 71);
  EXPECT_EQ(ErrorNumber([&] { drives[0]->RootFolder(); }), 71);
  EXPECT_EQ(ErrorNumber([&] { drives[0]->SerialNumber(); }), 71);
  EXPECT_EQ(ErrorNumber([&] { drives[0]->VolumeName(); }), 71);
}

TEST_F(DrivesOnPosix, WithoutTheSystemsFoldersThereIsNothing) {
  const DriveSources sources{.MountTable = "/no/mountinfo",
                             .BlockFolder = "/no/block",
                             .Facts = {.Udev = "/no/udev", .Labels = "/no/label", .Identifiers = "/no/uuid"}};
  EXPECT_THAT(posix::Drives(sources), IsEmpty());
}

TEST_F(DrivesOnPosix, Shares) {
  Mounts(
      "1 4 0:40 / /mnt/nas rw - nfs4 server:/export rw\n"
      "2 4 0:41 / /mnt/my\\040files rw - cifs //server/my\\040files rw\n"
      "3 4 0:42 / /mnt/c rw - 9p C:\\134 rw\n"
      "4 0 0:43 / / rw - virtiofs rootfs rw\n");
  std::vector<std::string> shares;
  for (const auto& drive : Read()) shares.push_back(drive->DriveLetter() + ": " + drive->ShareName());
  EXPECT_THAT(shares, ElementsAre("c: C:\\", "my files: //server/my files", "nas: server:/export",
                                  "virtiofs: rootfs"));
}

TEST_F(DrivesOnPosix, AnOverlayIsADriveAsTheRoot) {
  Mounts("1 0 0:40 / / rw - overlay overlay rw\n");
  EXPECT_THAT(List(), ElementsAre("overlay 2 /"));
  Mounts("1 0 0:40 / / rw - tmpfs none rw\n");
  EXPECT_THAT(List(), ElementsAre("tmpfs 5 /"));
}

TEST_F(DrivesOnPosix, WhatIsServedFromADiskHasTheDisksType) {
  mMade.Disk("sda", "8:0");
  mMade.Udev("8:0", "E:ID_FS_TYPE=ntfs\nE:ID_FS_UUID=01D9A0B1C2D3E4F5\n");
  Mounts("1 0 8:0 / /mnt/ntfs rw - fuseblk /dev/sda rw\n");
  const DriveCollection drives = Read();
  ASSERT_EQ(drives.size(), 1U);
  EXPECT_EQ(drives[0]->FileSystem(), "ntfs");
  EXPECT_EQ(drives[0]->SerialNumber(), static_cast<std::int32_t>(0xC2D3E4F5));
  EXPECT_TRUE(drives[0]->Space());
}

TEST_F(DrivesOnPosix, SizesBeyondWhatNumbersHold) {
  mStatus.f_blocks = UINT64_MAX;
  mStatus.f_bfree = std::uint64_t(1) << 53;
  mStatus.f_bavail = (std::uint64_t(1) << 53) + 1;
  Mounts(RootLine);
  const auto space = Read()[0]->Space();
  ASSERT_TRUE(space);
  EXPECT_EQ(space->TotalSize, 18446744073709551616.0 * 4096);
  EXPECT_EQ(space->FreeSpace, 9007199254740992.0 * 4096);
  mStatus.f_blocks = 10;
  mStatus.f_bavail = static_cast<fsblkcnt_t>(-3);  // as some servers count
  EXPECT_EQ(Read()[0]->Space()->AvailableSpace, 0);
}

TEST_F(DrivesOnPosix, ADriveThatGoesAwayIsAnError) {
  Mounts(RootLine);
  DriveSources sources = Sources();
  for (const int error : {ENODEV, ENOENT, EIO}) {
    sources.Stat = [error](const std::string&, std::uint64_t, struct statvfs&) { return error; };
    const DriveCollection drives = posix::Drives(sources);
    EXPECT_EQ(ErrorNumber([&] { drives[0]->Space(); }), error == EIO ? 57 : 71);
    EXPECT_EQ(drives[0]->FileSystem(), "ext4");
  }
}

TEST_F(DrivesOnPosix, WhatThisUserMayNotSeeIsNotKnown) {
  Mounts(RootLine);
  DriveSources sources = Sources();
  sources.Stat = [](const std::string&, std::uint64_t, struct statvfs&) { return EACCES; };
  EXPECT_FALSE(posix::Drives(sources)[0]->Space());
}

TEST_F(DrivesOnPosix, DeadServersDoNotKeepAnybodyWaiting) {
  std::string table = RootLine + "2 1 0:40 / /mnt/alive rw - nfs4 server:/alive rw\n";
  for (int i = 10; i < 20; ++i) {
    const std::string number = std::to_string(i);
    table += number + " 1 0:4" + number + " / /mnt/dead" + number + " rw - nfs4 dead:/" + number + " rw\n";
  }
  Mounts(table);
  std::promise<void> end;
  const auto calls = std::make_shared<std::atomic<int>>(0);
  DriveSources sources = Sources();
  sources.Patience = std::chrono::milliseconds(500);
  sources.Stat = [status = mStatus, calls, dead = end.get_future().share()](
                     const std::string& mountPoint, std::uint64_t, struct statvfs& given) {
    ++*calls;
    if (mountPoint.starts_with("/mnt/dead")) dead.wait();
    given = status;
    return 0;
  };
  int known = 0;
  for (int time = 0; time < 2; ++time)
    for (const auto& drive : posix::Drives(sources)) {
      EXPECT_TRUE(drive->IsReady());
      known += drive->Space().has_value();
    }
  EXPECT_EQ(known, 2 * 2);
  EXPECT_EQ(*calls, 10 + 2 * 2);  // nobody asks again who has not answered yet
  end.set_value();
}

TEST_F(DrivesOnPosix, AServerThatFailsDoesNotEndTheRow) {
  Mounts("1 0 0:40 / /mnt/stale rw - nfs4 server:/stale rw\n");
  DriveSources sources = Sources();
  sources.Stat = [](const std::string&, std::uint64_t, struct statvfs&) { return ESTALE; };
  EXPECT_FALSE(posix::Drives(sources)[0]->Space());
}

TEST(StatMountedVolume, OnlyTheMountThatIsMeantCounts) {
  struct statvfs status {};
  EXPECT_EQ(StatMountedVolume("/", UINT64_MAX, status), ENODEV);
  EXPECT_EQ(StatMountedVolume("/no/such/folder", 1, status), ENOENT);
}

TEST(SerialNumberOf, IdentifiersOfAllKinds) {
  EXPECT_EQ(SerialNumberOf("1234abcd-0000-4000-8000-000000000000", "ext4"), 0x1234abcd);
  EXPECT_EQ(SerialNumberOf("ffffffff-0000-4000-8000-000000000000", "xfs"), -1);
  EXPECT_EQ(SerialNumberOf("80000000-0000-4000-8000-000000000000", "xfs"), INT32_MIN);
  EXPECT_EQ(SerialNumberOf("1A2B-3C4D", "vfat"), 0x1A2B3C4D);
  EXPECT_EQ(SerialNumberOf("DEAD-BEEF", "exfat"), static_cast<std::int32_t>(0xDEADBEEF));
  EXPECT_EQ(SerialNumberOf("01D9A0B1C2D3E4F5", "ntfs3"), static_cast<std::int32_t>(0xC2D3E4F5));
  EXPECT_EQ(SerialNumberOf("01D9A0B1C2D3E4F5", "udf"), 0x01D9A0B1);
  EXPECT_EQ(SerialNumberOf("2023-01-31-10-12-33-00", "iso9660"), 0x20230131);
  EXPECT_EQ(SerialNumberOf("", "ext4"), std::nullopt);
  EXPECT_EQ(SerialNumberOf("1234-AB", "vfat"), std::nullopt);
  EXPECT_EQ(SerialNumberOf("no number", "ext4"), std::nullopt);
}

}  // namespace
}  // namespace brackwell::posix
