#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace brackwell {

/// What a comparison can find of one item.
enum class ResultKind : std::uint8_t {
  SourceFileMissingInTarget,
  TargetFileMissingInSource,
  SourceFileNewer,
  TargetFileNewer,
  SizesDiffer,
  FileSame,
  SourceFolderMissingInTarget,
  TargetFolderMissingInSource,
  FolderSame,
};

enum class FixBox : std::uint8_t { None, Off, On };

/// One finding: one row of the grid. Everything else that the grid shows follows from the kind.
struct CompareRow {
  std::string Name;  // the native path as displayed: below the root, or full
  ResultKind Kind = ResultKind::FileSame;
  FixBox FixSource = FixBox::None;
  FixBox FixTarget = FixBox::None;
  bool IsFixed = false;
};

/// The rows of one comparison. They never move while others come in, a million of them or more, so that no
/// row keeps the window waiting.
using CompareRows = std::deque<CompareRow>;

/// A new row with its boxes as the kind demands.
CompareRow MakeRow(ResultKind kind, std::string name);

bool IsFile(ResultKind kind);
/// Found by the walk over the target: the row's name belongs to the target.
bool IsTargetSide(ResultKind kind);

/// Keys of the pictures in columns 0 and 2.
std::string_view ItemIcon(const CompareRow& row);
std::string_view ResultIcon(const CompareRow& row);
/// The text of column 3.
std::string ResultMessage(const CompareRow& row);

/// A click on one of the two boxes of a row; they exclude each other. False where there is no box.
bool ToggleFixSource(CompareRow& row);
bool ToggleFixTarget(CompareRow& row);

/// A fixed row shows so, and has no boxes any more.
void MarkFixed(CompareRow& row);

/// Orders rows by name, ignoring case, the path separator before every other character, so that a folder's
/// row stands right before its contents. Equal names keep their order.
void SortByName(CompareRows& rows);

}  // namespace brackwell
