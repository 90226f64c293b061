#pragma once

#include <string>
#include <vector>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// The names of a folder's files, kept so that they can be asked for often: the folder is read once, and
/// again when it is another one or has changed on the disk. Holds no handle of the folder's between the
/// calls.
class FolderFiles {
 public:
  explicit FolderFiles(const FileSystemObject& files) : mFiles(files) {}

  /// In the order of every listing. Raises where the folder is not there or cannot be read; nothing is kept
  /// then.
  const std::vector<std::string>& Read(const std::string& folder);
  /// The next Read reads the folder.
  void Forget() { mFolder.clear(); }

 private:
  bool IsKept(const Folder& folder) const;

  const FileSystemObject& mFiles;
  std::string mFolder;  // whose names are kept; empty for none
  FolderIdentity mIdentity;
  DateTime mModified;
  DateTime mRead;
  std::vector<std::string> mNames;
};

}  // namespace brackwell
