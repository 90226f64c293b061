#include "common/ToolWindow.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <exception>
#include <utility>

namespace brackwell {

ToolWindow::ToolWindow(Services& services) : mServices(services) { setAttribute(Qt::WA_DeleteOnClose); }

ToolWindow::Run::Run(ToolWindow& window) : mWindow(window) {
  mWindow.mRunning = true;
  mWindow.mStopAsked = false;
}

ToolWindow::Run::~Run() {
  mWindow.mRunning = false;
  if (mWindow.mCloseAsked) QMetaObject::invokeMethod(&mWindow, &ToolWindow::Unload, Qt::QueuedConnection);
  Q_EMIT mWindow.RunEnded();
}

void ToolWindow::Unload() {
  auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (frame)
    frame->close();
  else
    close();
}

void ToolWindow::closeEvent(QCloseEvent* event) {
  if (mRunning) {
    mStopAsked = true;
    mCloseAsked = true;
    event->ignore();
    return;
  }
  event->accept();
  if (std::exchange(mUnloaded, true)) return;
  try {
    Form_Unload();
  } catch (const std::exception&) {
    // What cannot be remembered must not keep the window open.
  }
}

QAbstractButton* ToolWindow::ButtonFor(const QKeyEvent& key) const {
  if (key.modifiers() != Qt::AltModifier) return nullptr;
  const QKeySequence pressed(key.keyCombination());
  for (QAbstractButton* button : findChildren<QAbstractButton*>())
    if (button->shortcut() == pressed && button->isVisible() && button->isEnabled()) return button;
  return nullptr;
}

/// A key that is claimed here comes as a key press, and not as the shortcut of a menu.
bool ToolWindow::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && ButtonFor(static_cast<QKeyEvent&>(*event))) {
    event->accept();
    return true;
  }
  return QWidget::event(event);
}

void ToolWindow::keyPressEvent(QKeyEvent* event) {
  QAbstractButton* button = ButtonFor(*event);
  if (!button) return QWidget::keyPressEvent(event);
  if (!event->isAutoRepeat()) button->animateClick();
}

}  // namespace brackwell
