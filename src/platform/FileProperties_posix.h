#pragma once

#include "platform/Posix.h"

namespace brackwell::posix {

/// Gives the file `to` what belongs to the file `from`, whose status is `status`, beside its content: owner,
/// mode, access lists and extended attributes. False where this user, or the file system, cannot. Rights that
/// a file loses by being written to are lost: they were granted to the old content.
bool CopyProperties(const Handle& from, const struct stat& status, const Handle& to);

}  // namespace brackwell::posix
