#include "platform/Memory.h"

#include <malloc.h>

#include <algorithm>
#include <limits>

#include "platform/Win32.h"

namespace brackwell {

std::uint64_t AvailableMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  if (!GlobalMemoryStatusEx(&status)) return std::numeric_limits<std::uint64_t>::max();
  // Memory has to be promised before it is used, and the promises of all programs are limited too.
  return std::min<std::uint64_t>({status.ullAvailPhys, status.ullAvailPageFile, status.ullAvailVirtual});
}

std::size_t AllocatedSize(void* block) { return block ? _msize(block) : 0; }

}  // namespace brackwell
