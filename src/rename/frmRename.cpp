#include "rename/frmRename.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include "common/Busy.h"
#include "common/FormHelpers.h"
#include "common/FormProgress.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/Settings.h"
#include "controls/FolderTree.h"
#include "controls/LineEdit.h"
#include "controls/ListView.h"
#include "controls/StatusBar.h"
#include "rename/RenameList.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"Rename"_s;
const QString FolderPanel = u"FOLDER"_s;
const QString MessagePanel = u"MESSAGE"_s;
constexpr int ExtensionsInARow = 4;

constexpr std::array<QStringView, 20> Extensions{u"BMP", u"CAM",  u"CGM", u"DIB", u"EMF",  u"FPX", u"GIF",
                                                 u"IMG", u"JPEG", u"JPG", u"KDC", u"PCD",  u"PCX", u"PIC",
                                                 u"PNG", u"PSD",  u"PSP", u"TGA", u"TIFF", u"WMF"};

/// So that a small window can still reach every control.
QScrollArea* Scrolling(QWidget* controls) {
  auto* place = new QScrollArea;
  place->setWidgetResizable(true);
  place->setFrameShape(QFrame::NoFrame);
  place->setFocusPolicy(Qt::NoFocus);
  place->setWidget(controls);
  return place;
}

QString OtherKey(int index) { return u"other%1"_s.arg(index); }

}  // namespace

frmRename::frmRename(Services& services)
    : ToolWindow(services),
      mList(new RenameList(this)),
      mFolderFiles(services.Files),
      mCopies(services.Files) {
  setObjectName(u"frmRename"_s);
  setWindowTitle(u"Rename Image Files"_s);

  // Built in the order in which Tab visits them: down the left side, then down the right one.
  mFolderTree = new FolderTree(this);
  BuildExtensions();
  auto* left = new QVBoxLayout;
  left->addWidget(mFolderTree, 1);
  left->addWidget(fraExtension);

  auto* right = new QVBoxLayout;
  right->addLayout(BuildFiles(), 1);
  right->addLayout(BuildNaming());
  right->addLayout(BuildButtons());

  mControls = new QWidget;
  auto* controls = new QHBoxLayout(mControls);
  controls->setContentsMargins(Margin, Margin, Margin, 0);
  controls->setSpacing(Margin);
  controls->addLayout(left, 2);
  controls->addLayout(right, 3);
  for (QLayout* side : {static_cast<QLayout*>(left), static_cast<QLayout*>(right)}) side->setSpacing(Spacing);

  stbRename = Named(new StatusBar(this), u"stbRename"_s, u"Status"_s);
  stbRename->AddPanel(FolderPanel, 2);
  stbRename->AddPanel(MessagePanel, 3);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(Scrolling(mControls));
  layout->addWidget(stbRename);

  ConnectHandlers();
  Form_Load();
}

QSize frmRename::sizeHint() const { return ForFont(*this, QSize(960, 640)); }

/// Its controls scroll, so they ask for no size.
QSize frmRename::minimumSizeHint() const { return ForFont(*this, QSize(400, 300)); }

void frmRename::BuildExtensions() {
  const QString caption = u"Include these extensions"_s;
  fraExtension = Named(new QGroupBox(caption, this), u"fraExtension"_s, caption);
  auto* layout = new QGridLayout(fraExtension);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setVerticalSpacing(2);
  for (int i = 0; i < ExtensionCount; ++i) {
    const QString extension = Extensions[i].toString();
    chkExtension[i] = Named(new QCheckBox(extension, fraExtension), u"chkExtension(%1)"_s.arg(i), extension);
    layout->addWidget(chkExtension[i], i / ExtensionsInARow, i % ExtensionsInARow);
  }

  hdgOtherExtension = Named(new QLabel(u"Other"_s, fraExtension), u"hdgOtherExtension"_s, u"Other"_s);
  auto* others = new QHBoxLayout;
  others->setSpacing(Spacing);
  others->addWidget(hdgOtherExtension);
  for (int i = 0; i < 2; ++i) {
    txtOtherExtension[i] = Named(new LineEdit(fraExtension), u"txtOtherExtension(%1)"_s.arg(i),
                                 i == 0 ? u"Other"_s : u"Other, second"_s);
    txtOtherExtension[i]->setToolTip(u"An extension without its dot, or * for all files"_s);
    txtOtherExtension[i]->installEventFilter(this);
    others->addWidget(txtOtherExtension[i], 1);
  }
  hdgOtherExtension->setBuddy(txtOtherExtension[0]);
  layout->addLayout(others, ExtensionCount / ExtensionsInARow, 0, 1, ExtensionsInARow);
}

QLayout* frmRename::BuildFiles() {
  hdgFiles = Named(new QLabel(u"Files"_s, this), u"hdgFiles"_s, u"Files"_s);
  lvwFiles = Named(new ListView(this), u"lvwFiles"_s, u"Files"_s);
  lvwFiles->SetCheckboxes(true);
  lvwFiles->setModel(mList);
  lvwFiles->setTextElideMode(Qt::ElideMiddle);  // a new name's end is its number
  lvwFiles->installEventFilter(this);
  hdgFiles->setBuddy(lvwFiles);

  const frmImages& images = mServices.Images;
  cmdCheck = {PictureButton(u"cmdCheck(0)"_s, images.GetPicture(u"CheckAll"_s), u"Check All"_s),
              PictureButton(u"cmdCheck(1)"_s, images.GetPicture(u"UncheckAll"_s), u"Uncheck All"_s)};
  cmdMoveItem = {PictureButton(u"cmdMoveItem(0)"_s, images.imgMoveUp, u"Move selected item up"_s),
                 PictureButton(u"cmdMoveItem(1)"_s, images.imgMoveDown, u"Move selected item down"_s)};
  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(Spacing);
  for (QPushButton* button : cmdCheck) buttons->addWidget(button);
  buttons->addSpacing(2 * Spacing);
  for (QPushButton* button : cmdMoveItem) buttons->addWidget(button);
  buttons->addStretch();

  auto* layout = new QGridLayout;
  layout->setSpacing(Spacing);
  layout->addWidget(hdgFiles, 0, 0);
  layout->addWidget(lvwFiles, 1, 0);
  layout->addLayout(buttons, 1, 1);
  return layout;
}

QPushButton* frmRename::PictureButton(const QString& name, const QIcon& picture, const QString& toolTip) {
  auto* button = Named(new QPushButton(picture, {}, this), name, toolTip);
  button->setToolTip(toolTip);
  button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return button;
}

QLayout* frmRename::BuildNaming() {
  const auto heading = [this](const QString& name, const QString& caption, QLineEdit* box) {
    auto* label = Named(new QLabel(caption, this), name, caption);
    label->setBuddy(box);
    return label;
  };
  txtPrefix = Named(new LineEdit(this), u"txtPrefix"_s, u"Filename Prefix"_s);
  txtStartNum = Named(new LineEdit(this), u"txtStartNum"_s, u"Starting Number"_s);
  txtStartNum->setToolTip(u"With as many leading zeros as the numbers shall have"_s);
  hdgPrefix = heading(u"hdgPrefix"_s, u"Filename Prefix"_s, txtPrefix);
  hdgStartNum = heading(u"hdgStartNum"_s, u"Starting Number"_s, txtStartNum);
  const QString preserve = u"Preserve original files"_s;
  chkPreserve = Named(new QCheckBox(preserve, this), u"chkPreserve"_s, preserve);

  auto* layout = new QGridLayout;
  layout->setSpacing(Spacing);
  layout->addWidget(hdgPrefix, 0, 0);
  layout->addWidget(txtPrefix, 0, 1);
  layout->addWidget(hdgStartNum, 1, 0);
  layout->addWidget(txtStartNum, 1, 1);
  layout->addWidget(chkPreserve, 2, 1);
  return layout;
}

QLayout* frmRename::BuildButtons() {
  cmdSetNames = Named(new QPushButton(u"Set New Names"_s, this), u"cmdSetNames"_s, u"Set New Names"_s);
  cmdRename = Named(new QPushButton(u"&Rename"_s, this), u"cmdRename"_s, u"Rename"_s);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);
  auto* layout = new QHBoxLayout;
  layout->setSpacing(Spacing);
  layout->addStretch();
  for (QPushButton* button : {cmdSetNames, cmdRename, cmdClose}) layout->addWidget(button);
  return layout;
}

void frmRename::ConnectHandlers() {
  connect(mFolderTree, &FolderTree::FolderChanged, this, &frmRename::FolderTree_Change);
  for (int i = 0; i < ExtensionCount; ++i)
    connect(chkExtension[i], &QCheckBox::clicked, this, [this, i] { chkExtension_Click(i); });
  connect(mList, &RenameList::ItemCheck, this, &frmRename::AssignNewNames);
  connect(lvwFiles->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { lvwFiles_ItemClick(SelectedRow()); });
  for (int i = 0; i < 2; ++i) {
    // Pasted with the mouse, dropped, or from an input method: no key is released afterwards.
    connect(txtOtherExtension[i], &QLineEdit::textEdited, this, [this, i] {
      if (!mKeyIsDown) txtOtherExtension_KeyUp(i);
    });
    connect(cmdCheck[i], &QPushButton::clicked, this, [this, i] { cmdCheck_Click(i); });
    connect(cmdMoveItem[i], &QPushButton::clicked, this, [this, i] { cmdMoveItem_Click(i); });
    auto* move = new QShortcut(Qt::ALT | (i == 0 ? Qt::Key_Up : Qt::Key_Down), lvwFiles, nullptr, nullptr,
                               Qt::WidgetShortcut);
    connect(move, &QShortcut::activated, this, [this, i] { cmdMoveItem_Click(i); });
  }
  connect(chkPreserve, &QCheckBox::clicked, this, &frmRename::chkPreserve_Click);
  connect(cmdSetNames, &QPushButton::clicked, this, &frmRename::cmdSetNames_Click);
  connect(cmdRename, &QPushButton::clicked, this, &frmRename::cmdRename_Click);
  connect(cmdClose, &QPushButton::clicked, this, &frmRename::Unload);

  auto* stop = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  connect(stop, &QShortcut::activated, this, &frmRename::StopRun);
}

void frmRename::Form_Load() {
  for (QCheckBox* box : chkExtension) LoadCheckBox(*box, Section, box->text());
  for (int i = 0; i < 2; ++i) txtOtherExtension[i]->setText(GetSetting(Section, OtherKey(i)));
  lvwFiles_ItemClick(-1);
}

void frmRename::Form_Resize() { ListView_ColumnResize(*lvwFiles, {0.5, 0.5}); }

void frmRename::Form_Unload() { mFolderTree->Stop(); }

bool frmRename::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lvwFiles && event->type() == QEvent::Resize) Form_Resize();
  for (int i = 0; i < 2; ++i) {
    if (watched != txtOtherExtension[i]) continue;
    if (event->type() == QEvent::KeyPress) mKeyIsDown = true;
    if (event->type() == QEvent::FocusOut) mKeyIsDown = false;
    if (event->type() != QEvent::KeyRelease || static_cast<QKeyEvent*>(event)->isAutoRepeat()) continue;
    mKeyIsDown = false;
    txtOtherExtension_KeyUp(i);
  }
  return ToolWindow::eventFilter(watched, event);
}

void frmRename::FolderTree_Change() {
  stbRename->SetPanelText(FolderPanel, ToShownText(mFolderTree->SelectedFolder()));
  mFolderFiles.Forget();
  LoadFileList();
}

void frmRename::chkExtension_Click(int index) {
  SaveSetting(Section, chkExtension[index]->text(), CheckValue(*chkExtension[index]));
  LoadFileList();
}

void frmRename::txtOtherExtension_KeyUp(int index) {
  SaveSetting(Section, OtherKey(index), txtOtherExtension[index]->text());
  LoadFileList();
}

int frmRename::SelectedRow() const {
  const QModelIndexList rows = lvwFiles->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

void frmRename::lvwFiles_ItemClick(int row) {
  cmdMoveItem[0]->setEnabled(row > 0);
  cmdMoveItem[1]->setEnabled(row >= 0 && row + 1 < mList->rowCount());
}

void frmRename::cmdCheck_Click(int index) {
  mList->CheckAll(index == 0);
  AssignNewNames();
}

void frmRename::cmdMoveItem_Click(int index) {
  const int row = SelectedRow();
  const int newRow = row + (index == 0 ? -1 : 1);
  if (row < 0 || newRow < 0 || newRow >= mList->rowCount()) return;
  const bool hadFocus = cmdMoveItem[index]->hasFocus();
  mList->MoveItem(row, newRow);
  lvwFiles->setCurrentIndex(mList->index(newRow, RenameList::OriginalFileColumn));
  AssignNewNames();
  lvwFiles_ItemClick(newRow);
  // The focus would go to the other button, where one more press of the key moves the item back.
  if (hadFocus && !cmdMoveItem[index]->isEnabled()) lvwFiles->setFocus();
}

void frmRename::chkPreserve_Click() { ShowTakenNames(); }

void frmRename::cmdSetNames_Click() {
  if (txtPrefix->text().isEmpty()) {
    Warn(u"Please specify the prefix for the new filenames."_s);
    txtPrefix->setFocus();
  } else if (!IsStartNumber(txtStartNum->text().toStdString())) {
    Warn(
        u"The filename starting number must be a valid number preceeded with the number of zeroes you desire."_s);
    txtStartNum->setFocus();
  } else {
    AssignNewNames();
    ShowTakenNames();
  }
}

void frmRename::cmdRename_Click() {
  if (IsRunning()) return;
  if (!mList->HasNewNames()) return Warn(u"There is nothing to rename!"_s);
  if (!MsgBoxYesNo(this, u"Are you sure you want to rename these files?"_s, MsgIcon::Question, windowTitle()))
    return;
  if (!mList->HasNewNames()) return;  // the folder has gone meanwhile, and the tree shows another one
  RenameFiles();
  if (!CloseAsked()) LoadFileList();
}

void frmRename::LoadFileList() {
  const std::string folder = mFolderTree->SelectedFolder();
  if (folder.empty()) return;
  bool isThere = true;
  WorkList items;
  try {
    const BusyPointer busy;
    items = ListFiles(mFolderFiles.Read(folder), ReadFilter());
  } catch (const FileSystemError&) {
    isThere = false;
  }
  mList->SetItems(std::move(items));
  ShowTakenNames();
  lvwFiles_ItemClick(-1);
  if (!isThere) MsgBox(this, u"Cannot access specified folder."_s, MsgIcon::Critical, windowTitle());
}

ExtensionFilter frmRename::ReadFilter() const {
  ExtensionFilter filter;
  for (const QCheckBox* box : chkExtension)
    if (box->isChecked()) filter.Extensions.push_back(box->text().toStdString());
  for (std::size_t i = 0; i < 2; ++i) filter.OtherExtensions[i] = ToNativePath(txtOtherExtension[i]->text());
  return filter;
}

/// The folder's own names are those that are listed, so that the two columns agree; what happened to them
/// since then shows when the folder is read again.
void frmRename::ShowTakenNames() {
  if (!chkPreserve->isChecked()) return mList->SetTakenNames(false, mFolderFiles.Taken());
  const std::string folder = mFolderTree->SelectedFolder();
  const std::string copies = JoinPath(folder, RenamedFilesFolder);
  TakenNames taken;
  try {
    taken.IsNoFolder = !folder.empty() && mServices.Files.Within({folder})->FileExists(copies);
    if (!folder.empty() && !taken.IsNoFolder) {
      mCopies.Read(copies);
      taken = mCopies.Taken();
    }
  } catch (const FileSystemError&) {
    // There are no copies yet.
  }
  mList->SetTakenNames(true, std::move(taken));
}

void frmRename::AssignNewNames() {
  const auto naming = ReadNaming(ToNativePath(txtPrefix->text()), txtStartNum->text().toStdString());
  if (naming) mList->AssignNewNames(*naming);
}

void frmRename::RenameFiles() {
  const RenamePlan plan{.Folder = mFolderTree->SelectedFolder(),
                        .Preserve = chkPreserve->isChecked(),
                        .Names = mList->Names(),
                        .Items = mList->Items()};
  bool finished = false;
  {
    const Run run(*this);
    const BusyPointer busy;
    const QPointer<QWidget> focused = focusWidget();
    setFocus();  // the window hears Esc while its controls hear nothing
    EnableControls(false);
    FormProgress progress(
        {.ShowMessage = [this](const QString& text) { stbRename->SetPanelText(MessagePanel, text); },
         .ShowResults = [] {},
         .Stopped = [this] { return StopAsked(); }});
    finished = brackwell::RenameFiles(mServices.Files, plan, progress);
    EnableControls(true);
    if (focused) focused->setFocus();
  }
  mFolderFiles.Forget();
  if (CloseAsked()) return;
  stbRename->SetPanelText(MessagePanel,
                          finished ? QString() : u"Stopped: not all files have been renamed."_s);
  MsgBox(this, QString::fromStdString(ClosingMessage(plan.Preserve)), MsgIcon::Information, windowTitle());
}

void frmRename::EnableControls(bool enabled) {
  for (QWidget* control : mControls->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    if (control != cmdClose) control->setEnabled(enabled);
  if (enabled) lvwFiles_ItemClick(SelectedRow());
}

void frmRename::Warn(const QString& text) { MsgBox(this, text, MsgIcon::Exclamation, windowTitle()); }

}  // namespace brackwell
