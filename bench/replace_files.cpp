// Find and replace's engine with its result list, as the window runs it: replace_files <folder> <extensions>
// <find> [replace] prints the seconds, the files and the matches.

#include <chrono>
#include <cstdio>
#include <string>

#include "BenchProgress.h"
#include "platform/FileSystemObject.h"
#include "replace/ReplaceEngine.h"

namespace {

using namespace brackwell;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5) return 2;
  const auto files = CreateFileSystemObject();
  ReplaceOptions options;
  options.Folder = WithSeparator(argv[1]);
  options.Subfolders = true;
  options.ExtensionList = ParseList(argv[2]);
  options.Find = argv[3];
  options.ReplaceMode = argc == 5;
  if (options.ReplaceMode) options.Replace = argv[4];

  const auto start = Clock::now();
  BenchProgress progress;
  ReplaceRows rows;
  int problems = 0;
  ReplaceEngine engine(*files, options, progress, rows,
                       [&](ReplaceProblem, const ReplaceRow&) { ++problems; });
  engine.ScanFolder();
  const auto scanned = Clock::now();
  engine.ProcessFiles();
  const auto end = Clock::now();
  const auto hits = std::ranges::count_if(rows, [](const ReplaceRow& row) { return row.Result.Count > 0; });
  std::printf("seconds %.4f scan %.4f files %zu with-matches %zu matches %d problems %d longest-stall %.3f\n",
              Seconds(end - start), Seconds(scanned - start), rows.size(), static_cast<std::size_t>(hits),
              static_cast<int>(engine.Total()), problems, progress.LongestStall());
}
