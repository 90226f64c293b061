#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// Copying folders on POSIX: links, modes, and trees deeper than a path can be long.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class FolderCopyTest : public testing::Test {
 protected:
  FolderCopyTest() { chmod(mTree.Path().c_str(), 0777); }

  int CopyError(const std::string& source, const std::string& target) {
    return ErrorNumber([&] { mFiles->CopyFolder(mTree.Path(source), mTree.Path(target), true); });
  }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0); }
  mode_t ModeOf(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(lstat(mTree.Path(name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), mTree.Path(name).c_str()), 0);
  }
  std::string LinkText(const std::string& name) {
    char text[256] = {};
    return readlink(mTree.Path(name).c_str(), text, sizeof text - 1) < 0 ? "<no link>" : text;
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using LinksInFolders = FolderCopyTest;

class ModesOfFolders : public FolderCopyTest {
 protected:
  /// An administrator without special rights could not remove the target afterwards: it becomes his own.
  int CopyAsOrdinaryUser(const std::string& source, const std::string& target) {
    const int error = InChild([&] {
      BecomeOrdinaryUser();
      return CopyError(source, target);
    });
    const std::string path = mTree.Path(target);
    EXPECT_EQ(lchown(path.c_str(), geteuid(), getegid()), 0);
    for (const std::string& name : mTree.List(target))
      EXPECT_EQ(lchown((path + "/" + name).c_str(), geteuid(), getegid()), 0);
    return error;
  }
};

// --- Links

TEST_F(LinksInFolders, AreCopiedAsTheLinksTheyAre) {
  mTree.File("source/sub/file", "text");
  mTree.File("elsewhere/file", "elsewhere");
  const std::pair<std::string, std::string> links[] = {
      {".", "self"},         {"none", "dangling"},       {"circle", "circle"},
      {"..", "sub/up"},      {"../elsewhere", "folder"}, {mTree.Path("source"), "sub/root"},
      {"sub/file", "a file"}};
  const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, {.tv_sec = 1600000000, .tv_nsec = 5}};
  for (const auto& [text, name] : links) {
    Link(text, "source/" + name);
    ASSERT_EQ(utimensat(AT_FDCWD, mTree.Path("source/" + name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  }
  EXPECT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(mTree.List("target"), (Names{"a file", "circle", "dangling", "folder", "self", "sub/", "sub/file",
                                         "sub/root", "sub/up"}));
  for (const auto& [text, name] : links) {
    EXPECT_EQ(LinkText("target/" + name), text);
    struct stat status {};
    ASSERT_EQ(lstat(mTree.Path("target/" + name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, 1600000000) << name;
    EXPECT_EQ(status.st_mtim.tv_nsec, 5) << name;
  }
  EXPECT_EQ(mTree.Read("target/sub/file"), "text");
}

TEST_F(LinksInFolders, OfTheTargetAreReplacedByFilesAndStandInTheWayOfFolders) {
  mTree.File("source/file", "new");
  mTree.File("source/sub/inner", "new");
  mTree.File("elsewhere/inner", "kept");
  mTree.Folder("target");
  Link("../elsewhere/inner", "target/file");
  Link("../elsewhere", "target/sub");
  const auto inside = mFiles->Within({mTree.Path("source"), mTree.Path("target")});
  EXPECT_EQ(
      ErrorNumber([&] { inside->CopyFolder(mTree.Path("source/sub"), mTree.Path("target/sub"), true); }), 58);
  EXPECT_NE(ErrorNumber([&] { inside->CopyFolder(mTree.Path("source"), mTree.Path("target"), true); }), 0);
  EXPECT_EQ(LinkText("target/file"), "<no link>");
  EXPECT_EQ(mTree.Read("target/file"), "new");
  EXPECT_EQ(LinkText("target/sub"), "../elsewhere");
  EXPECT_EQ(mTree.Read("elsewhere/inner"), "kept");
}

TEST_F(LinksInFolders, TheSourceAndTheTargetMayBeLinks) {
  mTree.File("real source/file", "text");
  mTree.Folder("real target");
  Link("real source", "source");
  Link("real target", "target");
  EXPECT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(mTree.Read("real target/file"), "text");
  EXPECT_EQ(LinkText("target"), "real target");
  Link("real source", "again");
  EXPECT_EQ(CopyError("source", "again"), 75);
  EXPECT_EQ(CopyError("source", "again/new"), 75);
  EXPECT_EQ(mTree.List("real source"), Names{"file"});
}

TEST_F(LinksInFolders, ATargetThatLeadsNowhereIsAFile) {
  mTree.Folder("source");
  Link("none", "dangling");
  EXPECT_EQ(CopyError("source", "dangling"), 58);
}

// --- Modes, and what is no regular file

TEST_F(ModesOfFolders, AreKeptAlsoWhereTheyAreReadOnly) {
  mTree.File("source/locked/inner/file", "text", 5);
  Mode("source/locked/inner", 0555);
  Mode("source/locked", 0555);
  EXPECT_EQ(CopyAsOrdinaryUser("source/locked", "target"), 0);
  EXPECT_EQ(ModeOf("target"), 0555u);
  EXPECT_EQ(ModeOf("target/inner"), 0555u);
  EXPECT_EQ(mTree.Read("target/inner/file"), "text");
}

TEST_F(ModesOfFolders, ThatKeepOthersOutDoSoThoughTheCopyEndsEarly) {
  mTree.File("private/sub/file", "secret");
  Mode("private", 0700);
  Mode("private/sub", 0711);
  int filesSeen = 0;
  const auto full = [&] {
    if (mTree.Exists("copy/sub") && ++filesSeen == 1)
      throw FileSystemError(FileError::DiskFull, mTree.Path("copy/sub/file"));
  };
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyFolder(mTree.Path("private"), mTree.Path("copy"), true, full); }),
            61);
  EXPECT_EQ(ModeOf("copy"), 0700u);
  EXPECT_EQ(ModeOf("copy/sub"), 0711u);
}

TEST_F(ModesOfFolders, OfAnExistingTargetAreItsOwn) {
  mTree.Folder("source");
  mTree.Folder("target");
  Mode("source", 0755);
  Mode("target", 0700);
  mTree.SetModified("source", 10);
  EXPECT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(ModeOf("target"), 0700u);
}

TEST_F(ModesOfFolders, ThatForbidReadingLeaveTheFolderOut) {
  mTree.File("source/a/file", "a");
  mTree.File("source/secret/file", "secret");
  mTree.File("source/z/file", "z");
  Mode("source/secret", 0111);
  EXPECT_EQ(CopyAsOrdinaryUser("source", "target"), 70);
  EXPECT_EQ(mTree.List("target"), (Names{"a/", "a/file", "z/", "z/file"}));
}

TEST_F(FolderCopyTest, LeavesPipesOutAndCopiesTheRest) {
  mTree.File("source/a", "a");
  mTree.File("source/z", "z");
  ASSERT_EQ(mkfifo(mTree.Path("source/pipe").c_str(), 0666), 0);
  EXPECT_EQ(CopyError("source", "target"), 75);
  EXPECT_EQ(mTree.List("target"), (Names{"a", "z"}));
}

// --- Depth

/// A chain of folders with a file in the last one.
class DeepTree : public FolderCopyTest {
 protected:
  static constexpr int Depth = 3000;

  DeepTree() {
    mTree.Folder("top");
    int folder = open(mTree.Path("top").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < Depth; ++level) {
      mkdirat(folder, Step.c_str(), 0755);
      const int next = openat(folder, Step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
      close(folder);
      folder = next;
    }
    const int file = openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    EXPECT_EQ(write(file, "deep", 4), 4);
    close(file);
    symlinkat("file", folder, "link");
    close(folder);
  }

  std::string Deep(const std::string& name, const std::string& top = "top") const {
    std::string path = mTree.Path(top);
    for (int level = 0; level < Depth; ++level) path += "/" + Step;
    return name.empty() ? path : path + "/" + name;
  }
  std::string Read(const std::string& path) { return mFiles->OpenTextFile(path)->ReadAll(); }

  const std::string Step = "deeper";
};

TEST_F(DeepTree, IsSeen) {
  EXPECT_TRUE(mFiles->FileExists(Deep("file")));
  EXPECT_TRUE(mFiles->FolderExists(Deep("")));
  EXPECT_FALSE(mFiles->FileExists(Deep("none")));
  EXPECT_FALSE(mFiles->FileExists(Deep("none/none")));
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFolder(Deep("none/none")); }), 76);
  EXPECT_EQ(mFiles->GetFile(Deep("file")).Size, 4u);
  const auto folder = mFiles->GetFolder(Deep(""));
  ASSERT_EQ(folder->Files().size(), 2u);
  EXPECT_EQ(folder->Files()[0].Name, "file");
  EXPECT_TRUE(folder->Find("link"));
  EXPECT_TRUE(mFiles->LiesWithin(Deep(""), mTree.Path("top")));
  EXPECT_EQ(mFiles->Drive(Deep("")), mFiles->Drive(mTree.Path()));
}

TEST_F(DeepTree, IsWorkedIn) {
  mFiles->CopyFile(Deep("file"), Deep("copy"), false);
  EXPECT_EQ(Read(Deep("copy")), "deep");
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyFile(Deep("file"), Deep("copy"), false); }), 58);
  const auto writer = mFiles->CreateTextFile(Deep("copy"), true);
  writer->Write("new");
  writer->Close();
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyFile(Deep("copy"), Deep("file"), true); }), 0);
  EXPECT_EQ(Read(Deep("file")), "new");
  mFiles->CreateFolder(Deep("sub"));
  mFiles->CopyFile(Deep("link"), Deep("sub/link"), true);
  mFiles->CopyFile(Deep("link"), Deep("sub/link"), true);
  EXPECT_EQ(mFiles->GetFile(Deep("sub/link")).Attributes & Attribute::Alias, Attribute::Alias);
}

TEST_F(DeepTree, IsCopied) {
  EXPECT_EQ(CopyError("top", "copy"), 0);
  EXPECT_EQ(Read(Deep("file", "copy")), "deep");
  EXPECT_EQ(Read(Deep("link", "copy")), "deep");
}

TEST_F(DeepTree, IsCleanedUpByTheTests) {
  std::string folder;
  {
    TempTree tree;
    folder = tree.Path();
    ASSERT_EQ(rename(mTree.Path("top").c_str(), tree.Path("top").c_str()), 0);
  }
  EXPECT_FALSE(mFiles->FolderExists(folder));
}

}  // namespace
}  // namespace brackwell
