#include "platform/Roots_windows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/FileSystemObject.h"
#include "support/ErrorNumber.h"
#include "support/FolderLink.h"
#include "support/TempTree.h"

// Which paths lie below a root, and that nobody can lead a run out of it meanwhile.

namespace brackwell::win32 {
namespace {

TEST(RootsOnWindows, HaveBelowThemWhatBeginsWithThemAndASeparator) {
  for (const char* const root : {"C:\\data", "C:\\data\\", "C:\\data/"}) {
    const Roots roots({root});
    EXPECT_TRUE(roots.IsBelow("C:\\data\\a.txt")) << root;
    EXPECT_TRUE(roots.IsBelow("C:\\data/a.txt")) << root;
    EXPECT_TRUE(roots.IsBelow("C:\\data\\sub\\")) << root;
    EXPECT_FALSE(roots.IsBelow("C:\\data")) << root;
    EXPECT_FALSE(roots.IsBelow("C:\\data\\")) << root;
    EXPECT_FALSE(roots.IsBelow("C:\\data/")) << root;
    EXPECT_FALSE(roots.IsBelow("C:\\database\\a.txt")) << root;
    EXPECT_FALSE(roots.IsBelow("C:\\")) << root;
    EXPECT_FALSE(roots.IsBelow("D:\\data\\a.txt")) << root;
  }
}

TEST(RootsOnWindows, MayBeDrivesAndShares) {
  const Roots roots({"C:\\", "\\\\server\\share\\"});
  EXPECT_TRUE(roots.IsBelow("C:\\a.txt"));
  EXPECT_TRUE(roots.IsBelow("C:\\sub\\a.txt"));
  EXPECT_FALSE(roots.IsBelow("C:\\"));
  EXPECT_FALSE(roots.IsBelow("D:\\a.txt"));
  EXPECT_TRUE(roots.IsBelow("\\\\server\\share\\a.txt"));
  EXPECT_FALSE(roots.IsBelow("\\\\server\\share"));
  EXPECT_FALSE(roots.IsBelow("\\\\server\\shared\\a.txt"));
}

TEST(RootsOnWindows, MayLieWithinEachOther) {
  const Roots roots({"C:\\data", "C:\\data\\inner"});
  EXPECT_TRUE(roots.IsBelow("C:\\data\\a.txt"));
  EXPECT_TRUE(roots.IsBelow("C:\\data\\inner\\a.txt"));
  EXPECT_FALSE(roots.IsBelow("C:\\data\\inner")) << "it was chosen, so it may be a link";
}

TEST(RootsOnWindows, HaveNothingBelowThemWhereThereAreNone) {
  EXPECT_FALSE(Roots().IsBelow("C:\\a.txt"));
  EXPECT_FALSE(Roots({""}).IsBelow("C:\\a.txt"));
}

class HeldWays : public testing::Test {
 protected:
  HeldWays() { mTree.File("root/a/b/file.txt", "text"); }

  std::string File() const { return mTree.Path("root/a/b/file.txt"); }
  bool CanRename(const std::string& name) {
    std::error_code error;
    std::filesystem::rename(mTree.Path(name), mTree.Path(name) + " renamed", error);
    if (!error) std::filesystem::rename(mTree.Path(name) + " renamed", mTree.Path(name));
    return !error;
  }
  bool CanDelete(const std::string& name) {
    std::error_code error;
    return std::filesystem::remove(mTree.Path(name), error);
  }
  /// Which any user may make, where Windows itself runs.
  bool MakeJunction(const std::string& name, const std::string& target) {
    std::system(("mklink /J \"" + mTree.Path(name) + "\" \"" + mTree.Path(target) + "\" >nul").c_str());
    return std::filesystem::exists(mTree.Path(name));
  }

  TempTree mTree;
  const Roots mRoots{{mTree.Root("root")}};
};

TEST_F(HeldWays, CanBeRenamedOnlyWhenTheyAreHeldNoMore) {
  ASSERT_TRUE(CanRename("root/a"));
  Way way = mRoots.HoldWayTo(File());
  ASSERT_TRUE(way);
  EXPECT_EQ(way->size(), 2u);
  EXPECT_FALSE(CanRename("root/a"));
  EXPECT_FALSE(CanRename("root/a/b"));
  EXPECT_TRUE(CanRename("root/a/b/file.txt"));
  mTree.Folder("root/other");
  EXPECT_TRUE(mRoots.HoldWayTo(mTree.Path("root/other/file.txt")));
  EXPECT_FALSE(CanRename("root/a")) << "somebody still holds it";
  way.reset();
  EXPECT_TRUE(CanRename("root/a"));
  EXPECT_FALSE(CanRename("root/other")) << "the next call will want it";
}

TEST_F(HeldWays, EndAtTheFolderItselfWhereThatIsAsked) {
  mTree.Folder("root/empty");
  EXPECT_FALSE(mRoots.HoldWayTo(mTree.Path("root/empty")));
  EXPECT_TRUE(CanRename("root/empty"));
  EXPECT_TRUE(mRoots.HoldFolder(mTree.Path("root/empty")));
  EXPECT_FALSE(CanRename("root/empty"));
  EXPECT_FALSE(CanDelete("root/empty"));
  EXPECT_FALSE(mRoots.HoldFolder(mTree.Path("root")));
}

TEST_F(HeldWays, AreThoseOfEachRoot) {
  mTree.Folder("target/a");
  const Roots both({mTree.Root("root"), mTree.Root("target")});
  both.HoldWayTo(File());
  both.HoldWayTo(mTree.Path("target/a/file.txt"));
  EXPECT_FALSE(CanRename("root/a"));
  EXPECT_FALSE(CanRename("target/a"));
}

TEST_F(HeldWays, LeadOverFoldersThatAreThere) {
  EXPECT_EQ(ErrorNumber([&] { mRoots.HoldWayTo(mTree.Path("root/none/file.txt")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mRoots.HoldWayTo(mTree.Path("root/a/b/file.txt/none")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mRoots.HoldFolder(File()); }), 76);
}

TEST_F(HeldWays, LeadOverNoLinks) {
  mTree.Folder("outside/b");
  const bool hasLink = MakeFolderLink(mTree.Path("root/link"), mTree.Path("outside"));
  const bool hasJunction = MakeJunction("root/junction", "outside");
  if (!hasLink && !hasJunction) GTEST_SKIP() << NoLinks;
  for (const std::string link : {"root/link", "root/junction"}) {
    EXPECT_EQ(ErrorNumber([&] { mRoots.HoldWayTo(mTree.Path(link + "/file.txt")); }), 76) << link;
    EXPECT_EQ(ErrorNumber([&] { mRoots.HoldWayTo(mTree.Path(link + "/b/file.txt")); }), 76) << link;
    EXPECT_EQ(ErrorNumber([&] { mRoots.HoldFolder(mTree.Path(link)); }), 76) << link;
  }
}

TEST_F(HeldWays, AreHeldByAListing) {
  mTree.Folder("root/other");
  const auto files = CreateFileSystemObject()->Within({mTree.Root("root")});
  auto listing = files->GetFolder(mTree.Path("root/a/b"));
  EXPECT_FALSE(files->FileExists(mTree.Path("root/other/file.txt")));
  EXPECT_FALSE(CanRename("root/a/b"));
  EXPECT_TRUE(listing->Find("file.txt"));
  listing.reset();
  EXPECT_TRUE(CanRename("root/a/b"));
}

TEST_F(HeldWays, LetARunWriteThere) {
  const auto files = CreateFileSystemObject()->Within({mTree.Root("root")});
  const auto listing = files->GetFolder(mTree.Path("root/a/b"));
  files->CopyFile(File(), mTree.Path("root/a/b/copy.txt"), false);
  files->CopyFile(File(), mTree.Path("root/a/b/copy.txt"), true);
  files->CreateFolder(mTree.Path("root/a/b/new"));
  files->CopyFolderProperties(mTree.Path("root/a"), mTree.Path("root/a/b"));
  listing->Rename("copy.txt", "renamed.txt");
  EXPECT_EQ(mTree.Read("root/a/b/renamed.txt"), "text");
}

}  // namespace
}  // namespace brackwell::win32
