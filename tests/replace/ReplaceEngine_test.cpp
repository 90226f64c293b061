#include "replace/ReplaceEngine.h"

#include "replace/ReplacedTree.h"

namespace brackwell {
namespace {

using ReplaceEngineTest = ReplacedTree;

// --- Lists

TEST(ParseList, IsInLowerCaseWithoutBlanksAndOneSemicolon) {
  EXPECT_EQ(ParseList("txt;"), Lines{"txt"});
  EXPECT_EQ(ParseList("txt; htm"), (Lines{"txt", "htm"}));
  EXPECT_EQ(ParseList(" T X T "), Lines{"txt"});
  EXPECT_EQ(ParseList("\xC3\x84.\xC3\x96"), Lines{"\xC3\xA4.\xC3\xB6"});
  EXPECT_EQ(ParseList("txt;;htm"), (Lines{"txt", "", "htm"}));
  EXPECT_EQ(ParseList("txt;;"), (Lines{"txt", ""}));
  EXPECT_EQ(ParseList("; txt"), (Lines{"", "txt"}));
  EXPECT_EQ(ParseList("\ttxt"), Lines{"\ttxt"});
  EXPECT_EQ(ParseList(""), Lines{});
  EXPECT_EQ(ParseList("  "), Lines{});
  EXPECT_EQ(ParseList(";"), Lines{});
  EXPECT_EQ(ParseList(";;"), (Lines{"", ""}));
}

TEST(ExtensionInList, IsExactButForCase) {
  const Lines list{"txt", "", ".htm", "*"};
  EXPECT_TRUE(ExtensionInList("TXT", list));
  EXPECT_TRUE(ExtensionInList("tXt", list));
  EXPECT_TRUE(ExtensionInList("", list));
  EXPECT_FALSE(ExtensionInList("tx", list));
  EXPECT_FALSE(ExtensionInList("txt2", list));
  EXPECT_FALSE(ExtensionInList("HTM", list));
  EXPECT_FALSE(ExtensionInList("", {"txt"}));
  EXPECT_FALSE(ExtensionInList("txt", {}));
}

TEST(NameIsExcluded, ByItsBeginning) {
  for (const char* name : {"old.txt", "Oldfiles", "older.htm", "OLD"})
    EXPECT_TRUE(NameIsExcluded(name, {"old"}));
  for (const char* name : {"ol", "bold", ""}) EXPECT_FALSE(NameIsExcluded(name, {"old"}));
  EXPECT_TRUE(NameIsExcluded("b", {"a", "", "c"}));
  EXPECT_FALSE(NameIsExcluded("b", {}));
  EXPECT_TRUE(NameIsExcluded("\xC3\x84pfel", {"\xC3\xA4"}));
}

// --- Texts

TEST(ResultText, TellsEveryOutcome) {
  using Kind = ReplaceResult::Kind;
  EXPECT_EQ(ResultText({}), "");
  EXPECT_EQ(ResultText({Kind::ZeroSize, 0}), "File has 0 size");
  EXPECT_EQ(ResultText({Kind::Found, 0}), "0 matches found");
  EXPECT_EQ(ResultText({Kind::Found, 1}), "1 matches found");
  EXPECT_EQ(ResultText({Kind::Replaced, 2147483647}), "2147483647 matches replaced");
}

TEST(TotalText, TellsTheMode) {
  EXPECT_EQ(TotalText(14, true), "14 total matches were replaced");
  EXPECT_EQ(TotalText(0, false), "0 total matches were found");
}

TEST(ProblemText, NamesTheFileAsItIsShown) {
  EXPECT_EQ(ProblemText(ReplaceProblem::CannotOpen, "/a/b.txt"),
            "Can't open /a/b.txt. It is possibly open in another application or you don't have permissions "
            "to modify "
            "the file.");
  EXPECT_EQ(ProblemText(ReplaceProblem::CannotEncode, "a\n\xFF.txt"),
            "Can't replace in a\xE2\x90\x8A\xEF\xBF\xBD.txt. The replacement has characters that the file's "
            "encoding "
            "does not.");
  EXPECT_EQ(ProblemText(ReplaceProblem::UnsupportedEncoding, "/a.txt"),
            "Can't replace in /a.txt. It seems to be UTF-32 text, or UTF-16 text without a byte order mark.");
}

// --- Which files

TEST_F(ReplaceEngineTest, AnEmptyFolderHasATotal) {
  EXPECT_EQ(Find("x"), Lines{"0 total matches were found"});
  EXPECT_TRUE(Finished);
}

TEST_F(ReplaceEngineTest, FilesComeBeforeSubfoldersAndThoseInOrder) {
  for (const char* name : {"b/deep/6.txt", "b/5.txt", "a/4.txt", "z.txt", "A.TXT", "c/7.txt"})
    Tree.File(std::string("t/") + name, "x");
  EXPECT_EQ(Scan(), (Lines{"A.TXT", "z.txt", "a/4.txt", "b/5.txt", "b/deep/6.txt", "c/7.txt"}));
  Options.Subfolders = false;
  EXPECT_EQ(Scan(), (Lines{"A.TXT", "z.txt"}));
}

TEST_F(ReplaceEngineTest, ExtensionsAreWholeAndOfFilesOnly) {
  for (const char* name : {"a.txt", "b.htm", "c", "e.txt2", "f.tx", ".txt", "folder.old/g.txt", "h.txt.gz"})
    Tree.File(std::string("t/") + name, "x");
  EXPECT_EQ(Scan(), (Lines{".txt", "a.txt", "folder.old/g.txt"}));
  Options.ExtensionList = ParseList("TXT; htm");
  EXPECT_EQ(Scan(), (Lines{".txt", "a.txt", "b.htm", "folder.old/g.txt"}));
  Options.ExtensionList = ParseList("txt;;htm");
  EXPECT_EQ(Scan(), (Lines{".txt", "a.txt", "b.htm", "c", "folder.old/g.txt"}));
  Options.ExtensionList = ParseList(".txt");
  EXPECT_EQ(Scan(), Lines{});
}

TEST_F(ReplaceEngineTest, ExclusionsAreOfFilesAndOfFoldersWithAllBelow) {
  for (const char* name :
       {"Backup2/a.txt", "Backup2/deep/b.txt", "bakery.txt", "backup.txt", "c/bak.txt", "c/d.txt"})
    Tree.File(std::string("t/") + name, "x");
  Options.ExclusionList = ParseList("bak");
  EXPECT_EQ(Scan(), (Lines{"backup.txt", "Backup2/a.txt", "Backup2/deep/b.txt", "c/d.txt"}));
  Options.ExclusionList = ParseList("back; BAK;");
  EXPECT_EQ(Scan(), Lines{"c/d.txt"});
}

TEST_F(ReplaceEngineTest, AnEmptyExclusionIsOfEverything) {
  Tree.File("t/b.txt", "x");
  Tree.File("t/b/c.txt", "x");
  Options.ExclusionList = ParseList("a;;b");
  EXPECT_EQ(Find("x"), Lines{"0 total matches were found"});
}

TEST_F(ReplaceEngineTest, TheFolderItselfIsNeverExcluded) {
  Tree.File("t/b.txt", "x");
  Options.ExclusionList = {"t"};
  EXPECT_EQ(Scan(), Lines{"b.txt"});
}

TEST_F(ReplaceEngineTest, AMissingFolderEndsIt) {
  Options.Folder = Tree.Root("gone");
  const Lines lines = Find("x");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(lines[0].starts_with("error 76 ")) << lines[0];
}

// --- Counting and replacing

TEST_F(ReplaceEngineTest, EveryCaseCountsAndIsReplaced) {
  Tree.File("t/x.txt", "AbcABCabc");
  EXPECT_EQ(Find("abc"), (Lines{"x.txt: 3 matches found", "3 total matches were found"}));
  EXPECT_EQ(Tree.Read("t/x.txt"), "AbcABCabc");
  EXPECT_EQ(Replace("aBC", "X"), (Lines{"x.txt: 3 matches replaced", "3 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/x.txt"), "XXX");
}

TEST_F(ReplaceEngineTest, CountingOverlapsAndReplacingDoesNot) {
  Tree.File("t/x.txt", "aaaa");
  EXPECT_EQ(Replace("aa", "b"), (Lines{"x.txt: 3 matches replaced", "3 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/x.txt"), "bb");
}

TEST_F(ReplaceEngineTest, WhatWasPutInIsNotSearchedAgain) {
  Tree.File("t/x.txt", "abab");
  EXPECT_EQ(Replace("ab", "aab").back(), "2 total matches were replaced");
  EXPECT_EQ(Tree.Read("t/x.txt"), "aabaab");
  EXPECT_EQ(Replace("aab", "").back(), "2 total matches were replaced");
  EXPECT_EQ(Tree.Read("t/x.txt"), "");
  EXPECT_EQ(Find("b"), (Lines{"x.txt: File has 0 size", "0 total matches were found"}));
}

TEST_F(ReplaceEngineTest, EmptyFilesAreTold) {
  Tree.File("t/empty.txt");
  Tree.File("t/full.txt", "x");
  EXPECT_EQ(Replace("x", "y"), (Lines{"empty.txt: File has 0 size", "full.txt: 1 matches replaced",
                                      "1 total matches were replaced"}));
}

TEST_F(ReplaceEngineTest, FilesWithoutThePhraseAreNotTouched) {
  Tree.File("t/x.txt", "something else", 0);
  EXPECT_EQ(Replace("abc", "X"), (Lines{"x.txt: 0 matches replaced", "0 total matches were replaced"}));
  EXPECT_EQ(Files->GetFile(Tree.Path("t/x.txt")).DateLastModified, TempTree::Time(0));
}

TEST_F(ReplaceEngineTest, ReadOnlyFilesStayAndTheNextIsDone) {
  for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "x and x");
  Tree.SetReadOnly("t/b.txt");
  EXPECT_EQ(Replace("x", "y"),
            (Lines{"a.txt: 2 matches replaced", "b.txt: 2 matches replaced", "c.txt: 2 matches replaced",
                   "!open b.txt", "6 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt"), "y and y");
  EXPECT_EQ(Tree.Read("t/b.txt"), "x and x");
  EXPECT_EQ(Tree.Read("t/c.txt"), "y and y");
}

TEST_F(ReplaceEngineTest, ReplacementsThatTheEncodingCannotHoldLeaveTheFile) {
  const std::string hiragana = "\xE3\x81\x82";
  Tree.File("t/1252.txt", "caf\xE9 x");
  Tree.File("t/ascii.txt", "x");
  Tree.File("t/none.txt", "caf\xE9");
  EXPECT_EQ(Replace("x", hiragana),
            (Lines{"1252.txt: 1 matches replaced", "ascii.txt: 1 matches replaced",
                   "none.txt: 0 matches replaced", "!encode 1252.txt", "2 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/1252.txt"), "caf\xE9 x");
  EXPECT_EQ(Tree.Read("t/ascii.txt"), hiragana);
}

// --- Progress

TEST_F(ReplaceEngineTest, TellsWhatItDoes) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  Find("x");
  EXPECT_EQ(Messages, (Lines{"Scanning - " + Tree.Root("t"), "Scanning - " + Tree.Path("t/sub"),
                             "Working - " + Tree.Path("t/a.txt"), "Working - " + Tree.Path("t/sub/b.txt")}));
  EXPECT_EQ(Item, 2u);
}

TEST_F(ReplaceEngineTest, StopsBetweenTwoFiles) {
  for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "x");
  OnEvents = [this] { Stop = !Rows.empty() && Rows[0].Result.What != ReplaceResult::Kind::None; };
  EXPECT_EQ(Replace("x", "y"),
            (Lines{"a.txt: 1 matches replaced", "b.txt: ", "c.txt: ", "1 total matches were replaced"}));
  EXPECT_FALSE(Finished);
  EXPECT_EQ(Item, 1u);
  EXPECT_EQ(Tree.Read("t/b.txt"), "x");
}

TEST_F(ReplaceEngineTest, StopsDuringTheScan) {
  for (const char* name : {"a.txt", "b.txt", "sub/c.txt"}) Tree.File(std::string("t/") + name, "x");
  OnEvents = [this] { Stop = !Rows.empty(); };
  EXPECT_EQ(Find("x"), (Lines{"a.txt: ", "0 total matches were found"}));
  EXPECT_FALSE(Finished);
}

// --- Many files, which are counted ahead

class ManyFiles : public ReplacedTree {
 protected:
  ManyFiles() {
    for (std::size_t i = 0; i < Count; ++i) Tree.File("t/" + Name(i), i % 10 == 9 ? "" : "x and X");
  }

  /// In the order of their numbers.
  static std::string Name(std::size_t file) { return std::to_string(1000 + file) + ".txt"; }
  bool HasResult(std::size_t file) const {
    return Rows.size() > file && Rows[file].Result.What != ReplaceResult::Kind::None;
  }
  /// What a run shows that has come as far as `end`.
  static Lines Shown(std::size_t end, const std::string& last) {
    Lines lines;
    for (std::size_t i = 0; i < Count; ++i)
      lines.push_back(Name(i) + ": " + (i >= end ? "" : i % 10 == 9 ? "File has 0 size" : "2 matches found"));
    lines.push_back(last);
    return lines;
  }

  static constexpr std::size_t Count = 1000;
};

TEST_F(ManyFiles, AreToldInTheirOrder) {
  std::size_t withResult = 0;
  OnEvents = [&] {
    while (HasResult(withResult)) ++withResult;
    for (std::size_t i = withResult; i < Rows.size(); ++i) ASSERT_FALSE(HasResult(i)) << i;
  };
  EXPECT_EQ(Find("x"), Shown(Count, "1800 total matches were found"));
  EXPECT_TRUE(Finished);
  EXPECT_EQ(Item, Count);
  ASSERT_EQ(Messages.size(), 1 + Count);
  for (std::size_t i = 0; i < Count; ++i)
    ASSERT_EQ(Messages[1 + i], "Working - " + Tree.Path("t/" + Name(i)));
}

TEST_F(ManyFiles, StopBetweenAnyTwo) {
  for (const std::size_t last : {0, 50, 500, 998}) {
    Stop = false;
    OnEvents = [&] { Stop = HasResult(last); };
    EXPECT_EQ(Find("x"),
              Shown(last + 1, TotalText(static_cast<int>(2 * (last + 1 - (last + 1) / 10)), false)));
    EXPECT_FALSE(Finished);
    EXPECT_EQ(Item, last + 1);
  }
}

TEST_F(ManyFiles, StopInTheScan) {
  OnEvents = [&] { Stop = Rows.size() == Count - 1; };
  Lines expected = Shown(0, "0 total matches were found");
  expected.erase(expected.end() - 2);
  EXPECT_EQ(Find("x"), expected);
  EXPECT_FALSE(Finished);
}

TEST_F(ManyFiles, OneThatGoesMeanwhileIsCountedOrHasNoResult) {
  for (const std::size_t gone : {100, 400, 950}) {
    OnEvents = [&] {
      if (HasResult(50) && Tree.Exists("t/" + Name(gone))) Tree.Remove("t/" + Name(gone));
    };
    const Lines lines = Find("x");
    Lines expected = Shown(Count, "1800 total matches were found");
    if (!HasResult(gone)) {
      expected[gone] = Name(gone) + ": ";
      expected.back() = "1798 total matches were found";
    }
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(Item, Count);
    Tree.File("t/" + Name(gone), "x and X");
  }
}

}  // namespace
}  // namespace brackwell
