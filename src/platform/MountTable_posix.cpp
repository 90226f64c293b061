#include "platform/MountTable_posix.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace brackwell::posix {
namespace {

constexpr std::string_view NetworkTypes[] = {
    "9p",  "afs",  "beegfs",   "ceph",   "cifs", "coda",  "davfs",  "glusterfs", "lustre", "ncpfs",
    "nfs", "nfs4", "orangefs", "prl_fs", "smb3", "smbfs", "vboxsf", "virtiofs",  "vmhgfs"};

/// The part after "fuse." of the types of user-space file systems that are network shares.
constexpr std::string_view NetworkPrograms[] = {"ceph",      "cephfs", "curlftpfs", "davfs",   "davfs2",
                                                "glusterfs", "goofys", "gcsfuse",   "moosefs", "mfs",
                                                "rclone",    "s3fs",   "seaweedfs", "sshfs",   "vmhgfs-fuse"};

/// On devices, although the kernel counts them as without one.
constexpr std::string_view UnnumberedTypes[] = {"bcachefs", "btrfs", "ubifs", "zfs"};

/// In which programs are packed.
constexpr std::string_view PackageTypes[] = {"cramfs", "erofs", "squashfs"};

bool IsIn(std::string_view name, const auto& names) {
  return std::ranges::find(names, name) != std::end(names);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// Blanks and the like stand in the table as "\040".
std::string Unescape(std::string_view text) {
  const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view code = text.substr(at + 1, 3);
    if (text[at] == '\\' && code.size() == 3 && std::ranges::all_of(code, isOctal)) {
      plain += static_cast<char>((code[0] - '0') << 6 | (code[1] - '0') << 3 | (code[2] - '0'));
      at += 3;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

bool ToNumber(std::string_view text, std::uint64_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

/// "36 35 98:0 /root /mount/point options [tags] - type source options"
bool ParseLine(std::string_view line, Mount& mount) {
  const std::vector<std::string_view> fields = Split(line, ' ');
  if (fields.size() < 6 || !ToNumber(fields[0], mount.Id) || !ToNumber(fields[1], mount.Parent)) return false;
  const auto dash = std::find(fields.begin() + 6, fields.end(), "-");
  if (fields.end() - dash < 3) return false;
  mount.Device = fields[2];
  mount.Root = Unescape(fields[3]);
  mount.MountPoint = Unescape(fields[4]);
  mount.FileSystem = Unescape(dash[1]);
  mount.Source = Unescape(dash[2]);
  return mount.MountPoint.starts_with('/');
}

bool IsUserSpace(const Mount& mount) { return mount.FileSystem.starts_with("fuse"); }

bool IsOfDevice(const Mount& mount, std::string_view major) {
  return std::string_view(mount.Device).substr(0, mount.Device.find(':')) == major;
}

bool IsPackage(const Mount& mount) {
  constexpr std::string_view LoopDevice = "7";
  return IsOfDevice(mount, LoopDevice) && IsIn(mount.FileSystem, PackageTypes);
}

bool IsVolume(const Mount& mount) {
  if (mount.MountPoint == "/" || IsNetworkShare(mount)) return true;
  if (!IsOfDevice(mount, "0")) return !IsPackage(mount);
  // Programs that have nothing to mount call it "/dev/fuse".
  if (IsUserSpace(mount)) return mount.Source.starts_with("/dev/") && mount.Source != "/dev/fuse";
  return IsIn(mount.FileSystem, UnnumberedTypes);
}

/// The mounts as they lie in and on each other.
class MountTree {
 public:
  explicit MountTree(const std::vector<Mount>& mounts) : mMounts(mounts) {
    std::set<std::uint64_t> ids;
    for (const Mount& mount : mounts) ids.insert(mount.Id);
    for (std::size_t i = 0; i < mounts.size(); ++i) {
      // The first one, and those in what a changed root has left of the tree, lie in nothing that is seen.
      const bool isTop = !ids.contains(mounts[i].Parent) || mounts[i].Parent == mounts[i].Id;
      mAt[{isTop ? Top : mounts[i].Parent, mounts[i].MountPoint}] = i;
    }
  }

  /// The mounts that one passes on the way to a path, the one that it leads into last.
  std::vector<std::size_t> Way(std::string_view path) const {
    std::vector<std::size_t> way;
    std::uint64_t here = Top;
    for (std::size_t end = 0; end != std::string_view::npos;) {
      const std::string place(end == 0 ? "/" : path.substr(0, end));
      for (auto next = mAt.find({here, place}); next != mAt.end(); next = mAt.find({here, place})) {
        way.push_back(next->second);
        here = mMounts[next->second].Id;
      }
      end = end == path.size() || path == "/" ? std::string_view::npos
                                              : std::min(path.find('/', end + 1), path.size());
    }
    return way;
  }

 private:
  static constexpr std::uint64_t Top = UINT64_MAX;

  const std::vector<Mount>& mMounts;
  std::map<std::pair<std::uint64_t, std::string>, std::size_t> mAt;
};

/// The same for all mounts of a volume.
std::string VolumeKey(const Mount& mount) {
  if (IsNetworkShare(mount)) return "share " + mount.Source;
  if (mount.FileSystem == "zfs") return "pool " + mount.Source.substr(0, mount.Source.find('/'));
  return "device " + mount.Device;
}

bool ShowsWholly(const Mount& mount) { return mount.Root == "/" || IsIn(mount.FileSystem, UnnumberedTypes); }

/// Those of a volume come to the front by which it is best known.
auto Rank(const Mount& mount) {
  return std::tuple(mount.MountPoint != "/", !ShowsWholly(mount), mount.MountPoint.size());
}

/// Single files are mounted too, into containers.
bool IsFile(const Mount& mount) {
  if (mount.Root == "/" || mount.MayHang) return false;
  std::error_code error;
  const auto status = std::filesystem::status(mount.MountPoint, error);
  return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

}  // namespace

bool IsNetworkShare(const Mount& mount) {
  constexpr std::string_view UserSpace = "fuse.";
  const std::string_view type = mount.FileSystem;
  if (type.starts_with(UserSpace)) return IsIn(type.substr(UserSpace.size()), NetworkPrograms);
  return IsIn(type, NetworkTypes);
}

std::vector<Mount> ParseMountTable(std::string_view table) {
  std::vector<Mount> mounts;
  for (const std::string_view line : Split(table, '\n'))
    if (Mount mount; ParseLine(line, mount)) mounts.push_back(std::move(mount));
  return mounts;
}

std::vector<Mount> MountedVolumes(const std::vector<Mount>& mounts) {
  const MountTree tree(mounts);
  std::map<std::string, std::vector<Mount>> volumes;
  for (std::size_t i = 0; i < mounts.size(); ++i) {
    if (!IsVolume(mounts[i])) continue;
    const std::vector<std::size_t> way = tree.Way(mounts[i].MountPoint);
    if (way.empty() || way.back() != i) continue;
    Mount& mount = volumes[VolumeKey(mounts[i])].emplace_back(mounts[i]);
    mount.MayHang = std::ranges::any_of(
        way, [&](std::size_t at) { return IsUserSpace(mounts[at]) || IsNetworkShare(mounts[at]); });
  }
  std::vector<Mount> shown;
  for (auto& [key, ofVolume] : volumes) {
    std::ranges::stable_sort(ofVolume, {}, Rank);
    const auto best = std::ranges::find_if_not(ofVolume, IsFile);
    if (best != ofVolume.end()) shown.push_back(std::move(*best));
  }
  return shown;
}

}  // namespace brackwell::posix
