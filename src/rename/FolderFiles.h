#pragma once

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
  explicit FolderFiles(const FileSystemObject& files) : mFiles(files) {}

  /// In the order of every listing. Raises where the folder is not there or cannot be read; nothing is kept
  /// then.
  const std::vector<std::string>& Read(const std::string& folder);
  /// Of the folder that was read last, the names of its sub-folders among them.
  const TakenNames& Taken() const { return mTaken; }
  /// The next Read reads the folder.
  void Forget() { mFolder.clear(); }

 private:
  bool IsKept(const Folder& folder) const;
  void ReadNames(Folder& folder);

  const FileSystemObject& mFiles;
  std::string mFolder;  // whose names are kept; empty for none
  FolderIdentity mIdentity;
  DateTime mModified;
  DateTime mRead;
  std::vector<std::string> mNames;
  TakenNames mTaken;
};

}  // namespace brackwell
