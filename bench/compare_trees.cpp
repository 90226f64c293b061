// The comparison's engine with its row model, as the window runs them: compare_trees <source> <target>
// prints the seconds for all, for the sort alone, the rows, and the bytes of memory per row beyond its text.

#include <malloc.h>

#include <chrono>
#include <cstdio>

#include "common/Progress.h"
#include "compare/CompareEngine.h"
#include "compare/CompareGrid.h"
#include "platform/FileSystemObject.h"

namespace {

using namespace brackwell;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

/// What a window does between two paintings: keep the text, read the clock.
class BenchProgress final : public Progress {
 public:
  explicit BenchProgress(CompareGrid& grid) : mGrid(grid) {}
  void Message(std::string_view text) override { mText = text; }
  void DoEvents() override {
    const auto now = Clock::now();
    if (now < mNext) return;
    mLongest = std::max(mLongest, mNext == Clock::time_point{} ? Clock::duration{} : now - mNext);
    mGrid.Publish();
    mNext = Clock::now() + Pause;
  }
  bool Stopped() const override { return false; }
  double LongestStall() const { return Seconds(mLongest + Pause); }

 private:
  static constexpr std::chrono::milliseconds Pause{33};
  CompareGrid& mGrid;
  std::string mText;
  Clock::time_point mNext;
  Clock::duration mLongest{};
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto files = CreateFileSystemObject();
  const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
  CompareGrid grid({});
  BenchProgress progress(grid);
  CompareOptions options;
  options.SourceRoot = WithSeparator(argv[1]);
  options.TargetRoot = WithSeparator(argv[2]);

  const auto start = Clock::now();
  {
    CompareEngine engine(*files, options, progress, [&](CompareRow row) { grid.AddCompareRow(std::move(row)); });
    engine.RunComparison();
  }
  grid.RemoveEmptyRow();
  const auto walked = Clock::now();
  grid.Sort();
  const auto end = Clock::now();

  std::size_t text = 0;
  for (const CompareRow& row : grid.Rows()) text += row.Name.size();
  const double used = static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd - before - text);
  const std::size_t rows = grid.Rows().size();
  std::printf("seconds %.4f sort %.4f rows %zu bytes-per-row %.0f longest-stall %.3f\n", Seconds(end - start),
              Seconds(end - walked), rows, used / static_cast<double>(rows), progress.LongestStall());
}
