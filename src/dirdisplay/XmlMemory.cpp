#include "dirdisplay/XmlMemory.h"

#include <libxml/catalog.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <libxslt/xslt.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace brackwell {
namespace {

constexpr std::size_t Alignment = 16;
/// Sizes up to here are classed by multiples of the alignment, larger ones by powers of two.
constexpr std::size_t MostOfSmall = 1024;
constexpr std::size_t SmallClasses = MostOfSmall / Alignment + 1;

constexpr std::size_t RoundedUp(std::size_t size, std::size_t unit) {
  return (size + unit - 1) / unit * unit;
}

/// Small sizes are multiples of the alignment.
constexpr std::size_t ClassOf(std::size_t size) {
  return size <= MostOfSmall ? size / Alignment
                             : SmallClasses + static_cast<std::size_t>(std::bit_width(size)) - 11;
}
static_assert(ClassOf(MostOfSmall + 1) == SmallClasses);

/// A block holds what is given out and the size before the next one.
constexpr std::size_t BlockSize(std::size_t size) {
  size = RoundedUp(std::max(size, sizeof(void*)) + sizeof(std::size_t), Alignment);
  return size > MostOfSmall ? std::bit_ceil(size) : size;
}

thread_local XmlMemory* theCurrent = nullptr;

}  // namespace

/// What lies before the memory that is given out. Its size is kept in the place before that memory, which is
/// aligned: so the next block's size stands in the last bytes of this one's alignment.
struct XmlMemory::Block {
  Block* Next;  // once released

  static Block* At(void* memory) { return static_cast<Block*>(memory); }
  std::size_t& Size() { return reinterpret_cast<std::size_t*>(this)[-1]; }
};

/// Address space only; a display is stopped long before.
std::size_t XmlMemory::RangeSize() {
  constexpr std::size_t Usual = std::size_t{16} << 30;
  return 4 * std::max(PhysicalMemory(), Usual);
}

XmlMemory::XmlMemory()
    : mRange(RangeSize()),
      mMost(mRange.Size() / 16 * 3),
      mFree(mRange.Begin()),
      mUsable(mRange.Begin()),
      mOuter(theCurrent) {
  if (mRange.Size() == 0) throw std::bad_alloc();
  [[maybe_unused]] static const bool prepared = [] {
    // What the libraries make once and keep must not lie in here.
    xmlInitParser();
    xmlInitializeCatalog();
    xsltInit();
    return xmlMemSetup(Free, Malloc, Realloc, Strdup) == 0;
  }();
  theCurrent = this;
}

XmlMemory::~XmlMemory() {
  xmlResetLastError();  // the library keeps it for the thread
  theCurrent = mOuter;
}

void* XmlMemory::Take(std::size_t size) {
  std::byte* const taken = mFree;
  std::byte* const end = taken + RoundedUp(size, alignof(void*));
  if (end > mUsable && !Grow(end)) throw std::bad_alloc();
  mFree = end;
  return taken;
}

XmlMemory* XmlMemory::OwnerOf(const void* memory) {
  XmlMemory* owner = theCurrent;
  const auto isIn = [memory](const ReservedMemory& range) {
    return reinterpret_cast<std::uintptr_t>(memory) - reinterpret_cast<std::uintptr_t>(range.Begin()) <
           range.Size();
  };
  while (owner && !isIn(owner->mRange)) owner = owner->mOuter;
  return owner;
}

void* XmlMemory::Malloc(std::size_t size) {
  return theCurrent ? theCurrent->Allocate(size) : std::malloc(size);
}

void* XmlMemory::Realloc(void* memory, std::size_t size) {
  if (!memory) return Malloc(size);
  XmlMemory* const owner = OwnerOf(memory);
  return owner ? owner->Resize(memory, size) : std::realloc(memory, size);
}

char* XmlMemory::Strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* const memory = Malloc(size);
  return memory ? static_cast<char*>(std::memcpy(memory, text, size)) : nullptr;
}

void XmlMemory::Free(void* memory) {
  if (!memory) return;
  if (XmlMemory* const owner = OwnerOf(memory))
    owner->Release(memory);
  else
    std::free(memory);
}

void* XmlMemory::Allocate(std::size_t size) {
  if (size > mRange.Size()) return nullptr;
  size = BlockSize(size);
  Block*& released = mReleased[ClassOf(size)];
  if (released) return std::exchange(released, released->Next);
  const auto taken = static_cast<std::size_t>(mFree - mRange.Begin());
  return Place(mRange.Begin() + RoundedUp(taken + sizeof(std::size_t), Alignment), size);
}

void* XmlMemory::Resize(void* memory, std::size_t size) {
  const std::size_t held = Block::At(memory)->Size() - sizeof(std::size_t);
  if (size <= held) return memory;
  if (static_cast<std::byte*>(memory) + held == mFree)
    return size <= mRange.Size() ? Place(memory, BlockSize(size)) : nullptr;
  void* const larger = Allocate(size);
  if (!larger) return nullptr;
  std::memcpy(larger, memory, held);
  Release(memory);
  return larger;
}

void XmlMemory::Release(void* memory) {
  Block* const block = Block::At(memory);
  Block*& released = mReleased[ClassOf(block->Size())];
  block->Next = std::exchange(released, block);
}

/// What is taken last lies at the end, where it can also become larger.
void* XmlMemory::Place(void* memory, std::size_t size) {
  std::byte* const end = static_cast<std::byte*>(memory) + size - sizeof(std::size_t);
  if (end > mUsable && !Grow(end)) return nullptr;
  mFree = end;
  Block::At(memory)->Size() = size;
  return memory;
}

bool XmlMemory::Grow(std::byte* end) {
  constexpr std::size_t Step = 1 << 20;
  const auto left = static_cast<std::size_t>(mRange.Begin() + mRange.Size() - mFree);
  const auto wanted = static_cast<std::size_t>(end - mFree);
  if (wanted > left) return false;
  end = mFree + std::min(std::max(wanted, Step), left);
  if (!mRange.ExtendTo(end)) return false;
  mUsable = end;
  return true;
}

}  // namespace brackwell
