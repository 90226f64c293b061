#pragma once

#include <functional>

namespace brackwell {

/// Runs `step` in a process of its own and gives what it returns (0 to 253); 254 where it throws, -1 where it
/// is killed.
int InChild(const std::function<int()>& step);

/// From here on this process may do what any user may: an administrator becomes nobody.
void BecomeOrdinaryUser();

/// From here on this process finds no file system that knows unnamed files (O_TMPFILE), as on network drives.
void ForbidUnnamedFiles();

}  // namespace brackwell
