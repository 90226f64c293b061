#include "common/ToolWindow.h"

#include <QCloseEvent>
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

}  // namespace brackwell
