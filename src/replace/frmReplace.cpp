#include "replace/frmReplace.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "common/Busy.h"
#include "common/Files.h"
#include "common/FormHelpers.h"
#include "common/FormProgress.h"
#include "common/Html.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/RunProgram.h"
#include "common/Settings.h"
#include "controls/ContextMenu.h"
#include "controls/LineEdit.h"
#include "controls/ListView.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "platform/CaseRules.h"
#include "platform/TempFolder.h"
#include "replace/ReplaceList.h"
#include "replace/ReplaceReport.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"Replace"_s;
const QString MessagePanel = u"MESSAGE"_s;
const QString ItemPanel = u"NUM1"_s;
const QString CountPanel = u"NUM2"_s;

bool IsSaving() { return GetSettingFlag(Section, u"SaveFormValues"_s, true); }

template <typename Error>
QString ErrorText(const Error& error, const std::string& description) {
  return u"Error: "_s + QString::number(error.Number()) + u"\nDescription: "_s +
         QString::fromStdString(description) + u"\n"_s + ToShownText(error.Path());
}

}  // namespace

frmReplace::frmReplace(Services& services) : ToolWindow(services) {
  setObjectName(u"frmReplace"_s);
  setWindowTitle(u"Find and Replace"_s);

  // Built from top to bottom: this is the order in which Tab visits them.
  auto* controls = new QVBoxLayout;
  uctSelectDir = new class uctSelectDir(mServices.Files, mServices.Images.BrowseFF, this);
  uctSelectDir->setObjectName(u"uctSelectDir"_s);
  QLayout* filters = BuildFilters();
  QLayout* phrases = BuildPhrases();
  BuildList();
  QLayout* buttons = BuildButtons();
  BuildStatusBar();

  // The selector keeps a margin at its right itself; the others leave the same one.
  auto* below = new QVBoxLayout;
  below->setContentsMargins(0, 0, Margin, 0);
  below->setSpacing(Spacing);
  below->addLayout(filters);
  below->addLayout(phrases);
  below->addWidget(lvwResults, 1);
  below->addLayout(buttons);
  controls->setContentsMargins(Margin, Margin, 0, 0);
  controls->setSpacing(Spacing);
  controls->addWidget(uctSelectDir);
  controls->addLayout(below, 1);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(controls);
  layout->addWidget(stbReplace);

  ConnectHandlers();
  Form_Load();
}

QSize frmReplace::sizeHint() const { return ForFont(*this, QSize(860, 560)); }

QSize frmReplace::minimumSizeHint() const {
  const int width = ToolWindow::minimumSizeHint().width();
  return {width, layout()->totalMinimumHeightForWidth(width)};
}

void frmReplace::NewBox(QLabel*& heading, QLineEdit*& box, const QString& name, const QString& caption,
                        const QString& toolTip) {
  heading = Named(new QLabel(caption, this), u"hdg"_s + name, caption);
  heading->setWordWrap(true);  // where the window is narrow
  heading->setToolTip(toolTip);
  box = Named(new LineEdit(this), u"txt"_s + name, caption);
  box->setToolTip(toolTip);
  heading->setBuddy(box);
}

QLayout* frmReplace::BuildFilters() {
  NewBox(hdgExtensions, txtExtensions, u"Extensions"_s, u"Search in files with these extensions"_s,
         u"Do not include the dot and separate each extension with a semi-colon."_s);
  NewBox(hdgExclude, txtExclude, u"Exclude"_s, u"Exclude files/subfolders that begin with"_s,
         u"Separate values with semi-colons"_s);
  chkSubdir =
      Named(new QCheckBox(u"Scan subdirectories?"_s, this), u"chkSubdir"_s, u"Scan subdirectories?"_s);

  auto* layout = new QGridLayout;
  layout->setHorizontalSpacing(Margin);
  layout->setVerticalSpacing(2);
  layout->addWidget(hdgExtensions, 0, 0, Qt::AlignBottom);
  layout->addWidget(txtExtensions, 1, 0);
  layout->addWidget(hdgExclude, 0, 1, Qt::AlignBottom);
  layout->addWidget(txtExclude, 1, 1);
  layout->addWidget(chkSubdir, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setColumnStretch(1, 1);
  return layout;
}

QLayout* frmReplace::BuildPhrases() {
  NewBox(hdgFind, txtFind, u"Find"_s, u"Enter the phrase that you want to find within the files."_s);
  NewBox(hdgReplace, txtReplace, u"Replace"_s,
         u"Enter the phrase that you want to replace the found text with"_s);

  auto* layout = new QVBoxLayout;
  layout->setSpacing(2);
  layout->addWidget(hdgFind);
  layout->addWidget(txtFind);
  layout->addSpacing(Spacing - 2);
  layout->addWidget(hdgReplace);
  layout->addWidget(txtReplace);
  return layout;
}

void frmReplace::BuildList() {
  mList = new ReplaceList(this);
  lvwResults = Named(new ListView(this), u"lvwResults"_s, u"Results"_s);
  lvwResults->setModel(mList);
  lvwResults->setSelectionMode(QAbstractItemView::ExtendedSelection);  // for copying
  lvwResults->setTextElideMode(Qt::ElideMiddle);  // the ends of a path tell more than its middle
  lvwResults->installEventFilter(this);
}

QLayout* frmReplace::BuildButtons() {
  cmdFind = Named(new QPushButton(u"&Find Only"_s, this), u"cmdFind"_s, u"Find Only"_s);
  cmdReplace = Named(new QPushButton(u"Find and &Replace"_s, this), u"cmdReplace"_s, u"Find and Replace"_s);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);

  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addStretch();
  layout->addWidget(cmdFind);
  layout->addWidget(cmdReplace);
  layout->addWidget(cmdClose);
  return layout;
}

void frmReplace::BuildStatusBar() {
  stbReplace = Named(new StatusBar(this), u"stbReplace"_s, u"Status"_s);
  const int numberWidth = fontMetrics().horizontalAdvance(u"0000000000"_s);
  stbReplace->AddPanel(MessagePanel);
  stbReplace->AddFixedPanel(ItemPanel, numberWidth);
  stbReplace->AddFixedPanel(CountPanel, numberWidth);
}

void frmReplace::ConnectHandlers() {
  connect(txtExtensions, &QLineEdit::textChanged, this, &frmReplace::txtExtensions_Change);
  connect(txtExclude, &QLineEdit::textChanged, this, &frmReplace::txtExclude_Change);
  connect(cmdFind, &QPushButton::clicked, this, &frmReplace::cmdFind_Click);
  connect(cmdReplace, &QPushButton::clicked, this, &frmReplace::cmdReplace_Click);
  connect(cmdClose, &QPushButton::clicked, this, &frmReplace::Unload);
  connect(lvwResults, &ListView::MenuAsked, this, &frmReplace::lvwResults_Menu);

  auto* stop = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(stop, &QShortcut::activated, this, [this] {
    mNext.reset();
    StopRun();
  });
}

void frmReplace::Form_Load() {
  uctSelectDir->SetCaption(u"Select folder to search"_s);
  uctSelectDir->SetPrompt(u"Select folder to search"_s);
  uctSelectDir->SetFolder(GetSetting(Section, u"Folder"_s));
  txtExtensions->setText(GetSetting(Section, u"Extensions"_s));
  txtExclude->setText(GetSetting(Section, u"Exclude"_s));
}

void frmReplace::Form_Activate() { mServices.tlbMain_ENABLE(u"Print"_s, true); }
void frmReplace::Form_Deactivate() { mServices.tlbMain_ENABLE(u"Print"_s, false); }

/// A result has room for a count of six digits, the path has the rest.
void frmReplace::Form_Resize() { ListView_ColumnResize(*lvwResults, {0.999, ForFont(*this, 2500)}); }

bool frmReplace::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lvwResults && event->type() == QEvent::Resize) Form_Resize();
  return ToolWindow::eventFilter(watched, event);
}

void frmReplace::Form_Unload() {
  Form_Deactivate();
  if (IsSaving()) SaveSetting(Section, u"Folder"_s, uctSelectDir->Folder());
}

void frmReplace::txtExtensions_Change() {
  if (IsSaving()) SaveSetting(Section, u"Extensions"_s, txtExtensions->text());
}

void frmReplace::txtExclude_Change() {
  if (IsSaving()) SaveSetting(Section, u"Exclude"_s, txtExclude->text());
}

void frmReplace::cmdFind_Click() { Start(false); }
void frmReplace::cmdReplace_Click() { Start(true); }

void frmReplace::lvwResults_Menu(const QModelIndex& item, const QPoint& screenPosition) {
  if (!item.isValid()) return;
  QMenu* menu = NewContextMenu(*lvwResults);
  AddItemActions(*menu, *this, mList->Rows()[static_cast<std::size_t>(item.row())].Path);
  menu->popup(screenPosition);
}

void frmReplace::Start(bool replaceMode) {
  if (QApplication::activeModalWidget()) return;  // a screen reader presses buttons behind a question, too
  if (!MayStart(replaceMode)) return;
  // Read at once: what is run is what the user was asked about.
  mNext = ReadOptions(replaceMode);
  if (IsRunning()) return StopRun();  // it has to come back before another can start
  while (mNext && !CloseAsked()) RunOnce(*std::exchange(mNext, std::nullopt));
}

/// Nothing is stopped or cleared before everything is checked and confirmed.
bool frmReplace::MayStart(bool replaceMode) {
  std::optional<Run> asking;
  if (!IsRunning()) asking.emplace(*this);  // no window is closed under its own message box
  if (!CheckFolder() || !CheckExtensions()) return false;
  if (replaceMode) return CheckPhrase() && ConfirmReplacement();
  return CheckSeparators() && CheckPhrase();
}

bool frmReplace::CheckFolder() {
  const QString folder = uctSelectDir->Folder();
  return Require(!folder.isEmpty(), u"Please select the path to find files in."_s) &&
         Require(mServices.Files.FolderExists(ToNativePath(folder)),
                 u"Please path you selected does not exist."_s);
}

bool frmReplace::CheckExtensions() {
  return Require(!txtExtensions->text().isEmpty(),
                 u"Please select the extensions of the files you want to search in."_s, txtExtensions);
}

bool frmReplace::CheckSeparators() {
  return Require(!txtExtensions->text().contains(u'*'),
                 u"Do not use the asterisk wildcard when specifying extensions."_s, txtExtensions) &&
         Require(!txtExtensions->text().contains(u','),
                 u"Separate multiple file extensions with semi-colons, not commas."_s, txtExtensions);
}

bool frmReplace::CheckPhrase() {
  return Require(!txtFind->text().isEmpty(), u"Please specify the text string to find."_s, txtFind);
}

bool frmReplace::ConfirmReplacement() {
  const InputBlocker blocker;  // what was done before a question shows does not answer it
  if (txtReplace->text().isEmpty() &&
      !MsgBoxYesNo(this, u"Are you sure you want to replace the 'find string' with nothing?"_s,
                   MsgIcon::Question, windowTitle()))
    return false;
  const bool isChange = Lower(txtFind->text().toStdString()) != Lower(txtReplace->text().toStdString());
  return Require(isChange, u"Your find and replace text strings are the same."_s, txtReplace) &&
         MsgBoxOkCancel(this, u"Please verify that you want to do the replacement."_s, MsgIcon::Question,
                        windowTitle());
}

/// Tells what is wrong, and leads to the box where it can be mended.
bool frmReplace::Require(bool isGood, const QString& warning, QLineEdit* box) {
  if (isGood) return true;
  MsgBox(this, warning, MsgIcon::Exclamation, windowTitle());
  if (box) box->setFocus();
  return false;
}

ReplaceOptions frmReplace::ReadOptions(bool replaceMode) const {
  return {.Folder = ToNativePath(uctSelectDir->Folder()),
          .Subfolders = chkSubdir->isChecked(),
          .ExtensionList = ParseList(txtExtensions->text().toStdString()),
          .ExclusionList = ParseList(txtExclude->text().toStdString()),
          .Find = txtFind->text().toStdString(),
          .Replace = txtReplace->text().toStdString(),
          .ReplaceMode = replaceMode};
}

void frmReplace::RunOnce(const ReplaceOptions& options) {
  const Run run(*this);
  PrepareList(options.ReplaceMode);
  const std::optional<QString> failure = ScanAndProcess(options);
  if (failure && !CloseAsked()) MsgBox(this, *failure, MsgIcon::Critical, windowTitle());
}

void frmReplace::PrepareList(bool replaceMode) {
  mList->Clear();
  mList->SetResultHeader(replaceMode ? u"Replaces"_s : u"Finds"_s);
  stbReplace->SetPanelText(ItemPanel, {});
  stbReplace->SetPanelText(CountPanel, {});
}

std::optional<QString> frmReplace::ScanAndProcess(const ReplaceOptions& options) {
  const BusyPointer busy;
  std::optional<ReplaceEngine> engine;
  FormProgress progress({.ShowMessage = [this](const QString& text) { ShowMessage(text); },
                         .ShowResults = [&] { ShowResults(*engine); },
                         .Stopped = [this] { return StopAsked(); }});
  const auto tellProblem = [&](ReplaceProblem problem, const ReplaceRow& row) {
    progress.ShowLast();
    ShowResults(*engine);
    MsgBox(this, QString::fromStdString(ProblemText(problem, row.Path)), MsgIcon::Exclamation, windowTitle());
  };
  engine.emplace(mServices.Files, options, progress, mList->Rows(), tellProblem);
  std::optional<QString> failure;
  try {
    const bool isListed = engine->ScanFolder();
    stbReplace->SetPanelText(CountPanel, QString::number(mList->Rows().size()));
    if (isListed) engine->ProcessFiles();
  } catch (const FileSystemError& error) {
    failure = ErrorText(error, error.Description());
  } catch (const OverflowError& error) {
    failure = ErrorText(error, error.what());
  }
  mList->PublishRows();
  ShowResults(*engine);
  ShowMessage(QString::fromStdString(TotalText(engine->Total(), options.ReplaceMode)));
  return failure;
}

void frmReplace::ShowResults(const ReplaceEngine& engine) {
  mList->Publish(engine.Item());
  if (engine.Item() > 0) stbReplace->SetPanelText(ItemPanel, QString::number(engine.Item()));
}

void frmReplace::ShowMessage(const QString& text) { stbReplace->SetPanelText(MessagePanel, text); }

void frmReplace::PrintData() {
  ReplaceReport report{.Title = windowTitle().toStdString(),
                       .Folder = uctSelectDir->Folder().toStdString(),
                       .Extensions = txtExtensions->text().toStdString(),
                       .Exclude = txtExclude->text().toStdString(),
                       .Find = txtFind->text().toStdString(),
                       .Replace = txtReplace->text().toStdString(),
                       .ListWidth = static_cast<double>(lvwResults->width()),
                       .Rows = mList->Rows()};
  for (int column = 0; column < ReplaceList::ColumnCount; ++column) {
    report.Headers[column] =
        mList->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString();
    report.ColumnWidths[column] = lvwResults->columnWidth(column);
  }
  const std::string path = ReportPath("replace.htm");
  WriteTextFile(mServices.Files, path, true, HtmlToAscii(ToHtml(report)));
  RunProgram(this, path);
}

}  // namespace brackwell
