#include "platform/BlockDevices_posix.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

namespace brackwell::posix {
namespace {

namespace fs = std::filesystem;

/// The names in a folder; none where it cannot be read.
std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator at(folder, error);
  for (; !error && at != fs::directory_iterator(); at.increment(error))
    names.push_back(at->path().filename().native());
  return names;
}

std::string ReadLine(const std::string& path) {
  std::string text = ReadSystemFile(path);
  text.resize(std::min(text.find('\n'), text.size()));
  return text;
}

BlockDevice ReadDisk(const std::string& folder, const std::string& name) {
  return {.Name = name,
          .Disk = name,
          .Number = ReadLine(folder + "/dev"),
          .Mapped = ReadLine(folder + "/dm/name"),
          .IsRemovable = ReadLine(folder + "/removable") == "1",
          .HasMedium = ReadLine(folder + "/size") != "0"};
}

std::vector<BlockDevice> ReadPartitions(const std::string& folder, const BlockDevice& disk) {
  std::vector<BlockDevice> partitions;
  for (const std::string& name : NamesIn(folder)) {
    const std::string number = ReadLine(folder + "/" + name + "/partition");
    if (number.empty()) continue;
    BlockDevice& partition = partitions.emplace_back(disk);
    partition.Name = name;
    partition.Number = ReadLine(folder + "/" + name + "/dev");
  }
  return partitions;
}

using Makers = std::map<std::string, std::vector<std::string>>;  // by what is made of them

bool IsMadeOfRemovable(const std::string& name, const Makers& makers, const std::set<std::string>& removable,
                       int depth = 0) {
  constexpr int MostLayers = 8;
  if (removable.contains(name)) return true;
  const auto found = makers.find(name);
  return found != makers.end() && depth < MostLayers &&
         std::ranges::any_of(found->second, [&](const std::string& maker) {
           return IsMadeOfRemovable(maker, makers, removable, depth + 1);
         });
}

std::string FromHex(std::string_view text) {
  unsigned code = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code, 16);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return std::string(1, static_cast<char>(code));
}

/// Everything but letters, digits and a few signs stands in udev's names as "\x20".
std::string Unescape(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const bool isCode = text.starts_with("\\x") && text.size() >= 4;
    const std::string decoded = isCode ? FromHex(text.substr(2, 2)) : std::string();
    plain += decoded.empty() ? std::string(text.substr(0, 1)) : decoded;
    text.remove_prefix(decoded.empty() ? 1 : 4);
  }
  return plain;
}

/// The names of links, by the name of the device that each leads to.
std::map<std::string, std::string> ReadLinks(const std::string& folder) {
  std::map<std::string, std::string> names;
  for (const std::string& name : NamesIn(folder)) {
    std::error_code error;
    const fs::path target = fs::read_symlink(folder + "/" + name, error);
    if (!error) names[target.filename().native()] = Unescape(name);
  }
  return names;
}

std::string Value(std::string_view text, std::string_view key) {
  const std::string start = "\nE:" + std::string(key) + "=";
  const std::size_t at = text.find(start);
  if (at == std::string_view::npos) return {};
  text.remove_prefix(at + start.size());
  return std::string(text.substr(0, text.find('\n')));
}

std::string Find(const std::map<std::string, std::string>& names, const std::string& device) {
  const auto found = names.find(device);
  return found == names.end() ? std::string() : found->second;
}

}  // namespace

bool BlockDevice::IsOptical() const {
  return Name.size() > 2 && Name.starts_with("sr") && Name[2] >= '0' && Name[2] <= '9';
}

std::string ReadSystemFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<BlockDevice> ReadBlockDevices(const std::string& folder) {
  std::vector<BlockDevice> devices;
  Makers makers;
  std::set<std::string> removable;
  for (const std::string& name : NamesIn(folder)) {
    const std::string at = folder + "/" + name;
    const BlockDevice disk = devices.emplace_back(ReadDisk(at, name));
    makers[name] = NamesIn(at + "/slaves");
    std::ranges::move(ReadPartitions(at, disk), std::back_inserter(devices));
  }
  for (const BlockDevice& device : devices)
    if (device.IsRemovable) removable.insert(device.Name);
  for (BlockDevice& device : devices) device.IsRemovable = IsMadeOfRemovable(device.Disk, makers, removable);
  return devices;
}

VolumeIndex::VolumeIndex(VolumeFactFolders folders)
    : mUdev(std::move(folders.Udev)),
      mLabels(ReadLinks(folders.Labels)),
      mIdentifiers(ReadLinks(folders.Identifiers)) {}

VolumeFacts VolumeIndex::Find(const BlockDevice& device) const {
  // Of several volumes with the same label only one has a link.
  const std::string text = '\n' + ReadSystemFile(mUdev + "/b" + device.Number);
  VolumeFacts facts{.FileSystem = Value(text, "ID_FS_TYPE"),
                    .Label = Unescape(Value(text, "ID_FS_LABEL_ENC")),
                    .Identifier = Value(text, "ID_FS_UUID")};
  if (facts.Label.empty()) facts.Label = posix::Find(mLabels, device.Name);
  if (facts.Identifier.empty()) facts.Identifier = posix::Find(mIdentifiers, device.Name);
  return facts;
}

}  // namespace brackwell::posix
