#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QShortcut>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeView>

#include "support/EveryWindow.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// A key, and what it is for.
struct Accelerator {
  QKeySequence Key;
  QString For;
  QWidget* Control = nullptr;  // that is pressed, gets the focus or has the tab; null for menus and commands
};

/// Captions that stay as they are: inside a tool its own control comes before the menu.
const QStringList KeptClashes = {
    u"Alt+F: cmdFix, &File"_s,
    u"Alt+F: cmdFind, &File"_s,
    u"Alt+F: hdgFonts, &File"_s,
    u"Alt+T: hdgText, &Tools"_s,
};

/// Of the window's own controls, as far as they are seen.
QList<Accelerator> ControlKeys(const QWidget& window) {
  QList<Accelerator> keys;
  const auto add = [&](const QKeySequence& key, const QString& what, QWidget* control) {
    if (!key.isEmpty()) keys.append({key, what, control});
  };
  for (QWidget* control : window.findChildren<QWidget*>()) {
    if (!control->isVisibleTo(&window)) continue;
    if (auto* button = qobject_cast<QAbstractButton*>(control)) {
      add(button->shortcut(), button->objectName(), button);
    } else if (auto* label = qobject_cast<QLabel*>(control); label && label->buddy()) {
      add(QKeySequence::mnemonic(label->text()), label->objectName(), label->buddy());
    } else if (auto* frame = qobject_cast<QGroupBox*>(control)) {
      add(QKeySequence::mnemonic(frame->title()), frame->objectName(), frame);
    } else if (auto* tabs = qobject_cast<QTabBar*>(control)) {
      for (int tab = 0; tab < tabs->count(); ++tab)
        add(QKeySequence::mnemonic(tabs->tabText(tab)), tabs->tabText(tab), tabs);
    }
  }
  return keys;
}

/// What a whole top-level window hears besides.
QList<Accelerator> CommandKeys(const QWidget& top) {
  QList<Accelerator> keys;
  for (const QAction* action : top.findChildren<QAction*>())
    if (action->shortcutContext() == Qt::WindowShortcut)
      for (const QKeySequence& key : action->shortcuts()) keys.append({key, action->text()});
  for (const QShortcut* shortcut : top.findChildren<QShortcut*>())
    if (shortcut->context() == Qt::WindowShortcut && qobject_cast<QWidget*>(shortcut->parent())->isVisible())
      keys.append({shortcut->key(), u"a shortcut"_s});
  for (const QMenuBar* bar : top.findChildren<QMenuBar*>())
    for (const QAction* menu : bar->actions())
      keys.append({QKeySequence::mnemonic(menu->text()), menu->text()});
  return keys;
}

QStringList Clashes(const QList<Accelerator>& keys) {
  QStringList clashes;
  for (qsizetype i = 0; i < keys.size(); ++i)
    for (qsizetype j = i + 1; j < keys.size(); ++j)
      if (keys[i].Key == keys[j].Key)
        clashes << u"%1: %2, %3"_s.arg(keys[i].Key.toString(), keys[i].For, keys[j].For);
  return clashes;
}

QStringList LabelsWithoutBuddies(const QWidget& window) {
  QStringList labels;
  for (const QLabel* label : window.findChildren<QLabel*>())
    if (!label->buddy() && label->textFormat() != Qt::PlainText &&
        !QKeySequence::mnemonic(label->text()).isEmpty())
      labels << PathOf(*label);
  return labels;
}

/// Presses the key while the focus is in the window; whether it did what it says.
bool Works(QWidget& window, const Accelerator& accelerator) {
  auto* button = qobject_cast<QAbstractButton*>(accelerator.Control);
  bool pressed = false;
  if (button) {
    button->disconnect(SIGNAL(clicked(bool)));  // it is to be pressed, not to do its work
    button->disconnect(SIGNAL(toggled(bool)));
    QObject::connect(button, &QAbstractButton::clicked, button, [&pressed] { pressed = true; });
  }
  const QKeyCombination key = accelerator.Key[0];
  QTest::keyClick(window.window()->windowHandle(), key.key(), key.keyboardModifiers());
  if (button) return QTest::qWaitFor([&] { return pressed; }, 1000);
  if (const auto* tabs = qobject_cast<const QTabBar*>(accelerator.Control))
    return tabs->tabText(tabs->currentIndex()) == accelerator.For;
  const QWidget* focused = QApplication::focusWidget();
  return focused && (focused == accelerator.Control || accelerator.Control->isAncestorOf(focused));
}

// --- the order of Tab ----------------------------------------------------------------

bool TakesTab(const QWidget& window, const QWidget* control) {
  return control->isVisibleTo(&window) && control->isEnabled() && !control->focusProxy() &&
         control->focusPolicy() & Qt::TabFocus && control->size().isValid();
}

/// A control that Tab should visit and never will. Commands of a tool bar have their keys and menus; of
/// option buttons the chosen one stands for all.
bool IsOffTheWay(const QWidget& window, const QWidget* control) {
  const bool isControl = qobject_cast<const QAbstractButton*>(control) ||
                         qobject_cast<const QLineEdit*>(control) || qobject_cast<const QTreeView*>(control) ||
                         qobject_cast<const QTableView*>(control) || qobject_cast<const QTextEdit*>(control);
  return isControl && control->isVisibleTo(&window) && control->isEnabled() &&
         !(control->focusPolicy() & Qt::TabFocus) && !qobject_cast<const QRadioButton*>(control) &&
         !qobject_cast<const QToolBar*>(control->parentWidget()) &&
         !qobject_cast<const QLineEdit*>(control->parentWidget());
}

/// The controls that Tab visits, from the first one on until it comes round.
QList<QWidget*> Round(QWidget& window) {
  QList<QWidget*> visited;
  for (int presses = 0; presses < 400; ++presses) {
    QWidget* control = QApplication::focusWidget();
    // A page passes Tab on from link to link before it lets go.
    const bool isStillThere = !visited.isEmpty() && control == visited.last();
    if (!isStillThere) {
      if (!control || !window.isAncestorOf(control) || visited.contains(control)) break;
      visited.append(control);
    }
    QTest::keyClick(window.window()->windowHandle(), Qt::Key_Tab);
  }
  return visited;
}

QRect Place(const QWidget& window, const QWidget* control) {
  return {control->mapTo(&window, QPoint()), control->size()};
}

/// Down the page and to the right within a row; up only into a column further to the right.
bool Follows(const QRect& last, const QRect& next) {
  const bool isAbove = next.bottom() <= last.top();
  const bool isRight = next.left() >= last.right();
  const bool isBeside = next.top() < last.bottom() && next.bottom() > last.top();
  if (isAbove) return isRight;
  return !isBeside || next.right() > last.left();
}

/// Where the order goes back. Once is the way from the end of the window to its beginning.
QStringList Jumps(const QWidget& window, const QList<QWidget*>& round) {
  QStringList jumps;
  for (qsizetype i = 0; i < round.size(); ++i) {
    const QWidget* next = round[(i + 1) % round.size()];
    if (!Follows(Place(window, round[i]), Place(window, next)))
      jumps << PathOf(*round[i]) + u" -> "_s + PathOf(*next);
  }
  return jumps.size() > 1 ? jumps : QStringList();
}

}  // namespace

class EveryWindowKeysTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void NoTwoControlsShareAnAccelerator_data() { AddEveryWindow(); }
  void NoTwoControlsShareAnAccelerator();
  void EveryAcceleratorWorks_data() { AddEveryWindow(); }
  void EveryAcceleratorWorks();
  void MenusHaveEachLetterOnce();
  void MenusOpenByTheirLetter();
  void TheFocusBeginsInTheWindow_data() { AddEveryWindow(); }
  void TheFocusBeginsInTheWindow();
  void TabReachesEveryControlInOrder_data() { AddEveryWindow(); }
  void TabReachesEveryControlInOrder();
  void BoxesTakeOneLine_data() { AddEveryWindow(); }
  void BoxesTakeOneLine();
};

void EveryWindowKeysTest::NoTwoControlsShareAnAccelerator() {
  QFETCH(int, window);
  QStringList clashes;
  QStringList lonely;
  ShowWindow(window, [&](QWidget& shown) {
    clashes = Clashes(ControlKeys(shown) + CommandKeys(*shown.window()));
    lonely = LabelsWithoutBuddies(shown);
  });
  clashes.removeIf([](const QString& clash) { return KeptClashes.contains(clash); });
  QCOMPARE(clashes.join(u'\n'), QString());
  QCOMPARE(lonely.join(u'\n'), QString());
}

void EveryWindowKeysTest::EveryAcceleratorWorks() {
  QFETCH(int, window);
  QStringList idle;
  ShowWindow(window, [&](QWidget& shown) {
    for (const Accelerator& accelerator : ControlKeys(shown))
      if (accelerator.Control && accelerator.Control->isEnabled() && !Works(shown, accelerator))
        idle << accelerator.Key.toString() + u": "_s + accelerator.For;
  });
  QCOMPARE(idle.join(u'\n'), QString());
}

void EveryWindowKeysTest::MenusHaveEachLetterOnce() {
  EveryWindow().front().Show([](QWidget& main) {
    const auto menus = main.findChildren<QMenu*>();
    QVERIFY(menus.size() >= 4);
    for (const QMenu* menu : menus) {
      QList<Accelerator> keys;
      for (const QAction* item : menu->actions())
        if (!item->isSeparator()) keys.append({QKeySequence::mnemonic(item->text()), item->text()});
      for (const Accelerator& key : keys) QVERIFY2(!key.Key.isEmpty(), qPrintable(key.For));
      QCOMPARE(Clashes(keys), QStringList());
    }
  });
}

void EveryWindowKeysTest::MenusOpenByTheirLetter() {
  EveryWindow().front().Show([](QWidget& main) {
    for (const QAction* menu : main.findChild<QMenuBar*>()->actions()) {
      const QKeyCombination key = QKeySequence::mnemonic(menu->text())[0];
      QTest::keyClick(main.windowHandle(), key.key(), key.keyboardModifiers());
      QTRY_COMPARE(QApplication::activePopupWidget(), menu->menu<QMenu*>());
      menu->menu<QMenu*>()->close();
    }
  });
}

void EveryWindowKeysTest::TheFocusBeginsInTheWindow() {
  QFETCH(int, window);
  bool isInside = false;
  ShowWindow(window, [&](QWidget& shown) {
    const QWidget* focused = QApplication::focusWidget();
    const bool hasControls = shown.objectName() != u"frmMain"_s;
    isInside = !hasControls || (focused && shown.isAncestorOf(focused));
  });
  QVERIFY(isInside);
}

void EveryWindowKeysTest::TabReachesEveryControlInOrder() {
  QFETCH(int, window);
  QStringList missed;
  QStringList jumps;
  ShowWindow(window, [&](QWidget& shown) {
    const QList<QWidget*> round = Round(shown);
    for (const QWidget* control : shown.findChildren<QWidget*>())
      if ((TakesTab(shown, control) && !round.contains(control)) || IsOffTheWay(shown, control))
        missed << PathOf(*control);
    jumps = Jumps(shown, round);
  });
  QCOMPARE(missed.join(u'\n'), QString());
  QCOMPARE(jumps.join(u'\n'), QString());
}

/// The folder dialog's box has to hold names of folders, which may have more lines than one.
void EveryWindowKeysTest::BoxesTakeOneLine() {
  QFETCH(int, window);
  QStringList others;
  ShowWindow(window, [&](QWidget& shown) {
    QApplication::clipboard()->setText(u"1\n2"_s);
    for (auto* box : shown.findChildren<QLineEdit*>()) {
      if (shown.objectName() == u"BrowseFF"_s || !box->isEnabled() || box->isReadOnly()) continue;
      box->selectAll();
      box->paste();
      if (box->text() != u"1"_s) others << PathOf(*box);
    }
  });
  QCOMPARE(others.join(u'\n'), QString());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::EveryWindowKeysTest)
#include "EveryWindow_keys_test.moc"
