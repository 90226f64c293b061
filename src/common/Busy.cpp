#include "common/Busy.h"

#include <QApplication>
#include <QMessageBox>

namespace brackwell {
namespace {

int liveBlockers = 0;

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::NonClientAreaMouseButtonRelease:
    case QEvent::NonClientAreaMouseButtonDblClick:
    case QEvent::NonClientAreaMouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::NativeGesture:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

bool IsMessageBoxShown() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; }

}  // namespace

BusyPointer::BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }

BusyPointer::~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }

NormalPointer::NormalPointer() {
  while (const QCursor* pointer = QGuiApplication::overrideCursor()) {
    mSuspended.prepend(*pointer);
    QGuiApplication::restoreOverrideCursor();
  }
}

NormalPointer::~NormalPointer() {
  for (const QCursor& pointer : mSuspended) QGuiApplication::setOverrideCursor(pointer);
}

InputBlocker::InputBlocker() {
  ++liveBlockers;
  qApp->installEventFilter(this);
}

InputBlocker::~InputBlocker() {
  DropPendingInput();
  --liveBlockers;
}

void InputBlocker::DropPendingInput() {
  if (liveBlockers == 0) return;
  // First what has reached the program, then what the window system still holds.
  QCoreApplication::processEvents();
  QGuiApplication::sync();
}

bool InputBlocker::eventFilter(QObject* /*watched*/, QEvent* event) {
  // What comes for another window than the message box is kept away by its being modal.
  if (!IsInput(event->type()) || IsMessageBoxShown()) return false;
  event->ignore();
  return true;
}

}  // namespace brackwell
