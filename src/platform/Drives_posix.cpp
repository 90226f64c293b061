#include "platform/Drives_posix.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <utility>

#include "platform/LateAnswers.h"
#include "platform/MountTable_posix.h"
#include "platform/Paths.h"
#include "platform/Posix.h"

namespace brackwell {

DriveCollection Drives() { return posix::Drives(posix::DriveSources{}); }

}  // namespace brackwell

namespace brackwell::posix {
namespace {

constexpr const char* DeviceFolder = "/dev/";

/// Of a mount; nothing where the user may not know. Raises.
using AskSpace = std::function<std::optional<DriveSpace>()>;

struct Facts {
  std::string DriveLetter;
  DriveType Type = DriveType::Unknown;
  std::string Path;
  std::string ShareName;
  // Of the medium.
  AskSpace Space{};
  std::string FileSystem{};
  std::string RootFolder{};
  std::optional<std::int32_t> SerialNumber{};
  std::string VolumeName{};
};

class PosixDrive final : public Drive {
 public:
  PosixDrive(Facts facts, bool isReady) : mFacts(std::move(facts)), mIsReady(isReady) {}

  std::string DriveLetter() const override { return mFacts.DriveLetter; }
  DriveType Type() const override { return mFacts.Type; }
  bool IsReady() const override { return mIsReady; }
  std::string Path() const override { return mFacts.Path; }
  std::string ShareName() const override { return mFacts.ShareName; }

  std::optional<DriveSpace> Space() const override { return Medium().Space(); }
  std::string FileSystem() const override { return Medium().FileSystem; }
  std::string RootFolder() const override { return Medium().RootFolder; }
  std::optional<std::int32_t> SerialNumber() const override { return Medium().SerialNumber; }
  std::string VolumeName() const override { return Medium().VolumeName; }

 private:
  const Facts& Medium() const {
    if (!mIsReady) throw FileSystemError(FileError::DiskNotReady, mFacts.Path);
    return mFacts;
  }

  const Facts mFacts;
  const bool mIsReady;
};

DriveSpace SpaceOf(const struct statvfs& status) {
  const auto unit = static_cast<double>(status.f_frsize);
  // Some servers count below zero where only the administrator has room left.
  const bool isBelowZero = status.f_bavail > status.f_blocks;
  return {.AvailableSpace = isBelowZero ? 0 : static_cast<double>(status.f_bavail) * unit,
          .FreeSpace = static_cast<double>(status.f_bfree) * unit,
          .TotalSize = static_cast<double>(status.f_blocks) * unit};
}

AskSpace FromDisk(const Mount& mount, const StatVolume& stat) {
  return [mount, stat]() -> std::optional<DriveSpace> {
    struct statvfs status {};
    const int error = stat(mount.MountPoint, mount.Id, status);
    if (error == EACCES || error == EPERM) return {};
    if (error != 0) Raise(error, mount.MountPoint, FileError::DiskNotReady);
    return SpaceOf(status);
  };
}

/// What hangs or fails is as if it were not known: a dead server does not make the drive go away.
AskSpace FromServer(const Mount& mount, const StatVolume& stat,
                    std::chrono::steady_clock::time_point deadline) {
  using Answer = std::optional<DriveSpace>;
  static LateAnswers<Answer> answers;
  const auto call = [mount, stat]() -> Answer {
    struct statvfs status {};
    if (stat(mount.MountPoint, mount.Id, status) != 0) return {};
    return SpaceOf(status);
  };
  const auto answer = answers.Ask(std::to_string(mount.Id) + mount.MountPoint, call);
  return
      [answer, deadline] { return LateAnswers<Answer>::IsHere(answer, deadline) ? answer.get() : Answer(); };
}

bool IsOptical(const BlockDevice& device, const std::string& fileSystem) {
  return device.IsOptical() || (device.IsLoop() && (fileSystem == "iso9660" || fileSystem == "udf"));
}

DriveType TypeOf(const Mount& mount, const BlockDevice* device) {
  if (IsNetworkShare(mount)) return DriveType::Network;
  if (mount.FileSystem == "tmpfs" || mount.FileSystem == "ramfs" || mount.FileSystem == "rootfs")
    return DriveType::RamDisk;
  // Disks that the kernel does not show, and what has no disk of its own.
  if (!device) return mount.Source.starts_with(DeviceFolder) ? DriveType::Unknown : DriveType::Fixed;
  if (IsOptical(*device, mount.FileSystem)) return DriveType::CdRom;
  if (device->IsMemory()) return DriveType::RamDisk;
  return device->IsRemovable ? DriveType::Removable : DriveType::Fixed;
}

/// Every drive gets a short name by which its user knows it.
std::string ShortName(const Mount& mount, const BlockDevice* device) {
  if (device) return device->Mapped.empty() ? device->Name : device->Mapped;
  if (mount.FileSystem == "zfs") return mount.Source.substr(0, mount.Source.find('/'));
  if (!IsNetworkShare(mount) && mount.Source.starts_with(DeviceFolder))
    return std::string(FileName(mount.Source));
  if (mount.MountPoint == "/") return mount.FileSystem;
  return std::string(FileName(IsNetworkShare(mount) ? mount.MountPoint : mount.Source));
}

/// The drives of one machine, as they are at one moment.
class Machine {
 public:
  explicit Machine(const DriveSources& sources)
      : mSources(sources),
        mDeadline(std::chrono::steady_clock::now() + sources.Patience),
        mDevices(ReadBlockDevices(sources.BlockFolder)),
        mVolumes(sources.Facts) {}

  DriveCollection Drives() {
    std::vector<std::string> used;
    for (const Mount& mount : MountedVolumes(ParseMountTable(ReadSystemFile(mSources.MountTable)))) {
      const BlockDevice* device = DeviceOf(mount);
      if (device) used.push_back(device->Disk);
      mDrives.push_back(std::make_unique<PosixDrive>(Mounted(mount, device), true));
    }
    for (const BlockDevice& device : mDevices)
      if (IsEmpty(device) && std::ranges::find(used, device.Name) == used.end())
        mDrives.push_back(std::make_unique<PosixDrive>(Empty(device), false));
    std::ranges::stable_sort(mDrives, [](const auto& a, const auto& b) {
      return strverscmp(a->DriveLetter().c_str(), b->DriveLetter().c_str()) < 0;
    });
    return std::move(mDrives);
  }

 private:
  /// Null where the volume is on no disk, or on one that the kernel does not show.
  const BlockDevice* DeviceOf(const Mount& mount) const {
    if (IsNetworkShare(mount)) return nullptr;
    const auto isMounted = [&](const BlockDevice& device) {
      // File systems that can lie on several disks have numbers of their own.
      return device.Number == mount.Device || DeviceFolder + device.Name == mount.Source ||
             (!device.Mapped.empty() && "/dev/mapper/" + device.Mapped == mount.Source);
    };
    const auto found = std::ranges::find_if(mDevices, isMounted);
    return found == mDevices.end() ? nullptr : &*found;
  }

  Facts Mounted(const Mount& mount, const BlockDevice* device) const {
    const VolumeFacts volume = device ? mVolumes.Find(*device) : VolumeFacts();
    // "fuseblk" says who serves the disk, not what is on it.
    const bool isServed = mount.FileSystem == "fuseblk" && !volume.FileSystem.empty();
    const std::string fileSystem = isServed ? volume.FileSystem : mount.FileSystem;
    return {
        .DriveLetter = ShortName(mount, device),
        .Type = TypeOf(mount, device),
        .Path = mount.MountPoint,
        .ShareName = IsNetworkShare(mount) ? mount.Source : std::string(),
        .Space = mount.MayHang ? FromServer(mount, mSources.Stat, mDeadline) : FromDisk(mount, mSources.Stat),
        .FileSystem = fileSystem,
        .RootFolder = WithSeparator(mount.MountPoint),
        .SerialNumber = SerialNumberOf(volume.Identifier, fileSystem),
        .VolumeName = volume.Label};
  }

  static bool IsEmpty(const BlockDevice& device) {
    return device.IsOptical() || (device.Name == device.Disk && device.IsRemovable && !device.HasMedium);
  }

  static Facts Empty(const BlockDevice& device) {
    std::string path(DeviceFolder);
    // The kernel's folder has it for the separator.
    for (const char c : device.Name) path += c == '!' ? '/' : c;
    return {.DriveLetter = device.Name,
            .Type = device.IsOptical() ? DriveType::CdRom : DriveType::Removable,
            .Path = path,
            .ShareName = {}};
  }

  const DriveSources& mSources;
  const std::chrono::steady_clock::time_point mDeadline;
  const std::vector<BlockDevice> mDevices;
  const VolumeIndex mVolumes;
  DriveCollection mDrives;
};

}  // namespace

int StatMountedVolume(const std::string& mountPoint, std::uint64_t mountId, struct statvfs& status) {
  // Once a volume is gone, its mount point is a folder of another one.
  const Handle folder(open(mountPoint.c_str(), O_PATH | O_CLOEXEC));
  if (!folder.IsOpen()) return errno;
  struct statx about {};
  if (statx(folder.Get(), "", AT_EMPTY_PATH, STATX_MNT_ID, &about) != 0) return errno;
  if ((about.stx_mask & STATX_MNT_ID) && about.stx_mnt_id != mountId) return ENODEV;
  return fstatvfs(folder.Get(), &status) == 0 ? 0 : errno;
}

DriveCollection Drives(const DriveSources& sources) { return Machine(sources).Drives(); }

std::optional<std::int32_t> SerialNumberOf(const std::string& identifier, const std::string& fileSystem) {
  constexpr std::size_t Digits = 8;
  std::string digits = identifier;
  std::erase(digits, '-');
  if (digits.size() < Digits) return {};
  const bool isNtfs = fileSystem.starts_with("ntfs") || fileSystem == "fuseblk";
  const char* start = digits.data() + (isNtfs && digits.size() == 2 * Digits ? Digits : 0);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(start, start + Digits, number, 16);
  if (error != std::errc() || end != start + Digits) return {};
  return static_cast<std::int32_t>(number);
}

}  // namespace brackwell::posix
