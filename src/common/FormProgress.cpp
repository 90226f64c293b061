#include "common/FormProgress.h"

#include <QCoreApplication>

#include "common/NativeText.h"

namespace brackwell {

void FormProgress::ShowLast() {
  if (!mText.empty()) mForm.ShowMessage(ToShownText(mText));
}

void FormProgress::Paint() {
  constexpr auto Pause = std::chrono::milliseconds(33);
  ShowLast();
  mForm.ShowResults();
  QCoreApplication::processEvents();
  // Counted from the end of the painting, so that a slow display never starves the run.
  mNextPaint = Clock::now() + Pause;
}

}  // namespace brackwell
