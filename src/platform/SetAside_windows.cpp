#include "platform/SetAside_windows.h"

#include "platform/PendingFile_windows.h"

namespace brackwell::win32 {
namespace {

bool Move(const std::string& from, const std::string& to) {
  return MoveFileExW(NativePath(from).c_str(), NativePath(to).c_str(), 0);
}

}  // namespace

SetAside::SetAside(const std::string& path, const Found& item)
    : mPath(path), mAside(NeighbourPath(path, NeighbourNumbers)), mItem(item) {
  const auto leftover = FindItem(mAside);
  if (leftover) win32::Remove(mAside, *leftover);
  if (!Move(mPath, mAside)) Raise(GetLastError(), mPath);
}

SetAside::~SetAside() {
  if (!mIsSuperseded) Move(mAside, mPath);
}

void SetAside::Remove() {
  mIsSuperseded = true;
  win32::Remove(mAside, mItem);
}

bool IsMadeAsFolder(const Found& link) {
  return (link.Information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Remove(const std::string& path, const Found& item) {
  const std::wstring nativePath = NativePath(path);
  return IsMadeAsFolder(item) ? RemoveDirectoryW(nativePath.c_str()) : DeleteFileW(nativePath.c_str());
}

}  // namespace brackwell::win32
