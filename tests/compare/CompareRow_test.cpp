#include "compare/CompareRow.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Paths.h"

namespace brackwell {
namespace {

/// "icon | result icon | message | fix source | fix target"
std::string Shown(const CompareRow& row) {
  const auto box = [](FixBox fix) {
    return fix == FixBox::None ? std::string("-") : std::string(fix == FixBox::On ? "[x]" : "[ ]");
  };
  return std::string(ItemIcon(row)) + " | " + std::string(ResultIcon(row)) + " | " + ResultMessage(row) +
         " | " + box(row.FixSource) + " | " + box(row.FixTarget);
}

std::string Shown(ResultKind kind) { return Shown(MakeRow(kind, "name")); }

TEST(CompareRow, ShowsEachKindAsItIs) {
  EXPECT_EQ(Shown(ResultKind::SourceFileMissingInTarget),
            "File | ArrowRedR | Source file was not found in target folder | - | [ ]");
  EXPECT_EQ(Shown(ResultKind::TargetFileMissingInSource),
            "File | ArrowRedL | Target file was not found in source folder | [ ] | -");
  EXPECT_EQ(Shown(ResultKind::SourceFileNewer),
            "File | ArrowYellowDbl | Source file is newer than target file | [ ] | [ ]");
  EXPECT_EQ(Shown(ResultKind::TargetFileNewer),
            "File | ArrowYellowDbl | Target file is newer than source file | [ ] | [ ]");
  EXPECT_EQ(Shown(ResultKind::SizesDiffer),
            "File | ArrowYellowDbl | Source and target files are different size | [ ] | [ ]");
  EXPECT_EQ(Shown(ResultKind::FileSame), "File | ArrowGreenDbl |  | - | -");
  EXPECT_EQ(Shown(ResultKind::SourceFolderMissingInTarget),
            "FolderOpen | ArrowRedR | Sub-folder was not found in target folder | - | [ ]");
  EXPECT_EQ(Shown(ResultKind::TargetFolderMissingInSource),
            "FolderOpen | ArrowRedL | Sub-folder was not found in source folder | [ ] | -");
  EXPECT_EQ(Shown(ResultKind::FolderSame), "FolderOpen | ArrowGreenDbl |  | - | -");
}

TEST(CompareRow, TheTwoBoxesExcludeEachOther) {
  CompareRow row = MakeRow(ResultKind::SizesDiffer, "name");
  EXPECT_TRUE(ToggleFixSource(row));
  EXPECT_TRUE(ToggleFixTarget(row));
  EXPECT_EQ(row.FixSource, FixBox::Off);
  EXPECT_EQ(row.FixTarget, FixBox::On);
  EXPECT_TRUE(ToggleFixSource(row));
  EXPECT_EQ(row.FixSource, FixBox::On);
  EXPECT_EQ(row.FixTarget, FixBox::Off);
  EXPECT_TRUE(ToggleFixSource(row));
  EXPECT_EQ(row.FixSource, FixBox::Off);
  EXPECT_EQ(row.FixTarget, FixBox::Off);
}

TEST(CompareRow, WhereThereIsNoBoxNothingIsTicked) {
  CompareRow row = MakeRow(ResultKind::SourceFileMissingInTarget, "name");
  EXPECT_FALSE(ToggleFixSource(row));
  EXPECT_TRUE(ToggleFixTarget(row));
  EXPECT_EQ(row.FixSource, FixBox::None);
  EXPECT_EQ(row.FixTarget, FixBox::On);
}

TEST(CompareRow, AFixedRowCanNoLongerBeTicked) {
  CompareRow row = MakeRow(ResultKind::TargetFileNewer, "name");
  MarkFixed(row);
  EXPECT_EQ(Shown(row), "File | Checkmark | Target file is newer than source file (FIXED) | - | -");
  EXPECT_FALSE(ToggleFixSource(row));
  EXPECT_FALSE(ToggleFixTarget(row));
}

std::vector<std::string> Sorted(std::vector<std::string> names) {
  CompareRows rows;
  for (std::string& name : names) {
    std::ranges::replace(name, '/', PathSeparator);
    rows.push_back(MakeRow(ResultKind::FileSame, name));
  }
  SortByName(rows);
  names.clear();
  for (CompareRow& row : rows) {
    std::ranges::replace(row.Name, PathSeparator, '/');
    names.push_back(row.Name);
  }
  return names;
}

using Names = std::vector<std::string>;

TEST(SortByName, IgnoresCase) {
  EXPECT_EQ(Sorted({"b", "C", "a", "É", "é0", "Z"}), (Names{"a", "b", "C", "Z", "É", "é0"}));
}

TEST(SortByName, AFolderStandsRightBeforeItsContents) {
  EXPECT_EQ(Sorted({"sub.txt", "sub/b", "sub 2", "sub", "sub/a/x", "sub!", "sub/a", "sub\x01"}),
            (Names{"sub", "sub/a", "sub/a/x", "sub/b", "sub\x01", "sub 2", "sub!", "sub.txt"}));
}

TEST(SortByName, EqualNamesKeepTheirOrder) {
  CompareRows rows;
  for (int i = 0; i < 500; ++i)
    rows.push_back(MakeRow(i % 2 ? ResultKind::FileSame : ResultKind::SizesDiffer, i % 2 ? "NAME" : "name"));
  SortByName(rows);
  for (int i = 0; i < 500; ++i) ASSERT_EQ(rows[i].Name, i % 2 ? "NAME" : "name") << i;
}

TEST(SortByName, NamesThatAreNoTextHaveTheirPlace) {
  EXPECT_EQ(Sorted({"\xff", "a\xff", "é", "a"}), (Names{"a", "a\xff", "é", "\xff"}));
}

/// All kinds after the same ticks: their boxes, "[x][ ]" say.
std::string Ticked(std::initializer_list<TickAll> ticks) {
  std::string boxes;
  for (int kind = 0; kind <= static_cast<int>(ResultKind::FolderSame); ++kind) {
    CompareRow row = MakeRow(static_cast<ResultKind>(kind), "name");
    for (const TickAll tick : ticks) TickBoxes(row, tick);
    const auto box = [](FixBox fix) { return fix == FixBox::None ? '-' : fix == FixBox::On ? 'x' : 'o'; };
    boxes += {kind > 0 ? ' ' : '[', box(row.FixSource), box(row.FixTarget)};
  }
  return boxes + ']';
}

TEST(CompareRow, AreTickedWhereTheyHaveTheBox) {
  EXPECT_EQ(Ticked({}), "[-o o- oo oo oo -- -o o- --]");
  EXPECT_EQ(Ticked({TickAll::FixSource}), "[-o x- xo xo xo -- -o x- --]");
  EXPECT_EQ(Ticked({TickAll::FixTarget}), "[-x o- ox ox ox -- -x o- --]");
  EXPECT_EQ(Ticked({TickAll::FixSource, TickAll::FixTarget}), "[-x x- ox ox ox -- -x x- --]");
  EXPECT_EQ(Ticked({TickAll::FixSource, TickAll::FixTarget, TickAll::Nothing}), Ticked({}));
}

TEST(CompareRow, TheNewerReplacesTheOlder) {
  EXPECT_EQ(Ticked({TickAll::NewerToOlder}), "[-o o- ox xo oo -- -o o- --]");
  EXPECT_EQ(Ticked({TickAll::FixSource, TickAll::NewerToOlder}), "[-o x- ox xo xo -- -o x- --]");
}

TEST(CompareRow, OnceFixedIsTickedNoMore) {
  CompareRow row = MakeRow(ResultKind::SourceFileNewer, "name");
  MarkFixed(row);
  for (const TickAll tick : {TickAll::FixSource, TickAll::NewerToOlder}) TickBoxes(row, tick);
  EXPECT_EQ(row.FixSource, FixBox::None);
  EXPECT_EQ(row.FixTarget, FixBox::None);
}

TEST(CompareRow, KnowsOnWhichSidesItsItemIs) {
  std::string sides;
  for (int kind = 0; kind <= static_cast<int>(ResultKind::FolderSame); ++kind) {
    const CompareRow row = MakeRow(static_cast<ResultKind>(kind), "name");
    sides += std::string(IsInSource(row) ? "s" : "") + (IsInTarget(row) ? "t" : "") + ' ';
  }
  EXPECT_EQ(sides, "s t st st st st s t st ");
  CompareRow row = MakeRow(ResultKind::TargetFileMissingInSource, "name");
  MarkFixed(row);
  EXPECT_TRUE(IsInSource(row));
}

}  // namespace
}  // namespace brackwell
