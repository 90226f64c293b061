#pragma once

#include "platform/Posix.h"

namespace brackwell::posix {

/// Gives the file `to` what belongs to the file `from`, whose status is `status`, beside its content: owner,
/// mode, access lists and extended attributes. False where this user, or the file system, cannot. Rights that
/// a file loses by being written to are lost: they were granted to the old content.
bool CopyProperties(const Handle& from, const struct stat& status, const Handle& to);

/// Gives the new file `to` the mode, access list and user attributes of `from`, whose status is `status`, as
/// far as its file system can keep them. It lets in nobody whom `from` keeps out, also where it can have no
/// access list or has another group. The special mode bits stay with the owner they were given by.
void CopyPropertiesToNew(const Handle& from, const struct stat& status, const Handle& to);

}  // namespace brackwell::posix
