#pragma once

#include <sys/statvfs.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/BlockDevices_posix.h"
#include "platform/Drives.h"

namespace brackwell::posix {

/// Asks for the space of the mount with the given number; gives 0 or an errno, ENODEV where it is no longer
/// there. May be called on any thread.
using StatVolume =
    std::function<int(const std::string& mountPoint, std::uint64_t mountId, struct statvfs& status)>;

/// The system's own answer.
int StatMountedVolume(const std::string& mountPoint, std::uint64_t mountId, struct statvfs& status);

/// Where the drives of a machine are found; by default of this one.
struct DriveSources {
  std::string MountTable = "/proc/self/mountinfo";
  std::string BlockFolder = "/sys/block";
  VolumeFactFolders Facts{};
  StatVolume Stat = StatMountedVolume;
  /// For the answers of all drives together that may hang.
  std::chrono::milliseconds Patience{300};
};

/// One drive per volume that is mounted (MountedVolumes), and one per removable drive without a medium. An
/// optical drive whose disc is not mounted counts as one.
DriveCollection Drives(const DriveSources& sources);

/// The first 32 bits of a volume's identifier; of NTFS the last ones, which Windows shows as well. FAT's
/// identifier is of this size. Nothing where it has fewer.
std::optional<std::int32_t> SerialNumberOf(const std::string& identifier, const std::string& fileSystem);

}  // namespace brackwell::posix
