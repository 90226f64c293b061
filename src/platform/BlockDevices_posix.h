#pragma once

#include <map>
#include <string>
#include <vector>

namespace brackwell::posix {

/// A disk or partition that the kernel knows.
struct BlockDevice {
  std::string Name;    // "sda1"
  std::string Disk;    // of which it is a part, "sda"; its own name for a whole disk
  std::string Number;  // "8:1"
  std::string Mapped;  // the name that somebody gave it: of a logical volume or an opened encrypted disk
  bool IsRemovable = false;
  bool HasMedium = true;

  bool IsOptical() const;
  bool IsLoop() const { return Disk.starts_with("loop"); }
  bool IsMemory() const { return Disk.starts_with("ram") || Disk.starts_with("zram"); }
};

/// All of them, as the folder /sys/block tells; empty without such a folder. Devices made of others, such as
/// an opened encrypted stick, are removable where one of those is.
std::vector<BlockDevice> ReadBlockDevices(const std::string& folder);

/// What is written on a volume about itself; each empty where it is not known.
struct VolumeFacts {
  std::string FileSystem;
  std::string Label;
  std::string Identifier;
};

/// Where the system keeps what it has read from the disks.
struct VolumeFactFolders {
  std::string Udev = "/run/udev/data";
  std::string Labels = "/dev/disk/by-label";
  std::string Identifiers = "/dev/disk/by-uuid";
};

/// Looks up volumes by their device.
class VolumeIndex {
 public:
  explicit VolumeIndex(VolumeFactFolders folders);
  VolumeFacts Find(const BlockDevice& device) const;

 private:
  const std::string mUdev;
  const std::map<std::string, std::string> mLabels;  // by the device's name
  const std::map<std::string, std::string> mIdentifiers;
};

/// The whole text of a file, empty where there is none that can be read.
std::string ReadSystemFile(const std::string& path);

}  // namespace brackwell::posix
