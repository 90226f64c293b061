#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <utility>

#include "platform/FileSystemObject.h"
#include "support/TempTree.h"

// A source that changes while it is copied: what comes out is one of its states, or an error.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;
using Change = std::function<void()>;

/// With a target that is new, one that is there, and one that has another name as well.
enum class Existing { None, Plain, Linked };

class ChangingSource : public testing::TestWithParam<Existing> {
 protected:
  ChangingSource() {
    if (GetParam() == Existing::None) return;
    mTree.File("target", "old");
    if (GetParam() == Existing::Plain) return;
    EXPECT_EQ(link(mTree.Path("target").c_str(), mTree.Path("target 2").c_str()), 0);
  }

  /// The number and text of the error, 0 where there is none. Each of the changes is made once, in the middle
  /// of the first, second, ... go at the file.
  std::pair<int, std::string> CopyDuring(const std::vector<Change>& changes) {
    const std::size_t ticksInOneGo = CountTicks();
    std::size_t ticks = 0;
    try {
      mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true, [&] {
        const std::size_t go = ticks / ticksInOneGo;
        const bool isInTheMiddle = ticks++ % ticksInOneGo == ticksInOneGo / 2;
        if (isInTheMiddle && go < changes.size()) changes[go]();
      });
      return {};
    } catch (const FileSystemError& error) {
      return {error.Number(), error.Description()};
    }
  }

  std::size_t CountTicks() {
    std::size_t ticks = 0;
    mFiles->CopyFile(mTree.Path("source"), mTree.Path("trial"), false, [&] { ++ticks; });
    mTree.Remove("trial");
    return ticks;
  }

  void Write(const std::string& text, off_t at) {
    const int file = open(mTree.Path("source").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(pwrite(file, text.data(), text.size(), at), static_cast<ssize_t>(text.size()));
    close(file);
  }

  void ExpectTheOldTarget() {
    Names names = {"source"};
    if (GetParam() != Existing::None) names.emplace_back("target");
    if (GetParam() == Existing::Linked) names.emplace_back("target 2");
    EXPECT_EQ(mTree.List(), names);
    if (GetParam() == Existing::None) return;
    EXPECT_EQ(mTree.Read("target"), "old");
  }

  static constexpr off_t Size = 6 << 20;

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

INSTANTIATE_TEST_SUITE_P(Targets, ChangingSource,
                         testing::Values(Existing::None, Existing::Plain, Existing::Linked),
                         [](const auto& tested) {
                           return tested.param == Existing::None    ? "New"
                                  : tested.param == Existing::Plain ? "There"
                                                                    : "WithOtherNames";
                         });

TEST_P(ChangingSource, IsCopiedOnceMore) {
  mTree.File("source", std::string(Size, 'a'));
  EXPECT_EQ(CopyDuring({[&] { Write("b", 0); }}).first, 0);
  EXPECT_EQ(mTree.Read("target"), "b" + std::string(Size - 1, 'a'));
}

TEST_P(ChangingSource, ThatGoesOnChangingIsAnError) {
  mTree.File("source", std::string(Size, 'a'));
  const auto [number, text] = CopyDuring({[&] { Write("b", 0); }, [&] { Write("c", Size - 1); }});
  EXPECT_EQ(number, 75);
  EXPECT_EQ(text, "The file keeps changing while it is copied");
  ExpectTheOldTarget();
}

/// The time of the last change of content can be set by anybody who changes it.
TEST_P(ChangingSource, ThatHidesItIsNoticed) {
  mTree.File("source", std::string(Size, 'a'), 20);
  const auto change = [&] {
    Write("b", 0);
    mTree.SetModified("source", 20);
  };
  EXPECT_EQ(CopyDuring({change, change}).first, 75);
  ExpectTheOldTarget();
}

TEST_P(ChangingSource, ThatIsReplacedByAnotherFileIsCopiedAsThat) {
  mTree.File("source", std::string(Size, 'a'));
  const auto replace = [&] {
    mTree.File("another", std::string(Size, 'b'));
    ASSERT_EQ(rename(mTree.Path("another").c_str(), mTree.Path("source").c_str()), 0);
  };
  EXPECT_EQ(CopyDuring({replace}).first, 0);
  EXPECT_EQ(mTree.Read("target"), std::string(Size, 'b'));
}

TEST_P(ChangingSource, WithHolesThatGrowsEndsInNoZeros) {
  const auto end = [&] { return static_cast<off_t>(mFiles->GetFile(mTree.Path("source")).Size); };
  mTree.File("source");
  ASSERT_EQ(truncate(mTree.Path("source").c_str(), Size), 0);
  Write("inside", Size / 2);
  const Change grow = [&] { Write("more", end()); };
  EXPECT_EQ(CopyDuring({grow, grow}).first, 75);
  ExpectTheOldTarget();
  EXPECT_EQ(CopyDuring({grow}).first, 0);
  EXPECT_EQ(mTree.Read("target"), mTree.Read("source"));
  EXPECT_TRUE(mTree.Read("target").ends_with("moremoremore"));
}

TEST_P(ChangingSource, ThatGoesIsNotFound) {
  mTree.File("source", std::string(Size, 'a'));
  EXPECT_EQ(CopyDuring({[&] { mTree.Remove("source"); }}).first, 53);
  EXPECT_FALSE(mTree.Exists("source"));
}

}  // namespace
}  // namespace brackwell
