#pragma once

#include <QCursor>
#include <QGuiApplication>
#include <QStringList>
#include <stdexcept>

#include "common/ToolWindow.h"
#include "shell/ToolTable.h"

// Tools for tests of the main window. What happens to them they write into a log.

namespace brackwell {

inline QStringList toolLog;
inline bool busyWhilePrinting = false;

/// Prints, and says so to the main window.
class PrintingTool : public ToolWindow {
  Q_OBJECT

 public:
  explicit PrintingTool(Services& services) : ToolWindow(services) {
    setWindowTitle(QStringLiteral("Printing"));
  }

  Q_INVOKABLE void PrintData() {
    toolLog << QStringLiteral("PrintData");
    const QCursor* pointer = QGuiApplication::overrideCursor();
    busyWhilePrinting = pointer && pointer->shape() == Qt::WaitCursor;
  }

  void Form_Activate() override { mServices.tlbMain_ENABLE(QStringLiteral("Print"), true); }
  void Form_Deactivate() override { mServices.tlbMain_ENABLE(QStringLiteral("Print"), false); }

 protected:
  void Form_Unload() override { toolLog << QStringLiteral("unload Printing"); }
};

/// Has nothing to print; notes when it is the active one.
class PlainTool : public ToolWindow {
  Q_OBJECT

 public:
  explicit PlainTool(Services& services) : ToolWindow(services) { setWindowTitle(QStringLiteral("Plain")); }

  void Form_Activate() override { toolLog << QStringLiteral("activate Plain"); }
  void Form_Deactivate() override { toolLog << QStringLiteral("deactivate Plain"); }

 protected:
  void Form_Unload() override { toolLog << QStringLiteral("unload Plain"); }
};

class FailingTool : public ToolWindow {
  Q_OBJECT

 public:
  using ToolWindow::ToolWindow;

  Q_INVOKABLE void PrintData() {
    toolLog << QStringLiteral("PrintData fails");
    throw std::runtime_error("out of paper");
  }

 protected:
  void Form_Unload() override {
    toolLog << QStringLiteral("unload fails");
    throw std::runtime_error("no store");
  }
};

/// Works until it is asked to stop, letting events through.
class BusyTool : public ToolWindow {
  Q_OBJECT

 public:
  using ToolWindow::ToolWindow;

  void Work() {
    const Run run(*this);
    while (!StopAsked()) QCoreApplication::processEvents();
    toolLog << QStringLiteral("run ended");
  }

 protected:
  void Form_Unload() override { toolLog << QStringLiteral("unload Busy"); }
};

template <class Window>
Tool TestTool(const QString& key, bool single = false, bool heedsChildMaximized = false) {
  return {.Key = key,
          .ToolTip = key,
          .Create = [](Services& services) -> ToolWindow* { return new Window(services); },
          .Single = single,
          .HeedsChildMaximized = heedsChildMaximized};
}

inline std::vector<Tool> TestTools() {
  return {TestTool<PrintingTool>(QStringLiteral("Printing")), TestTool<PlainTool>(QStringLiteral("Plain")),
          TestTool<FailingTool>(QStringLiteral("Failing")), TestTool<BusyTool>(QStringLiteral("Busy"))};
}

}  // namespace brackwell
