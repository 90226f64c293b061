#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>

namespace brackwell {

/// Runs `step` in a process of its own and gives what it returns (0 to 253); 254 where it throws, -1 where it
/// is killed.
int InChild(const std::function<int()>& step);

/// From here on this process may do what any user may: an administrator becomes nobody.
void BecomeOrdinaryUser();

/// From here on this process may mount what it likes, seen by nobody else. False where that is not allowed.
bool TakeMountsOfItsOwn();

/// Gives this process a disk of its own at `place`, of `size` bytes. False where that is not allowed: then no
/// file may grow beyond that size, which a program cannot tell from a full disk either.
bool ShrinkDisk(const std::string& place, std::size_t size);

/// From here on the system call `number` fails with `error` where the low 32 bits of its argument at
/// `position` (from 0) are `value`; whatever its arguments, where that is negative.
void RefuseCall(int number, int position, unsigned value, int error);

/// From here on `step` is called, on a thread of its own, before this process or one that it begins makes the
/// system call `number` with such an argument. It is given the number of the process, which waits meanwhile.
void BeforeCall(int number, int position, unsigned value, std::function<void(pid_t)> step);

/// From here on this process finds no file system that knows unnamed files (O_TMPFILE), as on network drives.
void ForbidUnnamedFiles();

}  // namespace brackwell
