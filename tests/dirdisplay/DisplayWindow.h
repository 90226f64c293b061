#pragma once

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QThread>

#include <functional>

#include "common/Settings.h"
#include "controls/FolderTree.h"
#include "controls/ListView.h"
#include "dirdisplay/frmDirDisplay.h"
#include "support/OwnFolders.h"
#include "support/StandInOpener.h"
#include "support/ToolInArea.h"

namespace brackwell {

/// A directory display in a main window's area, its home folder a temporary tree. What it writes goes into a
/// folder of its own.
class DisplayWindow : public ToolInArea<frmDirDisplay> {
 public:
  explicit DisplayWindow(int failAt = 0, FileError error = FileError::PermissionDenied)
      : ToolInArea(failAt, error) {
    Show(new frmDirDisplay(Lent), {1000, 800}, {900, 700});
    for (const char* list : {"lvwFolderInfo", "lvwFileInfo"}) Watch(*Get<ListView>(list).model());
  }
  ~DisplayWindow() { delete Frame; }  // before the folders that it works with

  /// In the midst of a run, at the n-th call of the file system in its walk: that one waits until it is done,
  /// and those after it take their time.
  void AtCall(int call, const std::function<void()>& action) {
    constexpr int CallsBefore = 1;  // the output file is tried
    Files.OnCall = [this, call = call + CallsBefore, action] {
      if (Files.Calls() == call)
        QMetaObject::invokeMethod(&Area, action, Qt::BlockingQueuedConnection);
      else if (Files.Calls() > call)
        QThread::msleep(5);
    };
  }

  void Choose(const std::string& path) {
    auto& tree = Get<FolderTree>("FolderTree");
    tree.SetSelectedFolder(path);
    QTRY_COMPARE(tree.SelectedFolder(), path);
  }

  /// Everything that a display needs: the tree's folder, names and nothing else.
  void ChooseAll(int format) {
    Choose(Tree.Path());
    Get<QRadioButton>(qPrintable(u"optFormat(%1)"_s.arg(format))).setChecked(true);
    Check("lvwFolderInfo", u"Full Name"_s);
    Check("lvwFileInfo", u"Name"_s);
  }

  void Check(const char* list, const QString& caption, bool checked = true) {
    QAbstractItemModel& items = *Get<ListView>(list).model();
    items.setData(items.index(Row(list, caption), 0), checked ? Qt::Checked : Qt::Unchecked,
                  Qt::CheckStateRole);
  }

  int Row(const char* list, const QString& caption) {
    const QAbstractItemModel& items = *Get<ListView>(list).model();
    for (int row = 0; row < items.rowCount(); ++row)
      if (items.index(row, 0).data().toString() == caption) return row;
    return -1;
  }

  void ClickItem(const char* list, const QString& caption) {
    auto& view = Get<ListView>(list);
    const QModelIndex item = view.model()->index(Row(list, caption), 0);
    view.scrollTo(item);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(item).center());
  }

  /// "Name" or, checked, "+Name".
  QStringList Items(const char* list) {
    QStringList captions;
    const QAbstractItemModel& items = *Get<ListView>(list).model();
    for (int row = 0; row < items.rowCount(); ++row) {
      const QModelIndex item = items.index(row, 0);
      captions << (item.data(Qt::CheckStateRole).toInt() == Qt::Checked ? u"+"_s : QString()) +
                      item.data().toString();
    }
    return captions;
  }

  /// Which of a list's two buttons can be pressed: "up", "down", "up down" or nothing.
  QString Moves(const char* list) {
    const QString buttons = u"cmdMove%1(%2)"_s.arg(QString::fromLatin1(list).mid(3));
    QStringList moves;
    if (Get<QPushButton>(qPrintable(buttons.arg(0))).isEnabled()) moves << u"up"_s;
    if (Get<QPushButton>(qPrintable(buttons.arg(1))).isEnabled()) moves << u"down"_s;
    return moves.join(u' ');
  }

  QByteArray Written(const char* name) {
    QFile file(Output.filePath(QString::fromLatin1(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir Output;
  OwnHomeFolder Home{Tree.Path()};
  OwnTempFolder Temporary{Output.path().toStdString()};
  StandInOpener Opener;
};

}  // namespace brackwell
