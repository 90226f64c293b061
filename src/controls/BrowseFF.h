#pragma once

#include <QString>

class QWidget;

namespace brackwell {

/// The folder-browse dialog that windows borrow: set the properties, Show it, read the Folder.
class BrowseFF {
 public:
  QString Title;
  QString Prompt;       // stands at the top of the dialog
  QString StartFolder;  // empty: the user's home folder
  /// Where the upper left corner is to be, in pixels of the desktop. The dialog always shows wholly on one
  /// screen.
  int Top = 0;
  int Left = 0;

  /// True when the user chose a folder, which Folder then gives.
  bool Show(QWidget* parent);
  /// With native separators, without one at its end unless it is a root.
  QString Folder() const { return mFolder; }

 private:
  QString mFolder;
};

}  // namespace brackwell
