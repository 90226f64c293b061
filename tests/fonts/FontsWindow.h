#pragma once

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>

#include "controls/ListView.h"
#include "controls/WebView.h"
#include "fonts/FontList.h"
#include "fonts/frmFontDisplay.h"
#include "support/MadeFonts.h"
#include "support/ToolInArea.h"

namespace brackwell {

/// A font sampler in a main window's area, with the fonts that fontconfig knows when it is made.
class FontsWindow : public ToolInArea<frmFontDisplay> {
 public:
  explicit FontsWindow(int failAt = 0) : ToolInArea(failAt, FileError::DiskFull) {
    Show(new frmFontDisplay(Lent), {1000, 800});
    Watch(Form->Fonts());
  }

  void Choose(const char* preset) { Get<QAction>(preset).trigger(); }
  void Type(const QString& text) { Get<QPlainTextEdit>("txtText").setPlainText(text); }
  void SetSize(const QString& size) { Get<QLineEdit>("txtFontSize").setText(size); }
  void Tick(int row, bool on) {
    FontList& list = Form->Fonts();
    list.setData(list.index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
  }

  /// The items of the list, "+" before those that are checked.
  QStringList Items() {
    QStringList items;
    const QAbstractItemModel& list = *Get<ListView>("lvwFonts").model();
    for (int row = 0; row < list.rowCount(); ++row) {
      const QModelIndex item = list.index(row, 0);
      items << (item.data(Qt::CheckStateRole).toInt() == Qt::Checked ? u"+"_s : u"-"_s) +
                   item.data().toString();
    }
    return items;
  }
};

}  // namespace brackwell
