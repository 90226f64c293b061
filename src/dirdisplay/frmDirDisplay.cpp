#include "dirdisplay/frmDirDisplay.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <new>
#include <system_error>

#include "common/Busy.h"
#include "common/FormHelpers.h"
#include "common/FormProgress.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/RunProgram.h"
#include "common/Settings.h"
#include "controls/ElidedLabel.h"
#include "controls/FolderTree.h"
#include "controls/ListView.h"
#include "dirdisplay/InfoListModel.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"DirectoryDisplay"_s;
enum { Up, Down };

QCheckBox* NewCheckBox(const QString& name, const QString& caption, QWidget* parent) {
  auto* box = Named(new QCheckBox(caption, parent), name, caption);
  box->setChecked(true);
  return box;
}

QGroupBox* NewFrame(const QString& name, const QString& caption, QWidget* parent) {
  return Named(new QGroupBox(caption, parent), name, caption);
}

InfoChoices StoredChoices(const QString& order, const QString& checks, std::span<const InfoItem> catalogue) {
  return RestoreInfoList(GetSetting(Section, order).toStdString(), GetSetting(Section, checks).toStdString(),
                         catalogue);
}

}  // namespace

frmDirDisplay::frmDirDisplay(Services& services) : ToolWindow(services) {
  setObjectName(u"frmDirDisplay"_s);
  setWindowTitle(u"Directory Display"_s);

  // Built in the order in which Tab visits them.
  QLayout* folder = BuildFolder();
  QGroupBox* format = BuildFormat();
  QGroupBox* folders = BuildFolders();
  QGroupBox* files = BuildFiles();
  QLayout* buttons = BuildButtons();

  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setHorizontalSpacing(Margin);
  layout->setVerticalSpacing(Spacing);
  layout->addLayout(folder, 0, 0, 3, 1);
  layout->addWidget(format, 0, 1);
  layout->addWidget(folders, 1, 1);
  layout->addWidget(files, 2, 1);
  layout->addLayout(buttons, 3, 0, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(1, 8);  // as many lines as the catalogues have
  layout->setRowStretch(2, 7);

  ConnectHandlers();
  Form_Load();
}

QSize frmDirDisplay::sizeHint() const { return ForFont(*this, QSize(860, 726)); }

QLayout* frmDirDisplay::BuildFolder() {
  const QString caption = u"Select Directory"_s;
  hdgDirectory = Named(new QLabel(u"&Select Directory"_s, this), u"hdgDirectory"_s, caption);
  lblDirectory = Named(new ElidedLabel(this), u"lblDirectory"_s, caption);
  lblDirectory->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  mFolderTree = new FolderTree(this);
  mFolderTree->setAccessibleName(caption);
  hdgDirectory->setBuddy(mFolderTree);

  auto* layout = new QVBoxLayout;
  layout->setSpacing(2);
  layout->addWidget(hdgDirectory);
  layout->addWidget(lblDirectory);
  layout->addSpacing(Spacing);
  layout->addWidget(mFolderTree, 1);
  return layout;
}

QGroupBox* frmDirDisplay::BuildFormat() {
  QGroupBox* frame = NewFrame(u"fraFormat"_s, u"Display Format"_s, this);
  auto* layout = new QHBoxLayout(frame);
  layout->setSpacing(2 * Margin);
  int index = 0;
  for (const QString& caption : {u"Text"_s, u"HTML Table"_s, u"XML"_s}) {
    optFormat[index] = Named(new QRadioButton(caption, frame), u"optFormat(%1)"_s.arg(index), caption);
    layout->addWidget(optFormat[index++]);
  }
  layout->addStretch();
  return frame;
}

QGroupBox* frmDirDisplay::BuildFolders() {
  QGroupBox* frame = NewFrame(u"fraFolders"_s, u"Folders"_s, this);
  auto* layout = new QVBoxLayout(frame);
  chkIncludeFolders = NewCheckBox(u"chkIncludeFolders"_s, u"Include folders in display?"_s, frame);
  chkSubfolders = NewCheckBox(u"chkSubfolders"_s, u"Include subfolders?"_s, frame);
  auto* boxes = new QHBoxLayout;
  boxes->setSpacing(2 * Margin);
  boxes->addWidget(chkIncludeFolders);
  boxes->addWidget(chkSubfolders);
  boxes->addStretch();
  layout->addLayout(boxes);
  layout->addLayout(BuildInfo(mFolderInfo, u"FolderInfo"_s, u"Show this folder data"_s));
  return frame;
}

QGroupBox* frmDirDisplay::BuildFiles() {
  QGroupBox* frame = NewFrame(u"fraFiles"_s, u"Files"_s, this);
  auto* layout = new QVBoxLayout(frame);
  chkIncludeFiles = NewCheckBox(u"chkIncludeFiles"_s, u"Include files in display?"_s, frame);
  layout->addWidget(chkIncludeFiles);
  layout->addLayout(BuildInfo(mFileInfo, u"FileInfo"_s, u"Show this file data"_s));
  return frame;
}

QLayout* frmDirDisplay::BuildInfo(InfoControls& controls, const QString& name, const QString& heading) {
  controls.Items = new InfoListModel(heading, this);
  controls.List = Named(new ListView(this), u"lvw"_s + name, heading);
  controls.List->SetCheckboxes(true);
  controls.List->setModel(controls.Items);
  controls.List->installEventFilter(this);

  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(Spacing);
  buttons->addStretch();
  for (const int index : {Up, Down}) {
    const QString toolTip = index == Up ? u"Move selected item up"_s : u"Move selected item down"_s;
    const QIcon& picture = index == Up ? mServices.Images.imgMoveUp : mServices.Images.imgMoveDown;
    QPushButton* button = Named(new QPushButton(picture, QString(), this),
                                u"cmdMove%1(%2)"_s.arg(name).arg(index), heading + u": "_s + toolTip);
    button->setToolTip(toolTip);
    button->setEnabled(false);  // until an item is selected
    buttons->addWidget(button);
    controls.Move[index] = button;
  }
  buttons->addStretch();

  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addWidget(controls.List);
  layout->addLayout(buttons);
  return layout;
}

QLayout* frmDirDisplay::BuildButtons() {
  cmdDisplay = Named(new QPushButton(u"&Display"_s, this), u"cmdDisplay"_s, u"Display"_s);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);
  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addStretch();
  layout->addWidget(cmdDisplay);
  layout->addWidget(cmdClose);
  return layout;
}

void frmDirDisplay::ConnectHandlers() {
  connect(mFolderTree, &FolderTree::FolderChanged, this, &frmDirDisplay::FolderTree_FolderChanged);
  connect(cmdDisplay, &QPushButton::clicked, this, &frmDirDisplay::cmdDisplay_Click);
  connect(cmdClose, &QPushButton::clicked, this, &frmDirDisplay::Unload);
  ConnectInfo(mFolderInfo);
  ConnectInfo(mFileInfo);

  auto* stop = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(stop, &QShortcut::activated, this, &frmDirDisplay::StopRun);
}

void frmDirDisplay::ConnectInfo(InfoControls& controls) {
  for (const int index : {Up, Down})
    connect(controls.Move[index], &QPushButton::clicked, this,
            [this, &controls, index] { cmdMoveInfo_Click(controls, index); });
  connect(controls.List->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this, &controls] { lvwInfo_ItemClick(controls); });
}

// --- load and unload -----------------------------------------------------------------

void frmDirDisplay::Form_Load() {
  const QString format = GetSetting(Section, u"DisplayFormat"_s);
  for (std::size_t index = 0; index < optFormat.size(); ++index)
    if (QString::number(index) == format) optFormat[index]->setChecked(true);
  LoadCheckBox(*chkIncludeFolders, Section, u"FolderInclude"_s);
  LoadCheckBox(*chkIncludeFiles, Section, u"FileInclude"_s);
  LoadCheckBox(*chkSubfolders, Section, u"FolderSubs"_s);
  LoadFolderInfoList();
  LoadFileInfoList();
}

void frmDirDisplay::LoadFolderInfoList() {
  mFolderInfo.Items->SetChoices(StoredChoices(u"FolderInfo"_s, u"FolderSelected"_s, FolderCatalogue()));
}

void frmDirDisplay::LoadFileInfoList() {
  mFileInfo.Items->SetChoices(StoredChoices(u"FileInfo"_s, u"FileSelected"_s, FileCatalogue()));
}

void frmDirDisplay::Form_Activate() { mFolderTree->Refresh(); }

void frmDirDisplay::Form_QueryUnload() { mFolderTree->Stop(); }

void frmDirDisplay::Form_Unload() {
  Form_QueryUnload();
  if (GetSettingNumber(Section, u"SaveFormValues"_s, 1) != 1) return;
  const auto text = [](const std::string& value) { return QString::fromStdString(value); };
  const InfoChoices& folderInfo = mFolderInfo.Items->Choices();
  const InfoChoices& fileInfo = mFileInfo.Items->Choices();
  SaveSettings({
      {Section, u"DisplayFormat"_s, QString::number(GetSelectedOption(optFormat))},
      {Section, u"FolderInfo"_s, text(InfoOrderText(folderInfo))},
      {Section, u"FolderSelected"_s, text(InfoChecksText(folderInfo))},
      {Section, u"FolderInclude"_s, CheckValue(*chkIncludeFolders)},
      {Section, u"FolderSubs"_s, CheckValue(*chkSubfolders)},
      {Section, u"FileInfo"_s, text(InfoOrderText(fileInfo))},
      {Section, u"FileSelected"_s, text(InfoChecksText(fileInfo))},
      {Section, u"FileInclude"_s, CheckValue(*chkIncludeFiles)},
  });
}

void frmDirDisplay::Form_Resize(const InfoControls& controls) {
  ListView_ColumnResize(*controls.List, {0.99});
}

// --- choose --------------------------------------------------------------------------

void frmDirDisplay::FolderTree_FolderChanged() {
  const QString folder = ToShownText(mFolderTree->SelectedFolder());
  lblDirectory->setText(folder);
  lblDirectory->setAccessibleDescription(folder);
}

void frmDirDisplay::cmdMoveInfo_Click(const InfoControls& controls, int index) {
  const int row = controls.List->currentIndex().row();
  if (!controls.Items->Move(row, index == Up ? row - 1 : row + 1)) return;
  controls.List->scrollTo(controls.List->currentIndex());
  lvwInfo_ItemClick(controls);
}

/// Any way to another item counts as a click. The focus selects an item as well: it is the one that keys
/// move.
void frmDirDisplay::lvwInfo_ItemClick(const InfoControls& controls) {
  const QModelIndex item = controls.List->currentIndex();
  if (item.isValid()) controls.List->selectionModel()->select(item, QItemSelectionModel::ClearAndSelect);
  const std::array<bool, 2> canMove{item.row() > 0,
                                    item.isValid() && item.row() < controls.Items->rowCount() - 1};
  for (const int direction : {Up, Down}) {
    // Else the focus would go to the other button, and one more press of a key would undo the last.
    if (!canMove[direction] && controls.Move[direction]->hasFocus()) controls.List->setFocus();
    controls.Move[direction]->setEnabled(canMove[direction]);
  }
}

bool frmDirDisplay::eventFilter(QObject* watched, QEvent* event) {
  for (const InfoControls* controls : {&mFolderInfo, &mFileInfo}) {
    if (watched != controls->List) continue;
    if (event->type() == QEvent::Resize) Form_Resize(*controls);
    if (event->type() != QEvent::KeyPress) continue;
    const auto& key = static_cast<QKeyEvent&>(*event);
    const bool isMove = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (!isMove || (key.modifiers() & ~Qt::KeypadModifier) != Qt::AltModifier) continue;
    cmdMoveInfo_Click(*controls, key.key() == Qt::Key_Up ? Up : Down);
    return true;
  }
  return ToolWindow::eventFilter(watched, event);
}

// --- display -------------------------------------------------------------------------

void frmDirDisplay::cmdDisplay_Click() {
  if (CheckChoices()) DisplayDirectory();
}

bool frmDirDisplay::CheckChoices() {
  if (lblDirectory->text().isEmpty())
    return Complain(u"Please select the directory that you wish to display"_s, *mFolderTree);
  if (GetSelectedOption(optFormat) < 0) return Complain(u"Please select the display format"_s, *optFormat[0]);
  if (!chkIncludeFolders->isChecked() && !chkIncludeFiles->isChecked())
    return Complain(u"You must include either folders, files, or both"_s, *chkIncludeFolders);
  if (chkIncludeFolders->isChecked() && CountCheckedItems(*mFolderInfo.List) == 0)
    return Complain(u"Please identify the folder data to include in the display"_s, *mFolderInfo.List);
  if (chkIncludeFiles->isChecked() && CountCheckedItems(*mFileInfo.List) == 0)
    return Complain(u"Please identify the file data to include in the display"_s, *mFileInfo.List);
  return true;
}

bool frmDirDisplay::Complain(const QString& text, QWidget& control) {
  MsgBox(this, text, MsgIcon::Exclamation, windowTitle());
  control.setFocus();
  return false;
}

DisplayOptions frmDirDisplay::ReadOptions() const {
  DisplayOptions options;
  options.IncludeFolders = chkIncludeFolders->isChecked();
  options.IncludeSubfolders = chkSubfolders->isChecked();
  options.IncludeFiles = chkIncludeFiles->isChecked();
  options.FolderInfo = CheckedItems(mFolderInfo.Items->Choices());
  options.FileInfo = CheckedItems(mFileInfo.Items->Choices());
  options.Folder = mFolderTree->SelectedFolder();
  options.Format = static_cast<DisplayFormat>(GetSelectedOption(optFormat));
  options.XmlType = GetSettingNumber(Section, u"XmlType"_s, 0).value_or(0);
  options.TextDelimiter = GetSetting(Section, u"TextDelimiter"_s, u"\t"_s).toStdString();
  options.ProgramFolder = ToNativePath(QDir::toNativeSeparators(QCoreApplication::applicationDirPath()));
  return options;
}

void frmDirDisplay::DisplayDirectory() {
  if (IsRunning()) {
    // Clicked during a run: the one on the stack has to come back before another can start.
    mDisplayAgain = true;
    StopRun();
    return;
  }
  do {
    mDisplayAgain = false;
    WriteAndOpen();
  } while (mDisplayAgain && !CloseAsked());
}

void frmDirDisplay::WriteAndOpen() {
  const auto tell = [this](const QString& text, const QString& title) {
    if (!StopAsked()) MsgBox(this, text, MsgIcon::Critical, title);
  };
  const Run run(*this);
  const BusyPointer busy;
  FormProgress progress({.ShowMessage = [](const QString&) {},
                         .ShowResults = [] {},
                         .Stopped = [this] { return StopAsked(); }});
  try {
    const auto path = brackwell::DisplayDirectory(
        mServices.Files, ReadOptions(), progress,
        [&](const std::string& text) { tell(QString::fromStdString(text), u"XmlApplyXsl"_s); });
    if (path) RunProgram(this, *path);
  } catch (const FileSystemError& error) {
    tell(u"There was a problem displaying "_s + ToShownText(error.Path()) + u"\nError: "_s +
             QString::number(error.Number()) + u"\nDescription: "_s + ToShownText(error.Description()),
         windowTitle());
  } catch (const std::bad_alloc&) {
    tell(u"There is not enough memory to display this folder."_s, windowTitle());
  } catch (const std::system_error&) {
    tell(u"This folder cannot be displayed: the system cannot start another thread."_s, windowTitle());
  }
}

}  // namespace brackwell
