#pragma once

#include <QMap>
#include <QTableView>

namespace brackwell {

/// A grid over any table model, quick with a million rows. Neighbouring columns with the same header text
/// share one header. A cell without text shows its Qt::DecorationRole picture centred; what a picture says
/// belongs into Qt::AccessibleTextRole. One cell is current; the user cannot edit, only click, activate, and
/// copy the rows of the selected cells.
class FlexGrid : public QTableView {
  Q_OBJECT

 public:
  explicit FlexGrid(QWidget* parent = nullptr);

  /// Where a text that is too long is shortened; at its end unless said otherwise.
  void SetColumnElide(int column, Qt::TextElideMode mode);
  Qt::TextElideMode ColumnElide(int column) const { return mElide.value(column, Qt::ElideRight); }

 Q_SIGNALS:
  /// A click with the left button, or Space on the current cell. A double click is one click, then one
  /// activation: what a click toggles is toggled once. A click with Ctrl or Shift only selects.
  void CellClicked(int row, int column);
  /// A double click with the left button, or Enter on the current cell.
  void CellActivated(int row, int column);
  /// A right click, or the menu key on the current cell. The cell may be none.
  void MenuAsked(const QModelIndex& cell, const QPoint& screenPosition);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetRowHeight();

  QMap<int, Qt::TextElideMode> mElide;
};

}  // namespace brackwell
