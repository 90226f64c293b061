#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <functional>

namespace brackwell {

/// Calls `step` from the event loop as soon as `ready` is true, no matter who runs the loop.
inline void When(const std::function<bool()>& ready, const std::function<void()>& step) {
  QTimer::singleShot(1, qApp, [=] { ready() ? step() : When(ready, step); });
}

}  // namespace brackwell
