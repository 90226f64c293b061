#include "rename/FolderFiles.h"

namespace brackwell {
namespace {

DateTime Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

}  // namespace

const std::vector<std::string>& FolderFiles::Read(const std::string& path) {
  try {
    const auto folder = mFiles.GetFolder(path);
    if (path == mFolder && IsKept(*folder)) return mNames;
    // Before the names: what changes after this is noticed the next time.
    mRead = Now();
    mModified = folder->Properties().DateLastModified;
    mIdentity = mFiles.Identity(path);
    ReadNames(*folder);
    mFolder = path;
    return mNames;
  } catch (const FileSystemError&) {
    Forget();
    mTaken = {};
    throw;
  }
}

void FolderFiles::ReadNames(Folder& folder) {
  mNames.clear();
  mTaken = {};
  for (const Member& file : folder.Files()) {
    mNames.emplace_back(file.Name);
    mTaken.All.Add(NameCounts::KeyOf(file.Name));
    if (file.IsLink) mTaken.Kept.Add(NameCounts::KeyOf(file.Name));
  }
  for (const Member& subFolder : folder.SubFolders()) {
    mTaken.All.Add(NameCounts::KeyOf(subFolder.Name));
    mTaken.Kept.Add(NameCounts::KeyOf(subFolder.Name));
  }
}

/// Dates are whole seconds, on some file systems two of them: what was read in the same moment in which the
/// folder changed may have changed once more.
bool FolderFiles::IsKept(const Folder& folder) const {
  constexpr auto Moment = std::chrono::seconds(3);
  return mModified + Moment < mRead && folder.Properties().DateLastModified == mModified &&
         mFiles.Identity(folder.Path()) == mIdentity;
}

}  // namespace brackwell
