#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/FileSystemObject.h"
#include "replace/ReplaceRow.h"

namespace brackwell {

class FileReplacer;

/// Counts one phrase in the files of a list, on a few threads that are a little ahead of whoever takes the
/// counts: these come in the list's order. A handful of files is counted by whoever takes them.
class FileCounter {
 public:
  /// One for each core, up to a few; none where there is but one core.
  static std::size_t UsualThreads();

  /// Rows may be added before the first count is taken. They may be given results at any time; their paths
  /// stay.
  FileCounter(const FileSystemObject& files, std::string find, const ReplaceRows& rows, Tick tick,
              std::size_t threads = UsualThreads());
  /// Waits for the calls of the system that are being made.
  ~FileCounter();
  FileCounter(const FileCounter&) = delete;
  FileCounter& operator=(const FileCounter&) = delete;

  /// Sets the threads to work on rows that have been added; cheap enough to be called for each.
  void LookAhead();

  /// The count of the next row's file; nothing for one that holds no bytes. While it is not there yet, `tick`
  /// is called, which may throw. Raises what went wrong with this file, FileSystemError most likely; the
  /// next call gives the next file's count all the same.
  std::optional<std::int64_t> Next();

 private:
  struct Item;
  struct Batch;

  void StartThreads();
  void BeginBatch();
  void FillBatch(std::size_t size);
  void AwaitItem();
  std::size_t RowsLeft() const { return mRows.size() - mNextRow; }
  std::size_t UsualSize() const;
  bool HasRoom() const;
  Batch& BatchAt(std::size_t index);

  // On the counting threads.
  void Run(FileReplacer& replacer);
  Batch* ClaimBatch();
  void Count(Batch& batch, FileReplacer& replacer);

  const FileSystemObject& mFiles;
  const std::string mFind;
  const ReplaceRows& mRows;
  const Tick mTick;
  std::size_t mMostThreads;
  std::vector<std::unique_ptr<FileReplacer>> mReplacers;  // one for each that counts

  // On the thread that takes.
  std::size_t mNextRow = 0;  // to be handed out
  std::size_t mTaken = 0;    // batches, to the last item
  Batch* mBatch = nullptr;   // that is being taken
  std::size_t mNextItem = 0;

  std::vector<Batch> mBatches;  // a ring; each belongs to one thread at a time
  std::mutex mMutex;
  std::condition_variable mFilling;
  std::condition_variable mCounting;
  std::size_t mFilled = 0;   // batches so far
  std::size_t mClaimed = 0;  // of these, by the threads
  std::atomic<bool> mUnwanted = false;

  std::vector<std::thread> mThreads;
};

}  // namespace brackwell
