#include "common/ToolWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <exception>
#include <utility>

namespace brackwell {

ToolWindow::ToolWindow(Services& services) : mServices(services) {
  setAttribute(Qt::WA_DeleteOnClose);
  connect(this, &QWidget::windowTitleChanged, this, &QWidget::setAccessibleName);
}

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

QWidget* ToolWindow::ControlFor(const QKeyEvent& key) const {
  if (key.modifiers() != Qt::AltModifier) return nullptr;
  const QKeySequence pressed(key.keyCombination());
  for (QAbstractButton* button : findChildren<QAbstractButton*>())
    if (button->shortcut() == pressed && button->isVisible() && button->isEnabled()) return button;
  for (const QLabel* label : findChildren<QLabel*>())
    if (label->buddy() && QKeySequence::mnemonic(label->text()) == pressed && label->isVisible())
      return label->buddy();
  return nullptr;
}

void ToolWindow::keyPressEvent(QKeyEvent* event) {
  QWidget* control = QApplication::focusWidget();
  const bool asksForMenu = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
  if (!asksForMenu || !control) return QWidget::keyPressEvent(event);
  const QPoint place = control->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent asked(QContextMenuEvent::Keyboard, place, control->mapToGlobal(place));
  QApplication::sendEvent(control, &asked);
}

/// A key that is claimed here comes as a key press, and not as the shortcut of a menu. It is caught on its
/// way to the control with the focus: a text box would write the letter.
bool ToolWindow::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && ControlFor(static_cast<QKeyEvent&>(*event))) {
    event->accept();
    if (QWidget* control = QApplication::focusWidget()) control->installEventFilter(this);
    return true;
  }
  return QWidget::event(event);
}

bool ToolWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  QWidget* control = ControlFor(key);
  auto* button = qobject_cast<QAbstractButton*>(control);
  if (control && !button) control->setFocus(Qt::ShortcutFocusReason);
  if (button && !key.isAutoRepeat()) button->animateClick();
  return control != nullptr;
}

}  // namespace brackwell
