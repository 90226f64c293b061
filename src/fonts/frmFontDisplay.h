#pragma once

#include <array>

#include "common/ToolWindow.h"

class QAction;
class QLabel;
class QLayout;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QToolBar;
class QToolButton;

namespace brackwell {

class FontList;
class ListView;
class WebView;

/// The window of the font sampler: check fonts, say what is to be shown in them and how, see the sample.
class frmFontDisplay : public ToolWindow {
  Q_OBJECT

 public:
  explicit frmFontDisplay(Services& services);

  void Form_Activate() override;
  void Form_Deactivate() override;

  QSize sizeHint() const override;

  /// Opens the page that webSample shows in the user's browser, to be printed there. Nothing before the first
  /// sample.
  Q_INVOKABLE void PrintData();

  /// The items of lvwFonts.
  FontList& Fonts() const { return *mFonts; }

 protected:
  void Form_Unload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLayout* BuildFonts();  // gives the row above the list
  QLayout* BuildText();   // gives the row above the text
  QLayout* BuildStyle();
  void BuildSample();
  QLayout* BuildButtons();
  QToolButton* NewAllButton(int index, const QString& picture, const QString& toolTip);
  QToolButton* NewStyleButton(const QString& name, const QString& caption);
  void ConnectHandlers();

  void Form_Load();
  void Form_Resize();
  void LoadFontList();

  void cmdAll_Click(int index);
  void cmdSample_Click();
  void tlbText_ButtonMenuClick(const QAction& entry);

  /// Raises what the temporary folder refuses.
  void BuildFontSample();
  void Complain(const QString& text);

  QLabel* hdgFonts;
  ListView* lvwFonts;
  std::array<QToolButton*, 2> cmdAll;
  QLabel* hdgText;
  QPlainTextEdit* txtText;
  QToolBar* tlbText;
  QLabel* hdgFontSize;
  QLineEdit* txtFontSize;
  QToolButton* chkBold;
  QToolButton* chkItalic;
  QToolButton* chkUnderline;
  QToolButton* chkStrikethru;
  QPushButton* cmdSample;
  WebView* webSample;
  QPushButton* cmdClose;

  FontList* mFonts;
};

}  // namespace brackwell
