#pragma once

#include <QSize>
#include <QString>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

class QCheckBox;
class QDialog;
class QLabel;
class QRadioButton;
class QWidget;

namespace brackwell {

class FlexGrid;
class ListView;

/// Gives a control its name in the code, and the one that is read out to who cannot see it.
template <typename Control>
Control* Named(Control* control, const QString& name, const QString& accessibleName) {
  control->setObjectName(name);
  control->setAccessibleName(accessibleName);
  return control;
}

// Of every tool window, in pixels: around its controls (120 twips), and between them.
constexpr int Margin = 8;
constexpr int Spacing = 6;

/// A measure that was designed for the usual font; where a larger one is set, as much larger as its lines
/// are.
double ForFont(const QWidget& window, double designed);
QSize ForFont(const QWidget& window, QSize designed);

/// F1 in the dialog, which is yet to be shown, has `showHelp` called with its name in the code. The dialog
/// then blocks its own window alone, so that the help can be read while it is open.
void GiveHelpKey(QDialog& dialog, std::function<void(const QString& key)> showHelp);

/// Measures of windows are in twips, 1440 to the inch.
double TwipsPerPixel();

/// What a vertical scroll bar and a control's border take of its width, whether or not one shows; in twips.
std::int16_t ScrollBarAllowance();

/// The widths in twips that a list of column widths means for a control of the given outer width: 0 and
/// widths of at least 1 stay as they are; one between 0 and 1 is that share of what they leave over, a whole
/// number. Shares are not normalised.
std::vector<double> ColumnWidths(double outerWidth, std::int16_t allowance,
                                 const std::vector<double>& widths);

// Size the columns as ColumnWidths says; a width of 0 hides the column. There must be one width per column:
// else a message box says so and nothing changes.
void FlexGrid_ColumnResize(FlexGrid& grid, const std::vector<double>& widths);
void ListView_ColumnResize(ListView& list, const std::vector<double>& widths);

/// Makes a control read-only and shows that by its colour; `clearValue` empties it too, `caption` is greyed.
/// What still scrolls or can be copied from (list and text boxes) stays enabled. A frame's controls are
/// locked in turn and keep their values.
void LockControl(QWidget& control, bool clearValue = false, QLabel* caption = nullptr);

/// The number of items with a check mark; 0 for a list without check boxes. Raises std::overflow_error for
/// more than the result holds.
std::int16_t CountCheckedItems(const ListView& list);

/// Sets a box to its stored check value, 0 or 1. What is not stored, or is no check value, leaves it as
/// designed.
void LoadCheckBox(QCheckBox& box, const QString& section, const QString& key);

/// What is stored of a box: "1" or "0".
QString CheckValue(const QCheckBox& box);

/// The position in `options` of the last button that is chosen, or -1.
int GetSelectedOption(std::span<QRadioButton* const> options);

}  // namespace brackwell
