#pragma once

#include <functional>

namespace brackwell {

/// Runs `work`, which must not throw, on a thread of its own that is left to itself: nobody waits for it, not
/// even the program's end. False where no more threads can be had; then `work` does not run.
bool StartThread(std::function<void()> work);

}  // namespace brackwell
