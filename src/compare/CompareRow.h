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

/// Whether the item is on that side, as the comparison and the fixes after it know.
bool IsInSource(const CompareRow& row);
bool IsInTarget(const CompareRow& row);

/// Keys of the pictures in columns 0 and 2.
std::string_view ItemIcon(const CompareRow& row);
std::string_view ResultIcon(const CompareRow& row);
/// The text of column 3.
std::string ResultMessage(const CompareRow& row);

/// A click on one of the two boxes of a row; they exclude each other. False where there is no box.
bool ToggleFixSource(CompareRow& row);
bool ToggleFixTarget(CompareRow& row);

/// What can be done to the boxes of all rows at once.
enum class TickAll : std::uint8_t { FixSource, FixTarget, NewerToOlder, Nothing };

/// Ticks the row's box that `what` names, where it has it, and unticks the other; NewerToOlder ticks the one
/// by which the newer file replaces the older, and leaves rows that say nothing of dates. Nothing unticks
/// both. A row without the box stays as it is.
void TickBoxes(CompareRow& row, TickAll what);

/// A fixed row shows so, and has no boxes any more.
void MarkFixed(CompareRow& row);

/// Orders rows by name, ignoring case, the path separator before every other character, so that a folder's
/// row stands right before its contents. Equal names keep their order.
void SortByName(CompareRows& rows);

}  // namespace brackwell
