#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "common/Settings.h"
#include "controls/FolderTree.h"
#include "controls/ListView.h"
#include "controls/StatusBar.h"
#include "rename/RenameList.h"
#include "rename/frmRename.h"
#include "support/ToolInArea.h"

namespace brackwell {

/// A rename window in a main window's area, on a temporary tree with the folder "images".
class RenameWindow : public ToolInArea<frmRename> {
 public:
  explicit RenameWindow(int failAt = 0) : ToolInArea(failAt) {
    Tree.Folder("images");
    auto* form = new frmRename(Lent);
    Show(form, {1100, 800}, form->sizeHint());
    Area.activateWindow();
    if (!QTest::qWaitForWindowActive(&Area)) qFatal("no active window");
    Watch(Form->List());
  }
  ~RenameWindow() {
    for (const QString& key : {u"JPG"_s, u"GIF"_s, u"BMP"_s, u"WMF"_s, u"other0"_s, u"other1"_s})
      DeleteSetting(u"Rename"_s, key);
  }

  FolderTree& Folders() { return Get<FolderTree>("FolderTree"); }
  ListView& View() { return Get<ListView>("lvwFiles"); }
  QLineEdit& Other(int index) {
    return Get<QLineEdit>(index == 0 ? "txtOtherExtension(0)" : "txtOtherExtension(1)");
  }
  QPushButton& Move(int index) { return Get<QPushButton>(index == 0 ? "cmdMoveItem(0)" : "cmdMoveItem(1)"); }

  void Add(const QStringList& names, const std::string& folder = "images") {
    for (const QString& name : names) Tree.File(folder + "/" + name.toStdString(), name.toStdString());
  }

  /// Selects a folder of the tree; false where it does not come to that.
  bool Choose(const std::string& name = "images") {
    const std::string path = Tree.Path(name);
    return Folders().SetSelectedFolder(path) &&
           QTest::qWaitFor([&] { return Folders().SelectedFolder() == path; });
  }

  QCheckBox& Extension(const QString& caption) {
    for (QCheckBox* box : Form->findChildren<QCheckBox*>())
      if (box->text() == caption) return *box;
    qFatal("no such extension");
  }

  /// All files of the folder, listed.
  bool ChooseAll(const std::string& name = "images") {
    Other(0).setText(u"*"_s);
    return Choose(name);
  }

  void SetNames(const QString& prefix, const QString& start) {
    Get<QLineEdit>("txtPrefix").setText(prefix);
    Get<QLineEdit>("txtStartNum").setText(start);
    Click("cmdSetNames");
  }

  /// Yes to the question, and the message at the end.
  void Rename() {
    Boxes.AnswerNext(QMessageBox::Yes);
    Click("cmdRename");
  }

  void Select(int row) { View().setCurrentIndex(Form->List().index(row, 0)); }

  /// What the list shows: "[x] a.jpg -> x1.JPG".
  QStringList Lines() {
    QStringList lines;
    const QAbstractItemModel& list = Form->List();
    for (int row = 0; row < list.rowCount(); ++row) {
      const bool checked = list.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
      const QString newName = list.index(row, 1).data().toString();
      lines << (checked ? u"[x] "_s : u"[ ] "_s) + list.index(row, 0).data().toString() +
                   (newName.isEmpty() ? QString() : u" -> "_s + newName);
    }
    return lines;
  }

  QStringList OnDisk(const std::string& folder = "images") {
    QStringList names;
    for (const std::string& name : Tree.List(folder)) names << QString::fromStdString(name);
    return names;
  }

  QString Panel(const QString& key) { return Get<StatusBar>("stbRename").PanelText(key); }
};

}  // namespace brackwell
