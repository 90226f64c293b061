#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <string>

#include "common/Progress.h"

namespace brackwell {

/// The progress of a run in a window: told for every item, painted about 30 times a second.
class FormProgress final : public Progress {
 public:
  struct Form {
    std::function<void(const QString&)> ShowMessage;
    std::function<void()> ShowResults;  // what has been found since it was last called
    std::function<bool()> Stopped;
  };

  explicit FormProgress(Form form) : mForm(std::move(form)) {}

  void Message(std::string_view text) override { mText = text; }
  void DoEvents() override {
    if (Clock::now() >= mNextPaint) Paint();
  }
  bool Stopped() const override { return mForm.Stopped(); }
  /// Shows the last message though it is not yet time to paint.
  void ShowLast();

 private:
  using Clock = std::chrono::steady_clock;
  void Paint();

  const Form mForm;
  std::string mText;
  Clock::time_point mNextPaint;  // so the first call paints at once
};

}  // namespace brackwell
