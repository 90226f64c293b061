#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>
#include <vector>

#include "controls/BrowseFF.h"

namespace brackwell {

/// The program's own picture, drawn for every size from a menu to a dialog on a dense screen.
QIcon ProgramIcon();

/// Holds what other windows borrow: the pictures of toolbar, lists and grids, the folder dialog. Never shown.
///
/// A picture's handle is its QIcon::cacheKey: all copies of one picture share it, no two pictures do.
class frmImages : public QWidget {
  Q_OBJECT

 public:
  struct ListImage {
    QString Key;
    QIcon Picture;
  };

  frmImages();

  /// The picture of imlIcons16 with this key; a null icon where there is none.
  QIcon GetPicture(const QString& key) const;
  /// The key of the picture of imlIcons16 with the same handle, the last one if several; empty where there is
  /// none.
  QString MatchPicture(const QIcon& picture) const;

  /// In a fixed order. Drawn for 16 by 16 points, with larger forms for dense screens and large icons.
  const std::vector<ListImage> imlIcons16;
  const QIcon imgCheckOFF;
  const QIcon imgCheckON;
  const QIcon imgMoveUp;
  const QIcon imgMoveDown;

  /// For any window to borrow.
  brackwell::BrowseFF BrowseFF;
};

}  // namespace brackwell
