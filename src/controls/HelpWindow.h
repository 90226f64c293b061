#pragma once

#include <QMainWindow>

#include "help/ChmFile.h"

class QAction;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QSplitter;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace brackwell {

class HelpPage;

/// Shows a compiled help file: contents, index and search beside the page. Closing only hides it. Size and
/// zoom are remembered.
class HelpWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit HelpWindow(ChmFile file);

  // Each shows the window and brings it to the front.
  void ShowContents();
  void ShowSearch();
  void ShowTopic(const QString& topic);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildToolbar();
  QAction* AddAction(const QString& name, const QString& caption, const QList<QKeySequence>& keys,
                     void (HelpWindow::*handler)());
  void BuildPanes();
  QWidget* BuildContents();
  QWidget* BuildIndex();
  QWidget* BuildSearch();
  QWidget* BuildPage();
  QWidget* BuildFindBar();
  void ConnectHandlers();

  void Form_Load();
  void Form_Unload();
  void BringForward(int tab);

  void FollowContents(const QTreeWidgetItem* item);
  void FollowIndex(const QListWidgetItem* item);
  void FollowHit(const QListWidgetItem* item);
  void PageChanged(const QUrl& address);
  void txtIndex_Change();
  void txtSearch_Change();

  void cmdBack_Click();
  void cmdForward_Click();
  void cmdSmaller_Click();
  void cmdLarger_Click();
  void cmdUsualSize_Click();
  void cmdFind_Click();
  void cmdNext_Click();
  void cmdPrevious_Click();
  void Escape();
  void Find(bool backward);

  const ChmFile mFile;
  QString mTopic;  // that is shown

  QAction* cmdBack;
  QAction* cmdForward;
  QSplitter* mPanes;
  QTabWidget* sstHelp;
  QTreeWidget* trvContents;
  QLineEdit* txtIndex;
  QListWidget* lstIndex;
  QLineEdit* txtSearch;
  QListWidget* lstHits;
  QLabel* lblHits;
  HelpPage* mPage;
  QWidget* fraFind;
  QLineEdit* txtFind;
  QLabel* lblFind;
};

}  // namespace brackwell
