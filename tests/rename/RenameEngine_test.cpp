#include "rename/RenameEngine.h"

#include <gmock/gmock.h>

#include "rename/RenamedFolder.h"

namespace brackwell {
namespace {

class RenameInPlace : public testing::Test, protected RenamedFolder {};
using RenameToCopies = RenameInPlace;
using RenameRun = RenameInPlace;

// --- What is listed

Lines NamesOf(const WorkList& list) {
  Lines names;
  for (const RenameItem& item : list) names.push_back(item.Name + (item.Checked ? "" : " (off)"));
  return names;
}

Lines Listed(const ExtensionFilter& filter) {
  return NamesOf(
      ListFiles({"a.jpg", "b.JPG", "c.jpeg", "d.raw", "e.tar.gif", "f", "g.", ".jpg", "h.jpg.bak"}, filter));
}

TEST(ExtensionFilter, TakesNothingByItself) { EXPECT_EQ(Listed({}), Lines{}); }

TEST(ExtensionFilter, TakesTheExtensionsOfItsBoxes) {
  EXPECT_EQ(Listed({.Extensions = {"JPG"}, .OtherExtensions = {}}), (Lines{"a.jpg", "b.JPG", ".jpg"}));
  EXPECT_EQ(Listed({.Extensions = {"JPEG", "GIF"}, .OtherExtensions = {}}), (Lines{"c.jpeg", "e.tar.gif"}));
}

TEST(ExtensionFilter, TakesOtherExtensionsInAnyCase) {
  for (const char* other : {"raw", "Raw", "RAW"}) {
    EXPECT_EQ(Listed({.Extensions = {}, .OtherExtensions = {other, ""}}), Lines{"d.raw"});
    EXPECT_EQ(Listed({.Extensions = {}, .OtherExtensions = {"", other}}), Lines{"d.raw"});
  }
}

TEST(ExtensionFilter, AStarInEitherTakesAllFiles) {
  EXPECT_EQ(Listed({.Extensions = {}, .OtherExtensions = {"*", ""}}).size(), 9u);
  EXPECT_EQ(Listed({.Extensions = {}, .OtherExtensions = {"raw", "*"}}).size(), 9u);
}

TEST(ExtensionFilter, UnderstandsNoDotsListsOrPatterns) {
  for (const char* other : {".raw", "raw;gif", "raw gif", "r*", "*.*", "**", " *", "raw ", "?"})
    EXPECT_EQ(Listed({.Extensions = {}, .OtherExtensions = {other, ""}}), Lines{}) << other;
}

TEST(ExtensionFilter, AnEmptyBoxDoesNotTakeFilesWithoutExtension) {
  EXPECT_EQ(Listed({.Extensions = {"BMP"}, .OtherExtensions = {"", ""}}), Lines{});
}

TEST(ExtensionFilter, KnowsOtherScripts) {
  EXPECT_EQ(NamesOf(ListFiles({"a.фото", "b.ФОТО", "c.\xff"},
                              {.Extensions = {}, .OtherExtensions = {"Фото", "\xff"}})),
            (Lines{"a.фото", "b.ФОТО", "c.\xff"}));
}

// --- New names

Lines NewNames(WorkList list, const std::string& prefix, const std::string& start) {
  const Naming naming = ReadNaming(prefix, start).value();
  AssignNewNames(list, naming);
  Lines names;
  for (const RenameItem& item : list) names.push_back(NewName(naming, item));
  return names;
}

WorkList Items(const Lines& names) {
  WorkList list;
  for (const std::string& name : names) list.push_back({.Name = name, .Number = {}});
  return list;
}

TEST(NewNames, HaveThePrefixTheNumberAndTheExtensionInUpperCase) {
  EXPECT_EQ(NewNames(Items({"a.jpg", "b.Jpg", "c.JPG"}), "pic", "007"),
            (Lines{"pic007.JPG", "pic008.JPG", "pic009.JPG"}));
  EXPECT_EQ(NewNames(Items({"img_7.jpg"}), "Trip", "01"), Lines{"Trip01.JPG"});
}

TEST(NewNames, AreAsWideAsTheTypedNumber) {
  EXPECT_EQ(NewNames(Items({"a.gif"}), "x", "10"), Lines{"x10.GIF"});
  EXPECT_EQ(NewNames(Items({"a.gif"}), "x", "0"), Lines{"x0.GIF"});
  EXPECT_EQ(NewNames(Items({"a.gif"}), "x", "00000000000000000001"), Lines{"x00000000000000000001.GIF"});
}

TEST(NewNames, KeepOnlyTheLastDigitsWhenTheNumberOutgrowsThem) {
  EXPECT_EQ(NewNames(Items({"a.jpg", "b.jpg"}), "x", "9"), (Lines{"x9.JPG", "x0.JPG"}));
  const Lines eleven = NewNames(Items(Lines(11, "a.jpg")), "x", "1");
  EXPECT_EQ(eleven[9], "x0.JPG");
  EXPECT_EQ(eleven[10], "x1.JPG");
  EXPECT_EQ(NewNames(Items({"a", "b"}), "x", "99"), (Lines{"x99", "x00"}));
}

TEST(NewNames, AreGivenToTickedItemsOnlyAndUseUpNoNumberElse) {
  WorkList list = Items({"a.jpg", "b.jpg", "c.jpg"});
  list[1].Checked = false;
  EXPECT_EQ(NewNames(list, "x", "1"), (Lines{"x1.JPG", "", "x2.JPG"}));
}

TEST(NewNames, OfFilesWithoutExtensionHaveNoDot) {
  EXPECT_EQ(NewNames(Items({"README", "name.", ".jpg"}), "x", "1"), (Lines{"x1", "x2", "x3.JPG"}));
}

TEST(NewNames, AreTakenBackWithTheTick) {
  WorkList list = Items({"a.jpg", "b.jpg"});
  const Naming naming = ReadNaming("x", "1").value();
  AssignNewNames(list, naming);
  list[0].Checked = false;
  AssignNewNames(list, naming);
  EXPECT_EQ(NewName(naming, list[0]), "");
  EXPECT_EQ(NewName(naming, list[1]), "x1.JPG");
}

TEST(NewNames, FollowWhateverCountsAsANumber) {
  const Lines two{"a", "b"};
  EXPECT_EQ(NewNames(Items(two), "x", "1e2"), (Lines{"x100", "x101"}));
  EXPECT_EQ(NewNames(Items(two), "x", " 7"), (Lines{"x07", "x08"}));
  EXPECT_EQ(NewNames(Items(two), "x", "1,5"), (Lines{"x015", "x016"}));
  EXPECT_EQ(NewNames(Items(two), "x", "2.5"), (Lines{"x002", "x003"}));
  EXPECT_EQ(NewNames(Items(two), "x", "-1"), (Lines{"x-1", "x00"}));
  EXPECT_EQ(NewNames(Items(two), "x", "-3"), (Lines{"x-3", "x-2"}));
  EXPECT_EQ(NewNames(Items(two), "x", "-01"), (Lines{"x0-1", "x000"}));
}

TEST(NewNames, GoOnBeyondTheLargestStart) {
  EXPECT_EQ(NewNames(Items({"a", "b"}), "x", "2147483647"), (Lines{"x2147483647", "x2147483648"}));
}

TEST(NewNames, NeedAPrefixAndANumber) {
  EXPECT_FALSE(ReadNaming("", "1"));
  EXPECT_TRUE(ReadNaming(" ", "1"));
  for (const char* start : {"", "x1", "1 2", "2147483648", "1e999"}) {
    EXPECT_FALSE(ReadNaming("x", start)) << start;
    EXPECT_FALSE(IsStartNumber(start)) << start;
  }
  EXPECT_TRUE(IsStartNumber("001"));
}

// --- Renaming in place

TEST_F(RenameInPlace, NumbersFilesInTheOrderOfTheList) {
  Files({"b.jpg", "a.jpg", "c.jpg", "note.txt"});
  EXPECT_TRUE(Rename(List({.Extensions = {"JPG"}, .OtherExtensions = {}}), "pic", "007"));
  EXPECT_EQ(Found(),
            (Lines{"note.txt: note.txt", "pic007.JPG: a.jpg", "pic008.JPG: b.jpg", "pic009.JPG: c.jpg"}));
}

TEST_F(RenameInPlace, OfSubFoldersNothingIsTouched) {
  File("a.jpg");
  Tree.File("images/sub.jpg/b.jpg", "b");
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), (Lines{"sub.jpg/b.jpg: b", "x1.JPG: a.jpg"}));
}

TEST_F(RenameInPlace, UntickedFilesStay) {
  Files({"a.jpg", "b.jpg", "c.jpg"});
  WorkList list = List();
  list[1].Checked = false;
  Rename(list, "x", "1");
  EXPECT_EQ(Found(), (Lines{"b.jpg: b.jpg", "x1.JPG: a.jpg", "x2.JPG: c.jpg"}));
}

TEST_F(RenameInPlace, ANameThatIsTakenLeavesTheFileAndTheRestIsDone) {
  Files({"a.jpg", "b.jpg"});
  Tree.File("images/x1.JPG", "old");
  WorkList list = List();
  list[2].Checked = false;
  Rename(list, "x", "1");
  EXPECT_EQ(Found(), (Lines{"a.jpg: a.jpg", "x1.JPG: old", "x2.JPG: b.jpg"}));
}

TEST_F(RenameInPlace, ANameInAnotherCaseIsTakenAsWell) {
  Files({"a.jpg", "X1.jpg"});
  WorkList list = List();
  list[1].Checked = false;
  Rename(list, "x", "1");
  EXPECT_EQ(Found(), (Lines{"X1.jpg: X1.jpg", "a.jpg: a.jpg"}));
}

TEST_F(RenameInPlace, AFolderOfTheNameLeavesTheFile) {
  File("a.jpg");
  Tree.Folder("images/x1.JPG");
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), Lines{"a.jpg: a.jpg"});
}

TEST_F(RenameInPlace, FilesMayMoveUpIntoAGap) {
  Files({"x2.JPG", "x3.JPG", "x4.JPG"});
  Rename(List(), "x", "1");
  EXPECT_EQ(Found(), (Lines{"x1.JPG: x2.JPG", "x2.JPG: x3.JPG", "x3.JPG: x4.JPG"}));
}

TEST_F(RenameInPlace, FilesThatWouldChangePlacesStay) {
  Files({"x1.JPG", "x2.JPG"});
  WorkList list = List();
  std::swap(list[0], list[1]);
  Rename(list, "x", "1");
  EXPECT_EQ(Found(), (Lines{"x1.JPG: x1.JPG", "x2.JPG: x2.JPG"}));
}

TEST_F(RenameInPlace, NumbersThatWrapLeaveWhatIsNamedAlready) {
  Files({"a", "b", "c"});
  Rename(List(), "x", "9");
  EXPECT_EQ(Found(), (Lines{"x0: b", "x1: c", "x9: a"}));
  Tree.Remove("images");
  Files({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k"});
  Rename(List(), "x", "1");
  EXPECT_EQ(Found().front(), "k: k");
  EXPECT_EQ(Found().size(), 11u);
}

TEST_F(RenameInPlace, NewNamesThatNoFileMayHaveLeaveTheFile) {
  File("a.jpg");
  Tree.Folder("images/sub");
  for (const std::string prefix :
       {"../x", "sub/x", "/tmp/x", "..\\x", "sub\\x", "C:\\x", "x:", "a?", "<", "./x", "com"}) {
    Rename(List(), prefix, "1");
    EXPECT_EQ(Tree.List(), (Lines{"images/", "images/a.jpg", "images/sub/"})) << prefix;
    Rename(List(), prefix, "1", true);
    EXPECT_EQ(Tree.List("images"), (Lines{"Renamed Files/", "a.jpg", "sub/"})) << prefix;
    Tree.Remove("images/Renamed Files");
  }
}

TEST_F(RenameInPlace, APrefixOfTheWholePathLeavesTheFile) {
  File("a.jpg");
  Rename(List(), Tree.Path("outside"), "1");
  EXPECT_EQ(Tree.List(), (Lines{"images/", "images/a.jpg"}));
}

TEST_F(RenameInPlace, NamesThatAreTooLongLeaveTheFile) {
  Files({"a.jpg", "b.jpg"});
  Rename(List(), std::string(300, 'x'), "1");
  Rename(List(), "x", std::string(5000, '0') + "1");
  Rename(List(), std::string(300, 'x'), "1", true);
  EXPECT_EQ(Found(), (Lines{"a.jpg: a.jpg", "b.jpg: b.jpg"}));
}

TEST_F(RenameInPlace, ATickedItemWithoutANewNameIsLeft) {
  Files({"a.jpg", "b.jpg"});
  WorkList list = List();
  list[1].Number = 1;
  RenamePlan plan{
      .Folder = Tree.Path("images"), .Preserve = true, .Names = ReadNaming("x", "1").value(), .Items = list};
  RenameFiles(FileSystem, plan, Events);
  plan.Preserve = false;
  RenameFiles(FileSystem, plan, Events);
  EXPECT_EQ(Found(), (Lines{"Renamed Files/x1.JPG: b.jpg", "a.jpg: a.jpg", "x1.JPG: b.jpg"}));
}

TEST_F(RenameInPlace, WhatIsGoneMeanwhileIsLeftOut) {
  Files({"a.jpg", "b.jpg", "c.jpg"});
  const WorkList list = List();
  Tree.Remove("images/b.jpg");
  Rename(list, "x", "1");
  EXPECT_EQ(Found(), (Lines{"x1.JPG: a.jpg", "x3.JPG: c.jpg"}));
}

TEST_F(RenameInPlace, AFolderThatIsGoneEndsInPeace) {
  File("a.jpg");
  const WorkList list = List();
  Tree.Remove("images");
  EXPECT_TRUE(Rename(list, "x", "1"));
  EXPECT_TRUE(Rename(list, "x", "1", true));
  EXPECT_EQ(Tree.List(), Lines{});
}

TEST_F(RenameInPlace, NoFolderIsNoPlaceForCopies) {
  const RenamePlan plan{.Folder = {}, .Preserve = true, .Names = ReadNaming("x", "1").value(), .Items = {}};
  EXPECT_TRUE(RenameFiles(FileSystem, plan, Events));
  EXPECT_FALSE(FileSystem.FolderExists(std::string(RenamedFilesFolder)));
}

// --- Copies

TEST_F(RenameToCopies, CopiesGoIntoTheSubFolderAndKeepTheirTime) {
  Tree.File("images/a.jpg", "a.jpg", 77);
  File("b.jpg");
  EXPECT_TRUE(Rename(List(), "x", "1", true));
  EXPECT_EQ(Found(), (Lines{"Renamed Files/x1.JPG: a.jpg", "Renamed Files/x2.JPG: b.jpg", "a.jpg: a.jpg",
                            "b.jpg: b.jpg"}));
  EXPECT_EQ(FileSystem.GetFile(Tree.Path("images/Renamed Files/x1.JPG")).DateLastModified,
            TempTree::Time(77));
}

TEST_F(RenameToCopies, ASecondRunReplacesTheCopies) {
  Files({"a.jpg", "b.jpg"});
  Rename(List(), "x", "1", true);
  Tree.File("images/a.jpg", "new a");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Found(), (Lines{"Renamed Files/x1.JPG: new a", "Renamed Files/x2.JPG: b.jpg", "a.jpg: new a",
                            "b.jpg: b.jpg"}));
}

TEST_F(RenameToCopies, OtherFilesInTheSubFolderStay) {
  File("a.jpg");
  Tree.File("images/Renamed Files/mine.txt", "mine");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Found("images/Renamed Files"), (Lines{"mine.txt: mine", "x1.JPG: a.jpg"}));
}

TEST_F(RenameToCopies, WhereTheSubFolderIsAFileNothingIsCopied) {
  Files({"a.jpg", "Renamed Files"});
  EXPECT_TRUE(Rename(List(), "x", "1", true));
  EXPECT_EQ(Found(), (Lines{"Renamed Files: Renamed Files", "a.jpg: a.jpg"}));
}

TEST_F(RenameToCopies, AFolderInTheWayOfACopyStays) {
  Files({"a.jpg", "b.jpg"});
  Tree.Folder("images/Renamed Files/x1.JPG");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Tree.List("images/Renamed Files"), (Lines{"x1.JPG/", "x2.JPG"}));
}

TEST_F(RenameToCopies, AReadOnlyCopyIsNotReplaced) {
  Files({"a.jpg", "b.jpg"});
  Tree.File("images/Renamed Files/x1.JPG", "kept");
  Tree.SetReadOnly("images/Renamed Files/x1.JPG");
  Rename(List(), "x", "1", true);
  EXPECT_EQ(Found("images/Renamed Files"), (Lines{"x1.JPG: kept", "x2.JPG: b.jpg"}));
}

// --- While it runs

TEST_F(RenameRun, TellsWhatItDoesBeforeEachFile) {
  Files({"a.jpg", "b.jpg"});
  Rename(List(), "x", "1");
  Rename(List(), "y", "1", true);
  EXPECT_EQ(Events.Messages, (Lines{"Renaming a.jpg", "Renaming b.jpg", "Copying x1.JPG", "Copying x2.JPG"}));
  EXPECT_GE(Events.Events, 4);
}

TEST_F(RenameRun, EndsAfterTheFileInHandWhenStopped) {
  Files({"a.jpg", "b.jpg", "c.jpg"});
  Events.OnEvents = [this] { Events.Stop = Events.Messages.size() == 2; };
  EXPECT_FALSE(Rename(List(), "x", "1"));
  EXPECT_EQ(Found(), (Lines{"b.jpg: b.jpg", "c.jpg: c.jpg", "x1.JPG: a.jpg"}));
}

TEST_F(RenameRun, ACopyInHandIsFinishedWhenStopped) {
  Tree.File("images/a.jpg", std::string(5 << 20, 'a'));
  File("b.jpg");
  Events.OnEvents = [this] { Events.Stop = Events.Events > 2; };
  EXPECT_FALSE(Rename(List(), "x", "1", true));
  EXPECT_EQ(Tree.Read("images/Renamed Files/x1.JPG").size(), std::size_t{5} << 20);
  EXPECT_FALSE(Tree.Exists("images/Renamed Files/x2.JPG"));
}

TEST(ClosingMessage, TellsWhereCopiesAre) {
  EXPECT_EQ(ClosingMessage(true),
            "Files have been renamed and can be found in the 'Renamed Files' sub-folder.");
  EXPECT_EQ(ClosingMessage(false), "");
}

}  // namespace
}  // namespace brackwell
