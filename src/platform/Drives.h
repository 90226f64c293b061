#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brackwell {

/// The kinds of drives, by their classic numbers.
enum class DriveType : int { Unknown, Removable, Fixed, Network, CdRom, RamDisk };

/// In bytes.
struct DriveSpace {
  double AvailableSpace = 0;  // to this user, quotas and reserves counted
  double FreeSpace = 0;
  double TotalSize = 0;
};

/// One drive. What it tells of its medium is read when it is asked for, so that a drive without a medium is
/// left alone: no error, no prompt of the system.
class Drive {
 public:
  virtual ~Drive() = default;

  /// "C". On POSIX, which has no letters, the short name of the device ("sda1"), or of the folder in which a
  /// network share is mounted.
  virtual std::string DriveLetter() const = 0;
  virtual DriveType Type() const = 0;
  virtual bool IsReady() const = 0;
  /// "C:". On POSIX the mount point, or the path of the device where there is no medium.
  virtual std::string Path() const = 0;
  /// What a network drive stands for ("\\server\share", "server:/export"); empty for all others.
  virtual std::string ShareName() const = 0;

  // Of the medium. These raise FileSystemError where it is not there, or no longer.

  /// Nothing where this user may not know, or where a server has not answered in time.
  virtual std::optional<DriveSpace> Space() const = 0;
  virtual std::string FileSystem() const = 0;
  /// Ends in the path separator.
  virtual std::string RootFolder() const = 0;
  /// Nothing where the volume has none.
  virtual std::optional<std::int32_t> SerialNumber() const = 0;
  virtual std::string VolumeName() const = 0;
};

using DriveCollection = std::vector<std::unique_ptr<Drive>>;

/// All drives, in the order of their letters. However many servers are dead, reading every drive takes less
/// than half a second longer for them.
DriveCollection Drives();

}  // namespace brackwell
