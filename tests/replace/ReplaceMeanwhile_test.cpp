#include "replace/ReplacedTree.h"
#include "support/FailingFileSystem.h"

// Files that go during a run.

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
};

using Gone = ReplaceMeanwhile;

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

}  // namespace
}  // namespace brackwell
