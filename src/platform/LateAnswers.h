#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/Threads.h"

namespace brackwell {

/// Makes calls that may never come back, such as one about a drive whose server is gone, each on a thread of
/// its own that is left to itself. A call is not made a second time while the first one is still out, so that
/// asking again and again does not pile up threads.
template <typename Answer>
class LateAnswers {
 public:
  using Future = std::shared_future<Answer>;

  /// `name` says which call it is. `call` must own everything it uses: it may outlive whoever asks. The
  /// result is not valid() where no thread can be had.
  Future Ask(const std::string& name, std::function<Answer()> call) {
    const std::lock_guard lock(mMutex);
    std::erase_if(mOut, [](const auto& one) { return IsHere(one.second, std::chrono::steady_clock::now()); });
    if (const auto out = mOut.find(name); out != mOut.end()) return out->second;
    const auto task = std::make_shared<std::packaged_task<Answer()>>(std::move(call));
    Future answer = task->get_future().share();
    if (!StartThread([task] { (*task)(); })) return {};
    mOut.emplace(name, answer);
    return answer;
  }

  /// Waits for the answer until then; true where it has come.
  static bool IsHere(const Future& answer, std::chrono::steady_clock::time_point deadline) {
    return answer.valid() && answer.wait_until(deadline) == std::future_status::ready;
  }

 private:
  std::mutex mMutex;
  std::map<std::string, Future> mOut;
};

}  // namespace brackwell
