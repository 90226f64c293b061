#include "compare/CompareEngine.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "common/Files.h"
#include "common/Progress.h"
#include "common/Text.h"
#include "platform/CaseRules.h"

namespace brackwell {
namespace {

constexpr std::string_view CheckingText = "Checking ";

/// Ends a run from whatever depth it has reached.
struct StoppedByUser {};

/// Tells which names stand in an ordered listing, when asked for names in that same order.
class Alongside {
 public:
  explicit Alongside(const std::vector<Member>& members) : mAt(members.begin()), mEnd(members.end()) {}

  bool Has(std::string_view name) {
    while (mAt != mEnd && OrderOfNames(mAt->Name, name) < 0) ++mAt;
    return mAt != mEnd && mAt->Name == name;
  }

 private:
  std::vector<Member>::const_iterator mAt;
  const std::vector<Member>::const_iterator mEnd;
};

bool IsFileStatus(const std::optional<FileStatus>& status) { return status && !status->IsFolder; }
bool IsFolderStatus(const std::optional<FileStatus>& status) { return status && status->IsFolder; }

std::unique_ptr<Folder> OpenIfThere(const FileSystemObject& files, const std::string& path,
                                    const Tick& tick) {
  try {
    return files.GetFolder(path, tick);
  } catch (const FileSystemError& error) {
    const FileError kind = error.Kind();
    if (kind != FileError::PathNotFound && kind != FileError::PermissionDenied &&
        kind != FileError::PathFileAccess)
      throw;
    return nullptr;
  }
}

void MakeUpper(std::vector<std::string>& texts) {
  for (std::string& text : texts) text = Upper(text);
}

}  // namespace

/// Answers for the counterparts of one folder's members. Where one root ends in a separator and the other
/// does not, counterparts do not lie in one folder, and each is looked up by its own path.
class CompareEngine::OtherSide {
 public:
  OtherSide(const CompareEngine& engine, const std::string& path, const std::string& from,
            const std::string& to)
      : mFiles(*engine.mFiles), mPath(path), mFrom(from), mTo(to), mByPath(!engine.mRootsAlign) {
    if (!mByPath) mFolder = OpenIfThere(mFiles, ReplaceRoot(path, from, to), engine.mTick);
  }

  Folder* OpenFolder() const { return mFolder.get(); }

  std::string CounterpartPath(std::string_view name) const {
    return ReplaceRoot(JoinPath(mPath, name), mFrom, mTo);
  }

  std::optional<FileStatus> Find(std::string_view name) const {
    if (mFolder) return mFolder->Find(name);
    if (!mByPath) return std::nullopt;
    const std::string path = CounterpartPath(name);
    if (mFiles.FolderExists(path)) return FileStatus{.IsFolder = true};
    if (!mFiles.FileExists(path)) return std::nullopt;
    const ItemProperties file = mFiles.GetFile(path);
    return FileStatus{.Size = file.Size, .DateLastModified = file.DateLastModified};
  }

 private:
  const FileSystemObject& mFiles;
  const std::string& mPath;
  const std::string& mFrom;
  const std::string& mTo;
  const bool mByPath;
  std::unique_ptr<Folder> mFolder;
};

CompareEngine::CompareEngine(const FileSystemObject& files, CompareOptions options, Progress& progress,
                             CompareRowSink sink)
    : mOptions(std::move(options)),
      mFiles(files.Within({mOptions.SourceRoot, mOptions.TargetRoot})),
      mProgress(progress),
      mSink(std::move(sink)),
      mTick([this] { DoEvents(); }),
      mRootsAlign(EndsWithSeparator(mOptions.SourceRoot) == EndsWithSeparator(mOptions.TargetRoot)) {
  MakeUpper(mOptions.ExtensionList);
  MakeUpper(mOptions.PrefixList);
}

bool CompareEngine::RunComparison() {
  try {
    CompareSourceFolder(mOptions.SourceRoot);
    CompareTargetFolder(mOptions.TargetRoot);
    return true;
  } catch (const StoppedByUser&) {
    return false;
  }
}

void CompareEngine::CompareSourceFolder(const std::string& path) {
  for (const SubFolder& subFolder : CompareSourceFiles(path)) {
    CompareSourceSubFolder(path, subFolder);
    DoEvents();
  }
}

/// Gives the sub-folders, so that no handle stays open while they are walked.
std::vector<CompareEngine::SubFolder> CompareEngine::CompareSourceFiles(const std::string& path) {
  const auto folder = mFiles->GetFolder(path, mTick);
  const OtherSide target(*this, path, mOptions.SourceRoot, mOptions.TargetRoot);
  for (const Member& file : folder->Files()) {
    if (!IsExcluded(file.Name)) CompareSourceFile(*folder, target, file.Name);
    DoEvents();
  }
  if (target.OpenFolder()) RememberTarget(*folder, *target.OpenFolder());

  std::vector<SubFolder> subFolders;
  if (!mOptions.CompareSubfolders) return subFolders;
  for (const Member& member : folder->SubFolders()) {
    if (!IsExcluded(member.Name))
      subFolders.push_back({std::string(member.Name), IsFolderStatus(target.Find(member.Name))});
    DoEvents();
  }
  return subFolders;
}

void CompareEngine::CompareSourceFile(Folder& folder, const OtherSide& target, std::string_view name) {
  const std::string_view path = Checking(folder.Path(), name);
  const auto there = target.Find(name);
  if (!IsFileStatus(there)) {
    if (!mOptions.FlagSourceFileMissing)
      throw FileSystemError(FileError::FileNotFound, target.CounterpartPath(name));
    return AddCompareRow(ResultKind::SourceFileMissingInTarget, mOptions.SourceRoot, path);
  }
  const auto here = folder.Find(name);
  if (!IsFileStatus(here)) return RequireGone(std::string(path));

  ResultKind kind = ResultKind::FileSame;
  if (mOptions.FlagSourceNewer && here->DateLastModified > there->DateLastModified)
    kind = ResultKind::SourceFileNewer;
  else if (mOptions.FlagTargetNewer && there->DateLastModified > here->DateLastModified)
    kind = ResultKind::TargetFileNewer;
  else if (mOptions.FlagSizes && here->Size != there->Size)
    kind = ResultKind::SizesDiffer;
  AddCompareRow(kind, mOptions.SourceRoot, path);
}

/// A file that was listed and is not found has gone meanwhile, or lies in a folder that may not be looked
/// into.
void CompareEngine::RequireGone(const std::string& path) const {
  try {
    mFiles->GetFile(path);
  } catch (const FileSystemError& error) {
    if (error.Kind() != FileError::FileNotFound) throw;
  }
}

void CompareEngine::CompareSourceSubFolder(const std::string& path, const SubFolder& subFolder) {
  const std::string subPath(Checking(path, subFolder.Name));
  if (mOptions.FlagSourceFolderMissing && !subFolder.IsOnOtherSide)
    return AddCompareRow(ResultKind::SourceFolderMissingInTarget, mOptions.SourceRoot, subPath);
  AddCompareRow(ResultKind::FolderSame, mOptions.SourceRoot, subPath);
  try {
    CompareSourceFolder(subPath);
  } catch (const FileSystemError& error) {
    if (!IsGoneFolder(*mFiles, error, subPath, mOptions.SourceRoot)) throw;
  }
}

void CompareEngine::CompareTargetFolder(const std::string& path) {
  const TargetFolder folder = TakeTargetFolder(path);
  for (const std::string& file : folder.FilesMissingInSource) {
    AddCompareRow(ResultKind::TargetFileMissingInSource, mOptions.TargetRoot, Checking(path, file));
    DoEvents();
  }
  for (const SubFolder& subFolder : folder.SubFolders) {
    CompareTargetSubFolder(path, subFolder);
    DoEvents();
  }
}

void CompareEngine::CompareTargetSubFolder(const std::string& path, const SubFolder& subFolder) {
  const std::string subPath(Checking(path, subFolder.Name));
  if (mOptions.FlagTargetFolderMissing && !subFolder.IsOnOtherSide)
    return AddCompareRow(ResultKind::TargetFolderMissingInSource, mOptions.TargetRoot, subPath);
  try {
    CompareTargetFolder(subPath);
  } catch (const FileSystemError& error) {
    if (!IsGoneFolder(*mFiles, error, subPath, mOptions.TargetRoot)) throw;
  }
}

/// While a source folder and its counterpart are both open and listed, what the walk over the target needs of
/// them costs next to nothing; later it would cost a listing and a look-up per file.
void CompareEngine::RememberTarget(Folder& source, Folder& target) try {
  TargetFolder remembered;
  if (mOptions.FlagTargetFileMissing) {
    Alongside sourceFiles(source.Files());
    for (const Member& file : target.Files()) {
      DoEvents();
      if (sourceFiles.Has(file.Name) || IsExcluded(file.Name)) continue;
      // Names may be written in another case, and files may have come since: the file system has the last
      // word.
      if (!IsFileStatus(source.Find(file.Name))) remembered.FilesMissingInSource.emplace_back(file.Name);
    }
  }
  if (mOptions.CompareSubfolders) {
    Alongside sourceFolders(source.SubFolders());
    for (const Member& member : target.SubFolders()) {
      DoEvents();
      const bool inSource = sourceFolders.Has(member.Name);
      if (IsExcluded(member.Name)) continue;
      remembered.SubFolders.push_back(
          {std::string(member.Name), inSource || IsFolderStatus(source.Find(member.Name))});
    }
  }
  mTargetFolders.insert_or_assign(target.Path(), std::move(remembered));
} catch (const FileSystemError&) {
  // The walk over the target meets the same error at its own time, after all findings of the source.
}

CompareEngine::TargetFolder CompareEngine::TakeTargetFolder(const std::string& path) {
  if (auto node = mTargetFolders.extract(path)) return std::move(node.mapped());
  return ReadTargetFolder(path);
}

CompareEngine::TargetFolder CompareEngine::ReadTargetFolder(const std::string& path) const {
  TargetFolder result;
  const auto folder = mFiles->GetFolder(path, mTick);
  const OtherSide source(*this, path, mOptions.TargetRoot, mOptions.SourceRoot);
  for (const Member& file : folder->Files()) {
    if (!IsExcluded(file.Name) && mOptions.FlagTargetFileMissing && !IsFileStatus(source.Find(file.Name)))
      result.FilesMissingInSource.emplace_back(file.Name);
    DoEvents();
  }
  if (!mOptions.CompareSubfolders) return result;
  for (const Member& member : folder->SubFolders()) {
    if (!IsExcluded(member.Name))
      result.SubFolders.push_back({std::string(member.Name), IsFolderStatus(source.Find(member.Name))});
    DoEvents();
  }
  return result;
}

bool CompareEngine::IsExcluded(std::string_view name) const {
  if (mOptions.ExtensionList.empty() && mOptions.PrefixList.empty()) return false;
  if (!mOptions.ExtensionList.empty() &&
      std::ranges::count(mOptions.ExtensionList, GetFileExtension(name)) > 0)
    return true;
  const std::string upper = Upper(name);
  return std::ranges::any_of(mOptions.PrefixList,
                             [&](const std::string& prefix) { return upper.starts_with(prefix); });
}

void CompareEngine::AddCompareRow(ResultKind kind, std::string_view root, std::string_view path) {
  mSink(MakeRow(kind, mOptions.ShowFullPath ? std::string(path) : ReplaceRoot(path, root, {})));
}

/// Tells what is in hand. Gives its path, valid until the next call.
std::string_view CompareEngine::Checking(std::string_view folder, std::string_view name) {
  mMessage = CheckingText;
  mMessage += folder;
  if (!EndsWithSeparator(folder)) mMessage += PathSeparator;
  mMessage += name;
  mProgress.Message(mMessage);
  return std::string_view(mMessage).substr(CheckingText.size());
}

void CompareEngine::DoEvents() const {
  mProgress.DoEvents();
  if (mProgress.Stopped()) throw StoppedByUser{};
}

}  // namespace brackwell
