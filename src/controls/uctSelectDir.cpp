#include "controls/uctSelectDir.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <algorithm>

#include "common/FormHelpers.h"
#include "common/NativeText.h"
#include "common/RecentFolders.h"
#include "common/RunProgram.h"
#include "controls/BrowseFF.h"
#include "controls/ContextMenu.h"
#include "controls/ElidedLabel.h"
#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

constexpr int HeadingSpace = 2;     // pixels between heading and folder
constexpr int MenuCharacters = 60;  // a longer folder is shortened in the menu

/// A path as text editors and consoles give it: some put it in quotes, some make an address of it.
QString PathOf(QString text) {
  text = text.trimmed();
  if (text.size() > 1 && text.startsWith(u'"') && text.endsWith(u'"')) text = text.mid(1, text.size() - 2);
  return text.startsWith(u"file://"_s) ? QUrl(text).toLocalFile() : text;
}

/// To point to it is all that is asked for: with a move, the file manager would take the folder away.
bool TakeAsLink(QDropEvent& event) {
  for (const Qt::DropAction action : {Qt::LinkAction, Qt::CopyAction}) {
    if (!event.possibleActions().testFlag(action)) continue;
    event.setDropAction(action);
    event.accept();
    return true;
  }
  return false;
}

}  // namespace

uctSelectDir::uctSelectDir(const FileSystemObject& files, BrowseFF& browse, QWidget* parent)
    : QWidget(parent),
      mFiles(files),
      mBrowse(browse),
      hdgDirectory(new QLabel(this)),
      lblDirectory(new ElidedLabel(this)),
      cmdSelect(new QPushButton(u"Select..."_s, this)) {
  hdgDirectory->setObjectName(u"hdgDirectory"_s);
  hdgDirectory->setTextFormat(Qt::PlainText);
  lblDirectory->setObjectName(u"lblDirectory"_s);
  lblDirectory->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  cmdSelect->setObjectName(u"cmdSelect"_s);
  setFocusProxy(cmdSelect);
  setAcceptDrops(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  SetCaption(QString());
  connect(cmdSelect, &QPushButton::clicked, this, &uctSelectDir::cmdSelect_Click);
  connect(lblDirectory, &ElidedLabel::DoubleClicked, this, &uctSelectDir::cmdSelect_Click);
}

QString uctSelectDir::Caption() const { return hdgDirectory->text(); }

void uctSelectDir::SetCaption(const QString& caption) {
  hdgDirectory->setText(caption);
  setAccessibleName(caption);
  lblDirectory->setAccessibleName(caption);
  cmdSelect->setAccessibleName(u"Select "_s + caption);
  UserControl_Resize();
}

void uctSelectDir::SetPrompt(const QString& prompt) {
  mPrompt = prompt;
  cmdSelect->setAccessibleName(prompt);
}

QString uctSelectDir::Folder() const { return lblDirectory->text(); }

void uctSelectDir::SetFolder(const QString& folder) {
  lblDirectory->setText(folder);
  lblDirectory->setAccessibleDescription(folder);
}

void uctSelectDir::cmdSelect_Click() {
  const QPoint corner = lblDirectory->mapToGlobal(QPoint());
  mBrowse.Title = u"Select Folder"_s;
  mBrowse.Prompt = mPrompt.isEmpty() ? u"Select the "_s + Caption() : mPrompt;
  mBrowse.Top = corner.y();
  mBrowse.Left = corner.x();
  mBrowse.StartFolder = mFiles.FolderExists(Folder().toStdString()) ? Folder() : QString();
  if (mBrowse.Show(this)) Choose(mBrowse.Folder());
}

void uctSelectDir::Choose(const QString& folder) {
  SetFolder(QString::fromStdString(WithSeparator(folder.toStdString())));
  RememberFolder(Folder());
}

QString uctSelectDir::FolderOf(const QMimeData& data) const {
  QString path;
  if (data.hasUrls())
    path = data.urls().size() == 1 ? data.urls().front().toLocalFile() : QString();
  else
    path = PathOf(data.text());
  if (!QDir::isAbsolutePath(path)) return {};
  path = QDir::toNativeSeparators(path);
  return mFiles.FolderExists(path.toStdString()) ? path : QString();
}

void uctSelectDir::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = NewContextMenu(*this);
  QAction* open = AddMenuItem(*menu, u"mnuOpen"_s, u"&Open"_s, this,
                              [this] { RunProgram(this, ToNativePath(Folder())); });
  open->setEnabled(!Folder().isEmpty());
  const QMimeData* copied = QApplication::clipboard()->mimeData();
  const QString folder = copied ? FolderOf(*copied) : QString();
  QAction* paste = AddMenuItem(*menu, u"mnuPaste"_s, u"&Paste"_s, this, [this, folder] { Choose(folder); });
  paste->setEnabled(!folder.isEmpty());
  AddRecentFolders(*menu);
  const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
  menu->popup(byKey ? lblDirectory->mapToGlobal(lblDirectory->rect().bottomLeft()) : event->globalPos());
}

/// One that is gone is offered as well: its drive may come back before the tool looks for it, and a tool says
/// so where it does not.
void uctSelectDir::AddRecentFolders(QMenu& menu) {
  menu.addSeparator();
  menu.setToolTipsVisible(true);  // for those that are shortened
  const QStringList folders = RecentFolders();
  for (int i = 0; i < folders.size(); ++i) {
    const QString& folder = folders[i];
    const QString shown = ToShownText(folder.toStdString());
    QString caption =
        fontMetrics().elidedText(shown, Qt::ElideMiddle, fontMetrics().averageCharWidth() * MenuCharacters);
    caption.replace(u'&', u"&&"_s);
    AddMenuItem(menu, u"mnuRecent(%1)"_s.arg(i), u"&%1 %2"_s.arg((i + 1) % 10).arg(caption), this,
                [this, folder] { Choose(folder); })
        ->setToolTip(ToToolTip(shown));
  }
}

void uctSelectDir::dragEnterEvent(QDragEnterEvent* event) {
  event->ignore();
  // Behind a question the folder must stay the one that is asked about.
  if (QApplication::activeModalWidget() || !event->mimeData()->hasUrls()) return;
  if (!FolderOf(*event->mimeData()).isEmpty()) TakeAsLink(*event);
}

void uctSelectDir::dragMoveEvent(QDragMoveEvent* event) { TakeAsLink(*event); }

void uctSelectDir::dropEvent(QDropEvent* event) {
  const QString folder = FolderOf(*event->mimeData());
  if (!folder.isEmpty() && TakeAsLink(*event)) Choose(folder);
}

QSize uctSelectDir::sizeHint() const { return {300, minimumSizeHint().height()}; }

QSize uctSelectDir::minimumSizeHint() const {
  const int line = std::max(lblDirectory->sizeHint().height(), cmdSelect->sizeHint().height());
  return {lblDirectory->sizeHint().width() + Margin / 2 + cmdSelect->sizeHint().width() + Margin,
          hdgDirectory->sizeHint().height() + HeadingSpace + line};
}

void uctSelectDir::UserControl_Resize() {
  const QSize button = cmdSelect->sizeHint();
  const int line = std::max(lblDirectory->sizeHint().height(), button.height());
  const int top = hdgDirectory->sizeHint().height() + HeadingSpace;
  hdgDirectory->setGeometry(0, 0, hdgDirectory->sizeHint().width(), hdgDirectory->sizeHint().height());
  cmdSelect->setGeometry(width() - Margin - button.width(), top, button.width(), line);
  lblDirectory->setGeometry(0, top, std::max(0, cmdSelect->x() - Margin / 2), line);
}

void uctSelectDir::resizeEvent(QResizeEvent* /*event*/) { UserControl_Resize(); }

void uctSelectDir::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  updateGeometry();
  UserControl_Resize();
}

}  // namespace brackwell
