#pragma once

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// Overwrites `target`, opened for both, whose status is `old`, by the first `size` bytes of `source`: for
/// files that nothing else can take the place of. From there on `source` holds the old content, `old.st_size`
/// bytes, which are put back where the new ones cannot be written: the disk is full, say, or others have
/// changed the file's size meanwhile. What they have added stays behind it, and a file that they have cut is
/// left to them. A process of its own does it, which ends it even if ours is killed meanwhile; where that one
/// is killed, ours does. `tick` must not throw. Gives 0 or the error's errno, ESTALE where others are in the
/// way.
int CopyInPlace(const Handle& source, off_t size, const Handle& target, const struct stat& old,
                const Tick& tick);

/// Copies `length` bytes between open files. Gives 0 or errno, ENODATA where there are fewer.
int CopyBytes(int from, off_t fromAt, int to, off_t toAt, off_t length, const Tick& tick = {});

}  // namespace brackwell::posix
