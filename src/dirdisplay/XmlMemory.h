#pragma once

#include <array>
#include <cstddef>

#include "platform/ReservedMemory.h"

namespace brackwell {

/// While one is alive, all memory that libxml2 and libxslt take on its thread comes from it, and all of it
/// goes at once, when it goes: nothing they have made has to be freed. A display makes and forgets millions
/// of little things; the general allocator and the system's page faults would take a quarter of its time.
///
/// They nest: events that run meanwhile may begin and end another. What was taken elsewhere is given back
/// elsewhere.
class XmlMemory {
 public:
  XmlMemory();
  ~XmlMemory();
  XmlMemory(const XmlMemory&) = delete;
  XmlMemory& operator=(const XmlMemory&) = delete;

  /// Memory that stays, aligned for a pointer. Raises std::bad_alloc.
  void* Take(std::size_t size);

  std::size_t Used() const { return static_cast<std::size_t>(mFree - mRange.Begin()); }
  /// It is more of the machine's memory than one display may have.
  bool IsTooMuch() const { return Used() > mMost; }

  /// How long the range of addresses is.
  static std::size_t RangeSize();

 private:
  struct Block;

  static XmlMemory* OwnerOf(const void* memory);
  static void* Malloc(std::size_t size);
  static void* Realloc(void* memory, std::size_t size);
  static char* Strdup(const char* text);
  static void Free(void* memory);

  void* Allocate(std::size_t size);
  void* Resize(void* memory, std::size_t size);
  void Release(void* memory);
  void* Place(void* memory, std::size_t size);
  bool Grow(std::byte* end);

  ReservedMemory mRange;
  const std::size_t mMost;
  std::byte* mFree;
  std::byte* mUsable;
  std::array<Block*, 128> mReleased{};  // for each class of sizes
  XmlMemory* const mOuter;
};

}  // namespace brackwell
