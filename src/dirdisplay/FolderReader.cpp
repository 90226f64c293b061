#include "dirdisplay/FolderReader.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "common/Files.h"

namespace brackwell {
namespace {

/// Ends the walk from wherever it is.
struct Unwanted {};

/// A folder takes about as long as that many files. Each holds a handle until it is taken.
constexpr std::size_t FolderWeight = 64;
/// Handing over costs a change of threads, so it is done by the batch; and how far the walk may be ahead.
constexpr std::size_t BatchWeight = 4096;
constexpr std::size_t MostWeight = 2 * BatchWeight;

constexpr auto TimeBetweenTicks = std::chrono::milliseconds(10);

}  // namespace

/// A folder whose sub-folders are still to come.
struct FolderReader::Level {
  std::string Path;
  std::vector<std::string> SubFolders = {};
  std::size_t Next = 0;
};

FolderReader::FolderReader(const FileSystemObject& files, ReadingPlan plan)
    : mPlan(std::move(plan)),
      mFiles(files.Within({mPlan.Folder})),
      mTick([this] {
        if (mUnwanted) throw Unwanted();
      }),
      mThread([this] { Run(); }) {}

FolderReader::~FolderReader() {
  {
    const std::lock_guard lock(mMutex);
    mUnwanted = true;
  }
  mChanged.notify_all();
  mThread.join();
}

std::optional<FolderPart> FolderReader::Next(const Tick& tick) {
  if (mNext == mTaken.size()) {
    mTaken.clear();
    mNext = 0;
    std::unique_lock lock(mMutex);
    while (!mChanged.wait_for(lock, TimeBetweenTicks, [this] { return mEnded || !mReady.Parts.empty(); })) {
      lock.unlock();
      tick();
      lock.lock();
    }
    if (mReady.Parts.empty()) {
      if (mError) std::rethrow_exception(mError);
      return std::nullopt;
    }
    mTaken = std::move(mReady.Parts);
    mReady = {};
    mChanged.notify_all();
  }
  return std::move(mTaken[mNext++]);
}

void FolderReader::Run() {
  std::exception_ptr error;
  try {
    Walk();
  } catch (const Unwanted&) {
  } catch (...) {
    error = std::current_exception();
  }
  const std::lock_guard lock(mMutex);
  std::ranges::move(mRead.Parts, std::back_inserter(mReady.Parts));
  mError = error;
  mEnded = true;
  mChanged.notify_all();
}

void FolderReader::Walk() {
  EnterFolder(mPlan.Folder);
  while (!mLevels.empty()) {
    mTick();
    Level& level = mLevels.back();
    if (level.Next == level.SubFolders.size()) {
      mLevels.pop_back();
      continue;
    }
    EnterSubFolder(JoinPath(level.Path, level.SubFolders[level.Next++]));
  }
}

/// One that is gone is left out: nothing of it has been added yet.
void FolderReader::EnterSubFolder(const std::string& path) try {
  EnterFolder(path);
} catch (const FileSystemError& error) {
  if (!IsGoneFolder(*mFiles, error, path, mPlan.Folder)) throw;
}

void FolderReader::EnterFolder(const std::string& path) {
  FolderPart part{.Object = mFiles->GetFolder(path, mTick), .Depth = mLevels.size()};
  part.Properties = ReadProperties(*part.Object);
  Level level{.Path = path};
  if (mPlan.IncludesSubFolders)
    for (const Member& member : part.Object->SubFolders()) level.SubFolders.emplace_back(member.Name);
  if (mPlan.IncludesFiles || mPlan.ReadsSizes)
    ReadFiles(std::move(part));
  else
    Add(std::move(part));
  mLevels.push_back(std::move(level));
}

std::vector<PropertyValue> FolderReader::ReadProperties(Folder& folder) {
  FolderItem item{*mFiles, folder};
  std::vector<PropertyValue> values;
  values.reserve(mPlan.FolderProperties.size());
  for (const InfoKey key : mPlan.FolderProperties)
    values.push_back(key == InfoKey::Size && !mPlan.ReadsSizes ? SizeBelow(folder.Path())
                                                               : GetFolderProperty(item, key));
  return values;
}

PropertyValue FolderReader::SizeBelow(const std::string& path) const try {
  return FolderSize(*mFiles, path, mTick);
} catch (const FileSystemError&) {
  return {};
}

/// One folder may have very many files.
void FolderReader::ReadFiles(FolderPart part) {
  const std::vector<Member>& files = part.Object->Files();
  const bool reads = mPlan.ReadsDetails || mPlan.ReadsSizes;
  do {
    part.EndFile = std::min(files.size(), part.FirstFile + BatchWeight);
    if (reads) part.Details.reserve(part.EndFile - part.FirstFile);
    for (std::size_t file = part.FirstFile; reads && file < part.EndFile; ++file)
      part.Details.push_back(ReadFile(*part.Object, files[file].Name));
    FolderPart rest{.Object = part.Object, .Depth = part.Depth, .FirstFile = part.EndFile};
    Add(std::exchange(part, std::move(rest)));
  } while (part.FirstFile < files.size());
}

std::optional<ItemDetails> FolderReader::ReadFile(const Folder& folder, std::string_view name) const try {
  if (mPlan.ReadsDetails) return folder.FileDetails(name);
  const auto status = folder.Find(name);
  return ItemDetails{.Size = status ? status->Size : 0};
} catch (const FileSystemError& error) {
  if (error.Kind() == FileError::FileNotFound && !folder.Find(name)) return std::nullopt;
  throw;
}

void FolderReader::Add(FolderPart part) {
  mRead.Weight += FolderWeight + part.EndFile - part.FirstFile;
  mRead.Parts.push_back(std::move(part));
  if (mRead.Weight >= BatchWeight) HandOver();
}

void FolderReader::HandOver() {
  std::unique_lock lock(mMutex);
  mChanged.wait(lock, [this] { return mUnwanted || mReady.Weight < MostWeight; });
  if (mUnwanted) throw Unwanted();
  std::ranges::move(mRead.Parts, std::back_inserter(mReady.Parts));
  mReady.Weight += mRead.Weight;
  mRead = {};
  mChanged.notify_all();
}

}  // namespace brackwell
