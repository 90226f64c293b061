#include "shell/EmptyToolWindow.h"

namespace brackwell {

EmptyToolWindow::EmptyToolWindow(Services& services, const QString& name, const QString& caption)
    : ToolWindow(services) {
  setObjectName(name);
  setWindowTitle(caption);
  setAccessibleName(caption);
}

}  // namespace brackwell
