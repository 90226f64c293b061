// The directory display as its window runs it: display_folder <folder> <text|html|xml> [program folder]
// describes the folder with path, size, the three dates and type, and prints the seconds, the folder's
// elements, and the most memory that it took.

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "BenchProgress.h"
#include "dirdisplay/DisplayOutput.h"

namespace {

using namespace brackwell;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

DisplayFormat FormatOf(const std::string& name) {
  if (name == "text") return DisplayFormat::Text;
  return name == "html" ? DisplayFormat::Html : DisplayFormat::Xml;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  DisplayOptions options;
  options.Folder = argv[1];
  options.Format = FormatOf(argv[2]);
  options.XmlType = 1;
  options.ProgramFolder = argc > 3 ? argv[3] : BRACKWELL_PROGRAM_FOLDER;
  options.FolderInfo = {{"Full Name", "Path"},
                        {"Size", "Size"},
                        {"Date Created", "DateCreated"},
                        {"Date Last Accessed", "DateLastAccessed"},
                        {"Date Last Modified", "DateLastModified"},
                        {"Type", "Type"}};
  options.FileInfo = options.FolderInfo;
  options.FileInfo[0].Caption = "Path";

  const auto files = CreateFileSystemObject();
  BenchProgress progress;
  const auto start = Clock::now();
  const auto path = DisplayDirectory(*files, options, progress,
                                     [](const std::string& text) { std::fputs(text.c_str(), stderr); });
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  std::printf("seconds %.4f longest-stall %.3f memory-MB %ld path %s\n", Seconds(Clock::now() - start),
              progress.LongestStall(), used.ru_maxrss / 1024, path->c_str());
}
