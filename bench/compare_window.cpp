// The comparison's window over two trees: compare_window <source> <target>
//
// Prints the longest time for which the window did not come to handle an event while it walked, and what the
// end took: the sort, then the painting of the sorted rows. Twice, since the second comparison has the rows
// of the first to get rid of.

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/uctSelectDir.h"
#include "platform/FileSystemObject.h"
#include "shell/frmImages.h"

namespace {

using namespace brackwell;
using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

/// Comes to its turn whenever events are handled, and notes how long that took since it last did.
class StallWatch : public QObject {
 public:
  explicit StallWatch(const CompareGrid& grid) : mGrid(grid) { startTimer(0); }

  void Start() { mLast = Clock::now(); }
  Clock::duration SinceLast() const { return Clock::now() - mLast; }
  Clock::duration Longest() const { return mLongest; }
  std::size_t RowsAtLongest() const { return mRowsAtLongest; }

 protected:
  void timerEvent(QTimerEvent* /*event*/) override {
    const auto stall = SinceLast();
    if (stall > mLongest) {
      mLongest = stall;
      mRowsAtLongest = mGrid.Rows().size();
    }
    mLast = Clock::now();
  }

 private:
  const CompareGrid& mGrid;
  Clock::time_point mLast;
  Clock::duration mLongest{};
  std::size_t mRowsAtLongest = 0;
};

/// Clicks Compare and waits for its end.
void Compare(frmCompare& form) {
  StallWatch watch(form.Grid());
  const auto start = Clock::now();
  watch.Start();
  form.findChild<QPushButton*>(u"cmdCompare"_s)->click();
  const auto end = Clock::now();
  const auto sort = watch.SinceLast();
  const auto longest = watch.Longest();
  const std::size_t rowsAtLongest = watch.RowsAtLongest();
  QCoreApplication::processEvents();
  std::printf("longest stall %.0f ms (at row %zu) sort %.0f ms painting %.0f ms rows %zu seconds %.2f\n",
              Milliseconds(longest), rowsAtLongest, Milliseconds(sort), Milliseconds(Clock::now() - end),
              form.Grid().Rows().size(), Milliseconds(end - start) / 1000);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const QTemporaryDir settings;
  qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);

  const auto files = CreateFileSystemObject();
  frmImages images;
  Services services{.Files = *files, .Images = images, .tlbMain_ENABLE = [](const QString&, bool) {}};
  frmCompare form(services);
  form.setAttribute(Qt::WA_DeleteOnClose, false);
  form.resize(form.sizeHint());
  form.show();
  form.findChild<uctSelectDir*>(u"uctSelSource"_s)->SetFolder(QString::fromLocal8Bit(argv[1]) + u'/');
  form.findChild<uctSelectDir*>(u"uctSelTarget"_s)->SetFolder(QString::fromLocal8Bit(argv[2]) + u'/');
  QCoreApplication::processEvents();

  for (int i = 0; i < 2; ++i) Compare(form);
}
