// The comparison's window over two trees: compare_window <source> <target>
//
// Prints the longest time for which the window did not come to handle an event while it walked, the most that
// it worked itself at a stretch (the rest of a stall the machine spent on others), and what the end took: the
// sort, then the painting of the sorted rows. Twice, since the second comparison has the rows of the first to
// get rid of.

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/uctSelectDir.h"
#include "platform/FileSystemObject.h"
#include "shell/frmImages.h"

namespace {

using namespace brackwell;
using namespace Qt::StringLiterals;

double Milliseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Time that passes, and the part of it in which this thread worked.
struct Watch {
  void Restart() {
    mStart = Milliseconds(CLOCK_MONOTONIC);
    mWorkStart = Milliseconds(CLOCK_THREAD_CPUTIME_ID);
  }
  double Passed() const { return Milliseconds(CLOCK_MONOTONIC) - mStart; }
  double Worked() const { return Milliseconds(CLOCK_THREAD_CPUTIME_ID) - mWorkStart; }

 private:
  double mStart = 0;
  double mWorkStart = 0;
};

/// Takes its turn whenever events are handled, and notes how long it had to wait for it.
class StallWatch : public QObject {
 public:
  StallWatch() {
    startTimer(0);
    mSinceLast.Restart();
  }

  double SinceLast() const { return mSinceLast.Passed(); }
  double Longest() const { return mLongest; }
  double LongestWork() const { return mLongestWork; }

 protected:
  void timerEvent(QTimerEvent* /*event*/) override {
    mLongest = std::max(mLongest, mSinceLast.Passed());
    mLongestWork = std::max(mLongestWork, mSinceLast.Worked());
    mSinceLast.Restart();
  }

 private:
  Watch mSinceLast;
  double mLongest = 0;
  double mLongestWork = 0;
};

/// Clicks Compare and waits for its end.
void Compare(frmCompare& form) {
  Watch total;
  total.Restart();
  const StallWatch stalls;
  form.findChild<QPushButton*>(u"cmdCompare"_s)->click();
  const double sort = stalls.SinceLast();
  const double seconds = total.Passed() / 1000;
  const double longest = stalls.Longest();
  const double longestWork = stalls.LongestWork();
  total.Restart();
  QCoreApplication::processEvents();
  std::printf("longest stall %.0f ms (work %.0f ms) sort %.0f ms painting %.0f ms rows %zu seconds %.2f\n",
              longest, longestWork, sort, total.Passed(), form.Grid().Rows().size(), seconds);
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
