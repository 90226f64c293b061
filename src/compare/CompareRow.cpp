#include "compare/CompareRow.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/CaseRules.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

struct KindFacts {
  bool IsFile;
  bool IsTargetSide;
  std::string_view ResultIcon;
  std::string_view Message;
  bool CanFixSource;
  bool CanFixTarget;
};

/// In the order of ResultKind.
constexpr std::array<KindFacts, 9> Facts{{
    {true, false, "ArrowRedR", "Source file was not found in target folder", false, true},
    {true, true, "ArrowRedL", "Target file was not found in source folder", true, false},
    {true, false, "ArrowYellowDbl", "Source file is newer than target file", true, true},
    {true, false, "ArrowYellowDbl", "Target file is newer than source file", true, true},
    {true, false, "ArrowYellowDbl", "Source and target files are different size", true, true},
    {true, false, "ArrowGreenDbl", "", false, false},
    {false, false, "ArrowRedR", "Sub-folder was not found in target folder", false, true},
    {false, true, "ArrowRedL", "Sub-folder was not found in source folder", true, false},
    {false, false, "ArrowGreenDbl", "", false, false},
}};

const KindFacts& FactsOf(ResultKind kind) { return Facts[static_cast<std::size_t>(kind)]; }

bool Toggle(FixBox& box, FixBox& partner) {
  if (box == FixBox::None) return false;
  box = box == FixBox::Off ? FixBox::On : FixBox::Off;
  if (box == FixBox::On && partner == FixBox::On) partner = FixBox::Off;
  return true;
}

}  // namespace

CompareRow MakeRow(ResultKind kind, std::string name) {
  const KindFacts& facts = FactsOf(kind);
  return {.Name = std::move(name),
          .Kind = kind,
          .FixSource = facts.CanFixSource ? FixBox::Off : FixBox::None,
          .FixTarget = facts.CanFixTarget ? FixBox::Off : FixBox::None};
}

bool IsFile(ResultKind kind) { return FactsOf(kind).IsFile; }
bool IsTargetSide(ResultKind kind) { return FactsOf(kind).IsTargetSide; }

bool IsInSource(const CompareRow& row) { return row.IsFixed || !IsTargetSide(row.Kind); }
bool IsInTarget(const CompareRow& row) {
  return row.IsFixed || (row.Kind != ResultKind::SourceFileMissingInTarget &&
                         row.Kind != ResultKind::SourceFolderMissingInTarget);
}

std::string_view ItemIcon(const CompareRow& row) { return IsFile(row.Kind) ? "File" : "FolderOpen"; }
std::string_view ResultIcon(const CompareRow& row) {
  return row.IsFixed ? "Checkmark" : FactsOf(row.Kind).ResultIcon;
}

std::string ResultMessage(const CompareRow& row) {
  std::string message(FactsOf(row.Kind).Message);
  if (row.IsFixed) message += " (FIXED)";
  return message;
}

bool ToggleFixSource(CompareRow& row) { return Toggle(row.FixSource, row.FixTarget); }
bool ToggleFixTarget(CompareRow& row) { return Toggle(row.FixTarget, row.FixSource); }

void TickBoxes(CompareRow& row, TickAll what) {
  if (what == TickAll::NewerToOlder) {
    if (row.Kind == ResultKind::SourceFileNewer) return TickBoxes(row, TickAll::FixTarget);
    if (row.Kind == ResultKind::TargetFileNewer) return TickBoxes(row, TickAll::FixSource);
    return;
  }
  const auto untick = [](FixBox& box) {
    if (box == FixBox::On) box = FixBox::Off;
  };
  FixBox* const box = what == TickAll::FixSource   ? &row.FixSource
                      : what == TickAll::FixTarget ? &row.FixTarget
                                                   : nullptr;
  if (box && *box == FixBox::None) return;
  untick(row.FixSource);
  untick(row.FixTarget);
  if (box) *box = FixBox::On;
}

void MarkFixed(CompareRow& row) {
  row.IsFixed = true;
  row.FixSource = FixBox::None;
  row.FixTarget = FixBox::None;
}

void SortByName(CompareRows& rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const CompareRow& a, const CompareRow& b) {
    return CompareIgnoreCaseWithFirst(a.Name, b.Name, PathSeparator) < 0;
  });
}

}  // namespace brackwell
