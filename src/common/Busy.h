#pragma once

#include <QCursor>
#include <QList>
#include <QObject>

namespace brackwell {

/// The hourglass pointer for as long as one is alive; they nest.
class BusyPointer {
 public:
  BusyPointer();
  ~BusyPointer();
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

/// The usual pointer for as long as one is alive: while the user is asked something in the middle of a busy
/// run.
class NormalPointer {
 public:
  NormalPointer();
  ~NormalPointer();
  NormalPointer(const NormalPointer&) = delete;
  NormalPointer& operator=(const NormalPointer&) = delete;

 private:
  QList<QCursor> mSuspended;
};

/// While one is alive the windows repaint but take no input: clicks, keys, drops and the closing of windows
/// are thrown away, also those that arrive before its end but are delivered after it. A message box that
/// shows meanwhile can be answered. Closing a top-level window from code is stopped likewise.
class InputBlocker : public QObject {
 public:
  InputBlocker();
  ~InputBlocker() override;

  /// Throws away what the user did so far, if one is alive, so that it cannot answer a message box about to
  /// show.
  static void DropPendingInput();

  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace brackwell
