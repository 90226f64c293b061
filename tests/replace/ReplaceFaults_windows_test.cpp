#include <cstdio>

#include "common/Files.h"
#include "replace/ReplacedTree.h"
#include "support/DriveRoot_windows.h"
#include "support/LockedFile_windows.h"
#include "support/LongPaths_windows.h"

// Finding and replacing on what Windows alone has: drives, files that are kept locked, paths beyond the old
// limit.

namespace brackwell {
namespace {

class ReplaceOnWindows : public ReplacedTree {
 protected:
  std::string ReadAt(const std::string& path) const { return Files->OpenTextFile(path)->ReadAll(); }
};

// --- Drive roots

TEST_F(ReplaceOnWindows, ADriveIsSearchedFromItsRoot) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  DriveRoot drive('R');
  drive.File("a.txt", "cat");
  drive.File("sub/b.TXT", "Cat and cat");
  Options.Folder = drive.Path();
  Options.ExclusionList = {"."};
  EXPECT_EQ(Replace("cat", "dog"), (Lines{"R:/a.txt: 1 matches replaced", "R:/sub/b.TXT: 2 matches replaced",
                                          "3 total matches were replaced"}));
  EXPECT_EQ(Messages.front(), "Scanning - R:\\");
  EXPECT_EQ(Messages.back(), "Working - R:\\sub\\b.TXT");
  EXPECT_EQ(drive.Read("a.txt") + drive.Read("sub/b.TXT"), "dogdog and dog");
  EXPECT_EQ(drive.List(), (Lines{"a.txt", "sub/", "sub/b.TXT"}));
}

TEST_F(ReplaceOnWindows, ADriveWithoutAMediumEndsTheRun) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  for (const char* root : {"B:\\", "E:\\"}) {
    Options.Folder = root;
    const Lines lines = Find("cat");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].starts_with("error ")) << lines[0];
  }
}

// --- Locked files

TEST_F(ReplaceOnWindows, AFileThatMayBeReadAloneIsLeftAndTold) {
  for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "cat", 10);
  const LockedFile locked(Tree.Path("t/b.txt"), FILE_SHARE_READ);
  ASSERT_TRUE(locked.IsOpen());
  EXPECT_EQ(Replace("cat", "dog"),
            (Lines{"a.txt: 1 matches replaced", "b.txt: 1 matches replaced", "c.txt: 1 matches replaced",
                   "!open b.txt", "3 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt") + Tree.Read("t/b.txt") + Tree.Read("t/c.txt"), "dogcatdog");
  EXPECT_EQ(Files->GetFile(Tree.Path("t/b.txt")).DateLastModified, TempTree::Time(10));
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt", "c.txt"}));
}

TEST_F(ReplaceOnWindows, AFileThatMayNotBeReadEndsTheRun) {
  for (const char* name : {"a", "b", "c"}) Tree.File(std::string("t/") + name + ".txt", "cat", 10);
  const LockedFile locked(Tree.Path("t/b.txt"), 0);
  ASSERT_TRUE(locked.IsOpen());
  EXPECT_EQ(Replace("cat", "dog"),
            (Lines{"a.txt: 1 matches replaced", "b.txt: ", "c.txt: ", "error 70 b.txt"}));
  EXPECT_EQ(Tree.Read("t/a.txt"), "dog");
  EXPECT_EQ(Tree.Read("t/c.txt"), "cat");
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt", "c.txt"}));
}

TEST_F(ReplaceOnWindows, AnEmptyLockedFileIsNeverOpened) {
  Tree.File("t/a.txt");
  const LockedFile locked(Tree.Path("t/a.txt"), 0);
  ASSERT_TRUE(locked.IsOpen());
  EXPECT_EQ(Replace("cat", "dog"), (Lines{"a.txt: File has 0 size", "0 total matches were replaced"}));
}

TEST_F(ReplaceOnWindows, AFileThatIsOpenForWritingIsLeftAndTold) {
  Tree.File("t/a.txt", "cat");
  Tree.File("t/b.txt", "cat");
  const win32::Handle log = win32::Open(win32::NativePath(Tree.Path("t/a.txt")), GENERIC_WRITE);
  ASSERT_TRUE(log.IsOpen());
  EXPECT_EQ(Replace("cat", "dog"), (Lines{"a.txt: 1 matches replaced", "b.txt: 1 matches replaced",
                                          "!open a.txt", "2 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt") + Tree.Read("t/b.txt"), "catdog");
  EXPECT_EQ(Tree.List("t"), (Lines{"a.txt", "b.txt"}));
}

/// As a program that reads along has it: others may read and write, but nothing can take its place.
TEST_F(ReplaceOnWindows, AFileThatOthersMayWriteToIsChangedInItsPlace) {
  Tree.File("t/a.txt", "cat and cat", 10);
  const LockedFile log(Tree.Path("t/a.txt"), FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(log.IsOpen());
  EXPECT_EQ(Replace("cat", "a dog"), (Lines{"a.txt: 2 matches replaced", "2 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt"), "a dog and a dog");
  EXPECT_EQ(Replace("a dog", "x").back(), "2 total matches were replaced");
  EXPECT_EQ(Tree.Read("t/a.txt"), "x and x");
  EXPECT_EQ(Tree.List("t"), Lines{"a.txt"});
}

TEST_F(ReplaceOnWindows, AFileThatIsLockedMeanwhileKeepsItsContent) {
  Tree.File("t/a.txt", std::string(3 << 20, ' ') + "cat");
  std::unique_ptr<LockedFile> locked;
  OnEvents = [&] {
    // Its reader is open by then, so only what it lets in itself can be kept from others.
    if (!locked && !Rows.empty())
      locked = std::make_unique<LockedFile>(Tree.Path("t/a.txt"), FILE_SHARE_READ);
  };
  EXPECT_EQ(Replace("cat", "dog"),
            (Lines{"a.txt: 1 matches replaced", "!open a.txt", "1 total matches were replaced"}));
  EXPECT_TRUE(locked && locked->IsOpen());
  EXPECT_TRUE(Tree.Read("t/a.txt").ends_with(" cat"));
  EXPECT_EQ(Tree.List("t"), Lines{"a.txt"});
}

TEST_F(ReplaceOnWindows, AReadOnlyFileIsLeftAndTold) {
  Tree.File("t/a.txt", "cat", 10);
  Tree.SetReadOnly("t/a.txt");
  EXPECT_EQ(Replace("cat", "dog"),
            (Lines{"a.txt: 1 matches replaced", "!open a.txt", "1 total matches were replaced"}));
  EXPECT_EQ(Tree.Read("t/a.txt"), "cat");
  EXPECT_EQ(Tree.List("t"), Lines{"a.txt"});
}

// --- Long paths

TEST_F(ReplaceOnWindows, PathsBeyondTheOldLimitAreSearchedAndChanged) {
  const std::string folder = MakeFolders(*Files, Tree.Path("t"), LongFolder);
  for (const std::string& name : {std::string("a.txt"), LongName})
    WriteTextFile(*Files, JoinPath(folder, name), true, "One cat\r\nand a Cat");
  const Lines lines = Replace("cat", "dog");
  EXPECT_EQ(lines.back(), "4 total matches were replaced");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(lines[1].ends_with("/" + LongName + ": 2 matches replaced")) << lines[1];
  EXPECT_EQ(ReadAt(JoinPath(folder, "a.txt")), "One dog\r\nand a dog");
  EXPECT_EQ(ReadAt(JoinPath(folder, LongName)), "One dog\r\nand a dog");
  EXPECT_EQ(Files->GetFolder(folder)->Files().size(), 2u);
  RemoveTree(*Files, Tree.Path("t"));
}

// --- Bytes

TEST_F(ReplaceOnWindows, EveryByteSurvives) {
  std::string before;
  for (int byte = 0; byte < 256; ++byte) before += static_cast<char>(byte);
  Tree.File("t/a.txt", before + "cat" + before);
  EXPECT_EQ(Replace("cat", "dog").front(), "a.txt: 1 matches replaced");
  EXPECT_EQ(Tree.Read("t/a.txt"), before + "dog" + before);
}

TEST_F(ReplaceOnWindows, ATextFileIsWrittenAsItIsGiven) {
  std::string bytes = "\r\n\n";
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  WriteTextFile(*Files, Tree.Path("t/a.txt"), true, bytes);
  EXPECT_EQ(Tree.Read("t/a.txt"), bytes);
}

}  // namespace
}  // namespace brackwell
