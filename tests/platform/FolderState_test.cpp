#include <gtest/gtest.h>

#include "platform/FileSystemObject.h"
#include "support/LetTimePass.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

class FolderStateTest : public testing::Test {
 protected:
  FolderStateTest() {
    mTree.File("folder/file");
    mTree.Folder("folder/sub");
    mTree.SetModified("folder", 0);
  }
  FolderState State(const std::string& name = "folder") const {
    return mFiles->GetFolder(mTree.Path(name))->State();
  }
  /// Whether the state tells that something was done, though the modification time was put back.
  template <typename Change>
  bool Tells(Change change) {
    const FolderState before = State();
    LetTimePass();
    change();
    mTree.SetModified("folder", 0);
    return State() != before;
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

TEST_F(FolderStateTest, StaysWhileTheMembersDo) {
  const FolderState before = State();
  LetTimePass();
  mTree.File("folder/sub/deeper");
  mTree.File("beside");
  mFiles->GetFolder(mTree.Path("folder"))->Files();
  EXPECT_EQ(State(), before);
  EXPECT_EQ(mFiles->GetFolder(mTree.Root("folder"))->State(), before);
}

TEST_F(FolderStateTest, ChangesWithTheMembers) {
  EXPECT_TRUE(Tells([&] { mTree.File("folder/new"); }));
  EXPECT_TRUE(Tells([&] { mTree.Remove("folder/new"); }));
  EXPECT_TRUE(Tells([&] { mTree.Folder("folder/made"); }));
  EXPECT_TRUE(Tells([&] { mFiles->GetFolder(mTree.Path("folder"))->Rename("file", "other"); }));
}

TEST_F(FolderStateTest, OfAnotherFolderIsAnother) {
  mTree.Folder("beside");
  mTree.SetModified("beside", 0);
  EXPECT_NE(State("beside"), State());
  EXPECT_TRUE(Tells([&] {
    mTree.Remove("folder");
    mTree.Folder("folder");
  }));
}

TEST_F(FolderStateTest, IsThatOfNowInAFolderThatIsOpen) {
  const auto folder = mFiles->GetFolder(mTree.Path("folder"));
  const FolderState before = folder->State();
  LetTimePass();
  mTree.File("folder/new");
  EXPECT_NE(folder->State(), before);
}

TEST_F(FolderStateTest, LastChangedIsTheLaterOfBothTimes) {
  const DateTime start = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  mTree.Folder("made");
  mTree.SetModified("made", 0);
  EXPECT_GE(State("made").LastChanged, start - std::chrono::seconds(1));
  const int future = static_cast<int>((start - TempTree::Time(0)).count()) + 100'000;
  mTree.SetModified("made", future);
  EXPECT_EQ(State("made").LastChanged, TempTree::Time(future));
}

}  // namespace
}  // namespace brackwell
