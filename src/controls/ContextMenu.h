#pragma once

#include <QMenu>
#include <QModelIndex>
#include <QPoint>
#include <string>

class QAbstractItemView;
class QContextMenuEvent;

namespace brackwell {

/// A new context menu: fill it, then let it pop up. It goes when it is closed.
QMenu* NewContextMenu(QWidget& owner);

/// Adds an item under its name in the code.
template <typename Handler>
QAction* AddMenuItem(QMenu& menu, const QString& name, const QString& caption, QObject* context,
                     Handler handler) {
  QAction* item = menu.addAction(caption);
  item->setObjectName(name);
  QObject::connect(item, &QAction::triggered, context, std::move(handler));
  return item;
}

/// Adds what can be done with a file or folder, named by its native path: open it or the folder that holds
/// it, copy its path. `whose` follows the verbs in the captions, "Source Item" say. `form` is the window that
/// asks.
void AddItemActions(QMenu& menu, QWidget& form, const std::string& path, const QString& whose = {});

/// Where a view is asked for a context menu: the cell under the mouse, or the current one by key. The cell is
/// none where there is no item.
struct MenuPlace {
  QModelIndex Cell;
  QPoint Position;  // on the screen
};
MenuPlace PlaceOfMenu(QAbstractItemView& view, const QContextMenuEvent& event);

}  // namespace brackwell
