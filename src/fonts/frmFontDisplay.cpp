#include "fonts/frmFontDisplay.h"

#include <QAction>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>

#include "common/Busy.h"
#include "common/Files.h"
#include "common/FormHelpers.h"
#include "common/Html.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/Numeric.h"
#include "common/RunProgram.h"
#include "controls/LineEdit.h"
#include "controls/ListView.h"
#include "controls/WebView.h"
#include "fonts/FontList.h"
#include "fonts/FontSample.h"
#include "platform/Registry.h"
#include "platform/TempFolder.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr char FontsKey[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";

struct Preset {
  QStringView MenuText;
  QStringView Key;
};

constexpr Preset Presets[] = {
    {u"The quick brown fox...", u"QBF"},
    {u"ASCII 32 - 127", u"ASC127"},
    {u"ASCII 32 - 255", u"ASC255"},
};

QLabel* NewHeading(const QString& name, const QString& caption, QWidget* parent) {
  return Named(new QLabel(caption, parent), name, QString(caption).remove(u'&'));
}

/// The text as it is: what a text box gives as its plain text has blanks in the place of characters that are
/// none.
std::string TextOf(const QPlainTextEdit& box) {
  QString text = box.document()->toRawText();
  text.replace(QChar::ParagraphSeparator, u'\n');
  text.replace(QChar::LineSeparator, u'\n');
  return text.toStdString();
}

}  // namespace

frmFontDisplay::frmFontDisplay(Services& services) : ToolWindow(services) {
  setObjectName(u"frmFontDisplay"_s);
  setWindowTitle(u"Font Sample"_s);

  // Built in the order in which Tab visits them.
  QLayout* fontsHeading = BuildFonts();
  QLayout* textHeading = BuildText();
  QLayout* style = BuildStyle();
  BuildSample();
  QLayout* buttons = BuildButtons();

  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setHorizontalSpacing(Margin);
  layout->setVerticalSpacing(Spacing);
  layout->addLayout(fontsHeading, 0, 0);
  layout->addWidget(lvwFonts, 1, 0, 3, 1);
  layout->addLayout(textHeading, 0, 1);
  layout->addWidget(txtText, 1, 1);
  layout->addLayout(style, 2, 1);
  layout->addWidget(webSample, 3, 1);
  layout->addLayout(buttons, 4, 0, 1, 2);
  layout->setColumnStretch(0, 2);
  layout->setColumnStretch(1, 5);
  layout->setRowStretch(1, 1);
  layout->setRowStretch(3, 3);

  ConnectHandlers();
  Form_Load();
}

QSize frmFontDisplay::sizeHint() const { return ForFont(*this, QSize(860, 600)); }

QLayout* frmFontDisplay::BuildFonts() {
  hdgFonts = NewHeading(u"hdgFonts"_s, u"&Fonts"_s, this);
  cmdAll = {NewAllButton(0, u"CheckAll"_s, u"Check all fonts"_s),
            NewAllButton(1, u"UncheckAll"_s, u"Uncheck all fonts"_s)};
  mFonts = new FontList(this);
  lvwFonts = Named(new ListView(this), u"lvwFonts"_s, u"Fonts"_s);
  lvwFonts->SetCheckboxes(true);
  lvwFonts->setModel(mFonts);
  lvwFonts->setSelectionMode(QAbstractItemView::ExtendedSelection);  // for copying
  lvwFonts->setHeaderHidden(true);
  lvwFonts->setMinimumWidth(lvwFonts->fontMetrics().averageCharWidth() * 20);
  lvwFonts->installEventFilter(this);
  hdgFonts->setBuddy(lvwFonts);
  lvwFonts->setFocus();  // though Tab comes by the buttons above it first

  auto* heading = new QHBoxLayout;
  heading->setSpacing(2);
  heading->addWidget(hdgFonts, 1);
  for (QToolButton* button : cmdAll) heading->addWidget(button);
  return heading;
}

QToolButton* frmFontDisplay::NewAllButton(int index, const QString& picture, const QString& toolTip) {
  auto* button = Named(new QToolButton(this), u"cmdAll(%1)"_s.arg(index), toolTip);
  button->setIcon(mServices.Images.GetPicture(picture));
  button->setToolTip(toolTip);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

QLayout* frmFontDisplay::BuildText() {
  hdgText = NewHeading(u"hdgText"_s, u"&Text to sample"_s, this);
  auto* presets = Named(new QToolButton(this), u"Presets"_s, u"Presets"_s);
  presets->setText(u"Presets"_s);
  presets->setPopupMode(QToolButton::InstantPopup);
  presets->setFocusPolicy(Qt::TabFocus);
  presets->setMenu(new QMenu(presets));
  for (const Preset& preset : Presets)
    presets->menu()->addAction(preset.MenuText.toString())->setObjectName(preset.Key.toString());
  tlbText = Named(new QToolBar(this), u"tlbText"_s, u"Sample text"_s);
  tlbText->layout()->setContentsMargins(0, 0, 0, 0);
  tlbText->addWidget(presets);
  connect(presets->menu(), &QMenu::triggered, this,
          [this](const QAction* entry) { tlbText_ButtonMenuClick(*entry); });

  txtText =
      Named(new QPlainTextEdit(u"ABCDEFG abcdefg 1234567890"_s, this), u"txtText"_s, u"Text to sample"_s);
  txtText->setTabChangesFocus(true);
  txtText->setMinimumHeight(txtText->fontMetrics().lineSpacing() * 3);
  hdgText->setBuddy(txtText);

  auto* heading = new QHBoxLayout;
  heading->addWidget(hdgText, 1);
  heading->addWidget(tlbText);
  return heading;
}

QLayout* frmFontDisplay::BuildStyle() {
  hdgFontSize = NewHeading(u"hdgFontSize"_s, u"Si&ze (points)"_s, this);
  txtFontSize = Named(new LineEdit(this), u"txtFontSize"_s, u"Size (points)"_s);
  txtFontSize->setText(u"12"_s);
  txtFontSize->setFixedWidth(txtFontSize->fontMetrics().horizontalAdvance(u"00000000"_s));
  hdgFontSize->setBuddy(txtFontSize);
  chkBold = NewStyleButton(u"chkBold"_s, u"Bold"_s);
  chkItalic = NewStyleButton(u"chkItalic"_s, u"Italics"_s);
  chkUnderline = NewStyleButton(u"chkUnderline"_s, u"Underline"_s);
  chkStrikethru = NewStyleButton(u"chkStrikethru"_s, u"Strike-thru"_s);

  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addWidget(hdgFontSize);
  layout->addWidget(txtFontSize);
  for (QToolButton* box : {chkBold, chkItalic, chkUnderline, chkStrikethru}) layout->addWidget(box);
  layout->addStretch();
  return layout;
}

/// A check box that looks like a button, pushed in where it is ticked.
QToolButton* frmFontDisplay::NewStyleButton(const QString& name, const QString& caption) {
  auto* box = Named(new QToolButton(this), name, caption);
  box->setText(caption);
  box->setCheckable(true);
  return box;
}

void frmFontDisplay::BuildSample() {
  const BusyPointer busy;  // the browser starts
  webSample = Named(new WebView(this), u"webSample"_s, u"Sample"_s);
}

QLayout* frmFontDisplay::BuildButtons() {
  cmdSample = Named(new QPushButton(u"&Sample"_s, this), u"cmdSample"_s, u"Sample"_s);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);

  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addStretch();
  layout->addWidget(cmdSample);
  layout->addWidget(cmdClose);
  return layout;
}

void frmFontDisplay::ConnectHandlers() {
  for (int i = 0; i < static_cast<int>(cmdAll.size()); ++i)
    connect(cmdAll[i], &QToolButton::clicked, this, [this, i] { cmdAll_Click(i); });
  connect(cmdSample, &QPushButton::clicked, this, &frmFontDisplay::cmdSample_Click);
  connect(cmdClose, &QPushButton::clicked, this, &frmFontDisplay::Unload);
}

void frmFontDisplay::Form_Load() {
  LoadFontList();
  webSample->Navigate(QUrl(u"about:blank"_s));
}

void frmFontDisplay::LoadFontList() {
  const BusyPointer busy;  // the system may have to look into every font first
  KeyValues fonts = RegEnumKeyValues(std::to_string(HkeyLocalMachine), FontsKey);
  const QString heading = u"Fonts - %1"_s.arg(fonts.Count);
  hdgFonts->setText(u'&' + heading);
  hdgFonts->setAccessibleName(heading);
  for (std::string& name : fonts.Names) name = CleanFontName(name);
  mFonts->SetFonts(std::move(fonts.Names));
}

void frmFontDisplay::Form_Activate() { mServices.tlbMain_ENABLE(u"Print"_s, true); }
void frmFontDisplay::Form_Deactivate() { mServices.tlbMain_ENABLE(u"Print"_s, false); }

/// One column, as wide as the list; a width of 1 would be a twip.
void frmFontDisplay::Form_Resize() { ListView_ColumnResize(*lvwFonts, {0.999}); }

void frmFontDisplay::Form_Unload() { Form_Deactivate(); }

bool frmFontDisplay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lvwFonts && event->type() == QEvent::Resize) Form_Resize();
  return ToolWindow::eventFilter(watched, event);
}

void frmFontDisplay::cmdAll_Click(int index) { mFonts->CheckAll(index == 0); }

void frmFontDisplay::tlbText_ButtonMenuClick(const QAction& entry) {
  txtText->setPlainText(QString::fromStdString(PresetText(entry.objectName().toStdString())));
}

void frmFontDisplay::cmdSample_Click() {
  if (txtText->document()->isEmpty()) {
    Complain(u"Please specify the text sample to display"_s);
    txtText->setFocus();
  } else if (!IsNumeric(txtFontSize->text().toStdString())) {
    Complain(u"Please specify a valid numeric font size"_s);
    txtFontSize->setFocus();
  } else {
    try {
      if (CountCheckedItems(*lvwFonts) == 0)
        return Complain(u"Please select one or more fonts to include in the sample"_s);
      BuildFontSample();
    } catch (const FileSystemError& error) {
      MsgBox(this, ToShownText(error.Description()) + u"\n"_s + ToShownText(error.Path()), MsgIcon::Critical,
             windowTitle());
    } catch (const std::overflow_error& error) {
      MsgBox(this, QString::fromUtf8(error.what()), MsgIcon::Critical, windowTitle());
    }
  }
}

void frmFontDisplay::Complain(const QString& text) {
  MsgBox(this, text, MsgIcon::Exclamation, windowTitle());
}

void frmFontDisplay::BuildFontSample() {
  const BusyPointer busy;
  const FontSample sample{.Title = windowTitle().toStdString(),
                          .Fonts = mFonts->CheckedFonts(),
                          .Text = TextOf(*txtText),
                          .Size = txtFontSize->text().toStdString(),
                          .Bold = chkBold->isChecked(),
                          .Italic = chkItalic->isChecked(),
                          .Underline = chkUnderline->isChecked(),
                          .Strikethru = chkStrikethru->isChecked()};
  const std::string path = ReportPath("font_sample.htm");
  WriteTextFile(mServices.Files, path, true, HtmlToAscii(ToHtml(sample)));
  webSample->Navigate(QUrl::fromLocalFile(QString::fromStdString(path)));
}

void frmFontDisplay::PrintData() {
  const QUrl shown = webSample->LocationURL();
  if (shown.isLocalFile()) RunProgram(this, shown.toLocalFile().toStdString());
}

}  // namespace brackwell
