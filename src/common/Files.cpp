#include "common/Files.h"

#include <utility>
#include <vector>

namespace brackwell {
namespace {

struct SubFolder {
  std::string Path;
  bool IsLink;
};

/// Adds up one folder's files and notes its sub-folders, so that no handle stays open while they are walked.
std::uint64_t SizeOfFiles(const FileSystemObject& files, const std::string& path, const Tick& tick,
                          std::vector<SubFolder>& subFolders) {
  std::uint64_t size = 0;
  const auto folder = files.GetFolder(path, tick);
  for (const Member& member : folder->Files()) {
    if (const auto status = folder->Find(member.Name)) size += status->Size;
    if (tick) tick();
  }
  for (const Member& member : folder->SubFolders())
    subFolders.push_back({JoinPath(path, member.Name), member.IsLink});
  return size;
}

}  // namespace

void WriteTextFile(FileSystemObject& files, const std::string& path, bool overwrite, std::string_view text) {
  const auto file = files.CreateTextFile(path, overwrite);
  file->Write(text);
  file->Close();
}

std::uint64_t FolderSize(const FileSystemObject& files, const std::string& path, const Tick& tick) {
  std::vector<SubFolder> pending;  // not on the program's stack: trees may be deeper than that
  std::uint64_t size = SizeOfFiles(files, path, tick, pending);
  while (!pending.empty()) {
    const SubFolder folder = std::move(pending.back());
    pending.pop_back();
    if (!folder.IsLink || !LeadsBack(files, path, folder.Path))
      size += SizeOfFiles(files, folder.Path, tick, pending);
  }
  return size;
}

}  // namespace brackwell
