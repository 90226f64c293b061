#pragma once

#include <cstdint>

#include "platform/TextFile.h"
#include "platform/Win32.h"

namespace brackwell::win32 {

/// Overwrites the `oldSize` bytes of `target` by the first `size` bytes of `source`: for files that nothing
/// else can take the place of. From there on `source` holds the old content, which is put back where the new
/// one cannot be written, because the disk is full say. `tick` must not throw. Gives ERROR_SUCCESS or the
/// error. There is no process here that would go on if ours were killed meanwhile.
DWORD CopyInPlace(const Handle& source, std::uint64_t size, const Handle& target, std::uint64_t oldSize,
                  const Tick& tick);

/// Copies `length` bytes between open files; `done` tells how many have been copied. Gives ERROR_SUCCESS or
/// the error, ERROR_HANDLE_EOF where there are fewer.
DWORD CopyBytes(const Handle& from, std::uint64_t fromAt, const Handle& to, std::uint64_t toAt,
                std::uint64_t length, std::uint64_t& done, const Tick& tick = {});

}  // namespace brackwell::win32
