#pragma once

#include <cstddef>

namespace brackwell {

/// A range of addresses of one's own, of which memory is had from its beginning on, as needed. What is never
/// asked for costs nothing, so the range can be as long as anything might ever get.
class ReservedMemory {
 public:
  /// `size` in bytes. Where it cannot be had, Size() is 0.
  explicit ReservedMemory(std::size_t size);
  ~ReservedMemory();
  ReservedMemory(const ReservedMemory&) = delete;
  ReservedMemory& operator=(const ReservedMemory&) = delete;

  std::byte* Begin() const { return mBegin; }
  std::size_t Size() const { return mSize; }

  /// Makes the range usable up to `end`, which lies in it; all is zero at first. False where the system has
  /// no more memory.
  bool ExtendTo(const std::byte* end);

 private:
  std::byte* mBegin = nullptr;
  std::size_t mSize = 0;
  std::size_t mUsable = 0;
};

/// The bytes of memory that the machine has; 0 where it does not tell.
std::size_t PhysicalMemory();

}  // namespace brackwell
