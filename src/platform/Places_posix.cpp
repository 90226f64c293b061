#include "platform/Places_posix.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/CaseRules.h"
#include "platform/MountTable_posix.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

bool IsForUsers(const std::string& mountPoint) {
  return mountPoint == "/" ||
         std::ranges::any_of(std::array{"/media/", "/run/media/", "/mnt/"},
                             [&](const char* place) { return mountPoint.starts_with(place); });
}

}  // namespace

std::vector<Volume> posix::VolumesIn(std::string_view mountTable) {
  std::vector<Volume> volumes;
  for (const Mount& mount : MountedVolumes(ParseMountTable(mountTable)))
    if (IsForUsers(mount.MountPoint)) volumes.push_back({.Root = mount.MountPoint, .MayHang = mount.MayHang});
  std::ranges::sort(volumes,
                    [](const Volume& a, const Volume& b) { return OrderOfNames(a.Root, b.Root) < 0; });
  return volumes;
}

std::vector<Volume> Volumes() {
  std::ifstream table("/proc/self/mountinfo", std::ios::binary);
  std::vector<Volume> volumes = posix::VolumesIn(std::string{std::istreambuf_iterator<char>(table), {}});
  if (volumes.empty() || volumes.front().Root != "/") volumes.insert(volumes.begin(), Volume{.Root = "/"});
  return volumes;
}

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (!home || !*home) {
    const passwd* user = getpwuid(getuid());
    home = user ? user->pw_dir : nullptr;
  }
  return home && *home == '/' ? std::string(WithoutSeparator(home)) : std::string();
}

}  // namespace brackwell
