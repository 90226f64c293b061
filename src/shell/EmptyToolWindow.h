#pragma once

#include "common/ToolWindow.h"

namespace brackwell {

/// The window of a tool that has nothing in it yet.
class EmptyToolWindow : public ToolWindow {
  Q_OBJECT

 public:
  EmptyToolWindow(Services& services, const QString& name, const QString& caption);

  QSize sizeHint() const override { return {480, 320}; }
};

}  // namespace brackwell
