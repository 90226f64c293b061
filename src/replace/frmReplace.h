#pragma once

#include <optional>

#include "common/ToolWindow.h"
#include "replace/ReplaceEngine.h"

class QCheckBox;
class QLabel;
class QLayout;
class QLineEdit;
class QModelIndex;
class QPoint;
class QPushButton;

namespace brackwell {

class ListView;
class ReplaceList;
class StatusBar;
class uctSelectDir;

/// The window of find and replace: choose a folder and which of its files count, name a phrase, find it or
/// replace it.
class frmReplace : public ToolWindow {
  Q_OBJECT

 public:
  explicit frmReplace(Services& services);

  void Form_Activate() override;
  void Form_Deactivate() override;

  /// Large enough for all captions, and for some paths.
  QSize sizeHint() const override;
  /// Has room for captions that take several lines.
  QSize minimumSizeHint() const override;

  /// Shows the list and what was searched for as a page in the user's browser, to be printed there. Raises
  /// what the temporary folder refuses.
  Q_INVOKABLE void PrintData();

  /// The rows behind lvwResults.
  ReplaceList& List() const { return *mList; }

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLayout* BuildFilters();
  QLayout* BuildPhrases();
  void BuildList();
  QLayout* BuildButtons();
  void BuildStatusBar();
  void NewBox(QLabel*& heading, QLineEdit*& box, const QString& name, const QString& caption,
              const QString& toolTip = {});
  void ConnectHandlers();

  void Form_Load();
  void Form_Resize();

  void txtExtensions_Change();
  void txtExclude_Change();
  void cmdFind_Click();
  void cmdReplace_Click();
  void lvwResults_Menu(const QModelIndex& item, const QPoint& screenPosition);

  /// Checks, then runs; a run on the stack is ended first.
  void Start(bool replaceMode);
  bool MayStart(bool replaceMode);
  bool CheckFolder();
  bool CheckExtensions();
  bool CheckSeparators();
  bool CheckPhrase();
  bool ConfirmReplacement();
  bool Require(bool isGood, const QString& warning, QLineEdit* box = nullptr);
  ReplaceOptions ReadOptions(bool replaceMode) const;

  void RunOnce(const ReplaceOptions& options);
  void PrepareList(bool replaceMode);
  /// Gives what the user is to be told of the error that ended the run, if one did.
  std::optional<QString> ScanAndProcess(const ReplaceOptions& options);
  void ShowResults(const ReplaceEngine& engine);
  void ShowMessage(const QString& text);

  class uctSelectDir* uctSelectDir;
  QCheckBox* chkSubdir;
  QLabel* hdgExtensions;
  QLineEdit* txtExtensions;
  QLabel* hdgExclude;
  QLineEdit* txtExclude;
  QLabel* hdgFind;
  QLineEdit* txtFind;
  QLabel* hdgReplace;
  QLineEdit* txtReplace;
  ListView* lvwResults;
  QPushButton* cmdFind;
  QPushButton* cmdReplace;
  QPushButton* cmdClose;
  StatusBar* stbReplace;

  ReplaceList* mList;
  std::optional<ReplaceOptions> mNext;  // what to run as soon as the stack allows, as it was checked
};

}  // namespace brackwell
