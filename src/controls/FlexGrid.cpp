#include "controls/FlexGrid.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "controls/ContextMenu.h"
#include "controls/CopyRows.h"
#include "controls/FilledHeader.h"

namespace brackwell {
namespace {

/// Draws each run of columns with the same text as one header over all of them.
class MergedHeader : public FilledHeader {
 public:
  explicit MergedHeader(QWidget* parent) : FilledHeader(parent) {
    setHighlightSections(false);
    setSectionsClickable(false);
    setMinimumSectionSize(8);
    // A column's new width moves the text of the whole run, also over the columns to its left.
    connect(this, &QHeaderView::sectionResized, this, [this] { viewport()->update(); });
  }

 protected:
  /// Each section draws its part of the header that belongs to the run.
  void paintSection(QPainter* painter, const QRect& rect, int section) const override {
    const auto [first, last] = RunAround(section);
    QRect run = rect;
    run.setLeft(sectionViewportPosition(first));
    run.setRight(sectionViewportPosition(last) + sectionSize(last) - 1);
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    QHeaderView::paintSection(painter, run, first);
    painter->restore();
  }

  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
    QHeaderView::initStyleOptionForIndex(option, section);
    const auto [first, last] = RunAround(section);
    const int width = sectionPosition(last) + sectionSize(last) - sectionPosition(first);
    const int margins = style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
    option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight, width - margins);
  }

 private:
  QString Text(int section) const { return model()->headerData(section, Qt::Horizontal).toString(); }

  std::pair<int, int> RunAround(int section) const {
    const QString text = Text(section);
    int first = section;
    while (first > 0 && Text(first - 1) == text) --first;
    int last = section;
    while (last + 1 < count() && Text(last + 1) == text) ++last;
    return {first, last};
  }
};

class CellDelegate : public QStyledItemDelegate {
 public:
  explicit CellDelegate(FlexGrid& grid) : QStyledItemDelegate(&grid), mGrid(grid) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    QIcon picture;
    if (cell.text.isEmpty()) {
      std::swap(picture, cell.icon);
      cell.features &= ~QStyleOptionViewItem::HasDecoration;
    }
    const QStyle* style = cell.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    picture.paint(painter,
                  QStyle::alignedRect(cell.direction, Qt::AlignCenter, cell.decorationSize, cell.rect));
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    // A name with a line break in it stays in its one line.
    option->text.replace(QChar::LineSeparator, u' ');
    option->textElideMode = mGrid.ColumnElide(index.column());
    if (!(option->displayAlignment & Qt::AlignVertical_Mask)) option->displayAlignment |= Qt::AlignVCenter;
  }

 private:
  const FlexGrid& mGrid;
};

}  // namespace

FlexGrid::FlexGrid(QWidget* parent) : QTableView(parent) {
  setHorizontalHeader(new MergedHeader(this));
  setItemDelegate(new CellDelegate(*this));
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setCornerButtonEnabled(false);
  setWordWrap(false);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectItems);
  setHorizontalScrollMode(ScrollPerPixel);
  // Tab leaves the grid; the arrow keys move in it.
  setTabKeyNavigation(false);
  SetRowHeight();
  connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& cell) {
    const bool onlySelects = QGuiApplication::keyboardModifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
    if (!onlySelects) Q_EMIT CellClicked(cell.row(), cell.column());
  });
  connect(this, &QAbstractItemView::doubleClicked, this,
          [this](const QModelIndex& cell) { Q_EMIT CellActivated(cell.row(), cell.column()); });
}

void FlexGrid::SetColumnElide(int column, Qt::TextElideMode mode) {
  mElide.insert(column, mode);
  viewport()->update();
}

void FlexGrid::SetRowHeight() {
  const int pictureHeight = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  const int height = std::max(fontMetrics().height(), pictureHeight) + 5;
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
}

void FlexGrid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SetRowHeight();
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
  const MenuPlace place = PlaceOfMenu(*this, *event);
  Q_EMIT MenuAsked(place.Cell, place.Position);
}

void FlexGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return CopySelectedRows(*this);
  const QModelIndex cell = currentIndex();
  const bool isSpace = event->key() == Qt::Key_Space;
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!cell.isValid() || event->modifiers() & ~Qt::KeypadModifier || !(isSpace || isEnter)) {
    QTableView::keyPressEvent(event);
    return;
  }
  // A key held down must not toggle on and on.
  if (event->isAutoRepeat()) return;
  if (isSpace) {
    Q_EMIT CellClicked(cell.row(), cell.column());
  } else {
    event->ignore();  // a dialog's default button gets it too
    Q_EMIT CellActivated(cell.row(), cell.column());
  }
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) QTableView::mouseDoubleClickEvent(event);
}

}  // namespace brackwell
