#include <filesystem>

#include "replace/ReplacedTree.h"
#include "support/FailingFileSystem.h"

// Files that go during a run, and files of several names.

namespace brackwell {
namespace {

class ReplaceMeanwhile : public ReplacedTree {
 protected:
  /// Does `step` once, as soon as the first row has its result.
  void AfterTheFirst(const std::function<void()>& step) {
    OnEvents = [this, step, done = false]() mutable {
      if (done || Rows.empty() || Rows.front().Result.What == ReplaceResult::Kind::None) return;
      done = true;
      step();
    };
  }
  void HardLink(const std::string& old, const std::string& name) {
    std::filesystem::create_hard_link(Tree.Path(old), Tree.Path(name));
  }
  /// The note on a row that has the same file as another.
  std::string FirstNameOf(std::size_t row) const {
    const ReplaceResult& result = Rows[row].Result;
    if (result.What != ReplaceResult::Kind::SameFile) return "<none>";
    return Below(Rows[static_cast<std::size_t>(result.Count)].Path);
  }
};

using Gone = ReplaceMeanwhile;
using HardLinks = ReplaceMeanwhile;

// --- Files that go

TEST_F(Gone, AFileKeepsItsRowWithoutAResult) {
  for (const bool replaceMode : {false, true}) {
    for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "x");
    AfterTheFirst([this] { Tree.Remove("t/b.txt"); });
    const std::string done = replaceMode ? "replaced" : "found";
    EXPECT_EQ(replaceMode ? Replace("x", "y") : Find("x"),
              (Lines{"a.txt: 1 matches " + done, "b.txt: ", "c.txt: 1 matches " + done,
                     "2 total matches were " + done}));
    EXPECT_TRUE(Finished);
  }
  EXPECT_EQ(Tree.Read("t/c.txt"), "y");
}

TEST_F(Gone, SoDoAllOfAFolder) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/sub/b.txt", "x");
  Tree.File("t/z/c.txt", "x");
  AfterTheFirst([this] { Tree.Remove("t/sub"); });
  EXPECT_EQ(Find("x"), (Lines{"a.txt: 1 matches found", "sub/b.txt: ", "z/c.txt: 1 matches found",
                              "2 total matches were found"}));
}

TEST_F(Gone, WithTheSearchedFolderEndsTheRun) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/b.txt", "x");
  AfterTheFirst([this] { Tree.Remove("t"); });
  const Lines lines = Replace("x", "y");
  EXPECT_EQ(lines.front(), "a.txt: 1 matches replaced");
  EXPECT_TRUE(lines.back().starts_with("error ")) << lines.back();
}

TEST_F(Gone, OnlyASecondLookTells) {
  Tree.File("t/a.txt", "x");
  for (int failAt = 4; failAt < 6; ++failAt) {
    Files = std::make_unique<FailingFileSystem>(failAt, FileError::DeviceError);
    EXPECT_EQ(Find("x").back(), "error 57 a.txt") << failAt;
    Files = std::make_unique<FailingFileSystem>(failAt, FileError::FileNotFound);
    EXPECT_EQ(Find("x"), (Lines{"a.txt: ", "0 total matches were found"})) << failAt;
  }
}

// --- Files of several names

TEST_F(HardLinks, AreReplacedInUnderTheFirstName) {
  Tree.File("t/a.txt", "x");
  Tree.File("t/b.txt", "x");
  HardLink("t/b.txt", "t/c.txt");
  HardLink("t/b.txt", "t/sub.txt");
  HardLink("t/b.txt", "t/z.other");
  EXPECT_EQ(Replace("x", "xx"),
            (Lines{"a.txt: 1 matches replaced", "b.txt: 1 matches replaced", "c.txt: 0 matches replaced",
                   "sub.txt: 0 matches replaced", "2 total matches were replaced"}));
  for (const char* name : {"b.txt", "c.txt", "sub.txt", "z.other"})
    EXPECT_EQ(Tree.Read(std::string("t/") + name), "xx") << name;
  EXPECT_EQ(FirstNameOf(1), "<none>");
  EXPECT_EQ(FirstNameOf(2), "b.txt");
  EXPECT_EQ(FirstNameOf(3), "b.txt");
}

TEST_F(HardLinks, CountUnderEachName) {
  Tree.File("t/a.txt", "x");
  HardLink("t/a.txt", "t/b.txt");
  EXPECT_EQ(Find("x"),
            (Lines{"a.txt: 1 matches found", "b.txt: 1 matches found", "2 total matches were found"}));
}

TEST_F(HardLinks, ThatHaveToBeLeftAreToldOnce) {
  Tree.File("t/a.txt", "x");
  HardLink("t/a.txt", "t/b.txt");
  Tree.SetReadOnly("t/a.txt");
  EXPECT_EQ(Replace("x", "y"), (Lines{"a.txt: 1 matches replaced", "b.txt: 0 matches replaced", "!open a.txt",
                                      "1 total matches were replaced"}));
  EXPECT_EQ(FirstNameOf(1), "a.txt");
  EXPECT_EQ(Tree.Read("t/b.txt"), "x");
}

TEST_F(HardLinks, AreForgottenByTheNextRun) {
  Tree.File("t/a.txt", "x");
  HardLink("t/a.txt", "t/b.txt");
  for (const char* name : {"a", "b"}) {
    EXPECT_EQ(Replace("x", "xx").front(),
              "a.txt: " + std::to_string(*name == 'a' ? 1 : 2) + " matches replaced");
  }
  EXPECT_EQ(Tree.Read("t/b.txt"), "xxxx");
}

}  // namespace
}  // namespace brackwell
