#include "platform/Memory_posix.h"

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/Memory.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

constexpr std::uint64_t NoLimit = std::numeric_limits<std::uint64_t>::max();

/// What a control group's files are called.
struct GroupFiles {
  const char* Limit;
  const char* Used;
  std::initializer_list<const char*> Droppable;  // in memory.stat
};

constexpr GroupFiles Version1{
    "memory.limit_in_bytes", "memory.usage_in_bytes", {"total_inactive_file", "total_active_file"}};
constexpr GroupFiles Version2{
    "memory.max", "memory.current", {"inactive_file", "active_file", "slab_reclaimable"}};

/// The number after `key` in a file of lines such as "MemAvailable:   123 kB" or "inactive_file 123".
std::optional<std::uint64_t> NumberAfter(const std::string& path, std::string_view key) {
  std::ifstream file(path);
  for (std::string word; file >> word; file.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
    std::uint64_t number = 0;
    if (word == key && file >> number) return number;
    file.clear(file.rdstate() & ~std::ios::failbit);
  }
  return std::nullopt;
}

/// Nothing for a file that is not there and for "max".
std::optional<std::uint64_t> NumberIn(const std::string& path) {
  std::ifstream file(path);
  std::uint64_t number = 0;
  return file >> number ? std::optional(number) : std::nullopt;
}

std::uint64_t FreeOf(std::uint64_t limit, std::uint64_t used) { return limit - std::min(limit, used); }

std::uint64_t FreeInGroup(const std::string& folder, const GroupFiles& files) {
  const auto limit = NumberIn(folder + '/' + files.Limit);
  const auto used = NumberIn(folder + '/' + files.Used);
  if (!limit || !used) return NoLimit;
  std::uint64_t droppable = 0;
  for (const char* key : files.Droppable) droppable += NumberAfter(folder + "/memory.stat", key).value_or(0);
  return FreeOf(*limit, FreeOf(*used, droppable));
}

/// In the group and those above it. In a container its path may not be there, but the top is its own.
std::uint64_t FreeInGroups(const std::string& top, std::string group, const GroupFiles& files) {
  std::uint64_t free = FreeInGroup(top, files);
  for (; group.size() > 1; group = ParentPath(group)) free = std::min(free, FreeInGroup(top + group, files));
  return free;
}

/// Of one line, such as "0::/user.slice" or "4:cpu,memory:/user.slice".
std::uint64_t FreeByLine(const std::string& groups, const std::string& line) {
  const std::size_t first = line.find(':');
  const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
  if (second == std::string::npos) return NoLimit;
  const std::string controllers = ',' + line.substr(first + 1, second - first - 1) + ',';
  const std::string group = line.substr(second + 1);
  if (controllers == ",,") return FreeInGroups(groups, group, Version2);
  if (controllers.find(",memory,") == std::string::npos) return NoLimit;
  return FreeInGroups(groups + "/memory", group, Version1);
}

std::uint64_t FreeAddresses() {
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return NoLimit;
  const std::uint64_t pages = NumberIn("/proc/self/statm").value_or(0);
  return FreeOf(limit.rlim_cur, pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)));
}

}  // namespace

std::uint64_t posix::FreeMemory(const MemorySources& sources) {
  constexpr std::uint64_t Kilobyte = 1024;
  std::uint64_t free = NumberAfter(sources.Machine, "MemAvailable:").value_or(NoLimit / Kilobyte) * Kilobyte;
  std::ifstream own(sources.OwnGroups);
  for (std::string line; std::getline(own, line);) free = std::min(free, FreeByLine(sources.Groups, line));
  return free;
}

std::uint64_t AvailableMemory() { return std::min(posix::FreeMemory({}), FreeAddresses()); }

std::size_t AllocatedSize(void* block) { return malloc_usable_size(block); }

}  // namespace brackwell
