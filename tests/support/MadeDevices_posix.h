#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/BlockDevices_posix.h"
#include "support/TempTree.h"

namespace brackwell {

struct AboutDisk {
  bool IsRemovable = false;
  std::uint64_t Sectors = 1000;
  std::string Mapped{};
  std::vector<std::string> MadeOf{};
};

/// The folders in which a system tells of its disks, made up.
class MadeDevices {
 public:
  MadeDevices() {
    for (const char* folder : {"block", "label", "uuid", "udev"}) mTree.Folder(folder);
  }

  std::string BlockFolder() const { return mTree.Path("block"); }
  posix::VolumeFactFolders FactFolders() const {
    return {.Udev = mTree.Path("udev"), .Labels = mTree.Path("label"), .Identifiers = mTree.Path("uuid")};
  }

  void Disk(const std::string& name, const std::string& number, const AboutDisk& about = {}) {
    const std::string at = "block/" + name;
    mTree.File(at + "/dev", number + "\n");
    mTree.File(at + "/removable", about.IsRemovable ? "1\n" : "0\n");
    mTree.File(at + "/size", std::to_string(about.Sectors) + "\n");
    mTree.File(at + "/queue/rotational", "1\n");
    mTree.Folder(at + "/slaves");
    if (!about.Mapped.empty()) mTree.File(at + "/dm/name", about.Mapped + "\n");
    for (const std::string& maker : about.MadeOf) mTree.Folder(at + "/slaves/" + maker);
  }

  void Partition(const std::string& disk, const std::string& name, const std::string& number) {
    mTree.File("block/" + disk + "/" + name + "/partition", "1\n");
    mTree.File("block/" + disk + "/" + name + "/dev", number + "\n");
  }

  /// As udev writes it: odd characters as "\x20".
  void Label(const std::string& name, const std::string& device) { Link("label/" + name, device); }
  void Identifier(const std::string& name, const std::string& device) { Link("uuid/" + name, device); }
  void Udev(const std::string& number, const std::string& text) { mTree.File("udev/b" + number, text); }

 private:
  void Link(const std::string& name, const std::string& device) {
    std::filesystem::create_symlink("../../" + device, mTree.Path(name));
  }

  TempTree mTree;
};

}  // namespace brackwell
