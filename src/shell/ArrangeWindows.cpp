#include "shell/ArrangeWindows.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

namespace brackwell {
namespace {

using Windows = QList<QMdiSubWindow*>;

struct ShownWindows {
  Windows Open;       // the active one first
  Windows Minimised;  // the oldest first
};

ShownWindows Shown(const QMdiArea& area) {
  ShownWindows shown;
  for (QMdiSubWindow* window : area.subWindowList(QMdiArea::StackingOrder))
    if (!window->isHidden() && !window->isMinimized()) shown.Open.prepend(window);
  for (QMdiSubWindow* window : area.subWindowList())
    if (!window->isHidden() && window->isMinimized()) shown.Minimised.append(window);
  return shown;
}

/// Puts the windows into rows, upwards from the lower edge; gives what is left of the space above them.
QRect ArrangeIcons(const Windows& windows, QRect space) {
  QPoint next = space.bottomLeft();
  int top = space.bottom() + 1;
  for (QMdiSubWindow* window : windows) {
    if (next.x() > space.left() && next.x() + window->width() > space.right() + 1)
      next = QPoint(space.left(), top - 1);
    window->move(next.x(), next.y() + 1 - window->height());
    next.rx() += window->width();
    top = std::min(top, window->y());
  }
  space.setBottom(std::max(space.top(), top - 1));
  return space;
}

/// The i-th of `count` parts of a length that leave no gap between them.
std::pair<int, int> Part(int length, qsizetype count, qsizetype i) {
  const auto begin = static_cast<int>(length * i / count);
  const auto end = static_cast<int>(length * (i + 1) / count);
  return {begin, end - begin};
}

void Tile(const Windows& windows, const QRect& space, Qt::Orientation orientation) {
  for (qsizetype i = 0; i < windows.size(); ++i) {
    QRect tile = space;
    if (orientation == Qt::Horizontal) {
      const auto [top, height] = Part(space.height(), windows.size(), i);
      tile = QRect(space.left(), space.top() + top, space.width(), height);
    } else {
      const auto [left, width] = Part(space.width(), windows.size(), i);
      tile = QRect(space.left() + left, space.top(), width, space.height());
    }
    windows[i]->setGeometry(tile);
  }
}

int CascadeStep(const QMdiSubWindow& window) {
  return window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window) + 4;
}

/// Where the n-th window of a cascade goes. Begins again at the corner when the lower right is reached;
/// windows about as large as the space become a little smaller instead, so that the first few never hide each
/// other.
QRect CascadePlace(const QRect& space, const QMdiSubWindow& window, int n) {
  constexpr int PlacesAtLeast = 4;
  const QSize smallest = window.minimumSizeHint();
  const QSize largest = window.sizeHint().boundedTo(space.size()).expandedTo(smallest);
  const int step = CascadeStep(window);
  const auto stepsBeside = [&](QSize size) {
    return std::max(std::min(space.width() - size.width(), space.height() - size.height()) / step, 0);
  };
  const int steps = std::max(stepsBeside(largest), std::min(stepsBeside(smallest), PlacesAtLeast - 1));
  const QPoint offset = QPoint(step, step) * (n % (steps + 1));
  const QSize room(space.width() - offset.x(), space.height() - offset.y());
  return {space.topLeft() + offset, largest.boundedTo(room).expandedTo(smallest)};
}

void Cascade(const Windows& windows, const QRect& space) {
  int n = 0;
  for (qsizetype i = windows.size(); i-- > 0;) windows[i]->setGeometry(CascadePlace(space, *windows[i], n++));
}

/// A maximised window becomes a normal one; whichever is active stays so.
void Restore(const Windows& windows) {
  for (QMdiSubWindow* window : windows)
    if (window->isMaximized()) window->showNormal();
}

}  // namespace

void ArrangeWindows(QMdiArea& area, ArrangeMode mode) {
  const ShownWindows shown = Shown(area);
  area.horizontalScrollBar()->setValue(0);
  area.verticalScrollBar()->setValue(0);
  const QRect space(QPoint(0, 0), area.maximumViewportSize());
  const QRect left = ArrangeIcons(shown.Minimised, space);
  if (mode == ArrangeMode::ArrangeIcons) return;

  Restore(shown.Open);
  switch (mode) {
    case ArrangeMode::Cascade:
      Cascade(shown.Open, left);
      break;
    case ArrangeMode::TileHorizontally:
      Tile(shown.Open, left, Qt::Horizontal);
      break;
    case ArrangeMode::TileVertically:
      Tile(shown.Open, left, Qt::Vertical);
      break;
    case ArrangeMode::ArrangeIcons:
      break;
  }
}

void PlaceNewWindow(QMdiArea& area, QMdiSubWindow& window) {
  const QRect space(QPoint(0, 0), area.viewport()->size());
  QList<QPoint> taken;
  for (const QMdiSubWindow* other : area.subWindowList())
    if (other != &window && !other->isHidden()) taken.append(other->pos());
  int n = 0;
  while (n < taken.size() && taken.contains(CascadePlace(space, window, n).topLeft())) ++n;
  window.setGeometry(CascadePlace(space, window, n));
}

void BringForward(QMdiArea& area, QMdiSubWindow& window) {
  if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  area.setActiveSubWindow(&window);
}

}  // namespace brackwell
