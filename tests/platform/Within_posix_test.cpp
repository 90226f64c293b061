#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// A run stays in the folders that the user chose: FileSystemObject::Within, where links can lead out.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;
constexpr unsigned SizeOfOpenHow = 24;  // bytes; the last argument of openat2

class WithinTest : public testing::Test {
 protected:
  WithinTest() {
    mTree.File("outside/file.txt", "outside", 10);
    mTree.Folder("outside/sub");
    mTree.File("chosen/sub/file.txt", "inside", 20);
    mTree.File("chosen/first.txt", "first", 30);
    Link("../outside", "chosen/away");
    Link("../outside/file.txt", "chosen/to file");
    Link("chosen", "way in");
  }

  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), mTree.Path(name).c_str()), 0);
  }
  std::string LinkText(const std::string& name) {
    std::string text(100, '\0');
    const auto length = readlink(mTree.Path(name).c_str(), text.data(), text.size());
    return length < 0 ? "<no link>" : text.substr(0, static_cast<std::size_t>(length));
  }
  std::unique_ptr<FileSystemObject> Within(const std::string& name) {
    return CreateFileSystemObject()->Within({mTree.Root(name)});
  }
  /// Puts a link to what lies outside in the place of a folder.
  void SwapForLink(const std::string& name) {
    mTree.Remove(name);
    Link(mTree.Path("outside"), name);
  }
  /// Where the kernel can open a whole way at once, and where it goes step by step.
  void InBothWays(const std::function<int()>& steps) {
    EXPECT_EQ(steps(), 0);
    EXPECT_EQ(InChild([&] {
                RefuseCall(SYS_openat2, 3, SizeOfOpenHow, ENOSYS);
                return steps();
              }),
              0);
  }

  TempTree mTree;
};

TEST_F(WithinTest, WhatLiesBelowIsReachedAndNothingBehindALink) {
  InBothWays([&] {
    const auto files = Within("chosen");
    if (files->OpenTextFile(mTree.Path("chosen/sub/file.txt"))->ReadAll() != "inside") return 1;
    if (!files->FolderExists(mTree.Path("chosen")) || !files->FolderExists(mTree.Path("chosen/sub"))) return 2;
    if (files->FolderExists(mTree.Path("chosen/away"))) return 3;
    if (!files->FileExists(mTree.Path("chosen/away"))) return 4;
    const std::string behind = mTree.Path("chosen/away/file.txt");
    if (files->FileExists(behind)) return 5;
    if (ErrorNumber([&] { files->GetFile(behind); }) != 53) return 6;
    if (ErrorNumber([&] { files->OpenTextFile(behind); }) != 53) return 7;
    if (ErrorNumber([&] { files->OpenTextFile(mTree.Path("chosen/to file")); }) != 75) return 8;
    if (ErrorNumber([&] { files->GetFolder(mTree.Path("chosen/away")); }) != 76) return 9;
    if (ErrorNumber([&] { files->GetFolder(mTree.Path("chosen/away/sub")); }) != 76) return 10;
    if (ErrorNumber([&] { files->CreateFolder(mTree.Path("chosen/away/new")); }) != 76) return 11;
    if (ErrorNumber([&] { files->CreateTextFile(mTree.Path("chosen/away/new.txt"), true); }) != 76) return 12;
    if (ErrorNumber([&] { files->CopyFile(mTree.Path("chosen/first.txt"), behind, true); }) != 76) return 13;
    if (ErrorNumber([&] { files->CopyFile(behind, mTree.Path("chosen/copy"), true); }) != 53) return 14;
    return 0;
  });
  EXPECT_EQ(mTree.List("outside"), (Names{"file.txt", "sub/"}));
  EXPECT_EQ(mTree.Read("outside/file.txt"), "outside");
}

TEST_F(WithinTest, ASeparatorAtTheEndMakesNoFolderOfALink) {
  InBothWays([&] {
    const auto files = Within("chosen");
    if (files->FolderExists(mTree.Root("chosen/away"))) return 1;
    if (ErrorNumber([&] { files->GetFolder(mTree.Root("chosen/away")); }) != 76) return 2;
    return files->GetFolder(mTree.Root("chosen/sub"))->Files().size() == 1 ? 0 : 3;
  });
}

TEST_F(WithinTest, TheChosenFolderItselfMayBeALinkOrLieBehindOne) {
  InBothWays([&] {
    const auto files = Within("way in");
    if (files->GetFolder(mTree.Root("way in"))->Files().size() != 3) return 1;
    if (files->OpenTextFile(mTree.Path("way in/sub/file.txt"))->ReadAll() != "inside") return 2;
    if (files->FileExists(mTree.Path("way in/away/file.txt"))) return 3;
    const auto below = Within("way in/sub");
    return below->OpenTextFile(mTree.Path("way in/sub/file.txt"))->ReadAll() == "inside" ? 0 : 4;
  });
}

TEST_F(WithinTest, AFolderThatBecomesALinkLeadsNowhere) {
  mTree.Folder("chosen/sub/inner");
  const auto files = Within("chosen");
  ASSERT_EQ(files->GetFolder(mTree.Path("chosen/sub"))->SubFolders().size(), 1u);
  SwapForLink("chosen/sub");
  EXPECT_EQ(ErrorNumber([&] { files->GetFolder(mTree.Path("chosen/sub")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { files->OpenTextFile(mTree.Path("chosen/sub/file.txt")); }), 53);
  EXPECT_EQ(
      ErrorNumber([&] {
        files->CopyFile(mTree.Path("chosen/first.txt"), mTree.Path("chosen/sub/file.txt"), true);
      }),
      76);
  EXPECT_EQ(mTree.Read("outside/file.txt"), "outside");
}

TEST_F(WithinTest, AFileIsReplacedWhereItWasOpenedThoughItsFolderBecameALink) {
  const auto files = Within("chosen");
  const auto reader = files->OpenTextFile(mTree.Path("chosen/sub/file.txt"));
  ASSERT_EQ(rename(mTree.Path("chosen/sub").c_str(), mTree.Path("chosen/moved").c_str()), 0);
  Link("../outside", "chosen/sub");
  const auto writer = reader->Rewrite();
  writer->Write("rewritten");
  writer->Close();
  EXPECT_EQ(mTree.Read("chosen/moved/file.txt"), "rewritten");
  EXPECT_EQ(mTree.Read("outside/file.txt"), "outside");
}

TEST_F(WithinTest, ARootThatGoesTakesWhatLayBelowWithIt) {
  const auto files = Within("chosen");
  mTree.Remove("chosen");
  Link("outside", "chosen");
  EXPECT_FALSE(files->FileExists(mTree.Path("chosen/file.txt")));
  EXPECT_EQ(ErrorNumber([&] { files->GetFile(mTree.Path("chosen/file.txt")); }), 53);
}

TEST_F(WithinTest, ARootThatIsNotThereSaysSo) {
  const auto files = Within("none");
  EXPECT_FALSE(files->FolderExists(mTree.Path("none")));
  EXPECT_EQ(ErrorNumber([&] { files->GetFolder(mTree.Root("none")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { files->GetFolder(mTree.Path("none/sub")); }), 76);
}

TEST_F(WithinTest, EachOfTwoRootsIsKeptTo) {
  mTree.File("other/sub/file.txt", "other");
  Link("../chosen/sub", "other/away");
  const auto files = CreateFileSystemObject()->Within({mTree.Root("chosen"), mTree.Root("other")});
  EXPECT_EQ(files->OpenTextFile(mTree.Path("other/sub/file.txt"))->ReadAll(), "other");
  EXPECT_EQ(files->OpenTextFile(mTree.Path("chosen/sub/file.txt"))->ReadAll(), "inside");
  EXPECT_FALSE(files->FileExists(mTree.Path("other/away/file.txt")));
  EXPECT_FALSE(files->FileExists(mTree.Path("chosen/away/file.txt")));
}

TEST_F(WithinTest, ARootInsideAnotherMayLieBehindItsLinks) {
  const auto files = CreateFileSystemObject()->Within({mTree.Root("chosen"), mTree.Root("chosen/away")});
  EXPECT_EQ(files->OpenTextFile(mTree.Path("chosen/away/file.txt"))->ReadAll(), "outside");
  EXPECT_FALSE(files->FileExists(mTree.Path("chosen/to file/none")));
}

TEST_F(WithinTest, AFolderWhoseNameBeginsLikeARootIsAnother) {
  mTree.File("chosen too/file.txt", "too");
  Link("outside", "chosen link");
  const auto files = CreateFileSystemObject()->Within({mTree.Path("chosen")});
  EXPECT_EQ(files->OpenTextFile(mTree.Path("chosen too/file.txt"))->ReadAll(), "too");
  EXPECT_EQ(files->OpenTextFile(mTree.Path("chosen link/file.txt"))->ReadAll(), "outside");
}

TEST_F(WithinTest, TheRootOfEverythingIsARootAsWell) {
  InBothWays([&] {
    const auto files = CreateFileSystemObject()->Within({"/"});
    if (files->OpenTextFile(mTree.Path("chosen/sub/file.txt"))->ReadAll() != "inside") return 1;
    if (files->FileExists(mTree.Path("chosen/away/file.txt"))) return 2;
    return files->GetFolder("/")->SubFolders().empty() ? 3 : 0;
  });
}

TEST_F(WithinTest, WhatMayNotBeEnteredIsToldAsSuch) {
  mTree.File("chosen/locked/sub/file.txt", "locked");
  ASSERT_EQ(chmod(mTree.Path("chosen/locked").c_str(), 0), 0);
  ASSERT_EQ(chmod(mTree.Path().c_str(), 0777), 0);
  const auto asUser = [&] {
    BecomeOrdinaryUser();
    const auto files = Within("chosen");
    if (files->FileExists(mTree.Path("chosen/locked/sub/file.txt"))) return 1;
    return ErrorNumber([&] { files->GetFile(mTree.Path("chosen/locked/sub/file.txt")); });
  };
  EXPECT_EQ(InChild(asUser), 70);
}

TEST_F(WithinTest, PathsLongerThanACallTakesAreReached) {
  constexpr int Depth = 900;
  const std::string step(9, 'd');
  std::string deep = "chosen";
  int folder = open(mTree.Path("chosen").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < Depth; ++level) {
    deep += "/" + step;
    ASSERT_EQ(mkdirat(folder, step.c_str(), 0755), 0);
    const int next = openat(folder, step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    close(folder);
    folder = next;
  }
  close(openat(folder, "file.txt", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  ASSERT_EQ(symlinkat(mTree.Path("outside").c_str(), folder, "away"), 0);
  close(folder);
  InBothWays([&] {
    const auto files = Within("chosen");
    if (!files->FileExists(mTree.Path(deep + "/file.txt"))) return 1;
    if (files->FileExists(mTree.Path(deep + "/away/file.txt"))) return 2;
    return files->GetFolder(mTree.Path(deep))->Files().size() == 2 ? 0 : 3;
  });
}

}  // namespace
}  // namespace brackwell
