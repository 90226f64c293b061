#pragma once

#include <string_view>

namespace brackwell {

/// How a long run tells what it is doing and lets the interface live. Cheap enough to call for every item.
class Progress {
 public:
  virtual ~Progress() = default;

  /// What is being done now, as UTF-8 (names that are not valid text are passed on as they are).
  virtual void Message(std::string_view text) = 0;
  /// Lets pending window events run when it is time.
  virtual void DoEvents() = 0;
  /// True once the user wants the run to end.
  virtual bool Stopped() const = 0;
};

}  // namespace brackwell
