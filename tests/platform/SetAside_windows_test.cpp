#include "platform/SetAside_windows.h"

#include <gtest/gtest.h>

#include "platform/PendingFile_windows.h"
#include "support/ErrorNumber.h"
#include "support/LockedFile_windows.h"
#include "support/TempTree.h"

namespace brackwell::win32 {
namespace {

using Names = std::vector<std::string>;

class SetAsideOnWindows : public testing::Test {
 protected:
  Found Item(const std::string& name) { return FindItem(mTree.Path(name)).value_or(Found{}); }
  std::string AsideOf(const std::string& name) {
    return std::string(FileName(NeighbourPath(mTree.Path(name), NeighbourNumbers)));
  }

  TempTree mTree;
};

TEST_F(SetAsideOnWindows, WhatMakesWayIsGoneOnceItIsSuperseded) {
  mTree.File("file", "old");
  mTree.Folder("made as folder");
  for (const std::string name : {"file", "made as folder"}) {
    SetAside old(mTree.Path(name), Item(name));
    EXPECT_FALSE(mTree.Exists(name));
    EXPECT_TRUE(mTree.Exists(AsideOf(name)));
    mTree.File(name, "new");
    old.Remove();
  }
  EXPECT_EQ(mTree.List(), (Names{"file", "made as folder"}));
  EXPECT_EQ(mTree.Read("file"), "new");
  EXPECT_EQ(mTree.Read("made as folder"), "new");
}

TEST_F(SetAsideOnWindows, WhatMakesWayComesBackWhereNothingTakesItsPlace) {
  mTree.File("file", "old");
  mTree.Folder("made as folder");
  for (const std::string name : {"file", "made as folder"}) {
    const SetAside old(mTree.Path(name), Item(name));
    EXPECT_FALSE(mTree.Exists(name));
  }
  EXPECT_EQ(mTree.List(), (Names{"file", "made as folder/"}));
  EXPECT_EQ(mTree.Read("file"), "old");
}

TEST_F(SetAsideOnWindows, WhatAKilledProgramHasLeftIsDeleted) {
  mTree.File("file", "old");
  mTree.File(AsideOf("file"), "older");
  mTree.Folder("made as folder");
  mTree.Folder(AsideOf("made as folder"));
  for (const std::string name : {"file", "made as folder"}) const SetAside old(mTree.Path(name), Item(name));
  EXPECT_EQ(mTree.List(), (Names{"file", "made as folder/"}));
  EXPECT_EQ(mTree.Read("file"), "old");
}

TEST_F(SetAsideOnWindows, WhatCannotMakeWayStaysInItsPlace) {
  mTree.File("file", "old");
  const LockedFile locked(mTree.Path("file"), FILE_SHARE_READ);
  ASSERT_TRUE(locked.IsOpen());
  EXPECT_EQ(ErrorNumber([&] { SetAside(mTree.Path("file"), Item("file")); }), 70);
  EXPECT_EQ(mTree.List(), Names{"file"});
}

}  // namespace
}  // namespace brackwell::win32
