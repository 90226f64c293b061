#include "platform/MountTable_posix.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "support/TempTree.h"

namespace brackwell::posix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The volumes of a table, each as "source at mount point", in the order of the mount points.
std::vector<std::string> Volumes(const std::string& table) {
  std::vector<std::string> lines;
  for (const Mount& mount : MountedVolumes(ParseMountTable(table)))
    lines.push_back(mount.Source + " at " + mount.MountPoint + (mount.MayHang ? " (may hang)" : ""));
  std::ranges::sort(lines);
  return lines;
}

TEST(MountTable, ALineIsRead) {
  const auto mounts = ParseMountTable(
      "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 propagate_from:2 - ext3 /dev/root rw,errors=continue\n");
  ASSERT_EQ(mounts.size(), 1U);
  EXPECT_EQ(mounts[0].Id, 36U);
  EXPECT_EQ(mounts[0].Parent, 35U);
  EXPECT_EQ(mounts[0].Device, "98:0");
  EXPECT_EQ(mounts[0].Root, "/mnt1");
  EXPECT_EQ(mounts[0].MountPoint, "/mnt2");
  EXPECT_EQ(mounts[0].FileSystem, "ext3");
  EXPECT_EQ(mounts[0].Source, "/dev/root");
}

TEST(MountTable, EscapesAndOddNames) {
  const auto mounts = ParseMountTable(
      "2 1 8:1 / /media/My\\040Disk\\011\\134040\\012\\ rw - vfat /dev/disk\\040one rw\n"
      "3 1 8:2 / /media/caf\xe9\xff rw - vfat  rw\n"
      "4 1 8:3 / /media/- rw - - ext4 - rw\n");
  ASSERT_EQ(mounts.size(), 3U);
  EXPECT_EQ(mounts[0].MountPoint, "/media/My Disk\t\\040\n\\");
  EXPECT_EQ(mounts[0].Source, "/dev/disk one");
  EXPECT_EQ(mounts[1].MountPoint, "/media/caf\xe9\xff");
  EXPECT_EQ(mounts[1].Source, "");
  EXPECT_EQ(mounts[2].MountPoint, "/media/-");
}

TEST(MountTable, WhatIsNoLineIsLeftOut) {
  EXPECT_THAT(ParseMountTable(""), IsEmpty());
  EXPECT_THAT(ParseMountTable("\n\nhello\n36 35 98:0 / /mnt rw\n36 x 8:1 / /mnt rw - ext4 /dev/sda1 rw\n"
                              "36 35 8:1 / /mnt rw - ext4\n36 35 8:1 / mnt rw - ext4 /dev/sda1 rw\n-"),
              IsEmpty());
}

TEST(MountedVolumes, OfADesktop) {
  EXPECT_THAT(
      Volumes("22 28 0:21 / /sys rw - sysfs sysfs rw\n"
              "23 28 0:22 / /proc rw - proc proc rw\n"
              "24 28 0:5 / /dev rw - devtmpfs udev rw\n"
              "25 24 0:23 / /dev/pts rw - devpts devpts rw\n"
              "26 28 0:24 / /run rw - tmpfs tmpfs rw\n"
              "28 1 259:2 / / rw - ext4 /dev/nvme0n1p2 rw\n"
              "29 22 0:6 / /sys/kernel/security rw - securityfs securityfs rw\n"
              "30 24 0:25 / /dev/shm rw - tmpfs tmpfs rw\n"
              "31 22 0:28 / /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n"
              "32 23 0:31 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n"
              "33 32 0:40 / /proc/sys/fs/binfmt_misc rw - binfmt_misc binfmt_misc rw\n"
              "40 28 7:0 / /snap/core20/1974 ro - squashfs /dev/loop0 ro\n"
              "41 28 7:1 / /snap/firefox/3026 ro - squashfs /dev/loop1 ro\n"
              "50 28 259:1 / /boot/efi rw - vfat /dev/nvme0n1p1 rw\n"
              "51 28 8:17 / /media/ann/STICK rw - exfat /dev/sdb1 rw\n"
              "52 26 0:50 / /run/user/1000 rw - tmpfs tmpfs rw\n"
              "53 52 0:51 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
              "54 52 0:52 / /run/user/1000/doc rw - fuse.portal /dev/fuse rw\n"
              "55 28 0:53 / /home/ann/Cabinet.AppImage rw - fuse.cabinet.AppImage cabinet.AppImage rw\n"
              "56 28 0:54 / /home/ann/secret rw - fuse.gocryptfs /home/ann/.secret rw\n"
              "57 28 0:55 / /var/lib/docker/overlay2/x/merged rw - overlay overlay rw\n"),
      ElementsAre("/dev/nvme0n1p1 at /boot/efi", "/dev/nvme0n1p2 at /", "/dev/sdb1 at /media/ann/STICK"));
}

TEST(MountedVolumes, BindMountsAreFolded) {
  EXPECT_THAT(Volumes("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                      "2 1 8:1 /var/www /w rw - ext4 /dev/sda1 rw\n"
                      "3 1 8:2 /x /d rw - ext4 /dev/sda2 rw\n"
                      "4 1 8:2 / /mnt/longer rw - ext4 /dev/sda2 rw\n"
                      "5 1 8:2 / /mnt/data rw - ext4 /dev/sda2 rw\n"
                      "6 1 8:2 / /mnt/same rw - ext4 /dev/sda2 rw\n"),
              ElementsAre("/dev/sda1 at /", "/dev/sda2 at /mnt/data"));
}

TEST(MountedVolumes, TheRootIsOneWhateverElseShowsTheVolumeWholly) {
  EXPECT_THAT(Volumes("1 0 8:3 /ostree/deploy/os/deploy/1 / rw - ext4 /dev/sda3 rw\n"
                      "2 1 8:3 / /sysroot ro - ext4 /dev/sda3 rw\n"
                      "3 1 8:3 /ostree/deploy/os/var /var rw - ext4 /dev/sda3 rw\n"),
              ElementsAre("/dev/sda3 at /"));
}

TEST(MountedVolumes, InAContainer) {
  TempTree tree;
  tree.Folder("data");
  tree.File("a");
  EXPECT_THAT(Volumes("700 650 0:61 / / rw - overlay overlay rw\n"
                      "701 700 0:63 / /proc rw - proc proc rw\n"
                      "702 700 8:1 /docker/hosts " +
                      tree.Path("a") +
                      " rw - ext4 /dev/sda1 rw\n"
                      "703 700 8:1 /srv/data " +
                      tree.Path("data") +
                      " rw - ext4 /dev/sda1 rw\n"
                      "704 700 0:40 /@/docker/hosts " +
                      tree.Path("a") + " rw - btrfs /dev/sda2 rw\n"),
              ElementsAre("/dev/sda1 at " + tree.Path("data"), "overlay at /"));
}

TEST(MountedVolumes, SubvolumesAndDatasetsAreFolded) {
  EXPECT_THAT(Volumes("1 0 0:30 /@ / rw - btrfs /dev/sda2 rw\n"
                      "2 1 0:30 /@home /home rw - btrfs /dev/sda2 rw\n"
                      "3 1 0:30 / /mnt/all rw - btrfs /dev/sda2 rw\n"
                      "4 1 0:31 /@b /mnt/b rw - btrfs /dev/mapper/two rw\n"
                      "5 1 0:31 /@a /mnt/aaa rw - btrfs /dev/mapper/two rw\n"
                      "6 1 0:40 / /tank/music rw - zfs tank/music rw\n"
                      "7 1 0:41 / /tank rw - zfs tank rw\n"
                      "8 1 0:42 / /other rw - zfs tank2 rw\n"),
              ElementsAre("/dev/mapper/two at /mnt/b", "/dev/sda2 at /", "tank at /tank", "tank2 at /other"));
}

TEST(MountedVolumes, Shares) {
  EXPECT_THAT(Volumes("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                      "2 1 0:40 / /net rw - autofs /etc/auto.net rw\n"
                      "3 2 0:41 / /net/a rw - nfs4 server:/export/a rw\n"
                      "4 2 0:41 / /net/b rw - nfs4 server:/export/b rw\n"
                      "5 1 0:41 /sub /a rw - nfs4 server:/export/a rw\n"
                      "6 1 0:42 / /mnt/share rw - cifs //server/my\\040share rw\n"
                      "7 1 0:43 / /home/ann/far rw - fuse.sshfs ann@far: rw\n"
                      "8 6 8:9 / /mnt/share/stick rw - vfat /dev/sdb1 rw\n"
                      "9 1 8:10 / /mnt/ntfs rw - fuseblk /dev/sda9 rw\n"),
              ElementsAre("//server/my share at /mnt/share (may hang)", "/dev/sda1 at /",
                          "/dev/sda9 at /mnt/ntfs (may hang)", "/dev/sdb1 at /mnt/share/stick (may hang)",
                          "ann@far: at /home/ann/far (may hang)", "server:/export/a at /net/a (may hang)",
                          "server:/export/b at /net/b (may hang)"));
}

TEST(MountedVolumes, WhatLiesUnderAnotherMountIsNone) {
  EXPECT_THAT(Volumes("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                      "2 1 8:2 / /mnt rw - ext4 /dev/sda2 rw\n"
                      "3 2 8:3 / /mnt rw - ext4 /dev/sda3 rw\n"  // on top
                      "4 1 8:4 / /srv/deep/down rw - ext4 /dev/sda4 rw\n"
                      "5 1 0:9 / /srv rw - tmpfs tmpfs rw\n"          // in front of it
                      "6 1 8:6 / /srvice rw - ext4 /dev/sda6 rw\n"),  // not behind it
              ElementsAre("/dev/sda1 at /", "/dev/sda3 at /mnt", "/dev/sda6 at /srvice"));
}

TEST(MountedVolumes, AutomaticMountsAreNotLookedInto) {
  EXPECT_THAT(Volumes("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                      "2 1 0:40 / /boot rw - autofs systemd-1 rw\n"
                      "3 2 8:2 / /boot rw - vfat /dev/sda2 rw\n"
                      "4 1 0:41 / /efi rw - autofs systemd-1 rw\n"),
              ElementsAre("/dev/sda1 at /", "/dev/sda2 at /boot"));
}

TEST(MountedVolumes, RootsOfAllKinds) {
  EXPECT_THAT(Volumes("2 1 0:2 / / rw - tmpfs tmpfs rw\n"), ElementsAre("tmpfs at /"));
  EXPECT_THAT(Volumes("1 1 0:2 / / rw - rootfs rootfs rw\n3 1 8:1 / / rw - ext4 /dev/root rw\n"),
              ElementsAre("/dev/root at /"));
  EXPECT_THAT(Volumes("2 1 0:2 / / rw - nfs server:/diskless rw\n"),
              ElementsAre("server:/diskless at / (may hang)"));
  // In a changed root what is mounted has no way up.
  EXPECT_THAT(Volumes("9 5 8:1 / /home rw - ext4 /dev/sda1 rw\n10 6 0:3 / /proc rw - proc proc rw\n"),
              ElementsAre("/dev/sda1 at /home"));
}

TEST(MountedVolumes, ATableThatLeadsInCircles) {
  EXPECT_THAT(Volumes("1 2 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 8:2 / / rw - ext4 /dev/sda2 rw\n"), IsEmpty());
}

TEST(MountedVolumes, TenThousandOfThem) {
  std::string table = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
  for (int i = 2; i <= 10000; ++i) {
    const std::string number = std::to_string(i);
    table += number + " 1 9:" + number + " / /mnt/" + number + " rw - ext4 /dev/x" + number + " rw\n";
  }
  EXPECT_EQ(Volumes(table).size(), 10000U);
}

}  // namespace
}  // namespace brackwell::posix
