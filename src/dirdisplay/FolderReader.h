#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "dirdisplay/PropertyValue.h"
#include "platform/FileSystemObject.h"

namespace brackwell {

/// What is to be read of a folder and of all below it.
struct ReadingPlan {
  std::string Folder;
  bool IncludesSubFolders = true;
  bool IncludesFiles = true;
  bool ReadsDetails = true;                    // of files, else their sizes if anything
  bool ReadsSizes = false;                     // of files
  std::vector<InfoKey> FolderProperties = {};  // their values are read, but for Size where ReadsSizes is set
};

/// A folder with its first files, or more files of the folder before.
struct FolderPart {
  std::shared_ptr<Folder> Object;
  std::size_t Depth = 0;                       // below the plan's folder
  std::vector<PropertyValue> Properties = {};  // where a folder begins
  std::size_t FirstFile = 0;                   // in Object->Files(); 0 where a folder begins
  std::size_t EndFile = 0;
  /// Of these files: as planned, whole, with nothing but sizes, or none. Nothing for a file that is gone.
  std::vector<std::optional<ItemDetails>> Details = {};
};

/// Walks folders on a thread of its own, a little ahead of whoever takes what it has read: one core waits for
/// the system's answers while another puts them to use. A folder comes with its files, then its sub-folders
/// come; links are among the files. Files and sub-folders that are gone by the time that they are looked at
/// are left out. `files` must not be changed meanwhile.
class FolderReader {
 public:
  /// Throws std::system_error where no thread can be had.
  FolderReader(const FileSystemObject& files, ReadingPlan plan);
  /// Waits for the call that is being made.
  ~FolderReader();
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  /// The next part; nothing at the end. While there is none yet, `tick` is called; it may throw. Raises what
  /// ended the reading, FileSystemError most likely, once all that was read before it has been taken.
  std::optional<FolderPart> Next(const Tick& tick);

 private:
  struct Level;
  /// Parts, and how much there is to do in them.
  struct Batch {
    std::vector<FolderPart> Parts;
    std::size_t Weight = 0;
  };

  // On the reading thread.
  void Run();
  void Walk();
  void EnterSubFolder(const std::string& path);
  void EnterFolder(const std::string& path);
  std::vector<PropertyValue> ReadProperties(Folder& folder);
  PropertyValue SizeBelow(const std::string& path) const;
  void ReadFiles(FolderPart part);
  std::optional<ItemDetails> ReadFile(const Folder& folder, std::string_view name) const;
  void Add(FolderPart part);
  void HandOver();

  const ReadingPlan mPlan;
  const std::unique_ptr<FileSystemObject> mFiles;
  const Tick mTick;
  std::vector<Level> mLevels;  // not on the thread's stack: trees may be deeper than that
  Batch mRead;

  // On the other.
  std::vector<FolderPart> mTaken;
  std::size_t mNext = 0;

  std::mutex mMutex;
  std::condition_variable mChanged;
  Batch mReady;
  bool mEnded = false;
  std::exception_ptr mError;
  std::atomic<bool> mUnwanted = false;

  std::thread mThread;  // begins when all else is there
};

}  // namespace brackwell
