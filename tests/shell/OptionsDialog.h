#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include "shell/frmOptions.h"
#include "support/MessageBoxes.h"

namespace brackwell {

using namespace Qt::StringLiterals;

/// The dialog as it opens.
struct Options {
  Options() { Dialog.show(); }

  QAbstractButton* Button(const QString& name) { return Dialog.findChild<QAbstractButton*>(name); }
  bool IsChosen(const QString& name) { return Button(name)->isChecked(); }
  QLineEdit* Delimiter() { return Dialog.findChild<QLineEdit*>(u"txtDirDisplayTextDelim"_s); }
  QTabWidget* Pages() { return Dialog.findChild<QTabWidget*>(u"sstOptions"_s); }
  QString Page() { return Pages()->tabText(Pages()->currentIndex()); }
  void Ok() { Button(u"cmdOK"_s)->click(); }

  /// The boxes and buttons that are on, in the order of the pages, and the delimiter.
  QString State() {
    QStringList lines;
    for (const QString& name :
         {u"chkAppMax"_s, u"chkChildMax"_s, u"chkCompareSaveFolders"_s, u"chkCompareShowFullPath"_s,
          u"chkReplaceSaveForm"_s, u"optDirDisplayXmlType(1)"_s, u"optDirDisplayXmlType(0)"_s,
          u"chkDirDisplaySave"_s, u"optDirDisplayTextDelim(0)"_s, u"optDirDisplayTextDelim(1)"_s})
      if (IsChosen(name)) lines.append(name);
    lines.append(u"%1 \"%2\""_s.arg(Delimiter()->isEnabled() ? u"on"_s : u"off"_s, Delimiter()->text()));
    return lines.join(u'\n');
  }

  frmOptions Dialog{nullptr};
};

inline const QString AsDesigned =
    uR"(chkCompareSaveFolders
chkReplaceSaveForm
optDirDisplayXmlType(0)
chkDirDisplaySave
off "")"_s;

/// The dialog complains with one button.
inline void Expect(const ShownBox& box, QMessageBox::Icon icon, const QString& text) {
  QCOMPARE(box.Text, text);
  QCOMPARE(box.Icon, icon);
  QCOMPARE(box.Title, u"Brackwell"_s);
  QCOMPARE(box.Buttons, QMessageBox::Ok);
}

}  // namespace brackwell
