#include "platform/FileSystemObject.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

#include "platform/CaseRules.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What is there on POSIX only: names of any bytes, links, pipes and devices, modes.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

Names NamesOf(const std::vector<Member>& members) {
  Names names;
  for (const Member& member : members) names.emplace_back(member.Name);
  return names;
}

class PosixTest : public testing::Test {
 protected:
  PosixTest() { chmod(mTree.Path().c_str(), 0777); }

  mode_t ModeOf(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(stat(mTree.Path(name).c_str(), &status), 0) << name;
    return status.st_mode & 07777;
  }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0); }
  void Link(const std::string& text, const std::string& name) {
    ASSERT_EQ(symlink(text.c_str(), mTree.Path(name).c_str()), 0);
  }
  Names FilesIn(const std::string& name = {}) {
    return NamesOf(mFiles->GetFolder(mTree.Path(name))->Files());
  }
  Names FoldersIn(const std::string& name = {}) {
    return NamesOf(mFiles->GetFolder(mTree.Path(name))->SubFolders());
  }
  unsigned AttributesOf(const std::string& name) { return mFiles->GetFile(mTree.Path(name)).Attributes; }
  bool IsLinkAt(const std::string& name) {
    struct stat status {};
    return lstat(mTree.Path(name).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  }
  /// What `step` gives where the user has no more rights than any other.
  static int AsOrdinaryUser(const std::function<int()>& step) {
    return InChild([&] {
      BecomeOrdinaryUser();
      return step();
    });
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using OddNames = PosixTest;
using Links = PosixTest;
using SpecialFiles = PosixTest;
using Rights = PosixTest;
using BigFolders = PosixTest;
using TextStreams = PosixTest;
using Properties = PosixTest;

// --- Names

TEST_F(OddNames, AreTakenByteByByte) {
  const Names odd = {"\xff\xfe.txt", "new\nline",  "\"quotes\" 'and more'",
                     "<&>.txt",      " around ",   "tab\tbed",
                     "back\\slash",  "*?[a-z]{b}", "-rf",
                     "$(id)",        "%41"};
  for (const std::string& name : odd) {
    TempTree tree;
    tree.File(name, "text");
    const auto folder = mFiles->GetFolder(tree.Path());
    ASSERT_EQ(NamesOf(folder->Files()), Names{name});
    EXPECT_TRUE(folder->Find(name));
    EXPECT_EQ(mFiles->GetFile(tree.Path(name)).Name, name);
    EXPECT_FALSE(mFiles->Type(tree.Path(name)).empty());
    mFiles->CopyFile(tree.Path(name), tree.Path(name + "2"), false);
    EXPECT_EQ(mFiles->OpenTextFile(tree.Path(name + "2"))->ReadAll(), "text");
    mFiles->CreateFolder(tree.Path(name + "4"));
    EXPECT_EQ(NamesOf(mFiles->GetFolder(tree.Path())->SubFolders()), Names{name + "4"});
  }
}

TEST_F(OddNames, ThatDifferInCaseOnlyAreOrderedByTheirBytes) {
  for (const char* name : {"b", "a.TXT", "B", "A.txt", "a.txt", "A.TXT", "\xff", "\xfe"}) mTree.File(name);
  EXPECT_EQ(FilesIn(), (Names{"A.TXT", "A.txt", "a.TXT", "a.txt", "B", "b", "\xfe", "\xff"}));
}

TEST_F(OddNames, ThatAreTooLongAreNotThere) {
  const std::string longest(255, 'n');
  mTree.File(longest, "text");
  EXPECT_TRUE(mFiles->FileExists(mTree.Path(longest)));
  EXPECT_EQ(FilesIn(), Names{longest});
  EXPECT_TRUE(mFiles->GetFolder(mTree.Path())->Find(longest));
  const std::string tooLong = mTree.Path(longest + "n");
  EXPECT_FALSE(mFiles->FileExists(tooLong));
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFile(tooLong); }), 53);
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFolder(tooLong); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateFolder(tooLong); }), 52);
}

// --- Links

TEST_F(Links, AreFilesWithDatesAndSizesOfTheirOwn) {
  mTree.File("folder/file.txt", "12345678901234567890", 70);
  Link("folder", "to folder");
  Link("to folder/file.txt", "to file");
  Link("none", "dangling");
  Link("circle", "circle");
  const auto folder = mFiles->GetFolder(mTree.Path());
  EXPECT_EQ(NamesOf(folder->Files()), (Names{"circle", "dangling", "to file", "to folder"}));
  EXPECT_EQ(NamesOf(folder->SubFolders()), Names{"folder"});
  for (const Member& link : folder->Files()) {
    const std::string name(link.Name);
    struct stat own {};
    ASSERT_EQ(lstat(mTree.Path(name).c_str(), &own), 0);
    EXPECT_TRUE(link.IsLink) << name;
    const auto found = folder->Find(name);
    ASSERT_TRUE(found) << name;
    EXPECT_FALSE(found->IsFolder) << name;
    EXPECT_EQ(found->Size, static_cast<std::uint64_t>(own.st_size)) << name;
    EXPECT_EQ(found->DateLastModified.time_since_epoch().count(), own.st_mtim.tv_sec) << name;
    EXPECT_EQ(folder->FileDetails(name).Kind, ItemKind::Link) << name;
    const ItemProperties file = mFiles->GetFile(mTree.Path(name));
    EXPECT_EQ(file.Attributes, Attribute::Alias) << name;
    EXPECT_EQ(file.Size, found->Size) << name;
    EXPECT_EQ(file.DateLastModified, found->DateLastModified) << name;
    EXPECT_FALSE(mFiles->Type(mTree.Path(name)).empty()) << name;
  }
  EXPECT_FALSE(folder->SubFolders()[0].IsLink);
}

TEST_F(Links, MayBeChosenAndLeadToWhatIsChosen) {
  mTree.File("folder/file.txt", "12345", 70);
  mTree.SetModified("folder", 80);
  Link("folder", "to folder");
  Link("to folder/file.txt", "to file");
  EXPECT_TRUE(mFiles->FolderExists(mTree.Path("to folder")));
  EXPECT_TRUE(mFiles->FileExists(mTree.Path("to file")));
  EXPECT_EQ(FilesIn("to folder"), Names{"file.txt"});
  const ItemProperties folder = mFiles->GetFolder(mTree.Root("to folder"))->Properties();
  EXPECT_EQ(folder.Attributes, Attribute::Alias | Attribute::Directory);
  EXPECT_EQ(folder.Name, "to folder");
  EXPECT_EQ(folder.DateLastModified, TempTree::Time(80));
  EXPECT_EQ(mFiles->OpenTextFile(mTree.Path("to file"))->ReadAll(), "12345");
  ASSERT_EQ(link(mTree.Path("folder/file.txt").c_str(), mTree.Path("folder/again.txt").c_str()), 0);
  EXPECT_EQ(mFiles->OpenTextFile(mTree.Path("to file"))->ReadAll(), "12345") << "a file of two names";
}

TEST_F(Links, ThatLeadNowhereAreNeverOpened) {
  Link("none", "dangling");
  Link("circle", "circle");
  for (const char* name : {"dangling", "circle"}) {
    EXPECT_TRUE(mFiles->FileExists(mTree.Path(name))) << name;
    EXPECT_FALSE(mFiles->FolderExists(mTree.Path(name))) << name;
    EXPECT_EQ(ErrorNumber([&] { mFiles->OpenTextFile(mTree.Path(name)); }), 53) << name;
    EXPECT_EQ(ErrorNumber([&] { mFiles->GetFolder(mTree.Path(name)); }), 76) << name;
  }
}

TEST_F(Links, DoNotHideWhereAFolderLies) {
  mTree.Folder("a/b");
  mTree.Folder("c");
  Link("../a/b", "c/link");
  EXPECT_TRUE(mFiles->LiesWithin(mTree.Path("c/link"), mTree.Path("a")));
  EXPECT_FALSE(mFiles->LiesWithin(mTree.Path("c/link"), mTree.Path("c")));
}

// --- Pipes, sockets, devices: never opened, since that alone can hang or do something

TEST_F(SpecialFiles, AreListedAsFilesAndNeverOpened) {
  ASSERT_EQ(mkfifo(mTree.Path("pipe").c_str(), 0666), 0);
  ASSERT_EQ(mknod(mTree.Path("socket").c_str(), S_IFSOCK | 0666, 0), 0);
  Link("/dev/zero", "zero");
  EXPECT_EQ(FilesIn(), (Names{"pipe", "socket", "zero"}));
  for (const char* name : {"pipe", "socket", "zero"}) {
    const std::string path = mTree.Path(name);
    EXPECT_TRUE(mFiles->FileExists(path)) << name;
    EXPECT_EQ(mFiles->GetFile(path).Name, name);
    EXPECT_FALSE(mFiles->Type(path).empty()) << name;
    EXPECT_EQ(ErrorNumber([&] { mFiles->OpenTextFile(path); }), 75) << name;
  }
  EXPECT_NE(mFiles->Type(mTree.Path("pipe")), mFiles->Type(mTree.Path("socket")));
}

TEST_F(SpecialFiles, AreNotReplacedByText) {
  ASSERT_EQ(mkfifo(mTree.Path("pipe").c_str(), 0666), 0);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("pipe"), true); }), 75);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile("/dev/null", true); }), 75);
}

// --- Rights

TEST_F(Rights, AFolderThatMayNotBeReadCanStillBeLookedInto) {
  mTree.File("folder/file.txt", "text");
  mTree.Folder("folder/sub");
  Mode("folder", 0111);
  EXPECT_EQ(AsOrdinaryUser([&] {
              const auto folder = mFiles->GetFolder(mTree.Path("folder"));
              const auto sub = folder->Find("sub");
              if (!folder->Find("file.txt") || !sub || !sub->IsFolder || folder->Find("none")) return 1;
              if (folder->Properties().Name != "folder") return 2;
              const int files = ErrorNumber([&] { folder->Files(); });
              return files == 70 ? ErrorNumber([&] { folder->SubFolders(); }) : files;
            }),
            70);
}

TEST_F(Rights, AFolderThatMayNotBeEnteredIsListedAndNothingFound) {
  mTree.File("folder/file.txt", "text");
  mTree.Folder("folder/sub");
  Mode("folder", 0444);
  EXPECT_EQ(AsOrdinaryUser([&] {
              const auto folder = mFiles->GetFolder(mTree.Path("folder"));
              if (NamesOf(folder->Files()) != Names{"file.txt"}) return 1;
              if (NamesOf(folder->SubFolders()) != Names{"sub"}) return 2;
              if (folder->Find("file.txt") || mFiles->FileExists(mTree.Path("folder/file.txt"))) return 3;
              return ErrorNumber([&] { mFiles->GetFolder(mTree.Path("folder/sub")); });
            }),
            70);
}

TEST_F(Rights, NothingIsMadeInALockedFolder) {
  mTree.Folder("folder");
  Mode("folder", 0555);
  EXPECT_EQ(
      AsOrdinaryUser([&] { return ErrorNumber([&] { mFiles->CreateFolder(mTree.Path("folder/new")); }); }),
      70);
  EXPECT_EQ(AsOrdinaryUser([&] {
              return ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("folder/new"), true)->Close(); });
            }),
            70);
  EXPECT_EQ(mTree.List("folder"), Names{});
}

// --- Big folders

TEST_F(BigFolders, AreOrderedAndCanBeEndedAndAskedAgain) {
  constexpr int Count = 20'000;
  for (int file = 0; file < Count; ++file) {
    const std::string name = (file % 2 ? "File " : "fILE ") + std::to_string(file * 7919 % Count);
    close(open(mTree.Path(name).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  }
  int ticks = 0;
  int lastTick = 0;
  const auto folder = mFiles->GetFolder(mTree.Path(), [&] {
    if (++ticks == lastTick) throw std::runtime_error("stopped");
  });
  const Names names = NamesOf(folder->Files());
  EXPECT_EQ(names.size(), static_cast<std::size_t>(Count));
  EXPECT_TRUE(
      std::ranges::is_sorted(names, [](const auto& a, const auto& b) { return OrderOfNames(a, b) < 0; }));
  EXPECT_GT(ticks, 10);

  const int allTicks = ticks;
  const auto again = mFiles->GetFolder(mTree.Path(), [&] {
    if (++ticks == lastTick) throw std::runtime_error("stopped");
  });
  for (const int last : {1, allTicks / 2, allTicks}) {
    ticks = 0;
    lastTick = last;
    EXPECT_THROW(again->Files(), std::runtime_error) << last;
  }
  EXPECT_EQ(NamesOf(again->Files()), names);
}

TEST_F(BigFolders, StayWholeWhenATickHasAnotherFolderRead) {
  constexpr int Count = 3'000;
  for (int file = 0; file < Count; ++file)
    for (const char* folder : {"a", "other"})
      mTree.File(std::string(folder) + "/" + folder + std::to_string(file));
  const auto other = mFiles->GetFolder(mTree.Path("other"));
  const auto folder = mFiles->GetFolder(mTree.Path("a"), [&] { NamesOf(other->Files()); });
  const Names names = NamesOf(folder->Files());
  EXPECT_EQ(names.size(), static_cast<std::size_t>(Count));
  EXPECT_TRUE(std::ranges::all_of(names, [](const std::string& name) { return name.starts_with('a'); }));
}

// --- Text streams

TEST_F(TextStreams, ReplaceAPlantedLinkAndDoNotFollowIt) {
  mTree.File("precious", "precious");
  Link("precious", "report.htm");
  const auto writer = mFiles->CreateTextFile(mTree.Path("report.htm"), true);
  writer->Write("report");
  writer->Close();
  EXPECT_EQ(mTree.Read("precious"), "precious");
  EXPECT_EQ(mTree.Read("report.htm"), "report");
  EXPECT_FALSE(IsLinkAt("report.htm"));
}

TEST_F(TextStreams, MakeFilesWithTheUsualMode) {
  const mode_t mask = umask(027);
  mFiles->CreateTextFile(mTree.Path("new.txt"), false)->Close();
  umask(mask);
  EXPECT_EQ(ModeOf("new.txt"), 0640U);
}

/// Another thread would make files that anybody may write to.
TEST_F(TextStreams, NeverChangeTheUsualMode) {
  EXPECT_EQ(InChild([&] {
              umask(027);
              RefuseCall(SYS_umask, 0, 0, EPERM);
              mFiles->CreateTextFile(mTree.Path("made.txt"), false)->Close();
              return 0;
            }),
            0);
  EXPECT_EQ(ModeOf("made.txt"), 0640U);
}

TEST_F(TextStreams, LeaveAloneWhatTheUserMayNotWrite) {
  mTree.File("kept.txt", "kept");
  Mode("kept.txt", 0464);
  EXPECT_EQ(AsOrdinaryUser([&] {
              return ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("kept.txt"), true)->Close(); });
            }),
            70);
  EXPECT_EQ(mTree.Read("kept.txt"), "kept");
}

// --- Properties

TEST_F(Properties, TellHiddenAndReadOnly) {
  mTree.File(".hidden");
  mTree.File("locked");
  mTree.Folder(".folder");
  Mode("locked", 0444);
  EXPECT_EQ(AttributesOf(".hidden"), Attribute::Hidden);
  EXPECT_EQ(AttributesOf("locked"), Attribute::ReadOnly);
  Mode("locked", 0464);
  EXPECT_EQ(AttributesOf("locked"), 0u);
  Mode(".folder", 0555);
  EXPECT_EQ(mFiles->GetFolder(mTree.Path(".folder"))->Properties().Attributes,
            Attribute::Hidden | Attribute::ReadOnly | Attribute::Directory);
}

TEST_F(Properties, TheDriveIsTheMountPoint) {
  EXPECT_EQ(mFiles->Drive("/"), "/");
  EXPECT_EQ(mFiles->Drive("/proc/self/status"), "/proc");
  EXPECT_EQ(mFiles->Drive("/proc/none/at/all"), "/proc");
  Link("/proc", "link");
  EXPECT_EQ(mFiles->Drive(mTree.Path("link")), mFiles->Drive(mTree.Path())) << "a link is where it stands";
}

}  // namespace
}  // namespace brackwell
