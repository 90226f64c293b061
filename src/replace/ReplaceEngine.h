#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystemObject.h"
#include "replace/ReplaceRow.h"

namespace brackwell {

class FileCounter;
class FileReplacer;
class Progress;

struct ReplaceOptions {
  std::string Folder;       // as the user chose it
  bool Subfolders = false;  // look below it too
  std::vector<std::string>
      ExtensionList;  // from ParseList, without dots; an empty one: names without extension
  std::vector<std::string> ExclusionList;  // from ParseList, beginnings of names; an empty one: every name
  std::string Find;                        // UTF-8, in any case
  std::string Replace;                     // UTF-8; looked at in replace mode only
  bool ReplaceMode = false;
};

/// A list typed by the user, "TXT; htm;", as items: in lower case, without blanks and without one ";" at the
/// end.
std::vector<std::string> ParseList(std::string_view text);
/// `extension` has no dot; its case does not matter, the list's is lower.
bool ExtensionInList(std::string_view extension, const std::vector<std::string>& list);
/// Whether `name` begins with an item of the list, whatever its case. Every name begins with an empty item.
bool NameIsExcluded(std::string_view name, const std::vector<std::string>& list);

/// A file's count, or the total with it, is more than its 32 bits hold.
class OverflowError : public std::runtime_error {
 public:
  explicit OverflowError(std::string path) : std::runtime_error("Overflow"), mPath(std::move(path)) {}
  int Number() const { return 6; }
  /// The native path of the file in hand.
  const std::string& Path() const { return mPath; }

 private:
  std::string mPath;
};

/// Told of every file that holds the phrase and had to be left as it is. Its row has its result by then.
using ReplaceProblemSink = std::function<void(ReplaceProblem, const ReplaceRow&)>;

/// Counts a phrase in the files of a folder, and replaces it. ScanFolder appends the files to the rows,
/// ProcessFiles gives each row its result, in order: all but those of files that are gone by then. A file
/// that has several names counts under each of them, but is replaced under the first alone. One object makes
/// one run.
class ReplaceEngine {
 public:
  ReplaceEngine(FileSystemObject& files, ReplaceOptions options, Progress& progress, ReplaceRows& rows,
                ReplaceProblemSink problem);
  ~ReplaceEngine();

  /// False when it was stopped; the rows listed by then are good. Raises FileSystemError for a folder that is
  /// not there, and where subfolders are looked into, for one that cannot be read.
  bool ScanFolder();

  /// False when it was stopped, which it is between two files only where it replaces. Raises FileSystemError
  /// for a file that cannot be read, and OverflowError. A file is wholly as it was or wholly replaced
  /// whatever happens.
  bool ProcessFiles();

  /// How many rows have been or are being processed.
  std::size_t Item() const { return mItem; }
  /// The matches counted so far.
  std::int32_t Total() const { return mTotal; }

 private:
  void ListUnlessGone(const std::string& path, std::vector<std::string>& pending);
  void ListFolder(const std::string& path, std::vector<std::string>& pending);
  void ListFiles(Folder& folder);
  void Process(ReplaceRow& row);
  void Find(ReplaceRow& row);
  void Replace(ReplaceRow& row);
  bool IsKnown(const TextReader& file, ReplaceRow& row);
  bool IsGone(const std::string& path) const;
  static void SetResult(ReplaceRow& row, ReplaceResult::Kind kind, std::optional<std::int64_t> count);
  void AddToTotal(const ReplaceRow& row);
  void Tell(std::string_view what, std::string_view path);
  void DoEvents() const;

  const ReplaceOptions mOptions;
  const std::unique_ptr<FileSystemObject> mFiles;
  Progress& mProgress;
  ReplaceRows& mRows;
  const ReplaceProblemSink mProblem;
  const Tick mTick;
  // One of them: files are only counted ahead, and one that is replaced is touched by nobody else.
  const std::unique_ptr<FileCounter> mCounter;
  const std::unique_ptr<FileReplacer> mReplacer;
  std::map<FileIdentity, std::int32_t> mFirstRows;  // of files with several names, by their first
  std::string mMessage;
  std::size_t mItem = 0;
  std::int32_t mTotal = 0;
};

}  // namespace brackwell
