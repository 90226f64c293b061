#include "common/FormHelpers.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "common/MsgBox.h"
#include "common/Settings.h"
#include "controls/FlexGrid.h"
#include "controls/ListView.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

constexpr double TwipsPerInch = 1440;
constexpr double BorderAllowance = 85;  // twips

bool IsShare(double width) { return width > 0 && width < 1; }

/// Whole pixels are rounded down, so that rounding never makes the columns wider than the control.
void ResizeColumns(QHeaderView& columns, int outerPixels, const std::vector<double>& widths) {
  const double twipsPerPixel = TwipsPerPixel();
  const std::vector<double> twips = ColumnWidths(outerPixels * twipsPerPixel, ScrollBarAllowance(), widths);
  for (int column = 0; column < columns.count(); ++column) {
    const double width = twips[static_cast<std::size_t>(column)];
    columns.setSectionHidden(column, width == 0);
    if (width > 0) columns.resizeSection(column, static_cast<int>(width / twipsPerPixel));
  }
}

bool HasOneWidthPerColumn(QWidget& control, const QHeaderView& columns, const std::vector<double>& widths,
                          const QString& routine, const QString& columnKind) {
  if (static_cast<int>(widths.size()) == columns.count()) return true;
  MsgBox(&control,
         u"ERROR: ILLEGAL CALL TO "_s + routine + u".  ParamArray size does not match the # of "_s +
             columnKind + u"."_s,
         MsgIcon::Critical, routine);
  return false;
}

/// Pale yellow, with text that is readable on it also where the desktop's colours are dark.
void MarkLocked(QWidget& control, std::initializer_list<QPalette::ColorRole> backgrounds,
                std::initializer_list<QPalette::ColorRole> texts) {
  QPalette colours = control.palette();
  for (const auto role : backgrounds) colours.setColor(role, QColor(255, 255, 204));
  for (const auto role : texts) {
    colours.setColor(role, Qt::black);
    colours.setColor(QPalette::Disabled, role, QColor(96, 96, 96));
  }
  control.setPalette(colours);
}

void MarkBoxLocked(QWidget& box) {
  MarkLocked(box, {QPalette::Base, QPalette::AlternateBase}, {QPalette::Text, QPalette::PlaceholderText});
}

void GreyText(QLabel& label) {
  QPalette colours = label.palette();
  colours.setColor(QPalette::WindowText, colours.color(QPalette::Disabled, QPalette::WindowText));
  label.setPalette(colours);
}

/// The chosen one of a group of option buttons refuses to give way to nothing unless it stands alone.
void Unchoose(QRadioButton& option) {
  QButtonGroup* group = option.group();
  const bool isExclusive = group ? group->exclusive() : option.autoExclusive();
  const auto setExclusive = [&option, group](bool exclusive) {
    group ? group->setExclusive(exclusive) : option.setAutoExclusive(exclusive);
  };
  setExclusive(false);
  option.setChecked(false);
  setExclusive(isExclusive);
}

/// Labels and lists derive from QFrame but are no frames; a bare widget groups controls for the layout's
/// sake.
bool IsFrame(const QWidget& control) {
  const QMetaObject* kind = control.metaObject();
  return control.inherits("QGroupBox") || kind == &QFrame::staticMetaObject ||
         kind == &QWidget::staticMetaObject;
}

void LockFrame(const QWidget& frame) {
  const auto children = frame.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  for (QWidget* child : children) LockControl(*child);
}

template <class TextBox>
void LockTextBox(TextBox& box, bool clearValue) {
  box.setReadOnly(true);
  MarkBoxLocked(box);
  if (clearValue) box.clear();
}

}  // namespace

double ForFont(const QWidget& window, double designed) {
  constexpr double UsualLine = 15;  // pixels
  return designed * std::max(window.fontMetrics().height() / UsualLine, 1.0);
}

QSize ForFont(const QWidget& window, QSize designed) {
  return {qRound(ForFont(window, double(designed.width()))),
          qRound(ForFont(window, double(designed.height())))};
}

void GiveHelpKey(QDialog& dialog, std::function<void(const QString& key)> showHelp) {
  dialog.setWindowModality(Qt::WindowModal);
  auto* help = new QAction(&dialog);
  help->setObjectName(u"HelpKey"_s);
  help->setShortcut(QKeySequence::HelpContents);
  QObject::connect(help, &QAction::triggered, &dialog,
                   [&dialog, showHelp = std::move(showHelp)] { showHelp(dialog.objectName()); });
  dialog.addAction(help);
  // Some window managers give the keyboard to the window behind, though it is blocked, when that is clicked.
  const auto takeBack = [&dialog] {
    const QWidget* blocked = dialog.parentWidget();
    QWidget* top = QApplication::activeModalWidget();  // the dialog, or its message
    if (top && blocked && QGuiApplication::focusWindow() == blocked->window()->windowHandle())
      top->activateWindow();
  };
  // Not at once: the dialog may just be closing.
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &dialog, takeBack, Qt::QueuedConnection);
}

double TwipsPerPixel() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return TwipsPerInch / (screen ? screen->logicalDotsPerInchX() : 96);
}

std::int16_t ScrollBarAllowance() {
  const int pixels = QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  return static_cast<std::int16_t>(std::nearbyint(TwipsPerPixel() * pixels + BorderAllowance));
}

std::vector<double> ColumnWidths(double outerWidth, std::int16_t allowance,
                                 const std::vector<double>& widths) {
  double available = std::nearbyint(outerWidth - allowance);
  for (const double width : widths) {
    if (!IsShare(width)) available = std::nearbyint(available - width);
  }
  std::vector<double> twips = widths;
  for (double& width : twips) {
    if (IsShare(width)) width = std::max(0.0, std::nearbyint(width * available));
  }
  return twips;
}

void FlexGrid_ColumnResize(FlexGrid& grid, const std::vector<double>& widths) {
  QHeaderView& columns = *grid.horizontalHeader();
  if (!HasOneWidthPerColumn(grid, columns, widths, u"FlexGrid_ColumnResize"_s, u"columns"_s)) return;
  ResizeColumns(columns, grid.width(), widths);
}

void ListView_ColumnResize(ListView& list, const std::vector<double>& widths) {
  QHeaderView& columns = *list.header();
  if (!HasOneWidthPerColumn(list, columns, widths, u"ListView_ColumnResize"_s, u"ColumnHeaders"_s)) return;
  ResizeColumns(columns, list.width(), widths);
}

void LockControl(QWidget& control, bool clearValue, QLabel* caption) {
  if (caption) GreyText(*caption);
  if (auto* combo = qobject_cast<QComboBox*>(&control)) {
    combo->setEnabled(false);
    MarkLocked(*combo, {QPalette::Base, QPalette::Button}, {QPalette::Text, QPalette::ButtonText});
    if (clearValue) combo->setCurrentIndex(-1);
  } else if (auto* check = qobject_cast<QCheckBox*>(&control)) {
    check->setEnabled(false);
    if (clearValue) check->setChecked(false);
  } else if (IsFrame(control)) {
    LockFrame(control);
  } else if (auto* label = qobject_cast<QLabel*>(&control)) {
    label->setEnabled(false);
    GreyText(*label);
  } else if (auto* list = qobject_cast<QListView*>(&control)) {
    MarkBoxLocked(*list);
    if (clearValue && list->selectionModel()) list->selectionModel()->clear();
  } else if (auto* option = qobject_cast<QRadioButton*>(&control)) {
    option->setEnabled(false);
    if (clearValue) Unchoose(*option);
  } else if (auto* line = qobject_cast<QLineEdit*>(&control)) {
    LockTextBox(*line, clearValue);
  } else if (auto* text = qobject_cast<QPlainTextEdit*>(&control)) {
    LockTextBox(*text, clearValue);
  } else {
    control.setEnabled(false);
  }
}

std::int16_t CountCheckedItems(const ListView& list) {
  const QAbstractItemModel* items = list.model();
  if (!list.Checkboxes() || !items) return 0;
  int count = 0;
  for (int row = 0; row < items->rowCount(); ++row) {
    if (items->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked) ++count;
  }
  if (count > std::numeric_limits<std::int16_t>::max()) throw std::overflow_error("Overflow");
  return static_cast<std::int16_t>(count);
}

void LoadCheckBox(QCheckBox& box, const QString& section, const QString& key) {
  const std::optional<int> value = GetSettingNumber(section, key, box.isChecked() ? 1 : 0);
  if (value == 0 || value == 1) box.setChecked(*value == 1);
}

QString CheckValue(const QCheckBox& box) { return box.isChecked() ? u"1"_s : u"0"_s; }

int GetSelectedOption(std::span<QRadioButton* const> options) {
  int selected = -1;
  for (std::size_t index = 0; index < options.size(); ++index) {
    if (options[index]->isChecked()) selected = static_cast<int>(index);
  }
  return selected;
}

}  // namespace brackwell
