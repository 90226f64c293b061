#include "controls/BrowseFF.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QSplitter>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QUrl>
#include <algorithm>

#include "common/FormHelpers.h"
#include "platform/Places.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

/// Enter can end the dialog while names are suggested below its text box. As long as that list shows, the
/// toolkit does not take note, on Windows, that another window has become the active one, and no key would
/// reach it.
class FolderDialog : public QFileDialog {
 public:
  using QFileDialog::QFileDialog;

 protected:
  void done(int result) override {
    if (QWidget* suggestions = QApplication::activePopupWidget()) suggestions->close();
    QFileDialog::done(result);
  }
};

/// What the side bar offers: the user's own folders, then the volumes. The dialog looks at each of them while
/// the user waits, so those that may not answer are left out; they can be typed. A drive without a medium has
/// no name to show.
QList<QUrl> Places() {
  QStringList folders{QDir::homePath(), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
                      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)};
  for (const Volume& volume : Volumes()) {
    const QString root = QDir::fromNativeSeparators(QString::fromStdString(volume.Root));
    if (!volume.MayHang && QStorageInfo(root).isReady()) folders << root;
  }
  folders.removeDuplicates();
  QList<QUrl> places;
  for (const QString& folder : std::as_const(folders)) {
    if (QDir(folder).exists()) places << QUrl::fromLocalFile(folder);
  }
  return places;
}

/// The label is the dialog's own: it goes where a menu bar would, above everything else.
void AddPrompt(QFileDialog& dialog, const QString& text) {
  auto* prompt = new QLabel(text, &dialog);
  prompt->setObjectName(u"Prompt"_s);
  prompt->setTextFormat(Qt::PlainText);
  prompt->setWordWrap(true);
  const QMargins margins = dialog.layout()->contentsMargins();
  prompt->setContentsMargins(margins.left(), margins.top(), margins.right(), 0);
  dialog.layout()->setMenuBar(prompt);
}

/// The dialog has no name for screen readers to say of its list of folders, beside a label of the same
/// meaning.
void NamePlaces(QFileDialog& dialog) {
  auto* label = dialog.findChild<QLabel*>(u"lookInLabel"_s);
  auto* places = dialog.findChild<QWidget*>(u"lookInCombo"_s);
  if (label && places) places->setAccessibleName(label->text());
}

/// Folders need neither the columns for files nor a choice of file types; paths need room.
void FitToFolders(QFileDialog& dialog) {
  dialog.setViewMode(QFileDialog::List);
  for (const QString& name : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
    if (auto* typeChoice = dialog.findChild<QWidget*>(name)) typeChoice->hide();
  }
  dialog.setMinimumSize(ForFont(dialog, QSize(400, 280)));
  dialog.resize(ForFont(dialog, QSize(640, 440)));
  if (auto* splitter = dialog.findChild<QSplitter*>(u"splitter"_s))
    splitter->setSizes({qRound(ForFont(dialog, 150)), qRound(ForFont(dialog, 490))});
}

/// The frame that the window system puts around a window, as seen at one that has it already.
QSize FrameOf(const QWidget* parent) {
  if (!parent) return {};
  return parent->window()->frameGeometry().size() - parent->window()->geometry().size();
}

void Place(QFileDialog& dialog, QPoint corner, QSize frame) {
  const QScreen* screen = QGuiApplication::screenAt(corner);
  if (!screen) screen = QGuiApplication::primaryScreen();
  const QRect area = screen->availableGeometry();
  dialog.resize(dialog.size().expandedTo(dialog.minimumSizeHint()).boundedTo(area.size() - frame));
  const QSize outer = dialog.size() + frame;
  dialog.move(std::clamp(corner.x(), area.left(), area.left() + area.width() - outer.width()),
              std::clamp(corner.y(), area.top(), area.top() + area.height() - outer.height()));
}

}  // namespace

bool BrowseFF::Show(QWidget* parent) {
  // Owned by the top-level window, which outlives a tool window that is closed meanwhile.
  FolderDialog dialog(parent ? parent->window() : nullptr, Title);
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setObjectName(u"BrowseFF"_s);
  dialog.setDirectory(StartFolder.isEmpty() ? QDir::homePath() : StartFolder);
  // The toolkit keeps one list of places for all programs and saves it with the dialog: hand it back
  // unchanged.
  const QList<QUrl> placesOfAllPrograms = dialog.sidebarUrls();
  dialog.setSidebarUrls(Places());
  AddPrompt(dialog, Prompt);
  NamePlaces(dialog);
  FitToFolders(dialog);
  Place(dialog, {Left, Top}, FrameOf(parent));

  const bool isChosen = dialog.exec() == QDialog::Accepted;
  if (isChosen) mFolder = QDir::toNativeSeparators(QDir::cleanPath(dialog.selectedFiles().constFirst()));
  dialog.setSidebarUrls(placesOfAllPrograms);
  return isChosen;
}

}  // namespace brackwell
