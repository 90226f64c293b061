#pragma once

#include <cstdint>
#include <string>

namespace brackwell::posix {

/// Where Linux tells of memory.
struct MemorySources {
  std::string Machine = "/proc/meminfo";
  std::string OwnGroups = "/proc/self/cgroup";
  std::string Groups = "/sys/fs/cgroup";
};

/// The least of what is free on the machine and in each control group that the process lies in, of either
/// version. What the system would drop from its caches counts as free. The largest number where nothing is
/// told.
std::uint64_t FreeMemory(const MemorySources& sources);

}  // namespace brackwell::posix
