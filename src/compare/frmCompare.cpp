#include "compare/frmCompare.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include "common/Busy.h"
#include "common/Files.h"
#include "common/FormHelpers.h"
#include "common/FormProgress.h"
#include "common/Html.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/RunProgram.h"
#include "common/Settings.h"
#include "common/Text.h"
#include "compare/CompareFixer.h"
#include "compare/CompareGrid.h"
#include "compare/CompareReport.h"
#include "compare/frmCompareInfo.h"
#include "controls/ContextMenu.h"
#include "controls/FlexGrid.h"
#include "controls/LineEdit.h"
#include "controls/StatusBar.h"
#include "controls/uctSelectDir.h"
#include "platform/TempFolder.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"Compare"_s;
const QString MessagePanel = u"MESSAGE"_s;
constexpr const char* TagProperty = "Tag";

struct OptionText {
  QStringView Tag;  // the settings key
  QStringView Caption;
};

constexpr std::array<OptionText, 7> OptionTexts{{
    {u"SRC_NOT_TGT", u"Flag when file exists in SOURCE but does not exist in TARGET"},
    {u"TGT_NOT_SRC", u"Flag when file exists in TARGET but does not exist in SOURCE"},
    {u"SRC_NEWER", u"Flag when file in SOURCE is newer than file in TARGET"},
    {u"TGT_NEWER", u"Flag when file in TARGET is newer than file in SOURCE"},
    {u"SRC_SIZE", u"Flag when there is a difference in size of SOURCE and TARGET file"},
    {u"DIR_IN_SRC", u"Flag when sub-folder exists in SOURCE but does not exist in TARGET"},
    {u"DIR_IN_TGT", u"Flag when sub-folder exists in TARGET but does not exist in SOURCE"},
}};

/// Tidies the text in the box as well, so that the user sees what counts.
std::vector<std::string> ReadList(QLineEdit& box) {
  const std::string tidy = TidyList(box.text().toStdString());
  const QString text = QString::fromStdString(tidy);
  if (text != box.text()) box.setText(text);
  return SplitList(tidy);
}

}  // namespace

frmCompare::frmCompare(Services& services) : ToolWindow(services) {
  setObjectName(u"frmCompare"_s);
  setWindowTitle(u"Directory Comparison"_s);

  // Built from top to bottom: this is the order in which Tab visits them.
  auto* controls = new QGridLayout;
  BuildFolders();
  QLayout* buttons = BuildButtons();
  BuildOptions();
  BuildGrid();
  stbCompare = Named(new StatusBar(this), u"stbCompare"_s, u"Status"_s);
  stbCompare->AddPanel(MessagePanel);

  // The selectors keep a margin at their right themselves; the others leave the same one.
  controls->setContentsMargins(Margin, Margin, 0, 0);
  controls->setHorizontalSpacing(0);
  controls->setVerticalSpacing(Spacing);
  controls->setColumnMinimumWidth(1, Margin);
  controls->addWidget(uctSelSource, 0, 0, 1, 2);
  controls->addWidget(uctSelTarget, 1, 0, 1, 2);
  controls->addLayout(buttons, 2, 0);
  controls->addWidget(mOptionsPlace, 3, 0);
  controls->addWidget(grdCompare, 3, 0);
  controls->setRowStretch(3, 1);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(controls);
  layout->addWidget(stbCompare);

  ConnectHandlers();
  Form_Load();
}

QSize frmCompare::sizeHint() const { return ForFont(*this, QSize(1000, 600)); }

void frmCompare::BuildFolders() {
  const auto selector = [this](const QString& name) {
    auto* control = new uctSelectDir(mServices.Files, mServices.Images.BrowseFF, this);
    control->setObjectName(name);
    return control;
  };
  uctSelSource = selector(u"uctSelSource"_s);
  uctSelTarget = selector(u"uctSelTarget"_s);
}

QLayout* frmCompare::BuildButtons() {
  cmdCompare = Named(new QPushButton(u"Co&mpare"_s, this), u"cmdCompare"_s, u"Compare"_s);
  cmdFix = Named(new QPushButton(u"&Fix"_s, this), u"cmdFix"_s, u"Fix"_s);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);
  chkShowOptions = Named(new QCheckBox(u"&Options"_s, this), u"chkShowOptions"_s, u"Options"_s);
  QSizePolicy keepsItsPlace = cmdFix->sizePolicy();
  keepsItsPlace.setRetainSizeWhenHidden(true);
  cmdFix->setSizePolicy(keepsItsPlace);
  cmdFix->hide();

  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addWidget(cmdCompare);
  layout->addWidget(cmdFix);
  layout->addWidget(cmdClose);
  layout->addStretch();
  layout->addWidget(chkShowOptions);
  return layout;
}

void frmCompare::BuildOptions() {
  fraOptions = Named(new QGroupBox(u"Directory Comparison Options"_s, this), u"fraOptions"_s,
                     u"Directory Comparison Options"_s);
  auto* layout = new QGridLayout(fraOptions);
  const int frameLine = fraOptions->contentsMargins().right();
  layout->setContentsMargins(Margin, Margin, Margin - frameLine, Margin);
  for (int i = 0; i < OptionCount; ++i) {
    const QString caption = OptionTexts[i].Caption.toString();
    chkOption[i] = Named(new QCheckBox(caption, fraOptions), u"chkOption(%1)"_s.arg(i), caption);
    chkOption[i]->setProperty(TagProperty, OptionTexts[i].Tag.toString());
    chkOption[i]->setChecked(true);
    layout->addWidget(chkOption[i], i, 0, 1, 2);
  }
  chkSubfolders =
      Named(new QCheckBox(u"Compare subfolders"_s, fraOptions), u"chkSubfolders"_s, u"Compare subfolders"_s);
  chkSubfolders->setChecked(true);
  layout->addWidget(chkSubfolders, OptionCount, 0, 1, 2);

  const auto filter = [&](int row, QLabel*& heading, QLineEdit*& box, const QString& name,
                          const QString& caption) {
    heading = Named(new QLabel(caption, fraOptions), u"hdg"_s + name, caption);
    box = Named(new LineEdit(fraOptions), u"txt"_s + name, caption);
    box->setToolTip(u"Separate several with \";\""_s);
    box->installEventFilter(this);
    heading->setBuddy(box);
    layout->addWidget(heading, row, 0);
    layout->addWidget(box, row, 1);
  };
  filter(OptionCount + 1, hdgExtensions, txtExtensions, u"Extensions"_s,
         u"Exclude files with extension(s)"_s);
  filter(OptionCount + 2, hdgPrefix, txtPrefix, u"Prefix"_s, u"Exclude files/folders that begin with:"_s);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(OptionCount + 3, 1);

  mOptionsPlace = new QScrollArea(this);
  mOptionsPlace->setWidgetResizable(true);
  mOptionsPlace->setFrameShape(QFrame::NoFrame);
  mOptionsPlace->setFocusPolicy(Qt::NoFocus);
  mOptionsPlace->setWidget(fraOptions);
  mOptionsPlace->hide();
  fraOptions->hide();
}

void frmCompare::BuildGrid() {
  mGrid = new CompareGrid(ComparePictures::From(mServices.Images), this);
  grdCompare = Named(new FlexGrid(this), u"grdCompare"_s, u"Comparison results"_s);
  grdCompare->setModel(mGrid);
  grdCompare->installEventFilter(this);
  grdCompare->SetColumnElide(CompareGrid::NameColumn, Qt::ElideMiddle);
  grdCompare->SetColumnElide(CompareGrid::MessageColumn, Qt::ElideMiddle);  // its end says "(FIXED)"
}

void frmCompare::ConnectHandlers() {
  connect(cmdCompare, &QPushButton::clicked, this, &frmCompare::cmdCompare_Click);
  connect(cmdFix, &QPushButton::clicked, this, &frmCompare::cmdFix_Click);
  connect(cmdClose, &QPushButton::clicked, this, &frmCompare::Unload);
  connect(chkShowOptions, &QCheckBox::toggled, this, &frmCompare::chkShowOptions_Click);
  connect(chkSubfolders, &QCheckBox::clicked, this, &frmCompare::chkSubfolders_Click);
  for (int i = 0; i < OptionCount; ++i)
    connect(chkOption[i], &QCheckBox::clicked, this, [this, i] { chkOption_Click(i); });
  connect(txtExtensions, &QLineEdit::textEdited, this,
          [](const QString& text) { SaveSetting(Section, u"Extensions"_s, text); });
  connect(txtPrefix, &QLineEdit::textEdited, this,
          [](const QString& text) { SaveSetting(Section, u"Prefix"_s, text); });
  connect(grdCompare, &FlexGrid::CellClicked, this, &frmCompare::grdCompare_Click);
  connect(grdCompare, &FlexGrid::CellActivated, this, &frmCompare::grdCompare_DblClick);
  connect(grdCompare, &FlexGrid::MenuAsked, this, &frmCompare::grdCompare_Menu);

  auto* stop = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(stop, &QShortcut::activated, this, &frmCompare::StopRun);
}

void frmCompare::Form_Load() {
  uctSelSource->SetCaption(u"Source Directory"_s);
  uctSelSource->SetFolder(GetSetting(Section, u"SourceFolder"_s));
  uctSelTarget->SetCaption(u"Target Directory"_s);
  uctSelTarget->SetFolder(GetSetting(Section, u"TargetFolder"_s));
  LoadCompareSettings();
  InitCompareGrid();
}

void frmCompare::LoadCompareSettings() {
  for (QCheckBox* option : chkOption)
    LoadCheckBox(*option, Section, option->property(TagProperty).toString());
  txtExtensions->setText(GetSetting(Section, u"Extensions"_s));
  txtPrefix->setText(GetSetting(Section, u"Prefix"_s));
  LoadCheckBox(*chkSubfolders, Section, u"CompareSubfolders"_s);
}

void frmCompare::InitCompareGrid() { mGrid->Init(); }

void frmCompare::Form_Activate() { mServices.tlbMain_ENABLE(u"Print"_s, true); }
void frmCompare::Form_Deactivate() { mServices.tlbMain_ENABLE(u"Print"_s, false); }

void frmCompare::Form_Resize() { FlexGrid_ColumnResize(*grdCompare, {500, 0.5, 500, 0.3, 0.1, 0.1}); }

void frmCompare::Form_Unload() {
  Form_Deactivate();
  if (GetSettingFlag(Section, u"SaveFolders"_s, true)) {
    SaveSetting(Section, u"SourceFolder"_s, uctSelSource->Folder());
    SaveSetting(Section, u"TargetFolder"_s, uctSelTarget->Folder());
  } else {
    DeleteSetting(Section, u"SourceFolder"_s);
    DeleteSetting(Section, u"TargetFolder"_s);
  }
}

void frmCompare::chkOption_Click(int index) {
  SaveSetting(Section, chkOption[index]->property(TagProperty).toString(), CheckValue(*chkOption[index]));
}

void frmCompare::chkSubfolders_Click() {
  SaveSetting(Section, u"CompareSubfolders"_s, CheckValue(*chkSubfolders));
}

/// The columns follow the grid, which gets its size only when it shows: the options may hide it while the
/// window is resized. A box tidied by a comparison is stored with the next key, edited or not.
bool frmCompare::eventFilter(QObject* watched, QEvent* event) {
  if (watched == grdCompare && event->type() == QEvent::Resize) Form_Resize();
  if (event->type() == QEvent::KeyRelease) {
    if (watched == txtExtensions) SaveSetting(Section, u"Extensions"_s, txtExtensions->text());
    if (watched == txtPrefix) SaveSetting(Section, u"Prefix"_s, txtPrefix->text());
  }
  return ToolWindow::eventFilter(watched, event);
}

void frmCompare::chkShowOptions_Click() {
  mOptionsPlace->setVisible(chkShowOptions->isChecked());
  fraOptions->setVisible(chkShowOptions->isChecked());
  grdCompare->setVisible(!chkShowOptions->isChecked());
}

void frmCompare::cmdCompare_Click() {
  if (!CheckFolders()) return;
  chkShowOptions->setChecked(false);
  if (IsRunning()) {
    // Clicked during a comparison: the one on the stack has to come back before another can start.
    mCompareAgain = true;
    StopRun();
    return;
  }
  std::optional<FileSystemError> failure;
  do {
    mCompareAgain = false;
    InitCompareGrid();
    failure = RunComparison();
  } while (mCompareAgain && !CloseAsked());
  if (failure)
    MsgBox(this, ToShownText(failure->Description()) + u"\n"_s + ToShownText(failure->Path()),
           MsgIcon::Critical, windowTitle());
}

bool frmCompare::CheckFolders() {
  return CheckFolder(*uctSelSource, u"Please select the source folder."_s,
                     u"The source folder does not exist."_s) &&
         CheckFolder(*uctSelTarget, u"Please select the target folder."_s,
                     u"The target folder does not exist."_s);
}

bool frmCompare::CheckFolder(const uctSelectDir& selector, const QString& nonePicked,
                             const QString& notThere) {
  if (selector.Folder().isEmpty()) {
    MsgBox(this, nonePicked, MsgIcon::Exclamation, windowTitle());
    return false;
  }
  if (mServices.Files.FolderExists(ToNativePath(selector.Folder()))) return true;
  MsgBox(this, notThere, MsgIcon::Critical, windowTitle());
  return false;
}

CompareOptions frmCompare::ReadOptions() {
  CompareOptions options;
  options.ExtensionList = ReadList(*txtExtensions);
  options.PrefixList = ReadList(*txtPrefix);
  options.SourceRoot = ToNativePath(uctSelSource->Folder());
  options.TargetRoot = ToNativePath(uctSelTarget->Folder());
  options.FlagSourceFileMissing = chkOption[0]->isChecked();
  options.FlagTargetFileMissing = chkOption[1]->isChecked();
  options.FlagSourceNewer = chkOption[2]->isChecked();
  options.FlagTargetNewer = chkOption[3]->isChecked();
  options.FlagSizes = chkOption[4]->isChecked();
  options.FlagSourceFolderMissing = chkOption[5]->isChecked();
  options.FlagTargetFolderMissing = chkOption[6]->isChecked();
  options.CompareSubfolders = chkSubfolders->isChecked();
  options.ShowFullPath = mShowFullPath;
  return options;
}

std::optional<FileSystemError> frmCompare::RunComparison() {
  const Run run(*this);
  const BusyPointer busy;
  cmdFix->setEnabled(false);  // rows may still be ticked, but not fixed while others come in
  bool finished = false;
  try {
    finished = WalkBothTrees();
  } catch (const FileSystemError& error) {
    mGrid->Publish();
    cmdFix->setEnabled(true);
    return error;
  }
  mGrid->RemoveEmptyRow();
  mGrid->Sort();
  grdCompare->setCurrentIndex(mGrid->index(0, CompareGrid::NameColumn));
  cmdFix->show();
  cmdFix->setEnabled(true);
  ShowMessage(finished ? QString() : u"Stopped: the list is not complete."_s);
  return std::nullopt;
}

/// False when it was stopped before its end.
bool frmCompare::WalkBothTrees() {
  mShowFullPath = GetSettingNumber(Section, u"ShowFullPath"_s, 0) == 1;
  FormProgress progress({.ShowMessage = [this](const QString& text) { ShowMessage(text); },
                         .ShowResults = [this] { mGrid->Publish(); },
                         .Stopped = [this] { return StopAsked(); }});
  const CompareOptions options = ReadOptions();
  progress.Message("Checking " + options.SourceRoot);
  progress.DoEvents();
  return CompareEngine(mServices.Files, options, progress,
                       [this](CompareRow row) { mGrid->AddCompareRow(std::move(row)); })
      .RunComparison();
}

void frmCompare::grdCompare_Click(int row, int column) {
  if (!mGrid->Toggle(row, column)) return;
  const CompareRow& toggled = mGrid->Rows()[row];
  const bool sourceTicked = column == CompareGrid::FixSourceColumn && toggled.FixSource == FixBox::On;
  const bool targetTicked = column == CompareGrid::FixTargetColumn && toggled.FixTarget == FixBox::On;
  if (sourceTicked) grdCompare->setCurrentIndex(mGrid->index(row, CompareGrid::FixTargetColumn));
  if (targetTicked) grdCompare->setCurrentIndex(mGrid->index(row, CompareGrid::FixSourceColumn));
}

void frmCompare::grdCompare_DblClick(int row) {
  if (row >= static_cast<int>(mGrid->Rows().size())) return;  // the empty row
  const CompareRow& item = mGrid->Rows()[row];
  frmCompareInfo info(mServices.Files, this);
  info.SourceRoot = ToNativePath(uctSelSource->Folder());
  info.TargetRoot = ToNativePath(uctSelTarget->Folder());
  info.ObjectName = item.Name;
  if (mShowFullPath)
    info.ObjectName = ReplaceRoot(item.Name, IsTargetSide(item.Kind) ? info.TargetRoot : info.SourceRoot, {});
  info.ObjectType = IsFile(item.Kind) ? u"File"_s : u"Folder"_s;
  GiveHelpKey(info, mServices.ShowHelp);
  info.exec();
}

void frmCompare::grdCompare_Menu(const QModelIndex& cell, const QPoint& screenPosition) {
  QMenu* menu = NewContextMenu(*grdCompare);
  AddTickItems(*menu);
  if (cell.isValid() && cell.row() < static_cast<int>(mGrid->Rows().size())) AddItemsOf(*menu, cell);
  menu->popup(screenPosition);
}

/// Not while rows come in: those to come would stay as they are, and nothing would show which.
void frmCompare::AddTickItems(QMenu& menu) {
  const auto add = [&](const QString& name, const QString& caption, TickAll what) {
    AddMenuItem(menu, name, caption, this, [this, what] {
      if (!IsRunning()) mGrid->TickRows(what);
    })->setEnabled(!IsRunning() && !mGrid->Rows().empty());
  };
  add(u"mnuTickSource"_s, u"Tick All Fix &Source"_s, TickAll::FixSource);
  add(u"mnuTickTarget"_s, u"Tick All Fix &Target"_s, TickAll::FixTarget);
  add(u"mnuTickNewer"_s, u"Tick &Newer to Older"_s, TickAll::NewerToOlder);
  add(u"mnuTickNothing"_s, u"&Untick All"_s, TickAll::Nothing);
}

void frmCompare::AddItemsOf(QMenu& menu, const QModelIndex& cell) {
  const CompareRow& item = mGrid->Rows()[cell.row()];
  const bool asksTarget = cell.column() == CompareGrid::FixTargetColumn ||
                          (cell.column() != CompareGrid::FixSourceColumn && IsTargetSide(item.Kind));
  const bool isTarget = asksTarget ? IsInTarget(item) : !IsInSource(item);
  const FixPaths paths = PathsOf(item, {.SourceRoot = ToNativePath(uctSelSource->Folder()),
                                        .TargetRoot = ToNativePath(uctSelTarget->Folder()),
                                        .ShowFullPath = mShowFullPath});
  menu.addSeparator();
  AddItemActions(menu, *this, isTarget ? paths.Target : paths.Source,
                 isTarget ? u"Target Item"_s : u"Source Item"_s);
  menu.addSeparator();
  AddMenuItem(menu, u"mnuDetails"_s, u"&Details"_s, this, [this, place = QPersistentModelIndex(cell)] {
    if (place.isValid()) grdCompare_DblClick(place.row());
  });
}

void frmCompare::cmdFix_Click() {
  if (IsRunning()) return;  // a screen reader presses buttons without the input that a fix throws away
  FixSelected();
  // The focus would go to the next button, where one more press of a key closes the window.
  if (window()->focusWidget() == cmdFix) grdCompare->setFocus();
  cmdFix->hide();
}

void frmCompare::FixSelected() {
  std::size_t fixCount = 0;
  {
    const Run run(*this);
    const BusyPointer busy;
    const InputBlocker blocker;
    const FixOptions options{.SourceRoot = ToNativePath(uctSelSource->Folder()),
                             .TargetRoot = ToNativePath(uctSelTarget->Folder()),
                             .ShowFullPath = mShowFullPath};
    FormProgress progress({.ShowMessage = [this](const QString& text) { ShowMessage(text); },
                           .ShowResults = [] {},
                           .Stopped = [] { return false; }});
    CompareRows& rows = mGrid->Rows();
    fixCount = brackwell::FixSelected(
        mServices.Files, options, rows,
        {.Fixing = [&](std::size_t row) { progress.Message("Fixing " + rows[row].Name); },
         .Problem =
             [&](std::size_t row, const FileSystemError& error) {
               progress.ShowLast();  // behind the message stands what it is about
               TellProblem(rows[row], error);
             },
         .Fixed = [&](std::size_t row) { mGrid->RowChanged(row); },
         .Working = [&] { progress.DoEvents(); }});
    progress.ShowLast();
  }
  MsgBox(this, u"%1 files/folders have been fixed."_s.arg(fixCount), MsgIcon::Information, windowTitle());
}

void frmCompare::TellProblem(const CompareRow& row, const FileSystemError& error) {
  MsgBox(this,
         u"There was a problem fixing "_s + (IsFile(row.Kind) ? u"file "_s : u"folder "_s) +
             ToShownText(row.Name) + u"\nError: "_s + QString::number(error.Number()) + u"\nDescription: "_s +
             QString::fromStdString(error.Description()),
         MsgIcon::Exclamation, windowTitle());
}

void frmCompare::PrintData() {
  CompareReport report{
      .Title = windowTitle().toStdString(),
      .ProgramFolder = ToNativePath(QDir::toNativeSeparators(QCoreApplication::applicationDirPath())),
      .GridWidth = static_cast<double>(grdCompare->width()),
      .Rows = mGrid->Rows(),
      .HasEmptyRow = mGrid->HasEmptyRow()};
  for (int column = 0; column < 4; ++column) {
    report.Headers[column] =
        mGrid->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString();
    report.ColumnWidths[column] = grdCompare->columnWidth(column);
  }
  const std::string path = ReportPath("dir_compare.htm");
  WriteTextFile(mServices.Files, path, true, HtmlToAscii(ToHtml(report)));
  grdCompare->setCurrentIndex(mGrid->index(mGrid->rowCount() - 1, CompareGrid::MessageColumn));
  RunProgram(this, path);
}

void frmCompare::ShowMessage(const QString& text) { stbCompare->SetPanelText(MessagePanel, text); }

}  // namespace brackwell
