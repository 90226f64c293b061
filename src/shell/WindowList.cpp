#include "shell/WindowList.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

#include "shell/ArrangeWindows.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

QList<QMdiSubWindow*> OpenWindows(const QMdiArea& area) {
  QList<QMdiSubWindow*> windows = area.subWindowList();
  windows.removeIf([](const QMdiSubWindow* window) { return window->isHidden(); });
  return windows;
}

}  // namespace

WindowList::WindowList(QMenu& menu, QMdiArea& area) : QObject(&menu), mMenu(menu), mArea(area) {
  connect(&menu, &QMenu::aboutToShow, this, &WindowList::Update);
}

void WindowList::Update() {
  qDeleteAll(mEntries);
  mEntries.clear();

  const QList<QMdiSubWindow*> windows = OpenWindows(mArea);
  if (windows.isEmpty()) return;
  mEntries.append(mMenu.addSeparator());

  QStringList captions;
  for (const QMdiSubWindow* window : windows) captions.append(window->windowTitle());
  const QStringList texts = WindowListTexts(captions);
  for (qsizetype i = 0; i < windows.size(); ++i) {
    QMdiSubWindow* window = windows[i];
    QAction* entry = mMenu.addAction(texts[i]);
    entry->setObjectName(u"%1_List%2"_s.arg(mMenu.objectName()).arg(i + 1));
    const bool active = window == mArea.currentSubWindow();
    entry->setCheckable(active);  // no empty boxes before the others
    entry->setChecked(active);
    connect(entry, &QAction::triggered, window, [this, window] { BringForward(mArea, *window); });
    mEntries.append(entry);
  }
}

QStringList WindowListTexts(const QStringList& captions) {
  QStringList texts;
  for (qsizetype i = 0; i < captions.size(); ++i) {
    QString text = captions[i];
    if (captions.count(text) > 1) text += u":%1"_s.arg(captions.first(i + 1).count(captions[i]));
    text.replace(u'&', u"&&"_s);
    texts.append(u"%1%2 %3"_s.arg(i < 9 ? u"&"_s : QString()).arg(i + 1).arg(text));
  }
  return texts;
}

}  // namespace brackwell
