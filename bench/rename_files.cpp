// Renames all files of a folder to a numbered series, each way of it printing the seconds that it took:
//
//   rename_files make <folder> <files>     makes the files, in no order (prints nothing)
//   rename_files ours <folder> <prefix>    the renamer's engine with its list, as the window runs them
//   rename_files limit <folder> <prefix>   one atomic call per file and nothing else: old and new names are
//   known before

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "BenchProgress.h"
#include "rename/FolderFiles.h"
#include "rename/RenameEngine.h"
#include "rename/RenameList.h"

namespace {

using namespace brackwell;
using Clock = std::chrono::steady_clock;

constexpr const char* StartNumber = "000001";

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

[[noreturn]] void Fail(const std::string& what) {
  std::perror(what.c_str());
  std::exit(1);
}

void Make(const std::string& folder, int files) {
  std::vector<int> numbers(files);
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(2020));
  for (const int number : numbers) {
    char name[32];
    std::snprintf(name, sizeof name, "IMG_%06d.JPG", number);
    const int file = open((folder + "/" + name).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (file < 0) Fail(name);
    close(file);
  }
}

double Ours(const std::string& path, const std::string& prefix) {
  const auto files = CreateFileSystemObject();
  const auto start = Clock::now();
  FolderFiles folder(*files);
  RenameList list;
  list.SetItems(ListFiles(folder.Read(path), {.Extensions = {"GIF", "JPG"}, .OtherExtensions = {}}));
  list.AssignNewNames(*ReadNaming(prefix, StartNumber));
  BenchProgress progress;
  RenameFiles(*files, {.Folder = path, .Preserve = false, .Names = list.Names(), .Items = list.Items()},
              progress);
  return SecondsSince(start);
}

double Limit(const std::string& path, const std::string& prefix) {
  const auto files = CreateFileSystemObject();
  FolderFiles names(*files);
  WorkList list = ListFiles(names.Read(path), {.Extensions = {"JPG"}, .OtherExtensions = {}});
  const Naming naming = *ReadNaming(prefix, StartNumber);
  AssignNewNames(list, naming);
  std::vector<std::string> newNames;
  for (const RenameItem& item : list) newNames.push_back(NewName(naming, item));
  const int folder = open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) Fail(path);

  const auto start = Clock::now();
  for (std::size_t i = 0; i < list.size(); ++i)
    if (renameat2(folder, list[i].Name.c_str(), folder, newNames[i].c_str(), RENAME_NOREPLACE) != 0)
      Fail(list[i].Name);
  return SecondsSince(start);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string way = argv[1];
  if (way == "make")
    Make(argv[2], std::atoi(argv[3]));
  else
    std::printf("seconds %.4f\n", way == "ours" ? Ours(argv[2], argv[3]) : Limit(argv[2], argv[3]));
}
