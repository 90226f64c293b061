#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "platform/ReservedMemory.h"

namespace brackwell {
namespace {

/// Made usable at a time. Large pages have to lie in it wholly.
constexpr std::size_t Step = 1 << 20;

}  // namespace

ReservedMemory::ReservedMemory(std::size_t size) {
  void* const begin = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (begin == MAP_FAILED) return;
  mBegin = static_cast<std::byte*>(begin);
  mSize = size;
}

ReservedMemory::~ReservedMemory() {
  if (mSize > 0) munmap(mBegin, mSize);
}

bool ReservedMemory::ExtendTo(const std::byte* end) {
  const auto wanted = static_cast<std::size_t>(end - mBegin);
  if (wanted <= mUsable) return true;
  const std::size_t usable = std::min((wanted + Step - 1) / Step * Step, mSize);
  if (mprotect(mBegin + mUsable, usable - mUsable, PROT_READ | PROT_WRITE) != 0) return false;
  // One call instead of a page fault for each page. What is taken at a time may be meant to grow into only.
  if (usable - mUsable <= Step) madvise(mBegin + mUsable, usable - mUsable, MADV_POPULATE_WRITE);
  mUsable = usable;
  return true;
}

std::size_t PhysicalMemory() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long size = sysconf(_SC_PAGESIZE);
  return pages > 0 && size > 0 ? static_cast<std::size_t>(pages) * static_cast<std::size_t>(size) : 0;
}

}  // namespace brackwell
