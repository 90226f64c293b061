#pragma once

#include <algorithm>
#include <chrono>
#include <string>

#include "common/Progress.h"

namespace brackwell {

/// What a window does between two paintings, keep the text and read the clock; and how long it once had to
/// wait for that.
class BenchProgress final : public Progress {
 public:
  void Message(std::string_view text) override { mText = text; }
  void DoEvents() override {
    const auto now = Clock::now();
    mLongest = std::max(mLongest, now - mLast);
    mLast = now;
  }
  bool Stopped() const override { return false; }
  /// In seconds.
  double LongestStall() const { return std::chrono::duration<double>(mLongest).count(); }

 private:
  using Clock = std::chrono::steady_clock;
  std::string mText;
  Clock::time_point mLast = Clock::now();
  Clock::duration mLongest{};
};

}  // namespace brackwell
