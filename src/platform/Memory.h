#pragma once

#include <cstddef>
#include <cstdint>

namespace brackwell {

/// How many bytes this program can still take before the machine has to swap, or a limit that is set for the
/// program is reached. The largest number where the system does not tell.
std::uint64_t AvailableMemory();

/// The size of a block of std::malloc's, which can be larger than was asked for.
std::size_t AllocatedSize(void* block);

}  // namespace brackwell
