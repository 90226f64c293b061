#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

class QAction;
class QMdiArea;
class QMenu;

namespace brackwell {

/// The list of open windows at the end of a menu, below a separator: the oldest first, the active one ticked.
/// Choosing an entry brings its window forward.
class WindowList : public QObject {
  Q_OBJECT

 public:
  WindowList(QMenu& menu, QMdiArea& area);

  /// Brings the entries up to date; done whenever the menu opens.
  void Update();

 private:
  QMenu& mMenu;
  QMdiArea& mArea;
  QList<QAction*> mEntries;
};

/// The entries for windows with these captions. Windows of one caption are told apart by a number after it,
/// and the first nine entries can be chosen by their digit.
QStringList WindowListTexts(const QStringList& captions);

}  // namespace brackwell
