#include "replace/FileCounter.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <system_error>
#include <utility>

#include "replace/FileReplacer.h"

namespace brackwell {
namespace {

/// Ends the counting of a file.
struct Unwanted {};

constexpr std::size_t MostThreads = 4;

/// With fewer, threads would save less time than it takes to start them.
constexpr std::size_t FewFiles = 32;

/// Handing over costs a lock, so it is done by the batch; and how far the threads may be ahead, so that they
/// have work while folders are listed and the window paints.
constexpr std::size_t BatchSize = 64;
constexpr std::size_t BatchesAhead = 512;

constexpr auto TimeBetweenTicks = std::chrono::milliseconds(10);

/// Cores that write to what lies closer together wait for each other.
constexpr std::size_t CacheLine = 64;

std::optional<std::int64_t> CountMatches(const FileSystemObject& files, const std::string& path,
                                         FileReplacer& replacer) {
  const auto file = OpenUnlessEmpty(files, path);
  if (!file) return std::nullopt;
  return replacer.CountMatches(*file);
}

}  // namespace

struct FileCounter::Item {
  const std::string* Path = nullptr;
  std::optional<std::int64_t> Count;
  std::exception_ptr Error;
};

struct alignas(CacheLine) FileCounter::Batch {
  std::vector<Item> Items;
  std::atomic<std::size_t> Done = 0;  // so many of them can be taken
};

std::size_t FileCounter::UsualThreads() {
  const std::size_t cores = std::thread::hardware_concurrency();
  return cores > 1 ? std::min(cores, MostThreads) : 0;
}

FileCounter::FileCounter(const FileSystemObject& files, std::string find, const ReplaceRows& rows, Tick tick,
                         std::size_t threads)
    : mFiles(files), mFind(std::move(find)), mRows(rows), mTick(std::move(tick)), mMostThreads(threads) {}

FileCounter::~FileCounter() {
  {
    const std::lock_guard lock(mMutex);
    mUnwanted = true;
  }
  mFilling.notify_all();
  for (std::thread& thread : mThreads) thread.join();
}

void FileCounter::LookAhead() {
  if (mThreads.empty() && mMostThreads > 0 && mRows.size() >= FewFiles) StartThreads();
  if (mThreads.empty()) return;
  while (HasRoom() && RowsLeft() >= UsualSize()) FillBatch(UsualSize());
}

/// As many as can be had.
void FileCounter::StartThreads() {
  const Tick tick = [this] {
    if (mUnwanted) throw Unwanted();
  };
  mBatches = std::vector<Batch>(BatchesAhead);
  mThreads.reserve(mMostThreads);
  try {
    while (mThreads.size() < mMostThreads) {
      mReplacers.push_back(std::make_unique<FileReplacer>(mFind, std::string_view(), tick));
      mThreads.emplace_back([this, &replacer = *mReplacers.back()] { Run(replacer); });
    }
  } catch (const std::system_error&) {
    mReplacers.pop_back();
    mMostThreads = mThreads.size();
  }
}

std::optional<std::int64_t> FileCounter::Next() {
  if (!mBatch) LookAhead();
  if (mThreads.empty()) {
    if (mReplacers.empty())
      mReplacers.push_back(std::make_unique<FileReplacer>(mFind, std::string_view(), mTick));
    return CountMatches(mFiles, mRows[mNextRow++].Path, *mReplacers.front());
  }
  if (!mBatch || mNextItem == mBatch->Items.size()) BeginBatch();
  AwaitItem();
  const Item& item = mBatch->Items[mNextItem++];
  if (item.Error) std::rethrow_exception(item.Error);
  return item.Count;
}

/// All rows are there now, so the end is in sight.
void FileCounter::BeginBatch() {
  if (mBatch) ++mTaken;
  while (RowsLeft() > 0 && HasRoom())
    FillBatch(std::clamp<std::size_t>(RowsLeft() / (4 * mThreads.size()), 1, UsualSize()));
  mBatch = &BatchAt(mTaken);
  mNextItem = 0;
}

/// Small ones first, and last: files may be large, and all threads are to have some until the end.
std::size_t FileCounter::UsualSize() const { return std::clamp<std::size_t>(mNextRow / 8, 1, BatchSize); }

bool FileCounter::HasRoom() const { return mFilled - mTaken < BatchesAhead; }

FileCounter::Batch& FileCounter::BatchAt(std::size_t index) { return mBatches[index % BatchesAhead]; }

void FileCounter::FillBatch(std::size_t size) {
  Batch& batch = BatchAt(mFilled);
  batch.Items.resize(size);
  batch.Done.store(0, std::memory_order_relaxed);
  for (Item& item : batch.Items) item.Path = &mRows[mNextRow++].Path;
  {
    const std::lock_guard lock(mMutex);
    ++mFilled;
  }
  mFilling.notify_one();
}

void FileCounter::AwaitItem() {
  const auto isDone = [this] { return mBatch->Done.load(std::memory_order_acquire) > mNextItem; };
  while (!isDone()) {
    std::unique_lock lock(mMutex);
    const bool isTime = !mCounting.wait_for(lock, TimeBetweenTicks, isDone);
    lock.unlock();
    if (isTime) mTick();
  }
}

void FileCounter::Run(FileReplacer& replacer) {
  while (Batch* const batch = ClaimBatch()) Count(*batch, replacer);
}

/// Whoever takes looks for counts now and then, and is only woken where there is nothing else to do: a change
/// of threads for every batch would cost more than all else here.
FileCounter::Batch* FileCounter::ClaimBatch() {
  std::unique_lock lock(mMutex);
  if (mClaimed == mFilled) mCounting.notify_one();
  mFilling.wait(lock, [this] { return mUnwanted || mClaimed < mFilled; });
  return mUnwanted ? nullptr : &BatchAt(mClaimed++);
}

void FileCounter::Count(Batch& batch, FileReplacer& replacer) {
  std::size_t done = 0;
  for (Item& item : batch.Items) {
    if (mUnwanted) return;
    try {
      item.Count = CountMatches(mFiles, *item.Path, replacer);
    } catch (const Unwanted&) {
      return;
    } catch (...) {
      item.Error = std::current_exception();
    }
    batch.Done.store(++done, std::memory_order_release);  // the last one gives the batch away
  }
}

}  // namespace brackwell
