#pragma once

#include <QString>
#include <functional>
#include <vector>

class QWidget;

namespace brackwell {

/// One of the program's windows in one of its states.
struct WindowCase {
  const char* Name;
  /// Opens the window as its users do, hands it to `look` and closes it. A tool stands in the main window.
  std::function<void(const std::function<void(QWidget&)>& look)> Show;
};

/// Every window that a user can meet, and each page and state in which it shows other controls.
const std::vector<WindowCase>& EveryWindow();

/// One row for each of them in the column "window" of a test's data.
void AddEveryWindow();
/// Shows the window of the row that is being tested.
void ShowWindow(int window, const std::function<void(QWidget&)>& look);

/// "frmCompare/fraOptions/chkOption(0)": where a control is found.
QString PathOf(const QWidget& control);

}  // namespace brackwell
