#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/FileSystemObject.h"
#include "platform/NameCounts.h"

namespace brackwell {

/// The names in a folder, as they stand in the way of others.
struct TakenNames {
  NameCounts All;
  NameCounts Kept;          // those of sub-folders and links, which no copy replaces
  bool IsNoFolder = false;  // a file or a link stands where the folder should be
};

/// The names of a folder's files, kept so that they can be asked for often: the folder is read once, and
/// again when it is another one or has changed on the disk. Holds no handle of the folder's between the
/// calls.
class FolderFiles {
 public:
  using Clock = std::function<DateTime()>;

  explicit FolderFiles(const FileSystemObject& files, Clock now = Now)
      : mFiles(files), mNow(std::move(now)) {}

  /// In the order of every listing. Raises where the folder is not there or cannot be read; nothing is kept
  /// then.
  const std::vector<std::string>& Read(const std::string& folder);
  /// Of the folder that was read last, the names of its sub-folders among them.
  const TakenNames& Taken() const { return mTaken; }
  /// The next Read reads the folder.
  void Forget() { mFolder.clear(); }

 private:
  static DateTime Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }
  bool IsKept(const FolderState& state) const;
  void ReadNames(Folder& folder);

  const FileSystemObject& mFiles;
  const Clock mNow;
  std::string mFolder;  // whose names are kept; empty for none
  FolderState mState;   // before they were read
  DateTime mRead;       // a moment before that
  std::vector<std::string> mNames;
  TakenNames mTaken;
};

}  // namespace brackwell
