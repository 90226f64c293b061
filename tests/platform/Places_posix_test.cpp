#include "platform/Places_posix.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace brackwell {
namespace {

std::string Shown(const std::vector<Volume>& volumes) {
  std::string text;
  for (const Volume& volume : volumes) text += volume.Root + (volume.MayHang ? " (may hang)\n" : "\n");
  return text;
}

TEST(PlacesPosix, VolumesAreTheRootAndWhatIsMountedInThePlacesForMedia) {
  EXPECT_EQ(Shown(posix::VolumesIn("22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                                   "23 22 0:5 / /proc rw shared:2 - proc proc rw\n"
                                   "24 22 8:2 / /home rw - ext4 /dev/sda2 rw\n"
                                   "25 22 0:44 / /mnt/nas rw master:1 - nfs4 server:/share rw\n"
                                   "26 22 8:17 / /media/ann/My\\040Stick rw - vfat /dev/sdb1 rw\n"
                                   "27 22 8:33 / /run/media/bob/stick rw - ext4 /dev/sdc1 rw\n"
                                   "28 22 0:46 / /mnt/server rw - fuse.sshfs bob@server: rw\n"
                                   "29 22 8:49 / /mnt rw - ext4 /dev/sdd1 rw\n"
                                   "30 22 8:1 /etc/hosts /mnt/hosts rw - ext4 /dev/sda1 rw\n")),
            "/\n"
            "/media/ann/My Stick\n"
            "/run/media/bob/stick\n");
  EXPECT_EQ(Shown(posix::VolumesIn("22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                   "25 22 0:44 / /mnt/nas rw - nfs4 server:/share rw\n"
                                   "28 22 0:46 / /mnt/server rw - fuse.sshfs bob@server: rw\n")),
            "/\n"
            "/mnt/nas (may hang)\n"
            "/mnt/server (may hang)\n");
}

TEST(PlacesPosix, ATableThatCannotBeReadHasNoVolumes) {
  EXPECT_EQ(Shown(posix::VolumesIn("nonsense\n")), "");
}

TEST(PlacesPosix, TheHomeFolderIsWhatTheEnvironmentSays) {
  const std::string before = std::getenv("HOME") ? std::getenv("HOME") : "";
  setenv("HOME", "/home/somebody/", 1);
  EXPECT_EQ(HomeFolder(), "/home/somebody");
  unsetenv("HOME");
  EXPECT_TRUE(HomeFolder().starts_with("/"));  // as the list of users has it
  setenv("HOME", "relative", 1);
  EXPECT_EQ(HomeFolder(), "");
  setenv("HOME", before.c_str(), 1);
}

}  // namespace
}  // namespace brackwell
