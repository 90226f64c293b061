#include <algorithm>

#include "platform/ReservedMemory.h"
#include "platform/Win32.h"

namespace brackwell {
namespace {

/// Made usable at a time: it counts as used from then on.
constexpr std::size_t Step = 4 << 20;

}  // namespace

ReservedMemory::ReservedMemory(std::size_t size)
    : mBegin(static_cast<std::byte*>(VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS))),
      mSize(mBegin ? size : 0) {}

ReservedMemory::~ReservedMemory() {
  if (mBegin) VirtualFree(mBegin, 0, MEM_RELEASE);
}

bool ReservedMemory::ExtendTo(const std::byte* end) {
  const auto wanted = static_cast<std::size_t>(end - mBegin);
  if (wanted <= mUsable) return true;
  const std::size_t usable = std::min((wanted + Step - 1) / Step * Step, mSize);
  if (!VirtualAlloc(mBegin + mUsable, usable - mUsable, MEM_COMMIT, PAGE_READWRITE)) return false;
  mUsable = usable;
  return true;
}

std::size_t PhysicalMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  return GlobalMemoryStatusEx(&status) ? static_cast<std::size_t>(status.ullTotalPhys) : 0;
}

}  // namespace brackwell
