// The rename window over a folder of very many files: rename_window <folder>
//
// Prints how long each thing that its user may do takes, painting included, and the longest time for which
// the window did not come to handle an event while it renamed.

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

#include "controls/FolderTree.h"
#include "controls/ListView.h"
#include "platform/FileSystemObject.h"
#include "rename/RenameList.h"
#include "rename/frmRename.h"
#include "shell/frmImages.h"

namespace {

using namespace brackwell;
using namespace Qt::StringLiterals;

/// Answers every message box with its first button: Yes, or OK.
class Answers : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
    if (box)
      QMetaObject::invokeMethod(
          box, [box] { box->buttons().constFirst()->click(); }, Qt::QueuedConnection);
    return false;
  }
};

void Time(const char* what, const std::function<void()>& step) {
  QElapsedTimer timer;
  timer.start();
  const std::clock_t before = std::clock();
  step();
  QCoreApplication::processEvents();
  const double processor = static_cast<double>(std::clock() - before) * 1e3 / CLOCKS_PER_SEC;
  std::printf("%s %.0f ms, %.0f of them at work\n", what, static_cast<double>(timer.nsecsElapsed()) / 1e6,
              processor);
}

/// Takes its turn whenever events are handled, and notes how long it had to wait for it.
double LongestStall(const std::function<void()>& step) {
  double longest = 0;
  QElapsedTimer waiting;
  waiting.start();
  QTimer turn;
  QObject::connect(&turn, &QTimer::timeout, [&] {
    longest = std::max(longest, static_cast<double>(waiting.nsecsElapsed()) / 1e6);
    waiting.restart();
  });
  turn.start(0);
  step();
  return longest;
}

template <typename Control>
Control& Get(frmRename& form, const char* name) {
  return *form.findChild<Control*>(QString::fromLatin1(name));
}

void Use(frmRename& form, const std::string& folder) {
  auto& folders = Get<FolderTree>(form, "FolderTree");
  auto& other = Get<QLineEdit>(form, "txtOtherExtension(0)");
  auto& view = Get<ListView>(form, "lvwFiles");
  const auto click = [&](const char* name) {
    return [&form, name] { Get<QPushButton>(form, name).click(); };
  };

  Get<QCheckBox>(form, "chkExtension(9)").click();
  folders.SetSelectedFolder(std::string(ParentPath(folder)));
  QTest::qWait(1000);
  Time("list", [&] {
    folders.SetSelectedFolder(folder);
    while (folders.SelectedFolder() != folder) QCoreApplication::processEvents();
  });
  QTest::qWait(4000);  // so that the folder has not changed in the moment in which it was read
  QTest::keyClick(&other, Qt::Key_End);
  Time("list again on a key", [&] { QTest::keyClick(&other, Qt::Key_End); });
  Get<QLineEdit>(form, "txtPrefix").setText(u"Trip_"_s);
  Get<QLineEdit>(form, "txtStartNum").setText(u"000001"_s);
  Time("set names", click("cmdSetNames"));
  view.setCurrentIndex(form.List().index(form.List().rowCount() / 2, 0));
  Time("tick", [&] { QTest::keyClick(&view, Qt::Key_Space); });
  Time("move", click("cmdMoveItem(0)"));
  Get<QLineEdit>(form, "txtPrefix").setText(u"IMG_"_s);
  Time("set names that are taken", click("cmdSetNames"));
  Time("tick", [&] { QTest::keyClick(&view, Qt::Key_Space); });
  Time("move", click("cmdMoveItem(0)"));
  Get<QLineEdit>(form, "txtPrefix").setText(u"Trip_"_s);
  Time("untick all", click("cmdCheck(1)"));
  Time("tick all", click("cmdCheck(0)"));
  QElapsedTimer all;
  all.start();
  const double longest = LongestStall(click("cmdRename"));
  std::printf("rename %.1f s, longest stall %.0f ms, %d files\n", static_cast<double>(all.elapsed()) / 1e3,
              longest, form.List().rowCount());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const QTemporaryDir settings;
  qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  Answers answers;
  application.installEventFilter(&answers);

  const auto files = CreateFileSystemObject();
  frmImages images;
  Services services{.Files = *files, .Images = images, .tlbMain_ENABLE = [](const QString&, bool) {}};
  frmRename form(services);
  form.setAttribute(Qt::WA_DeleteOnClose, false);
  form.resize(form.sizeHint());
  form.show();
  QCoreApplication::processEvents();
  Use(form, argv[1]);
}
