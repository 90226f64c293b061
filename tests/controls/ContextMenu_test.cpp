#include "controls/ContextMenu.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include "controls/FlexGrid.h"
#include "controls/ListView.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"
#include "support/TempTree.h"

using namespace Qt::StringLiterals;

namespace brackwell {
namespace {

/// A view of as many rows as are wanted, and where it was asked for menus.
template <typename View>
struct Asked {
  explicit Asked(int count) {
    for (int row = 0; row < count; ++row)
      Items.appendRow({new QStandardItem(u"a"_s), new QStandardItem(u"b"_s)});
    List.setModel(&Items);
    List.resize(300, 200);
    List.show();
    QObject::connect(&List, &View::MenuAsked, [this](const QModelIndex& cell, const QPoint& position) {
      Cell = cell;
      Position = position;
      ++Times;
    });
  }

  void Ask(QContextMenuEvent::Reason reason, const QPoint& at) {
    QContextMenuEvent event(reason, at, List.viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(reason == QContextMenuEvent::Keyboard ? &List : List.viewport(), &event);
  }

  QStandardItemModel Items;
  View List;
  QModelIndex Cell;
  QPoint Position;
  int Times = 0;
};

template <typename View>
void TestPlaces() {
  Asked<View> asked(100);
  const QModelIndex third = asked.Items.index(2, 1);
  const QPoint at = asked.List.visualRect(third).center();
  asked.Ask(QContextMenuEvent::Mouse, at);
  QCOMPARE(asked.Cell, third);
  QCOMPARE(asked.Position, asked.List.viewport()->mapToGlobal(at));

  asked.List.setCurrentIndex(asked.Items.index(90, 0));
  asked.List.verticalScrollBar()->setValue(0);
  asked.Ask(QContextMenuEvent::Keyboard, {});
  QCOMPARE(asked.Cell.row(), 90);
  const QRect shown(asked.List.viewport()->mapToGlobal(QPoint()), asked.List.viewport()->size());
  QVERIFY(shown.contains(asked.Position));
  QCOMPARE(asked.List.indexAt(asked.List.viewport()->mapFromGlobal(asked.Position)).row(), 90);
  QCOMPARE(asked.Times, 2);
}

template <typename View>
void TestWithoutItems() {
  Asked<View> asked(0);
  asked.Ask(QContextMenuEvent::Mouse, {20, 20});
  QVERIFY(!asked.Cell.isValid());
  asked.Ask(QContextMenuEvent::Keyboard, {});
  QVERIFY(!asked.Cell.isValid());
  QCOMPARE(asked.Position, asked.List.viewport()->mapToGlobal(QPoint()));
  QCOMPARE(asked.Times, 2);
}

}  // namespace

class ContextMenu_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void AGridIsAskedWhereTheMouseOrTheCurrentCellIs() { TestPlaces<FlexGrid>(); }
  void AListIsAskedWhereTheMouseOrTheCurrentItemIs() { TestPlaces<ListView>(); }
  void AGridWithoutRowsIsAskedToo() { TestWithoutItems<FlexGrid>(); }
  void AListWithoutItemsIsAskedToo() { TestWithoutItems<ListView>(); }

  void AMenuGoesWhenItIsClosed() {
    QWidget owner;
    owner.show();
    const QPointer<QMenu> menu = NewContextMenu(owner);
    menu->addAction(u"x"_s);
    menu->popup({});
    QVERIFY(menu->isVisible());
    menu->close();
    QTRY_VERIFY(menu.isNull());
  }

  void AnItemIsOpenedWithItsFolder() {
    TempTree tree;
    tree.File("sub/a b.txt");
    const StandInOpener opener;
    QWidget form;
    QMenu menu;
    AddItemActions(menu, form, tree.Path("sub/a b.txt"));
    menu.findChild<QAction*>(u"mnuOpen"_s)->trigger();
    QVERIFY(opener.Opened().value(0).endsWith(u"/sub/a b.txt"_s));
    menu.findChild<QAction*>(u"mnuOpenFolder"_s)->trigger();
    QVERIFY(opener.Opened().value(1).endsWith(u"/sub"_s));
  }

  void AnItemThatIsGoneIsTold() {
    TempTree tree;
    MessageBoxes boxes;
    QWidget form;
    QMenu menu;
    AddItemActions(menu, form, tree.Path("gone.txt"));
    menu.findChild<QAction*>(u"mnuOpen"_s)->trigger();
    QCOMPARE(boxes.TakeTexts(), QStringList{u"The specified file was not found."_s});
  }

  void ThePathIsCopiedAsItIs() {
    QWidget form;
    QMenu menu;
    AddItemActions(menu, form, "/folder/a\tb ä");
    menu.findChild<QAction*>(u"mnuCopyPath"_s)->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"/folder/a\tb ä"_s);
  }

  void CaptionsSayWhose() {
    QWidget form;
    QMenu menu;
    AddItemActions(menu, form, "/a");
    AddItemActions(menu, form, "/a", u"Source Item"_s);
    QStringList captions;
    for (const QAction* item : menu.actions()) captions << item->text();
    QCOMPARE(captions, (QStringList{u"&Open"_s, u"Open &Folder"_s, u"&Copy Path"_s, u"&Open Source Item"_s,
                                    u"Open &Folder of Source Item"_s, u"&Copy Path of Source Item"_s}));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::ContextMenu_test)
#include "ContextMenu_test.moc"
