#include "rename/FolderFiles.h"

namespace brackwell {

const std::vector<std::string>& FolderFiles::Read(const std::string& path) {
  try {
    const auto folder = mFiles.GetFolder(path);
    // Taken before the names are read, so that the next call notices changes made meanwhile.
    const DateTime now = mNow();
    const FolderState state = folder->State();
    if (path == mFolder && IsKept(state)) return mNames;
    mRead = now;
    mState = state;
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

/// Some file systems store times in units of two seconds, so names that were read right after a change may
/// have changed once more without leaving a trace.
bool FolderFiles::IsKept(const FolderState& state) const {
  constexpr auto Moment = std::chrono::seconds(3);
  return state == mState && mState.LastChanged + Moment < mRead;
}

}  // namespace brackwell
