#pragma once

#include <QDir>
#include <QLineEdit>
#include <QPushButton>

#include "common/Settings.h"
#include "controls/ListView.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "replace/ReplaceList.h"
#include "replace/frmReplace.h"
#include "support/ToolInArea.h"

namespace brackwell {

/// A find-and-replace window in a main window's area, on a temporary tree with the folder "t".
class ReplaceWindow : public ToolInArea<frmReplace> {
 public:
  explicit ReplaceWindow(int failAt = 0) : ToolInArea(failAt) {
    Tree.Folder("t");
    Show(new frmReplace(Lent), {1000, 700}, {860, 600});
    Watch(Form->List());
  }

  void Choose() { Get<uctSelectDir>("uctSelectDir").SetFolder(QString::fromStdString(Tree.Root("t"))); }
  void Type(const char* box, const QString& text) { Get<QLineEdit>(box).setText(text); }

  /// The folder, "txt" files and the phrases.
  void Fill(const QString& find = u"abc"_s, const QString& replace = u"X"_s) {
    Choose();
    Type("txtExtensions", u"txt"_s);
    Type("txtFind", find);
    Type("txtReplace", replace);
  }

  QStringList Find() {
    Click("cmdFind");
    return Lines();
  }
  QStringList Replace() {
    Click("cmdReplace");
    return Lines();
  }

  /// What the list shows: "name: result", the name without the tree's own folder, "/" between its elements on
  /// every system.
  QStringList Lines() {
    const QString root = QString::fromStdString(Tree.Root("t"));
    QStringList lines;
    const QAbstractItemModel& list = Form->List();
    for (int row = 0; row < list.rowCount(); ++row) {
      const QString path = list.index(row, ReplaceList::FileColumn).data().toString();
      lines << (path.startsWith(root) ? QDir::fromNativeSeparators(path.mid(root.size())) : path) + u": "_s +
                   list.index(row, ReplaceList::ResultColumn).data().toString();
    }
    return lines;
  }

  QString ResultHeader() {
    return Form->List().headerData(ReplaceList::ResultColumn, Qt::Horizontal, Qt::DisplayRole).toString();
  }

  QString Panel(const QString& key) { return Get<StatusBar>("stbReplace").PanelText(key); }
  /// All three panels, "|" between them.
  QString Status() { return Panel(u"MESSAGE"_s) + u'|' + Panel(u"NUM1"_s) + u'|' + Panel(u"NUM2"_s); }

  /// Files "0.txt", "1.txt", ... that hold the phrase "abc" once.
  void HoldingFiles(int count) {
    for (int i = 0; i < count; ++i) Tree.File("t/" + std::to_string(i) + ".txt", "abc");
  }
  int Replaced(int count) {
    int replaced = 0;
    for (int i = 0; i < count; ++i)
      if (Tree.Read("t/" + std::to_string(i) + ".txt") != "abc") ++replaced;
    return replaced;
  }
};

/// Forgets what windows have stored.
inline void ForgetReplaceSettings() {
  for (const QString& key : {u"Folder"_s, u"Extensions"_s, u"Exclude"_s, u"SaveFormValues"_s})
    DeleteSetting(u"Replace"_s, key);
}

}  // namespace brackwell
