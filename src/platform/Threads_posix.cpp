#include <system_error>
#include <thread>
#include <utility>

#include "platform/Threads.h"

namespace brackwell {

bool StartThread(std::function<void()> work) {
  try {
    std::thread(std::move(work)).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace brackwell
