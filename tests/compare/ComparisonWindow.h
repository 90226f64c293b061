#pragma once

#include <QPushButton>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/FlexGrid.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "support/ToolInArea.h"

namespace brackwell {

/// A comparison window in a main window's area, on a temporary tree with the folders "s" and "t".
class ComparisonWindow : public ToolInArea<frmCompare> {
 public:
  explicit ComparisonWindow(int failAt = 0) : ToolInArea(failAt) {
    Tree.Folder("s");
    Tree.Folder("t");
    Show(new frmCompare(Lent), {900, 700}, {800, 600});
    Watch(Form->Grid());
  }

  void Choose() {
    Get<uctSelectDir>("uctSelSource").SetFolder(QString::fromStdString(Tree.Root("s")));
    Get<uctSelectDir>("uctSelTarget").SetFolder(QString::fromStdString(Tree.Root("t")));
  }

  QStringList Compare() {
    Choose();
    Click("cmdCompare");
    return Lines();
  }

  /// What the grid shows: "name | message | fix source | fix target".
  QStringList Lines() {
    QStringList lines;
    const QAbstractItemModel& grid = Form->Grid();
    for (int row = 0; row < grid.rowCount(); ++row) {
      QStringList cells;
      for (int column : {1, 3}) cells << grid.index(row, column).data().toString();
      for (int column : {4, 5}) {
        const QString key = Box(row, column);
        if (!key.isEmpty()) cells << key;
      }
      lines << cells.join(u" | "_s);
    }
    return lines;
  }

  QString Box(int row, int column) {
    const QIcon picture = Form->Grid().index(row, column).data(Qt::DecorationRole).value<QIcon>();
    if (picture.isNull()) return u"-"_s;
    if (picture.cacheKey() == Images.imgCheckON.cacheKey()) return u"x"_s;
    return picture.cacheKey() == Images.imgCheckOFF.cacheKey() ? u"o"_s : u"?"_s;
  }

  void ClickCell(int row, int column) {
    auto& grid = Get<FlexGrid>("grdCompare");
    const QRect cell = grid.visualRect(grid.model()->index(row, column));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell.center());
  }

  QString Status() { return Get<StatusBar>("stbCompare").PanelText(u"MESSAGE"_s); }

  void BothFiles(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string name = "folder" + std::to_string(i) + "/file";
      Tree.File("s/" + name, "x", 0);
      Tree.File("t/" + name, "x", 0);
    }
  }
};

}  // namespace brackwell
