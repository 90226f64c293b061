#include "common/Files.h"

#include <utility>
#include <vector>

namespace brackwell {
namespace {

/// Adds up one folder's files and notes its sub-folders, so that no handle stays open while they are walked.
std::uint64_t SizeOfFiles(const FileSystemObject& files, const std::string& path, const Tick& tick,
                          std::vector<std::string>& subFolders) {
  std::uint64_t size = 0;
  const auto folder = files.GetFolder(path, tick);
  for (const Member& member : folder->Files()) {
    if (const auto status = folder->Find(member.Name)) size += status->Size;
    if (tick) tick();
  }
  for (const Member& member : folder->SubFolders()) subFolders.push_back(JoinPath(path, member.Name));
  return size;
}

}  // namespace

void WriteTextFile(FileSystemObject& files, const std::string& path, bool overwrite, std::string_view text) {
  const auto file = files.CreateTextFile(path, overwrite);
  file->Write(text);
  file->Close();
}

std::uint64_t FolderSize(const FileSystemObject& files, const std::string& path, const Tick& tick) {
  std::vector<std::string> pending;  // not on the program's stack: trees may be deeper than that
  std::uint64_t size = SizeOfFiles(files, path, tick, pending);
  while (!pending.empty()) {
    const std::string folder = std::move(pending.back());
    pending.pop_back();
    size += SizeOfFiles(files, folder, tick, pending);
  }
  return size;
}

bool IsGoneFolder(const FileSystemObject& files, const FileSystemError& error, const std::string& path,
                  const std::string& root) {
  return error.Kind() == FileError::PathNotFound && error.Path() == path && path != root &&
         !files.FolderExists(path) && files.FolderExists(root);
}

}  // namespace brackwell
