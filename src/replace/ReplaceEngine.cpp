#include "replace/ReplaceEngine.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/Files.h"
#include "common/Progress.h"
#include "common/Text.h"
#include "platform/CaseRules.h"
#include "replace/FileCounter.h"
#include "replace/FileReplacer.h"

namespace brackwell {
namespace {

/// Ends a scan from whatever depth it has reached.
struct StoppedByUser {};

constexpr std::int64_t LargestCount = std::numeric_limits<std::int32_t>::max();

bool IsMissing(const FileSystemError& error) {
  return error.Kind() == FileError::FileNotFound || error.Kind() == FileError::PathNotFound;
}

}  // namespace

std::vector<std::string> ParseList(std::string_view text) { return SplitList(TidyList(Lower(text))); }

bool ExtensionInList(std::string_view extension, const std::vector<std::string>& list) {
  return std::ranges::find(list, Lower(extension)) != list.end();
}

bool NameIsExcluded(std::string_view name, const std::vector<std::string>& list) {
  if (list.empty()) return false;
  const std::string lower = Lower(name);
  return std::ranges::any_of(list, [&](const std::string& item) { return lower.starts_with(item); });
}

ReplaceEngine::ReplaceEngine(FileSystemObject& files, ReplaceOptions options, Progress& progress,
                             ReplaceRows& rows, ReplaceProblemSink problem)
    : mOptions(std::move(options)),
      mFiles(files.Within({mOptions.Folder})),
      mProgress(progress),
      mRows(rows),
      mProblem(std::move(problem)),
      mTick([this] { DoEvents(); }),
      mCounter(mOptions.ReplaceMode ? nullptr
                                    : std::make_unique<FileCounter>(*mFiles, mOptions.Find, mRows, mTick)),
      mReplacer(mOptions.ReplaceMode ? std::make_unique<FileReplacer>(mOptions.Find, mOptions.Replace,
                                                                      [this] { mProgress.DoEvents(); })
                                     : nullptr) {}

ReplaceEngine::~ReplaceEngine() = default;

bool ReplaceEngine::ScanFolder() {
  try {
    // Not on the program's stack: trees may be deeper than that.
    std::vector<std::string> pending{mOptions.Folder};
    while (!pending.empty()) {
      const std::string next = std::move(pending.back());
      pending.pop_back();
      ListUnlessGone(next, pending);
      DoEvents();
    }
    return true;
  } catch (const StoppedByUser&) {
    return false;
  }
}

/// A subfolder may go, or become a link, once it has been listed.
void ReplaceEngine::ListUnlessGone(const std::string& path, std::vector<std::string>& pending) try {
  ListFolder(path, pending);
} catch (const FileSystemError& error) {
  if (!IsGoneFolder(*mFiles, error, path, mOptions.Folder)) throw;
}

/// Its files before its subfolders, and those before whatever else is pending.
void ReplaceEngine::ListFolder(const std::string& path, std::vector<std::string>& pending) {
  const auto folder = mFiles->GetFolder(path, mTick);
  Tell("Scanning - ", path);
  try {
    ListFiles(*folder);
  } catch (const FileSystemError&) {
    // A folder that may not be listed has no files to look into.
  }
  if (!mOptions.Subfolders) return;
  const std::vector<Member>& subFolders = folder->SubFolders();
  for (auto member = subFolders.rbegin(); member != subFolders.rend(); ++member)
    if (!NameIsExcluded(member->Name, mOptions.ExclusionList))
      pending.push_back(JoinPath(path, member->Name));
}

void ReplaceEngine::ListFiles(Folder& folder) {
  for (const Member& file : folder.Files()) {
    if (!file.IsLink && ExtensionInList(GetFileExtension(file.Name), mOptions.ExtensionList) &&
        !NameIsExcluded(file.Name, mOptions.ExclusionList))
      mRows.push_back({JoinPath(folder.Path(), file.Name), {}});
    if (mCounter) mCounter->LookAhead();
    DoEvents();
  }
}

bool ReplaceEngine::ProcessFiles() try {
  const std::size_t count = mRows.size();
  for (mItem = 0; mItem < count;) {
    if (mProgress.Stopped()) return false;
    ReplaceRow& row = mRows[mItem++];
    Tell("Working - ", row.Path);
    Process(row);
    AddToTotal(row);
    mProgress.DoEvents();
  }
  return true;
} catch (const StoppedByUser&) {
  --mItem;  // it was given up
  return false;
}

/// A file that is gone keeps its row, without a result.
void ReplaceEngine::Process(ReplaceRow& row) try {
  if (mOptions.ReplaceMode)
    Replace(row);
  else
    Find(row);
} catch (const FileSystemError& error) {
  if (!IsMissing(error) || !IsGone(row.Path)) throw;
}

/// A drive that is taken out, or a folder that goes as a whole, has no files any more either; that is no
/// reason to go on.
bool ReplaceEngine::IsGone(const std::string& path) const try {
  return mFiles->FolderExists(mOptions.Folder) &&
         (mFiles->GetFile(path).Attributes & Attribute::Alias) != 0;  // a link has taken its place
} catch (const FileSystemError& error) {
  return IsMissing(error);
}

void ReplaceEngine::Find(ReplaceRow& row) { SetResult(row, ReplaceResult::Kind::Found, mCounter->Next()); }

void ReplaceEngine::Replace(ReplaceRow& row) {
  auto file = OpenUnlessEmpty(*mFiles, row.Path);
  if (file && IsKnown(*file, row)) return;
  SetResult(row, ReplaceResult::Kind::Replaced,
            file ? std::optional(mReplacer->CountMatches(*file)) : std::nullopt);
  if (row.Result.Count == 0) return;
  const auto problem = mReplacer->ReplaceText();
  file.reset();
  if (problem) mProblem(*problem, row);
}

/// True where an earlier row has the file by another name.
bool ReplaceEngine::IsKnown(const TextReader& file, ReplaceRow& row) {
  const auto identity = file.SharedIdentity();
  if (!identity) return false;
  const auto [first, isNew] = mFirstRows.try_emplace(*identity, static_cast<std::int32_t>(mItem - 1));
  if (!isNew) row.Result = {ReplaceResult::Kind::SameFile, first->second};
  return !isNew;
}

/// Without a count it is a file of no size.
void ReplaceEngine::SetResult(ReplaceRow& row, ReplaceResult::Kind kind, std::optional<std::int64_t> count) {
  if (count > LargestCount) throw OverflowError(row.Path);
  if (count)
    row.Result = {kind, static_cast<std::int32_t>(*count)};
  else
    row.Result = {ReplaceResult::Kind::ZeroSize, 0};
}

void ReplaceEngine::AddToTotal(const ReplaceRow& row) {
  if (row.Result.Matches() > LargestCount - mTotal) throw OverflowError(row.Path);
  mTotal += row.Result.Matches();
}

void ReplaceEngine::Tell(std::string_view what, std::string_view path) {
  mMessage = what;
  mMessage += path;
  mProgress.Message(mMessage);
}

void ReplaceEngine::DoEvents() const {
  mProgress.DoEvents();
  if (mProgress.Stopped()) throw StoppedByUser{};
}

}  // namespace brackwell
