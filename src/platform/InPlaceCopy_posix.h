#pragma once

#include "platform/Posix.h"
#include "platform/TextFile.h"

namespace brackwell::posix {

/// Overwrites `target`, whose status is `old`, by the first `size` bytes of `source`: for files that nothing
/// else can take the place of. From there on `source` holds the old content, `old.st_size` bytes, which are
/// put back where the new ones cannot be written, because the disk is full say. A process of its own does it,
/// which ends it even if ours is killed meanwhile; `tick` must not throw. Gives 0 or the error's errno.
int CopyInPlace(const Handle& source, off_t size, const Handle& target, const struct stat& old,
                const Tick& tick);

/// Copies `length` bytes between open files; `done` tells how many have been copied. Gives 0 or errno,
/// ENODATA where there are fewer.
int CopyBytes(int from, off_t fromAt, int to, off_t toAt, off_t length, off_t& done, const Tick& tick = {});

}  // namespace brackwell::posix
