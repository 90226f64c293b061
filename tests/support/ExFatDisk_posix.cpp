#include "support/ExFatDisk_posix.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace brackwell {
namespace {

constexpr off_t Size = 8 << 20;

/// The first line that a shell command prints; nothing where it fails.
std::string OutputOf(const std::string& command) {
  FILE* output = popen(("PATH=\"$PATH:/usr/sbin:/sbin\"; " + command + " 2>/dev/null").c_str(), "r");
  if (!output) return {};
  char line[256] = {};
  const bool isThere = std::fgets(line, sizeof line, output);
  const bool succeeded = pclose(output) == 0;
  std::string text(isThere && succeeded ? line : "");
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

}  // namespace

ExFatDisk::ExFatDisk() {
  mTree.Folder("disk");
  mTree.File("image");
  const std::string image = "'" + mTree.Path("image") + "'";
  if (geteuid() != 0 || truncate(mTree.Path("image").c_str(), Size) != 0) return;
  mDevice = OutputOf("mkfs.exfat " + image + " >/dev/null && losetup --find --show " + image);
  if (mDevice.empty()) return;
  mIsMounted =
      !OutputOf("mount.exfat-fuse " + mDevice + " '" + Path() + "' >/dev/null && echo mounted").empty();
}

ExFatDisk::~ExFatDisk() {
  if (mIsMounted && umount2(Path().c_str(), 0) != 0) umount2(Path().c_str(), MNT_DETACH);
  if (!mDevice.empty()) OutputOf("losetup --detach " + mDevice);
}

}  // namespace brackwell
