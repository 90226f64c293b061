#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "compare/CompareRow.h"
#include "platform/FileSystemObject.h"

namespace brackwell {

class Progress;

struct CompareOptions {
  std::string SourceRoot;  // the two roots exactly as the user chose them
  std::string TargetRoot;

  bool FlagSourceFileMissing = true;  // a source file that is not in the target
  bool FlagTargetFileMissing = true;
  bool FlagSourceNewer = true;
  bool FlagTargetNewer = true;
  bool FlagSizes = true;
  bool FlagSourceFolderMissing = true;
  bool FlagTargetFolderMissing = true;

  bool CompareSubfolders = true;
  bool ShowFullPath = false;

  std::vector<std::string>
      ExtensionList;  // excluded extensions without dot; an empty one: names without extension
  std::vector<std::string> PrefixList;  // excluded beginnings of names; an empty one: every name
};

/// Takes the findings as they are made.
using CompareRowSink = std::function<void(CompareRow)>;

/// Compares two folder trees by path, modification time and size; contents are not read. A link is compared
/// as the item it is, and never entered. All findings of the walk over the source come first, then those of
/// the walk over the target.
class CompareEngine {
 public:
  CompareEngine(const FileSystemObject& files, CompareOptions options, Progress& progress,
                CompareRowSink sink);

  /// True when it came to its end, false when it was stopped. Raises FileSystemError: for a root that is not
  /// there, for a folder that cannot be read or looked into, and for a source file without counterpart where
  /// such files are not flagged. Rows given by then are good. What goes while it runs is passed over.
  bool RunComparison();

 private:
  struct SubFolder {
    std::string Name;
    bool IsOnOtherSide;
  };
  /// What the walk over the target will ask of one of its folders.
  struct TargetFolder {
    std::vector<std::string> FilesMissingInSource;
    std::vector<SubFolder> SubFolders;
  };
  class OtherSide;

  void CompareSourceFolder(const std::string& path);
  std::vector<SubFolder> CompareSourceFiles(const std::string& path);
  void CompareSourceFile(Folder& folder, const OtherSide& target, std::string_view name);
  void CompareSourceSubFolder(const std::string& path, const SubFolder& subFolder);
  void RequireGone(const std::string& path) const;
  void CompareTargetFolder(const std::string& path);
  void CompareTargetSubFolder(const std::string& path, const SubFolder& subFolder);

  void RememberTarget(Folder& source, Folder& target);
  TargetFolder ReadTargetFolder(const std::string& path) const;
  TargetFolder TakeTargetFolder(const std::string& path);

  bool IsExcluded(std::string_view name) const;
  void AddCompareRow(ResultKind kind, std::string_view root, std::string_view path);
  std::string_view Checking(std::string_view folder, std::string_view name);
  void DoEvents() const;

  CompareOptions mOptions;
  const std::unique_ptr<FileSystemObject> mFiles;
  Progress& mProgress;
  const CompareRowSink mSink;
  const Tick mTick;
  bool mRootsAlign;
  std::string mMessage;  // "Checking " and the path in hand
  std::unordered_map<std::string, TargetFolder> mTargetFolders;
};

}  // namespace brackwell
