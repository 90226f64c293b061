#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brackwell::posix {

/// A line of the kernel's table of mounts (/proc/self/mountinfo).
struct Mount {
  std::uint64_t Id = 0;
  std::uint64_t Parent = 0;
  std::string Device;  // "8:1"
  std::string Root;    // the folder of the volume that shows at the mount point
  std::string MountPoint;
  std::string FileSystem;
  std::string Source;
  /// Whoever looks at it may have to wait for a server or another program, for ever if that is dead: it is a
  /// network or user-space file system, or lies within one.
  bool MayHang = false;
};

/// The mounts in the text of the table, in its order. Lines that are none are left out.
std::vector<Mount> ParseMountTable(std::string_view table);

/// The volumes that can be reached through a mount table, each by one mount:
/// - a disk's file system, a network share, a storage pool, and whatever "/" is;
/// - mounted several times (bind mounts, subvolumes) it is one: at "/" if it is there, else where it shows
///   wholly, else at the shortest mount point. A volume of which only single files show is none;
/// - file systems of the kernel's own or in memory (also at /run, /tmp and the like), overlays, user-space
///   views of other files, and packages mounted through loop devices are none;
/// - what another mount lies on top of cannot be reached and is none.
std::vector<Mount> MountedVolumes(const std::vector<Mount>& mounts);

/// True for a share of another machine, or of the host of a virtual one.
bool IsNetworkShare(const Mount& mount);

}  // namespace brackwell::posix
