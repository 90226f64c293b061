#include "shell/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>

#include "common/Busy.h"
#include "common/FormHelpers.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "common/Settings.h"
#include "controls/HelpWindow.h"
#include "platform/Help.h"
#include "shell/ArrangeWindows.h"
#include "shell/HelpTopics.h"
#include "shell/WindowList.h"
#include "shell/frmAbout.h"
#include "shell/frmOptions.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr int IconSize = 16;
constexpr QSize SmallestArea(400, 250);  // below all menus and buttons of the toolbar

bool IsOn(const QString& section, const QString& key) { return GetSettingNumber(section, key, 0) == 1; }

QMdiArea* NewMdiArea(QWidget* parent) {
  auto* area = new QMdiArea(parent);
  area->setObjectName(u"mdiArea"_s);
  area->setAccessibleName(u"Windows"_s);
  area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  return area;
}

/// A button takes its action's text for a tool tip where it has none, whenever the action changes.
void KeepToolTip(QToolButton* button, const QAction* action, const QString& toolTip) {
  const auto set = [button, toolTip] { button->setToolTip(toolTip); };
  QObject::connect(action, &QAction::changed, button, set);
  set();
}

ToolWindow* ToolOf(const QMdiSubWindow* frame) {
  return frame ? qobject_cast<ToolWindow*>(frame->widget()) : nullptr;
}

}  // namespace

frmMain::frmMain(std::vector<Tool> tools)
    : mFiles(CreateFileSystemObject()),
      mServices{*mFiles, mImages, [this](const QString& key, bool enabled) { tlbMain_ENABLE(key, enabled); },
                [this](const QString& key) { ShowHelp(key); }},
      mTools(std::move(tools)),
      mMdiArea(NewMdiArea(this)),
      tlbMain(new QToolBar(u"Toolbar"_s, this)) {
  setObjectName(u"frmMain"_s);
  setWindowTitle(u"Brackwell"_s);
  resize(screen()->availableSize() * 4 / 5);
  setCentralWidget(mMdiArea);
  mMdiArea->setMinimumSize(ForFont(*this, SmallestArea));
  BuildMenus();
  BuildToolbar();
  connect(mMdiArea, &QMdiArea::subWindowActivated, this, &frmMain::UpdateActiveWindow);
  MDIForm_Load();
}

frmMain::~frmMain() {
  // What they still report on their way out would be asked of an area that is half gone.
  mMdiArea->disconnect(this);
  for (QMdiSubWindow* frame : mMdiArea->findChildren<QMdiSubWindow*>()) frame->disconnect(this);
  delete mMdiArea;
}

// --- menus and toolbar ---------------------------------------------------------------

void frmMain::BuildMenus() {
  menuBar()->setAccessibleName(u"Menu"_s);
  BuildFileMenu();
  BuildToolsMenu();
  BuildWindowMenu();
  BuildHelpMenu();
}

void frmMain::BuildFileMenu() {
  QMenu* mnuFile = AddMenu(u"mnuFile"_s, u"&File"_s);
  mnuFile_Print = AddItem(mnuFile, u"mnuFile_Print"_s, u"&Print..."_s, &frmMain::mnuFile_Print_Click);
  mnuFile_Print->setShortcut(QKeySequence::Print);
  AddItem(mnuFile, u"mnuFile_Close"_s, u"&Close..."_s, &frmMain::mnuFile_Close_Click);
  mnuFile->addSeparator()->setObjectName(u"mnuFile_Sep1"_s);
  AddItem(mnuFile, u"mnuFile_Exit"_s, u"E&xit"_s, &frmMain::mnuFile_Exit_Click)->setShortcut(u"Ctrl+Q"_s);
}

void frmMain::BuildToolsMenu() {
  QMenu* mnuTools = AddMenu(u"mnuTools"_s, u"&Tools"_s);
  AddToolItem(mnuTools, u"mnuTools_Compare"_s, u"&Compare directories..."_s, u"DirCompare"_s);
  AddToolItem(mnuTools, u"mnuTools_DirDisplay"_s, u"&Directory display..."_s, u"DirDisplay"_s);
  AddToolItem(mnuTools, u"mnuTools_DriveInfo"_s, u"Dri&ve info..."_s, u"Drive"_s);
  AddToolItem(mnuTools, u"mnuTools_Replace"_s, u"Find and &replace..."_s, u"Replace"_s);
  AddToolItem(mnuTools, u"mnuTools_FontDisplay"_s, u"&Font sample..."_s, u"FontDisplay"_s);
  AddToolItem(mnuTools, u"mnuTools_RenameImages"_s, u"Rename &images..."_s, u"RenImages"_s);
  mnuTools->addSeparator()->setObjectName(u"mnuTools_Sep1"_s);
  AddItem(mnuTools, u"mnuTools_Options"_s, u"&Options..."_s, &frmMain::mnuTools_Options_Click);
}

void frmMain::BuildWindowMenu() {
  QMenu* mnuWindow = AddMenu(u"mnuWindow"_s, u"&Window"_s);
  AddItem(mnuWindow, u"mnuWindow_TileH"_s, u"Tile &Horizontally"_s, &frmMain::mnuWindow_TileH_Click);
  AddItem(mnuWindow, u"mnuWindow_TileV"_s, u"Tile &Vertically"_s, &frmMain::mnuWindow_TileV_Click);
  AddItem(mnuWindow, u"mnuWindow_Cascade"_s, u"&Cascade"_s, &frmMain::mnuWindow_Cascade_Click);
  AddItem(mnuWindow, u"mnuWindow_Arrange"_s, u"&Arrange"_s, &frmMain::mnuWindow_Arrange_Click);
  AddItem(mnuWindow, u"mnuWindow_CloseAll"_s, u"Clos&e All"_s, &frmMain::mnuWindow_CloseAll_Click);
  new WindowList(*mnuWindow, *mMdiArea);
}

void frmMain::BuildHelpMenu() {
  QMenu* mnuHelp = AddMenu(u"mnuHelp"_s, u"&Help"_s);
  AddItem(mnuHelp, u"mnuHelp_Contents"_s, u"&Contents"_s, &frmMain::mnuHelp_Contents_Click);
  AddItem(mnuHelp, u"mnuHelp_Search"_s, u"&Search"_s, &frmMain::mnuHelp_Search_Click);
  mnuHelp->addSeparator()->setObjectName(u"mnuHelp_Sep1"_s);
  AddItem(mnuHelp, u"mnuHelp_About"_s, u"&About..."_s, &frmMain::mnuHelp_About_Click);

  auto* help = new QAction(this);  // of no menu: what it shows depends on the window in front
  help->setObjectName(u"HelpKey"_s);
  help->setShortcut(QKeySequence::HelpContents);
  connect(help, &QAction::triggered, this, &frmMain::HelpKey_Press);
  addAction(help);
}

QMenu* frmMain::AddMenu(const QString& name, const QString& caption) {
  QMenu* menu = menuBar()->addMenu(caption);
  menu->setObjectName(name);
  return menu;
}

QAction* frmMain::AddItem(QMenu* menu, const QString& name, const QString& caption, Click click) {
  QAction* item = menu->addAction(caption, this, click);
  item->setObjectName(name);
  return item;
}

void frmMain::AddToolItem(QMenu* menu, const QString& name, const QString& caption, const QString& key) {
  menu->addAction(caption, this, [this, key] { tlbMain_ButtonClick(key); })->setObjectName(name);
}

void frmMain::BuildToolbar() {
  tlbMain->setObjectName(u"tlbMain"_s);
  tlbMain->setAccessibleName(u"Toolbar"_s);
  tlbMain->setMovable(false);
  tlbMain->setContextMenuPolicy(Qt::PreventContextMenu);
  tlbMain->setIconSize(QSize(IconSize, IconSize));
  AddButton(u"Print"_s, u"Print"_s, {})->setEnabled(false);
  mnuFile_Print->setEnabled(false);
  tlbMain->addSeparator();
  for (const Tool& tool : mTools) AddButton(tool.Key, tool.ToolTip, tool.ToolTip);
  addToolBar(tlbMain);
}

QAction* frmMain::AddButton(const QString& key, const QString& text, const QString& toolTip) {
  QAction* action = tlbMain->addAction(text, this, [this, key] { tlbMain_ButtonClick(key); });
  action->setObjectName(key);
  auto* button = qobject_cast<QToolButton*>(tlbMain->widgetForAction(action));
  button->setObjectName(key);
  button->setAccessibleName(text);
  KeepToolTip(button, action, toolTip);
  return action;
}

QAction* frmMain::Button(const QString& key) const {
  for (QAction* action : tlbMain->actions())
    if (action->objectName().compare(key, Qt::CaseInsensitive) == 0) return action;
  return nullptr;
}

void frmMain::tlbMain_ENABLE(const QString& key, bool enabled) {
  if (QAction* button = Button(key)) button->setEnabled(enabled);
  if (key.toUpper() == u"PRINT"_s) mnuFile_Print->setEnabled(enabled);
}

// --- start and end -------------------------------------------------------------------

void frmMain::MDIForm_Load() {
  if (IsOn(u"General"_s, u"AppMaximized"_s)) setWindowState(Qt::WindowMaximized);
  mHelpFile = JoinPath(QCoreApplication::applicationDirPath().toStdString(), "Brackwell.chm");
  LoadToolbarImages();
}

void frmMain::LoadToolbarImages() {
  for (QAction* button : tlbMain->actions()) button->setIcon(mImages.GetPicture(button->objectName()));
}

void frmMain::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (QApplication::activeModalWidget()) return;  // its handler is still on the stack
  mCloseAsked = CloseBusyWindows();
  if (mCloseAsked) return;
  MDIForm_Unload();
  event->accept();
}

void frmMain::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // Where the windows lie takes its colour once; it has to follow when the desktop turns dark.
  if (event->type() == QEvent::PaletteChange) mMdiArea->setBackground(palette().brush(QPalette::Dark));
}

void frmMain::MDIForm_Unload() {
  mMdiArea->closeAllSubWindows();
  if (mHelpWindow) mHelpWindow->close();
  CloseHelp();
}

bool frmMain::CloseBusyWindows() {
  bool anyBusy = false;
  for (QMdiSubWindow* frame : mMdiArea->subWindowList()) {
    const ToolWindow* window = ToolOf(frame);
    if (!window || !window->IsRunning()) continue;
    frame->close();
    anyBusy = true;
  }
  return anyBusy;
}

void frmMain::ToolRunEnded() {
  if (!mCloseAsked) return;
  mCloseAsked = false;
  QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

// --- tools ---------------------------------------------------------------------------

void frmMain::tlbMain_ButtonClick(const QString& key) {
  if (key == u"Print"_s) return mnuFile_Print_Click();
  for (const Tool& tool : mTools)
    if (tool.Key == key) return OpenTool(tool);
}

void frmMain::OpenTool(const Tool& tool) {
  if (QMdiSubWindow* open = tool.Single ? OpenWindowOf(tool) : nullptr) return BringForward(*mMdiArea, *open);

  ToolWindow* window = tool.Create(mServices);
  connect(window, &ToolWindow::RunEnded, this, &frmMain::ToolRunEnded);
  QMdiSubWindow* frame = mMdiArea->addSubWindow(window);
  frame->setObjectName(tool.Key);
  frame->setWindowIcon(mImages.GetPicture(tool.Key));
  connect(frame, &QMdiSubWindow::windowStateChanged, this, &frmMain::UpdateActiveWindow);
  PlaceNewWindow(*mMdiArea, *frame);
  if (tool.HeedsChildMaximized && IsOn(u"General"_s, u"ChildMaximized"_s))
    frame->showMaximized();
  else
    frame->show();
  UpdateActiveWindow();  // one that gives the focus to a control as it is made was active before it showed
}

QMdiSubWindow* frmMain::OpenWindowOf(const Tool& tool) const {
  for (QMdiSubWindow* frame : mMdiArea->subWindowList())
    if (frame->objectName() == tool.Key && !frame->isHidden()) return frame;
  return nullptr;
}

void frmMain::UpdateActiveWindow() {
  const QMdiSubWindow* frame = mMdiArea->currentSubWindow();
  const bool shown = frame && !frame->isHidden() && !frame->isMinimized();
  ToolWindow* active = shown ? ToolOf(frame) : nullptr;
  if (active == mActive) return;
  if (mActive) mActive->Form_Deactivate();
  mActive = active;
  if (mActive) mActive->Form_Activate();
}

void frmMain::mnuFile_Print_Click() {
  ToolWindow* window = ToolOf(mMdiArea->currentSubWindow());
  if (!window || window->metaObject()->indexOfMethod("PrintData()") < 0) return;
  const BusyPointer busy;
  try {
    QMetaObject::invokeMethod(window, "PrintData", Qt::DirectConnection);
  } catch (...) {
    // A window that cannot print says so itself, or stays silent.
  }
}

void frmMain::mnuFile_Close_Click() {
  if (QMdiSubWindow* frame = mMdiArea->currentSubWindow()) frame->close();
}

void frmMain::mnuFile_Exit_Click() { close(); }

void frmMain::mnuTools_Options_Click() {
  frmOptions options(this);
  GiveHelpKey(options, mServices.ShowHelp);
  options.exec();
}

// --- windows and help ----------------------------------------------------------------

void frmMain::mnuWindow_TileH_Click() { ArrangeWindows(*mMdiArea, ArrangeMode::TileHorizontally); }

void frmMain::mnuWindow_TileV_Click() { ArrangeWindows(*mMdiArea, ArrangeMode::TileVertically); }

void frmMain::mnuWindow_Cascade_Click() { ArrangeWindows(*mMdiArea, ArrangeMode::Cascade); }

void frmMain::mnuWindow_Arrange_Click() { ArrangeWindows(*mMdiArea, ArrangeMode::ArrangeIcons); }

void frmMain::mnuWindow_CloseAll_Click() {
  for (QMdiSubWindow* frame : mMdiArea->subWindowList())
    if (!frame->isHidden()) frame->close();
}

void frmMain::mnuHelp_Contents_Click() {
  if (!HelpFileExists() || ShowHelpContents(mHelpFile)) return;
  if (HelpWindow* help = OwnHelpWindow()) help->ShowContents();
}

void frmMain::mnuHelp_Search_Click() {
  if (!HelpFileExists() || ShowHelpSearch(mHelpFile)) return;
  if (HelpWindow* help = OwnHelpWindow()) help->ShowSearch();
}

void frmMain::HelpKey_Press() {
  const QMdiSubWindow* frame = mMdiArea->currentSubWindow();
  ShowHelp(frame && !frame->isHidden() ? frame->objectName() : QString());
}

void frmMain::ShowHelp(const QString& key) {
  const QString topic = HelpTopicOf(key);
  if (!HelpFileExists() || ShowHelpTopic(mHelpFile, topic.toStdString())) return;
  if (HelpWindow* help = OwnHelpWindow()) help->ShowTopic(topic);
}

bool frmMain::HelpFileExists() {
  if (mFiles->FileExists(mHelpFile)) return true;
  TellOfHelp(u"Cannot find help file."_s);
  return false;
}

/// In front of the dialog that asked, if one did.
void frmMain::TellOfHelp(const QString& text) {
  QWidget* dialog = QApplication::activeModalWidget();
  MsgBox(dialog ? dialog : this, text, MsgIcon::Critical, u"Brackwell Help"_s);
}

HelpWindow* frmMain::OwnHelpWindow() {
  if (mHelpWindow) return mHelpWindow.get();
  const BusyPointer busy;
  std::optional<ChmFile> file = ChmFile::Open(mHelpFile);
  if (file)
    mHelpWindow = std::make_unique<HelpWindow>(std::move(*file));
  else
    TellOfHelp(u"The help file is damaged: "_s + ToShownText(mHelpFile));
  return mHelpWindow.get();
}

void frmMain::mnuHelp_About_Click() {
  frmAbout about(*mFiles, this);
  GiveHelpKey(about, mServices.ShowHelp);
  about.exec();
}

}  // namespace brackwell
