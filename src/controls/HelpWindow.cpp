#include "controls/HelpWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "common/FormHelpers.h"
#include "common/Settings.h"
#include "controls/HelpPage.h"
#include "controls/LineEdit.h"
#include "help/HelpText.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

enum Tab { ContentsTab, IndexTab, SearchTab };

const QString Section = u"General"_s;
constexpr int TopicRole = Qt::UserRole;
constexpr int TitleRole = Qt::UserRole + 1;
constexpr QSize UsualSize(960, 700);
constexpr int UsualPaneWidth = 260;
constexpr QSize SmallestPage(310, 240);
constexpr int LargestMeasure = 20'000;

QString Text(const std::string& text) { return QString::fromStdString(text); }

QStringList WordsOf(const QString& query) {
  QStringList words;
  for (const std::string& word : Words(query.toStdString())) words << Text(word);
  return words;
}

int StoredNumber(const QString& key, int usual, int smallest, int largest) {
  return std::clamp(GetSettingNumber(Section, key, usual).value_or(usual), smallest, largest);
}

QListWidget* NewList(const QString& name, const QString& accessibleName, QWidget* parent) {
  auto* list = Named(new QListWidget(parent), name, accessibleName);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setSpacing(1);
  return list;
}

/// Shows what it asks for until something is typed, and a button that clears it.
QLineEdit* NewBox(const QString& name, const QString& prompt, QWidget* parent) {
  auto* box = Named(new LineEdit(parent), name, prompt);
  box->setPlaceholderText(prompt);
  box->setClearButtonEnabled(true);
  box->findChild<QToolButton*>()->setAccessibleName(u"Clear"_s);
  return box;
}

/// Tells how a search went; what it says is what is read out.
QLabel* NewOutcome(const QString& name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

/// Rows with some room between them.
class ContentsDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, Spacing);
  }
};

/// Whether one of its words begins so.
bool HasWord(const QString& keyword, const QString& beginning) {
  return keyword.startsWith(beginning, Qt::CaseInsensitive) ||
         keyword.contains(u' ' + beginning, Qt::CaseInsensitive);
}

QListWidgetItem* NewItem(const QString& text, const QString& topic) {
  auto* item = new QListWidgetItem(text);
  item->setData(TopicRole, topic);
  return item;
}

QTreeWidgetItem* FindTopic(const QTreeWidget& tree, const QString& topic) {
  for (QTreeWidgetItemIterator item(const_cast<QTreeWidget*>(&tree)); *item; ++item)
    if ((*item)->data(0, TopicRole).toString() == topic) return *item;
  return nullptr;
}

QVBoxLayout* NewPaneLayout(QWidget* pane) {
  auto* layout = new QVBoxLayout(pane);
  layout->setContentsMargins(Spacing, Spacing, Spacing, Spacing);
  layout->setSpacing(Spacing);
  return layout;
}

}  // namespace

HelpWindow::HelpWindow(ChmFile file) : mFile(std::move(file)) {
  setObjectName(u"HelpWindow"_s);
  setWindowTitle(u"Brackwell Help"_s);
  setAttribute(Qt::WA_QuitOnClose, false);
  BuildToolbar();
  BuildPanes();
  ConnectHandlers();
  Form_Load();
}

// --- what it is made of --------------------------------------------------------------

void HelpWindow::BuildToolbar() {
  auto* toolbar = Named(new QToolBar(u"Toolbar"_s, this), u"tlbHelp"_s, u"Toolbar"_s);
  toolbar->setMovable(false);
  toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
  toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  addToolBar(toolbar);

  cmdBack = AddAction(u"cmdBack"_s, u"Back"_s, {u"Alt+Left"_s}, &HelpWindow::cmdBack_Click);
  cmdBack->setIcon(style()->standardIcon(QStyle::SP_ArrowBack));
  cmdForward = AddAction(u"cmdForward"_s, u"Forward"_s, {u"Alt+Right"_s}, &HelpWindow::cmdForward_Click);
  cmdForward->setIcon(style()->standardIcon(QStyle::SP_ArrowForward));
  QAction* find = AddAction(u"cmdFind"_s, u"Find in Page"_s, {u"Ctrl+F"_s}, &HelpWindow::cmdFind_Click);
  QAction* smaller = AddAction(u"cmdSmaller"_s, u"Smaller"_s, {u"Ctrl+-"_s}, &HelpWindow::cmdSmaller_Click);
  QAction* larger =
      AddAction(u"cmdLarger"_s, u"Larger"_s, {u"Ctrl++"_s, u"Ctrl+="_s}, &HelpWindow::cmdLarger_Click);
  QAction* usual =
      AddAction(u"cmdUsualSize"_s, u"Usual Size"_s, {u"Ctrl+0"_s}, &HelpWindow::cmdUsualSize_Click);

  toolbar->addActions({cmdBack, cmdForward});
  toolbar->addSeparator();
  toolbar->addAction(find);
  toolbar->addSeparator();
  toolbar->addActions({smaller, larger, usual});
  for (QAction* action : toolbar->actions())
    if (auto* button = qobject_cast<QToolButton*>(toolbar->widgetForAction(action)))
      Named(button, action->objectName(), action->text());
}

QAction* HelpWindow::AddAction(const QString& name, const QString& caption, const QList<QKeySequence>& keys,
                               void (HelpWindow::*handler)()) {
  auto* action = new QAction(caption, this);
  action->setObjectName(name);
  action->setShortcuts(keys);
  action->setToolTip(u"%1 (%2)"_s.arg(caption, keys.first().toString(QKeySequence::NativeText)));
  connect(action, &QAction::triggered, this, handler);
  addAction(action);
  return action;
}

void HelpWindow::BuildPanes() {
  sstHelp = Named(new QTabWidget, u"sstHelp"_s, u"Contents, index and search"_s);
  sstHelp->setDocumentMode(true);
  sstHelp->setUsesScrollButtons(false);  // the pane is never narrower than its tabs
  sstHelp->addTab(BuildContents(), u"&Contents"_s);
  sstHelp->addTab(BuildIndex(), u"&Index"_s);
  sstHelp->addTab(BuildSearch(), u"&Search"_s);

  mPanes = new QSplitter(this);
  mPanes->setObjectName(u"mPanes"_s);
  mPanes->addWidget(sstHelp);
  mPanes->addWidget(BuildPage());
  mPanes->setStretchFactor(1, 1);
  mPanes->setChildrenCollapsible(false);
  setCentralWidget(mPanes);
}

QWidget* HelpWindow::BuildContents() {
  trvContents = Named(new QTreeWidget, u"trvContents"_s, u"Contents"_s);
  trvContents->setHeaderHidden(true);
  trvContents->setItemDelegate(new ContentsDelegate(trvContents));
  QList<QTreeWidgetItem*> parents;
  for (const HelpEntry& entry : mFile.Contents()) {
    parents.resize(std::min<qsizetype>(entry.Depth, parents.size()));
    auto* item = parents.isEmpty() ? new QTreeWidgetItem(trvContents) : new QTreeWidgetItem(parents.last());
    item->setText(0, Text(entry.Title));
    item->setToolTip(0, Text(entry.Title));
    item->setData(0, TopicRole, Text(entry.Topic));
    parents << item;
  }
  trvContents->expandAll();
  return trvContents;
}

QWidget* HelpWindow::BuildIndex() {
  auto* pane = new QWidget;
  txtIndex = NewBox(u"txtIndex"_s, u"Keyword"_s, pane);
  lstIndex = NewList(u"lstIndex"_s, u"Index"_s, pane);
  for (const HelpEntry& entry : mFile.Index()) {
    const QTreeWidgetItem* page = FindTopic(*trvContents, Text(entry.Topic));
    const QString title = page ? page->text(0) : Text(entry.Topic);
    QListWidgetItem* item = NewItem(Text(entry.Title), Text(entry.Topic));
    item->setToolTip(title);
    item->setData(TitleRole, title);
    lstIndex->addItem(item);
  }
  // A keyword of several pages says which.
  for (int row = 1; row < lstIndex->count(); ++row)
    if (mFile.Index()[row].Title == mFile.Index()[row - 1].Title)
      for (QListWidgetItem* item : {lstIndex->item(row - 1), lstIndex->item(row)})
        item->setText(u"%1 (%2)"_s.arg(Text(mFile.Index()[row].Title), item->data(TitleRole).toString()));

  QVBoxLayout* layout = NewPaneLayout(pane);
  layout->addWidget(txtIndex);
  layout->addWidget(lstIndex);
  return pane;
}

QWidget* HelpWindow::BuildSearch() {
  auto* pane = new QWidget;
  txtSearch = NewBox(u"txtSearch"_s, u"Words to search for"_s, pane);
  lblHits = NewOutcome(u"lblHits"_s, pane);
  lblHits->setWordWrap(true);
  lstHits = NewList(u"lstHits"_s, u"Topics found"_s, pane);

  QVBoxLayout* layout = NewPaneLayout(pane);
  layout->addWidget(txtSearch);
  layout->addWidget(lblHits);
  layout->addWidget(lstHits);
  return pane;
}

QWidget* HelpWindow::BuildPage() {
  auto* pane = new QWidget;
  mPage = Named(new HelpPage(mFile, pane), u"mPage"_s, u"Page"_s);
  mPage->setMinimumSize(ForFont(*mPage, SmallestPage));
  auto* layout = new QVBoxLayout(pane);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(mPage);
  layout->addWidget(BuildFindBar());
  return pane;
}

QWidget* HelpWindow::BuildFindBar() {
  fraFind = Named(new QWidget, u"fraFind"_s, u"Find in page"_s);
  txtFind = NewBox(u"txtFind"_s, u"Find in page"_s, fraFind);
  txtFind->setMinimumWidth(txtFind->fontMetrics().averageCharWidth() * 16);
  lblFind = NewOutcome(u"lblFind"_s, fraFind);
  lblFind->setMinimumWidth(lblFind->fontMetrics().horizontalAdvance(u"Not found  "_s));
  auto* cmdPrevious = Named(new QPushButton(u"&Previous"_s, fraFind), u"cmdPrevious"_s, u"Previous"_s);
  auto* cmdNext = Named(new QPushButton(u"&Next"_s, fraFind), u"cmdNext"_s, u"Next"_s);
  connect(cmdNext, &QPushButton::clicked, this, &HelpWindow::cmdNext_Click);
  connect(cmdPrevious, &QPushButton::clicked, this, &HelpWindow::cmdPrevious_Click);

  auto* layout = new QHBoxLayout(fraFind);
  layout->setContentsMargins(Margin, Spacing, Margin, Spacing);
  layout->setSpacing(Spacing);
  layout->addWidget(txtFind, 1);
  layout->addWidget(lblFind);
  layout->addWidget(cmdPrevious);
  layout->addWidget(cmdNext);
  fraFind->hide();
  return fraFind;
}

void HelpWindow::ConnectHandlers() {
  connect(trvContents, &QTreeWidget::currentItemChanged, this, &HelpWindow::FollowContents);
  connect(trvContents, &QTreeWidget::itemClicked, this, &HelpWindow::FollowContents);
  connect(lstIndex, &QListWidget::itemClicked, this, &HelpWindow::FollowIndex);
  connect(lstIndex, &QListWidget::itemActivated, this, &HelpWindow::FollowIndex);
  connect(lstHits, &QListWidget::itemClicked, this, &HelpWindow::FollowHit);
  connect(lstHits, &QListWidget::itemActivated, this, &HelpWindow::FollowHit);
  connect(txtIndex, &QLineEdit::textChanged, this, &HelpWindow::txtIndex_Change);
  connect(txtIndex, &QLineEdit::returnPressed, this, [this] { FollowIndex(lstIndex->currentItem()); });
  connect(txtSearch, &QLineEdit::textChanged, this, &HelpWindow::txtSearch_Change);
  connect(txtSearch, &QLineEdit::returnPressed, this, [this] { FollowHit(lstHits->currentItem()); });

  connect(mPage, &QTextBrowser::sourceChanged, this, &HelpWindow::PageChanged);
  connect(mPage, &QTextBrowser::backwardAvailable, cmdBack, &QAction::setEnabled);
  connect(mPage, &QTextBrowser::forwardAvailable, cmdForward, &QAction::setEnabled);
  cmdBack->setEnabled(false);
  cmdForward->setEnabled(false);

  connect(txtFind, &QLineEdit::returnPressed, this, &HelpWindow::cmdNext_Click);
  connect(txtFind, &QLineEdit::textChanged, lblFind, &QLabel::clear);
  connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, &HelpWindow::cmdNext_Click);
  connect(new QShortcut(Qt::SHIFT | Qt::Key_F3, this), &QShortcut::activated, this,
          &HelpWindow::cmdPrevious_Click);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &HelpWindow::Escape);
  connect(new QShortcut(Qt::CTRL | Qt::Key_1, this), &QShortcut::activated, this, &HelpWindow::ShowContents);
  connect(new QShortcut(Qt::CTRL | Qt::Key_2, this), &QShortcut::activated, this, [this] {
    BringForward(IndexTab);
    txtIndex->setFocus();
  });
  connect(new QShortcut(Qt::CTRL | Qt::Key_3, this), &QShortcut::activated, this, &HelpWindow::ShowSearch);
}

// --- show and close ------------------------------------------------------------------

void HelpWindow::Form_Load() {
  const QSize usual = ForFont(*this, UsualSize);
  resize(StoredNumber(u"HelpWidth"_s, usual.width(), 1, LargestMeasure),
         StoredNumber(u"HelpHeight"_s, usual.height(), 1, LargestMeasure));
  const int paneWidth =
      StoredNumber(u"HelpPaneWidth"_s, int(ForFont(*this, UsualPaneWidth)), 1, LargestMeasure);
  mPanes->setSizes({paneWidth, std::max(width() - paneWidth, 1)});
  mPage->SetZoom(StoredNumber(u"HelpZoom"_s, 0, -LargestMeasure, LargestMeasure));
  mPage->ShowTopic(Text(mFile.Contents().front().Topic));
}

void HelpWindow::Form_Unload() {
  if (!isMaximized() && !isFullScreen()) {
    SaveSetting(Section, u"HelpWidth"_s, QString::number(width()));
    SaveSetting(Section, u"HelpHeight"_s, QString::number(height()));
    SaveSetting(Section, u"HelpPaneWidth"_s, QString::number(sstHelp->width()));
  }
  SaveSetting(Section, u"HelpZoom"_s, QString::number(mPage->Zoom()));
}

void HelpWindow::closeEvent(QCloseEvent* event) {
  if (isVisible()) Form_Unload();
  QMainWindow::closeEvent(event);
}

void HelpWindow::BringForward(int tab) {
  sstHelp->setCurrentIndex(tab);
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void HelpWindow::ShowContents() {
  BringForward(ContentsTab);
  trvContents->setFocus();
}

void HelpWindow::ShowSearch() {
  BringForward(SearchTab);
  txtSearch->setFocus();
  txtSearch->selectAll();
}

void HelpWindow::ShowTopic(const QString& topic) {
  mPage->ShowTopic(topic);
  BringForward(ContentsTab);
  mPage->setFocus();
}

// --- contents, index, search ---------------------------------------------------------

void HelpWindow::FollowContents(const QTreeWidgetItem* item) {
  if (item && item->data(0, TopicRole).toString() != mPage->Topic())
    mPage->ShowTopic(item->data(0, TopicRole).toString());
}

void HelpWindow::FollowIndex(const QListWidgetItem* item) {
  if (item) mPage->ShowTopic(item->data(TopicRole).toString());
}

void HelpWindow::FollowHit(const QListWidgetItem* item) {
  if (item) mPage->ShowTopic(item->data(TopicRole).toString(), WordsOf(txtSearch->text()));
}

void HelpWindow::PageChanged(const QUrl& address) {
  const QString topic = HelpPage::NameOf(address);
  if (std::exchange(mTopic, topic) == topic) return;  // only made anew
  lblFind->clear();
  const QSignalBlocker blocker(trvContents);
  trvContents->setCurrentItem(FindTopic(*trvContents, topic));
}

void HelpWindow::txtIndex_Change() {
  const QString text = txtIndex->text().trimmed();
  QListWidgetItem* first = nullptr;
  for (int row = 0; row < lstIndex->count(); ++row) {
    QListWidgetItem* item = lstIndex->item(row);
    item->setHidden(!HasWord(item->text(), text));
    if (!first && !item->isHidden()) first = item;
  }
  lstIndex->setCurrentItem(first);
}

void HelpWindow::txtSearch_Change() {
  lstHits->clear();
  const std::vector<HelpHit> hits = mFile.Search(txtSearch->text().toStdString());
  for (const HelpHit& hit : hits) lstHits->addItem(NewItem(Text(hit.Title), Text(hit.Topic)));
  lstHits->setCurrentRow(0);
  const bool hasWords = !WordsOf(txtSearch->text()).isEmpty();
  lblHits->setText(!hasWords           ? QString()
                   : hits.empty()      ? u"No topic has all of these words."_s
                   : hits.size() == 1U ? u"1 topic found"_s
                                       : u"%1 topics found"_s.arg(hits.size()));
}

// --- the page ------------------------------------------------------------------------

void HelpWindow::cmdBack_Click() { mPage->Back(); }
void HelpWindow::cmdForward_Click() { mPage->Forward(); }
void HelpWindow::cmdSmaller_Click() { mPage->SetZoom(mPage->Zoom() - 1); }
void HelpWindow::cmdLarger_Click() { mPage->SetZoom(mPage->Zoom() + 1); }
void HelpWindow::cmdUsualSize_Click() { mPage->SetZoom(0); }

void HelpWindow::cmdFind_Click() {
  fraFind->show();
  txtFind->setFocus();
  txtFind->selectAll();
}

void HelpWindow::cmdNext_Click() { Find(false); }
void HelpWindow::cmdPrevious_Click() { Find(true); }

void HelpWindow::Find(bool backward) {
  if (fraFind->isHidden()) return cmdFind_Click();
  const bool found = txtFind->text().isEmpty() || mPage->FindText(txtFind->text(), backward);
  lblFind->setText(found ? QString() : u"Not found"_s);
}

void HelpWindow::Escape() {
  if (fraFind->isHidden()) {
    close();
  } else {
    fraFind->hide();
    mPage->setFocus();
  }
}

}  // namespace brackwell
