#pragma once

#include <QAbstractItemModelTester>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/FlexGrid.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "shell/frmImages.h"
#include "support/FailingFileSystem.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/TempTree.h"

namespace brackwell {

using namespace Qt::StringLiterals;

/// A comparison window in a main window's area, on a temporary tree with the folders "s" and "t".
class ComparisonWindow {
 public:
  explicit ComparisonWindow(int failAt = 0) : Files(failAt, FileError::PermissionDenied) {
    Tree.Folder("s");
    Tree.Folder("t");
    Area.resize(900, 700);
    Area.show();
    Form = new frmCompare(Lent);
    Frame = Area.addSubWindow(Form);
    Frame->resize(800, 600);
    Frame->show();
    mTester = std::make_unique<QAbstractItemModelTester>(
        &Form->Grid(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  }

  template <typename Control>
  Control& Get(const char* name) {
    auto* control = Form->findChild<Control*>(QString::fromLatin1(name));
    if (!control) qFatal("no control %s", name);
    return *control;
  }

  void Choose() {
    Get<uctSelectDir>("uctSelSource").SetFolder(QString::fromStdString(Tree.Root("s")));
    Get<uctSelectDir>("uctSelTarget").SetFolder(QString::fromStdString(Tree.Root("t")));
  }

  void Click(const char* button) { QTest::mouseClick(&Get<QPushButton>(button), Qt::LeftButton); }

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

  TempTree Tree;
  FailingFileSystem Files;
  frmImages Images;
  QStringList Enabled;
  Services Lent{.Files = Files, .Images = Images, .tlbMain_ENABLE = [this](const QString& key, bool on) {
                  Enabled << key + (on ? u"+"_s : u"-"_s);
                }};
  MessageBoxes Boxes;
  QMdiArea Area;
  QPointer<frmCompare> Form;
  QPointer<QMdiSubWindow> Frame;

 private:
  std::unique_ptr<QAbstractItemModelTester> mTester;
};

}  // namespace brackwell
