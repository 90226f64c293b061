#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace brackwell {

class ToolWindow;
struct Services;

/// One tool, as the main window knows it.
struct Tool {
  QString Key;  // of its toolbar button and its icon
  QString ToolTip;
  std::function<ToolWindow*(Services&)> Create;
  bool Single = false;               // one window, brought forward while it is open
  bool HeedsChildMaximized = false;  // opens maximised where General/ChildMaximized says so
};

/// All tools, in the order of their buttons.
std::vector<Tool> ToolTable();

}  // namespace brackwell
