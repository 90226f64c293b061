#include "platform/FileSystemObject.h"

#include <exception>
#include <optional>

#include "platform/CaseRules.h"

namespace brackwell {
namespace {

void CallTick(const Tick& tick) {
  if (tick) tick();
}

/// How the folder at `path` spells the sub-folder that it finds under `name`; nothing where that cannot be
/// known.
std::optional<std::string> SpellingIn(const FileSystemObject& files, const std::string& path,
                                      std::string_view name) try {
  std::optional<std::string> spelling;
  const auto folder = files.GetFolder(path);
  for (const Member& member : folder->SubFolders()) {
    if (member.Name == name) return std::string(name);
    if (CompareIgnoreCase(member.Name, name) == 0) spelling = member.Name;
  }
  return spelling;
} catch (const FileSystemError&) {
  return std::nullopt;
}

/// Whether the target is there as the copy of another source folder, whose name differs in case only, on a
/// disk that ignores case: the two would become one, and files of the one replace those of the other.
bool IsCopyOfAnother(const FileSystemObject& files, const std::string& source, const std::string& target) {
  if (!files.FolderExists(target)) return false;
  const auto spelling = SpellingIn(files, std::string(ParentPath(target)), FileName(target));
  return spelling && *spelling != FileName(target) && *spelling != FileName(source) &&
         SpellingIn(files, std::string(ParentPath(source)), *spelling) == spelling;
}

/// One run of CopyFolder.
class FolderCopy {
 public:
  FolderCopy(FileSystemObject& files, bool overwrite, const Tick& tick)
      : mFiles(files), mOverwrite(overwrite), mTick(tick) {}

  void Copy(const std::string& source, const std::string& target) {
    Enter(source, target);
    while (!mLevels.empty()) {
      Level& level = mLevels.back();
      if (level.Next < level.SubFolders.size()) {
        const std::size_t at = level.Next++;
        CallTick(mTick);
        Try([&] { EnterSubFolder(level, at); });
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
    std::vector<std::string> SubFolders;
    std::size_t Next = 0;
    bool Made = false;
  };

  /// Those whose names differ in case only stand side by side.
  static bool HasTwin(const std::vector<std::string>& names, std::size_t at) {
    const auto isTwin = [&](std::size_t other) { return CompareIgnoreCase(names[at], names[other]) == 0; };
    return (at > 0 && isTwin(at - 1)) || (at + 1 < names.size() && isTwin(at + 1));
  }

  void EnterSubFolder(const Level& level, std::size_t at) {
    const std::string source = JoinPath(level.Source, level.SubFolders[at]);
    const std::string target = JoinPath(level.Target, level.SubFolders[at]);
    if (HasTwin(level.SubFolders, at) && IsCopyOfAnother(mFiles, source, target))
      throw FileSystemError(FileError::FileAlreadyExists, target);
    Enter(source, target);
  }

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

  static std::vector<std::string> SubFoldersOf(Folder& folder) {
    std::vector<std::string> names;
    for (const Member& member : folder.SubFolders()) names.emplace_back(member.Name);
    return names;
  }

  void CopyFilesOf(Folder& folder, const std::string& source, const std::string& target) {
    for (const Member& file : folder.Files()) {
      CallTick(mTick);
      Try([&] {
        mFiles.CopyFile(JoinPath(source, file.Name), JoinPath(target, file.Name), mOverwrite, mTick);
      });
    }
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
  if (IsCopyOfAnother(*this, source, target)) throw FileSystemError(FileError::FileAlreadyExists, target);
  FolderCopy copy(*this, overwrite, tick);
  copy.Copy(source, target);
  copy.RaiseFirstError();
}

}  // namespace brackwell
