#include <process.h>

#include <memory>
#include <utility>

#include "platform/Threads.h"
#include "platform/Win32.h"

namespace brackwell {
namespace {

using Work = std::function<void()>;

unsigned __stdcall Run(void* work) {
  (*std::unique_ptr<Work>(static_cast<Work*>(work)))();
  return 0;
}

}  // namespace

/// The standard library's threads are made of others here, of which one gets lost once in a while when many
/// are detached at the same time.
bool StartThread(Work work) {
  auto owned = std::make_unique<Work>(std::move(work));
  const std::uintptr_t thread = _beginthreadex(nullptr, 0, Run, owned.get(), 0, nullptr);
  if (thread == 0) return false;
  owned.release();
  CloseHandle(reinterpret_cast<HANDLE>(thread));
  return true;
}

}  // namespace brackwell
