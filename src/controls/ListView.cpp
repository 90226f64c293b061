#include "controls/ListView.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>

#include "controls/ContextMenu.h"
#include "controls/CopyRows.h"
#include "controls/FilledHeader.h"

namespace brackwell {
namespace {

/// Shows and toggles check marks only in a list that has check boxes.
class ItemDelegate : public QStyledItemDelegate {
 public:
  explicit ItemDelegate(ListView& list) : QStyledItemDelegate(&list), mList(list) {}

  /// All rows are as high as the first one: were it higher with a warning's sign, every row would move when
  /// the sign comes and goes.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.features &= ~QStyleOptionViewItem::HasDecoration;
    const QSize size = mList.style()->sizeFromContents(QStyle::CT_ItemViewItem, &item, {}, &mList);
    return {size.width(), std::max(size.height() + 4, item.decorationSize.height())};
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    // Some styles outline the box in a shade of the window colour, which is lost on a dark list.
    option->palette.setBrush(QPalette::Window, option->palette.brush(QPalette::Text));
    if (!mList.Checkboxes()) option->features &= ~QStyleOptionViewItem::HasCheckIndicator;
    if (index.data(ListView::WarningRole).toBool()) ShowWarning(*option);
  }

  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
    return mList.Checkboxes() && QStyledItemDelegate::editorEvent(event, model, option, index);
  }

 private:
  /// The sign is for who cannot tell the colours apart, and for the selected row, which has its own.
  void ShowWarning(QStyleOptionViewItem& option) const {
    option.palette.setBrush(QPalette::Text, ListView::WarningColor(option.palette));
    option.features |= QStyleOptionViewItem::HasDecoration;
    option.icon = mList.style()->standardIcon(QStyle::SP_MessageBoxWarning, &option, &mList);
  }

  const ListView& mList;
};

}  // namespace

QColor ListView::WarningColor(const QPalette& palette) {
  const bool isDark = palette.color(QPalette::Base).lightness() < 128;
  return isDark ? QColor(255, 176, 84) : QColor(150, 66, 0);
}

ListView::ListView(QWidget* parent) : QTreeView(parent) {
  setHeader(new FilledHeader(this));
  setItemDelegate(new ItemDelegate(*this));
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setEditTriggers(NoEditTriggers);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header()->setMinimumSectionSize(8);
}

void ListView::SetCheckboxes(bool checkboxes) {
  mCheckboxes = checkboxes;
  viewport()->update();
}

/// The tree view would ask for the place of each of them, though only those that show are painted.
void ListView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                           const QList<int>& roles) {
  if (topLeft.row() == bottomRight.row() || QAccessible::isActive())
    QTreeView::dataChanged(topLeft, bottomRight, roles);
  else
    viewport()->update();
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
  const MenuPlace place = PlaceOfMenu(*this, *event);
  Q_EMIT MenuAsked(place.Cell, place.Position);
}

void ListView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return CopySelectedRows(*this);
  // The mark is in the first column, the current cell may be in another one.
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && mCheckboxes) {
    if (!event->isAutoRepeat()) ToggleCurrentItem();
    return;
  }
  QTreeView::keyPressEvent(event);
}

void ListView::ToggleCurrentItem() {
  const QModelIndex item = currentIndex().siblingAtColumn(0);
  if (!(item.flags() & Qt::ItemIsUserCheckable)) return;
  const bool isChecked = item.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  model()->setData(item, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

}  // namespace brackwell
