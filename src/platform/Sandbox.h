#pragma once

namespace brackwell {

/// Whether the system lets this user shut processes in, as a browser does with those that read its pages. Not
/// an administrator on POSIX, nor any user in most containers.
bool CanSandbox();

/// Whether processes can share memory, without which a browser ends at once. Not in a container that has no
/// place for it.
bool CanShareMemory();

}  // namespace brackwell
