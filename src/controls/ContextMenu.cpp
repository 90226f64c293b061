#include "controls/ContextMenu.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>

#include "common/RunProgram.h"
#include "platform/Paths.h"

namespace brackwell {

using namespace Qt::StringLiterals;

QMenu* NewContextMenu(QWidget& owner) {
  auto* menu = new QMenu(&owner);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  return menu;
}

void AddItemActions(QMenu& menu, QWidget& form, const std::string& path, const QString& whose) {
  const QString itself = whose.isEmpty() ? QString() : u' ' + whose;
  const QString ofIt = whose.isEmpty() ? QString() : u" of "_s + whose;
  AddMenuItem(menu, u"mnuOpen"_s, u"&Open"_s + itself, &form, [&form, path] { RunProgram(&form, path); });
  AddMenuItem(menu, u"mnuOpenFolder"_s, u"Open &Folder"_s + ofIt, &form,
              [&form, path] { RunProgram(&form, std::string(ParentPath(path))); });
  // As it is, not as it is shown: whoever pastes it wants to find the file.
  AddMenuItem(menu, u"mnuCopyPath"_s, u"&Copy Path"_s + ofIt, &form,
              [path] { QGuiApplication::clipboard()->setText(QString::fromStdString(path)); });
}

MenuPlace PlaceOfMenu(QAbstractItemView& view, const QContextMenuEvent& event) {
  if (event.reason() != QContextMenuEvent::Keyboard) return {view.indexAt(event.pos()), event.globalPos()};
  const QModelIndex cell = view.currentIndex();
  if (cell.isValid()) view.scrollTo(cell);
  const QRect place = view.visualRect(cell).intersected(view.viewport()->rect());
  return {cell, view.viewport()->mapToGlobal(place.isEmpty() ? QPoint() : place.bottomLeft())};
}

}  // namespace brackwell
