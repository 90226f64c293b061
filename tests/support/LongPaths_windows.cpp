#include "support/LongPaths_windows.h"

#include "platform/Win32.h"

namespace brackwell {

std::string MakeFolders(FileSystemObject& files, const std::string& top, const std::string& below) {
  const std::string path = JoinPath(top, below);
  for (std::size_t end = WithoutSeparator(top).size(); end != std::string::npos;) {
    end = path.find(PathSeparator, end + 1);
    const std::string folder = path.substr(0, end);
    if (!files.FolderExists(folder)) files.CreateFolder(folder);
  }
  return path;
}

void RemoveTree(const FileSystemObject& files, const std::string& path) {
  const auto folder = files.GetFolder(path);
  for (const Member& file : folder->Files())
    DeleteFileW(win32::NativePath(JoinPath(path, file.Name)).c_str());
  for (const Member& subFolder : folder->SubFolders()) RemoveTree(files, JoinPath(path, subFolder.Name));
  RemoveDirectoryW(win32::NativePath(path).c_str());
}

}  // namespace brackwell
