#include "platform/FileSystemObject.h"

#include <exception>

namespace brackwell {
namespace {

void CallTick(const Tick& tick) {
  if (tick) tick();
}

/// One run of CopyFolder.
class FolderCopy {
 public:
  FolderCopy(FileSystemObject& files, std::string root, bool overwrite, const Tick& tick)
      : mFiles(files), mRoot(std::move(root)), mOverwrite(overwrite), mTick(tick) {}

  void Copy(const std::string& source, const std::string& target) {
    Enter(source, target);
    while (!mLevels.empty()) {
      Level& level = mLevels.back();
      if (level.Next < level.SubFolders.size()) {
        const SubFolder& subFolder = level.SubFolders[level.Next++];
        Try([&] {
          EnterSubFolder(JoinPath(level.Source, subFolder.Name), JoinPath(level.Target, subFolder.Name),
                         subFolder.IsLink);
        });
      } else {
        Try([&] {
          if (level.Made) mFiles.CopyFolderProperties(level.Source, level.Target);
        });
        mLevels.pop_back();
      }
    }
  }

  void RaiseFirstError() const {
    if (mFirstError) std::rethrow_exception(mFirstError);
  }

 private:
  struct SubFolder {
    std::string Name;
    bool IsLink;
  };

  /// Closed to others from the start where the source is, so that nothing private shows while it is copied,
  /// or for good if the copy does not come to its end. A read-only folder has to wait for its contents.
  void MakeLike(const Folder& folder, const std::string& source, const std::string& target) {
    mFiles.CreateFolder(target);
    if ((folder.Properties().Attributes & Attribute::ReadOnly) == 0)
      mFiles.CopyFolderProperties(source, target);
  }

  /// A folder whose files are copied and whose sub-folders are being copied.
  struct Level {
    std::string Source;
    std::string Target;
    std::vector<SubFolder> SubFolders;
    std::size_t Next = 0;
    bool Made = false;
  };

  /// Copies a folder's files and notes its sub-folders.
  void Enter(const std::string& source, const std::string& target) {
    // Listed first: nothing is made for a folder that cannot be read.
    const auto folder = mFiles.GetFolder(source, mTick);
    Level level{.Source = source, .Target = target, .SubFolders = SubFoldersOf(*folder)};
    level.Made = !mFiles.FolderExists(target);
    if (level.Made) MakeLike(*folder, source, target);
    CopyFilesOf(*folder, source, target);
    mLevels.push_back(std::move(level));
  }

  static std::vector<SubFolder> SubFoldersOf(Folder& folder) {
    std::vector<SubFolder> subFolders;
    for (const Member& member : folder.SubFolders())
      subFolders.push_back({std::string(member.Name), member.IsLink});
    return subFolders;
  }

  void CopyFilesOf(Folder& folder, const std::string& source, const std::string& target) {
    for (const Member& file : folder.Files()) {
      CallTick(mTick);
      Try([&] { CopyOneFile(JoinPath(source, file.Name), JoinPath(target, file.Name), file.IsLink); });
    }
  }

  void CopyOneFile(const std::string& source, const std::string& target, bool isLink) {
    try {
      mFiles.CopyFile(source, target, mOverwrite, mTick);
    } catch (const FileSystemError& error) {
      if (!isLink || error.Kind() != FileError::FileNotFound) throw;
      mFiles.CopyLink(source, target);
    }
  }

  void EnterSubFolder(const std::string& source, const std::string& target, bool isLink) {
    CallTick(mTick);
    if (isLink && LeadsBack(mFiles, mRoot, source)) return mFiles.CopyLink(source, target);
    // What the copy itself lies in would grow while it is copied, without end.
    if (isLink && mFiles.LiesWithin(std::string(ParentPath(target)), source))
      throw FileSystemError(FileError::PathFileAccess, source);
    Enter(source, target);
  }

  template <typename Step>
  void Try(Step step) {
    try {
      step();
    } catch (const FileSystemError& error) {
      if (error.Kind() == FileError::DiskFull) throw;
      if (!mFirstError) mFirstError = std::current_exception();
    }
  }

  FileSystemObject& mFiles;
  const std::string mRoot;
  const bool mOverwrite;
  const Tick& mTick;
  std::vector<Level> mLevels;  // not on the program's stack: trees may be deeper than that
  std::exception_ptr mFirstError;
};

std::string NearestExistingFolder(const FileSystemObject& files, std::string path) {
  while (!path.empty() && !files.FolderExists(path)) path = ParentPath(path);
  return path;
}

}  // namespace

void FileSystemObject::CopyFolder(const std::string& source, const std::string& target, bool overwrite,
                                  const Tick& tick) {
  if (!FolderExists(source)) throw FileSystemError(FileError::PathNotFound, source);
  if (FileExists(target)) throw FileSystemError(FileError::FileAlreadyExists, target);
  const std::string place = NearestExistingFolder(*this, target);
  if (!place.empty() && LiesWithin(place, source)) throw FileSystemError(FileError::PathFileAccess, source);
  FolderCopy copy(*this, source, overwrite, tick);
  copy.Copy(source, target);
  copy.RaiseFirstError();
}

bool LeadsBack(const FileSystemObject& files, const std::string& root, const std::string& path) {
  const FolderIdentity identity = files.Identity(path);
  const std::size_t rootLength = WithoutSeparator(root).size();
  for (std::string_view folder = ParentPath(path); folder.size() >= rootLength && !folder.empty();) {
    if (files.Identity(std::string(folder)) == identity) return true;
    const std::string_view parent = ParentPath(folder);
    if (parent.size() >= folder.size()) break;
    folder = parent;
  }
  return false;
}

}  // namespace brackwell
