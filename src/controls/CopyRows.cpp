#include "controls/CopyRows.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <algorithm>
#include <utility>
#include <vector>

#include "common/Busy.h"
#include "common/NativeText.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

using RowRange = std::pair<int, int>;  // first and last row

/// In ascending order. Cells are selected in ranges, so a million rows are a few of them; ranges may share
/// rows.
std::vector<RowRange> SelectedRows(const QAbstractItemView& view) {
  std::vector<RowRange> rows;
  const QItemSelection selection = view.selectionModel()->selection();
  for (const QItemSelectionRange& range : selection)
    if (range.isValid()) rows.emplace_back(range.top(), range.bottom());
  if (rows.empty() && view.currentIndex().isValid())
    rows.emplace_back(view.currentIndex().row(), view.currentIndex().row());
  std::ranges::sort(rows);
  return rows;
}

QString CellText(const QModelIndex& cell) {
  QString text = cell.data(Qt::DisplayRole).toString();
  if (text.isEmpty()) text = cell.data(Qt::AccessibleTextRole).toString();
  const bool hasControls = std::ranges::any_of(text, [](QChar c) { return c < u' '; });
  return hasControls ? ToShownText(text.toStdString()) : text;
}

QString RowText(const QAbstractItemModel& model, int row) {
  QString text;
  bool isEmpty = true;
  for (int column = 0; column < model.columnCount(); ++column) {
    if (column > 0) text += u'\t';
    const QString cell = CellText(model.index(row, column));
    isEmpty = isEmpty && cell.isEmpty();
    text += cell;
  }
  return isEmpty ? QString() : text;
}

}  // namespace

QString SelectedRowsText(const QAbstractItemView& view) {
  if (!view.model()) return {};
  QString text;
  int next = 0;  // the first row that is not done
  for (const auto& [first, last] : SelectedRows(view)) {
    for (next = std::max(next, first); next <= last; ++next) {
      const QString row = RowText(*view.model(), next);
      if (row.isEmpty()) continue;
      if (!text.isEmpty()) text += u'\n';
      text += row;
    }
  }
  return text;
}

void CopySelectedRows(const QAbstractItemView& view) {
  const BusyPointer busy;
  const QString text = SelectedRowsText(view);
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

}  // namespace brackwell
