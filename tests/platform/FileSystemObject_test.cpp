#include "platform/FileSystemObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/CaseRules.h"
#include "support/ErrorNumber.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

// What every system's file system promises. The same tests run on all of them.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

Names NamesOf(const std::vector<Member>& members) {
  Names names;
  for (const Member& member : members) names.emplace_back(member.Name);
  return names;
}

/// Long enough for a copy to be made in several steps, and different at every place.
std::string LongContent() {
  std::string content;
  for (int line = 0; content.size() < (3 << 20); ++line) content += "line " + std::to_string(line) + "\r\n";
  return content;
}

class FileSystemTest : public testing::Test {
 protected:
  int CopyError(const std::string& source, const std::string& target, bool overwrite) {
    return ErrorNumber([&] { mFiles->CopyFile(mTree.Path(source), mTree.Path(target), overwrite); });
  }
  int CreateFolderError(const std::string& name) {
    return ErrorNumber([&] { mFiles->CreateFolder(mTree.Path(name)); });
  }
  int CopyFolderError(const std::string& source, const std::string& target, bool overwrite = true) {
    return ErrorNumber([&] { mFiles->CopyFolder(mTree.Path(source), mTree.Path(target), overwrite); });
  }
  DateTime Modified(const std::string& name) { return mFiles->GetFile(mTree.Path(name)).DateLastModified; }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using Existence = FileSystemTest;
using Listing = FileSystemTest;
using Properties = FileSystemTest;
using CopyFile = FileSystemTest;
using CreateFolder = FileSystemTest;
using CopyFolder = FileSystemTest;
using TextStreams = FileSystemTest;
using Places = FileSystemTest;

// --- Is it there?

TEST_F(Existence, TellsFilesAndFoldersApart) {
  mTree.File("folder/file.txt", "text");
  EXPECT_TRUE(mFiles->FileExists(mTree.Path("folder/file.txt")));
  EXPECT_FALSE(mFiles->FolderExists(mTree.Path("folder/file.txt")));
  EXPECT_TRUE(mFiles->FolderExists(mTree.Path("folder")));
  EXPECT_TRUE(mFiles->FolderExists(mTree.Root("folder")));
  EXPECT_FALSE(mFiles->FileExists(mTree.Path("folder")));
}

TEST_F(Existence, AnswersNoForWhatIsNotThere) {
  mTree.File("file.txt");
  for (const char* name : {"none", "none/none", "file.txt/none"}) {
    EXPECT_FALSE(mFiles->FileExists(mTree.Path(name))) << name;
    EXPECT_FALSE(mFiles->FolderExists(mTree.Path(name))) << name;
  }
  EXPECT_FALSE(mFiles->FileExists(""));
  EXPECT_FALSE(mFiles->FolderExists(""));
}

TEST_F(Existence, GettingWhatIsNotThereRaises) {
  mTree.File("folder/file.txt");
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFile(mTree.Path("none")); }), 53);
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFile(mTree.Path("folder")); }), 53);
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFolder(mTree.Path("none")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mFiles->GetFolder(mTree.Path("folder/file.txt")); }), 76);
  EXPECT_EQ(ErrorNumber([&] { mFiles->OpenTextFile(mTree.Path("none")); }), 53);
}

TEST_F(Existence, AnErrorTellsItsPathAndItsText) {
  try {
    mFiles->GetFile(mTree.Path("none"));
    FAIL() << "found";
  } catch (const FileSystemError& error) {
    EXPECT_EQ(error.Path(), mTree.Path("none"));
    EXPECT_EQ(error.Description(), "File not found");
  }
}

// --- What a folder holds

TEST_F(Listing, IsOrderedByNameIgnoringCase) {
  for (const char* name :
       {"öl.txt", "b.txt", "_d.txt", "C.txt", "Ärger.txt", "A.txt", "a-b.txt", "1.txt", "a.txt.bak"})
    mTree.File(name);
  for (const char* name : {"sub", "Other", "zoo"}) mTree.Folder(name);
  const auto folder = mFiles->GetFolder(mTree.Path());
  EXPECT_EQ(NamesOf(folder->Files()), (Names{"1.txt", "a-b.txt", "A.txt", "a.txt.bak", "b.txt", "C.txt",
                                             "_d.txt", "Ärger.txt", "öl.txt"}));
  EXPECT_EQ(NamesOf(folder->SubFolders()), (Names{"Other", "sub", "zoo"}));
}

TEST_F(Listing, OfAnEmptyFolderIsEmpty) {
  const auto folder = mFiles->GetFolder(mTree.Path());
  EXPECT_TRUE(folder->Files().empty());
  EXPECT_TRUE(folder->SubFolders().empty());
}

TEST_F(Listing, NamesNoLinksWhereThereAreNone) {
  mTree.File("file");
  mTree.Folder("sub");
  const auto folder = mFiles->GetFolder(mTree.Path());
  EXPECT_FALSE(folder->Files().at(0).IsLink);
  EXPECT_FALSE(folder->SubFolders().at(0).IsLink);
}

TEST_F(Listing, IsReadOnceAndKept) {
  mTree.File("first");
  const auto folder = mFiles->GetFolder(mTree.Path());
  EXPECT_EQ(NamesOf(folder->Files()), Names{"first"});
  mTree.File("second");
  mTree.Folder("sub");
  EXPECT_EQ(NamesOf(folder->Files()), Names{"first"});
  EXPECT_TRUE(folder->SubFolders().empty());
}

TEST_F(Listing, FindLooksUpNow) {
  mTree.File("file.txt", "12345", 7);
  mTree.File("sub/inner");
  const auto folder = mFiles->GetFolder(mTree.Root(""));
  const auto file = folder->Find("file.txt");
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->IsFolder);
  EXPECT_EQ(file->Size, 5u);
  EXPECT_EQ(file->DateLastModified, TempTree::Time(7));
  const auto sub = folder->Find("sub");
  ASSERT_TRUE(sub);
  EXPECT_TRUE(sub->IsFolder);
  EXPECT_FALSE(folder->Find("late"));
  mTree.File("late");
  EXPECT_TRUE(folder->Find("late"));
  mTree.Remove("late");
  EXPECT_FALSE(folder->Find("late"));
  EXPECT_FALSE(folder->Find(std::string(300, 'n')));
}

// --- Properties

TEST_F(Properties, OfAFile) {
  mTree.File("sub/file.txt", "12345", 100);
  const ItemProperties file = mFiles->GetFile(mTree.Path("sub/file.txt"));
  EXPECT_EQ(file.Path, mTree.Path("sub/file.txt"));
  EXPECT_EQ(file.Name, "file.txt");
  EXPECT_EQ(file.ParentFolder, mTree.Path("sub"));
  EXPECT_EQ(file.Size, 5u);
  EXPECT_EQ(file.DateLastModified, TempTree::Time(100));
  EXPECT_GE(file.DateLastAccessed, TempTree::Time(0));
  EXPECT_EQ(
      file.Attributes & (Attribute::Directory | Attribute::ReadOnly | Attribute::Hidden | Attribute::Alias),
      0u);
}

TEST_F(Properties, OfAFolder) {
  mTree.File("sub/file.txt", "12345");
  mTree.SetModified("sub", 200);
  const auto folder = mFiles->GetFolder(mTree.Root("sub"));
  const ItemProperties properties = folder->Properties();
  EXPECT_EQ(folder->Path(), mTree.Root("sub"));
  EXPECT_EQ(properties.Path, mTree.Path("sub"));
  EXPECT_EQ(properties.Name, "sub");
  EXPECT_EQ(properties.ParentFolder, mTree.Path());
  EXPECT_EQ(properties.Size, 0u);
  EXPECT_EQ(properties.DateLastModified, TempTree::Time(200));
  EXPECT_EQ(properties.Attributes & (Attribute::Directory | Attribute::Alias), Attribute::Directory);
}

TEST_F(Properties, TellReadOnlyFiles) {
  mTree.File("file.txt");
  mTree.SetReadOnly("file.txt");
  EXPECT_NE(mFiles->GetFile(mTree.Path("file.txt")).Attributes & Attribute::ReadOnly, 0u);
}

TEST_F(Properties, OfAMemberAreThoseOfItsPath) {
  mTree.File("sub/file.txt", "12345", 100);
  mTree.Folder("sub/folder");
  const auto folder = mFiles->GetFolder(mTree.Path("sub"));
  const ItemProperties file = mFiles->GetFile(mTree.Path("sub/file.txt"));
  const ItemDetails details = folder->FileDetails("file.txt");
  EXPECT_EQ(details.Kind, ItemKind::File);
  EXPECT_EQ(details.Size, 5u);
  EXPECT_EQ(details.DateLastModified, TempTree::Time(100));
  EXPECT_EQ(details.DateCreated, file.DateCreated);
  EXPECT_EQ(details.DateLastAccessed, file.DateLastAccessed);
  EXPECT_EQ(details.Attributes, file.Attributes);
  EXPECT_EQ(ErrorNumber([&] { folder->FileDetails("none"); }), 53);
  EXPECT_EQ(ErrorNumber([&] { folder->FileDetails("folder"); }), 53);
  EXPECT_EQ(ErrorNumber([&] { folder->FileDetails(std::string(5000, 'x')); }), 53);
}

TEST_F(Properties, TheTypeOfAKnownItemIsThatOfItsPath) {
  for (const char* name : {"a.txt", "b.TXT", "c", "d.unheard-of", ".e", "f.tar.gz", "CMakeLists.txt"}) {
    mTree.File(name);
    EXPECT_EQ(mFiles->Type(name, ItemKind::File), mFiles->Type(mTree.Path(name))) << name;
    EXPECT_EQ(mFiles->Type(name, ItemKind::File), mFiles->Type(mTree.Path(name))) << name;
  }
  mTree.Folder("folder.txt");
  EXPECT_EQ(mFiles->Type("folder.txt", ItemKind::Folder), mFiles->Type(mTree.Path("folder.txt")));
  EXPECT_NE(mFiles->Type("folder.txt", ItemKind::Folder), mFiles->Type("folder.txt", ItemKind::File));
}

TEST_F(Properties, ARootHasNoParent) {
  std::string root = mTree.Path();
  for (std::string_view parent = root; !(parent = ParentPath(parent)).empty();) root = parent;
  EXPECT_EQ(mFiles->GetFolder(root)->Properties().ParentFolder, "");
}

TEST_F(Properties, CostlierOnesAreSane) {
  mTree.File("file.txt", "text");
  const std::string file = mTree.Path("file.txt");
  EXPECT_FALSE(mFiles->Drive(file).empty());
  EXPECT_EQ(mFiles->Drive(file), mFiles->Drive(mTree.Path()));
  EXPECT_TRUE(mFiles->FolderExists(WithSeparator(mFiles->Drive(file))));
  EXPECT_EQ(CompareIgnoreCase(mFiles->ShortName(file), "file.txt"), std::strong_ordering::equal);
  EXPECT_TRUE(mFiles->FileExists(mFiles->ShortPath(file)));
  EXPECT_TRUE(mFiles->FolderExists(mFiles->ShortPath(mTree.Root(""))));
  EXPECT_FALSE(mFiles->Type(file).empty());
  EXPECT_FALSE(mFiles->Type(mTree.Path()).empty());
}

// --- Copying a file

TEST_F(CopyFile, KeepsContentAndModificationTime) {
  const std::string content("line\r\n\xff\0end", 11);
  mTree.File("source", content, 50);
  EXPECT_EQ(CopyError("source", "target", false), 0);
  EXPECT_EQ(mTree.Read("target"), content);
  EXPECT_EQ(Modified("target"), TempTree::Time(50));
  EXPECT_EQ(mTree.Read("source"), content);
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_F(CopyFile, CopiesEmptyAndLongFiles) {
  mTree.File("empty", "", 1);
  mTree.File("long", LongContent(), 2);
  int ticks = 0;
  mFiles->CopyFile(mTree.Path("long"), mTree.Path("long copy"), false, [&] { ++ticks; });
  EXPECT_GT(ticks, 0);
  EXPECT_EQ(CopyError("empty", "empty copy", false), 0);
  EXPECT_EQ(mTree.Read("empty copy"), "");
  EXPECT_EQ(mTree.Read("long copy"), LongContent());
  EXPECT_EQ(Modified("empty copy"), TempTree::Time(1));
  EXPECT_EQ(Modified("long copy"), TempTree::Time(2));
}

TEST_F(CopyFile, OverwritesOnlyWhenTold) {
  mTree.File("source", "new", 60);
  mTree.File("target", "older and longer", 10);
  EXPECT_EQ(CopyError("source", "target", false), 58);
  EXPECT_EQ(mTree.Read("target"), "older and longer");
  EXPECT_EQ(CopyError("source", "target", true), 0);
  EXPECT_EQ(mTree.Read("target"), "new");
  EXPECT_EQ(Modified("target"), TempTree::Time(60));
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_F(CopyFile, RefusesWhatCannotBeATarget) {
  mTree.File("source", "new");
  mTree.Folder("folder");
  EXPECT_EQ(CopyError("source", "source", true), 70);
  EXPECT_EQ(CopyError("source", "folder", true), 70);
  EXPECT_EQ(CopyError("source", "folder", false), 70);
  EXPECT_EQ(CopyError("source", "none/target", true), 76);
  EXPECT_EQ(CopyError("source", "source/target", true), 76);
  EXPECT_EQ(mTree.Read("source"), "new");
  EXPECT_EQ(mTree.List(), (Names{"folder/", "source"}));
}

TEST_F(CopyFile, RefusesWhatCannotBeASource) {
  mTree.Folder("folder");
  mTree.File("target", "old");
  EXPECT_EQ(CopyError("none", "target", true), 53);
  EXPECT_EQ(CopyError("folder", "target", true), 53);
  EXPECT_EQ(CopyError("none", "new", true), 53);
  EXPECT_EQ(mTree.Read("target"), "old");
  EXPECT_EQ(mTree.List(), (Names{"folder/", "target"}));
}

TEST_F(CopyFile, LeavesAReadOnlyTargetAlone) {
  mTree.File("source", "new");
  mTree.File("target", "kept", 10);
  mTree.SetReadOnly("target");
  EXPECT_EQ(CopyError("source", "target", true), 70);
  EXPECT_EQ(mTree.Read("target"), "kept");
  EXPECT_EQ(Modified("target"), TempTree::Time(10));
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_F(CopyFile, AReadOnlySourceGivesAReadOnlyCopy) {
  mTree.File("source", "text", 10);
  mTree.SetReadOnly("source");
  EXPECT_EQ(CopyError("source", "target", false), 0);
  EXPECT_EQ(mTree.Read("target"), "text");
  EXPECT_EQ(Modified("target"), TempTree::Time(10));
  EXPECT_NE(mFiles->GetFile(mTree.Path("target")).Attributes & Attribute::ReadOnly, 0u);
}

TEST_F(CopyFile, ATickThatThrowsLeavesNoTrace) {
  mTree.File("source", LongContent());
  mTree.File("target", "old", 10);
  int ticks = 0;
  mFiles->CopyFile(mTree.Path("source"), mTree.Path("whole"), false, [&] { ++ticks; });
  mTree.Remove("whole");
  for (int last = 1; last <= ticks; ++last) {
    int tick = 0;
    const Tick stop = [&] {
      if (++tick == last) throw std::runtime_error("stopped");
    };
    EXPECT_THROW(mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true, stop), std::runtime_error)
        << last;
    EXPECT_EQ(mTree.Read("target"), "old");
    EXPECT_EQ(Modified("target"), TempTree::Time(10));
    tick = 0;
    EXPECT_THROW(mFiles->CopyFile(mTree.Path("source"), mTree.Path("new"), true, stop), std::runtime_error)
        << last;
    EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
  }
}

// --- Making folders

TEST_F(CreateFolder, MakesOne) {
  EXPECT_EQ(CreateFolderError("new"), 0);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateFolder(mTree.Root("new/inner")); }), 0);
  EXPECT_EQ(mTree.List(), (Names{"new/", "new/inner/"}));
}

TEST_F(CreateFolder, RaisesWhereItCannot) {
  mTree.File("folder/file");
  EXPECT_EQ(CreateFolderError("folder"), 58);
  EXPECT_EQ(CreateFolderError("folder/file"), 58);
  EXPECT_EQ(CreateFolderError("none/new"), 76);
  EXPECT_EQ(CreateFolderError("folder/file/new"), 76);
  EXPECT_EQ(mTree.List(), (Names{"folder/", "folder/file"}));
}

// --- Copying a folder

TEST_F(CopyFolder, CopiesEverythingBelow) {
  mTree.File("source/a.txt", "a", 1);
  mTree.File("source/sub/b.txt", "b", 2);
  mTree.Folder("source/sub/empty");
  mTree.SetModified("source/sub", 3);
  EXPECT_EQ(CopyFolderError("source", "target", false), 0);
  EXPECT_EQ(mTree.List("target"), (Names{"a.txt", "sub/", "sub/b.txt", "sub/empty/"}));
  EXPECT_EQ(mTree.Read("target/sub/b.txt"), "b");
  EXPECT_EQ(Modified("target/sub/b.txt"), TempTree::Time(2));
  EXPECT_EQ(mFiles->GetFolder(mTree.Path("target/sub"))->Properties().DateLastModified, TempTree::Time(3));
}

TEST_F(CopyFolder, MergesAndDeletesNothing) {
  mTree.File("source/both.txt", "new", 5);
  mTree.File("source/sub/added.txt", "added");
  mTree.File("target/both.txt", "old", 1);
  mTree.File("target/kept.txt", "kept");
  mTree.File("target/sub/kept.txt", "kept too");
  EXPECT_EQ(CopyFolderError("source", "target", true), 0);
  EXPECT_EQ(mTree.List("target"), (Names{"both.txt", "kept.txt", "sub/", "sub/added.txt", "sub/kept.txt"}));
  EXPECT_EQ(mTree.Read("target/both.txt"), "new");
  EXPECT_EQ(mTree.Read("target/sub/kept.txt"), "kept too");
}

TEST_F(CopyFolder, WithoutOverwritingCopiesTheRestAndRaises) {
  mTree.File("source/both.txt", "new");
  mTree.File("source/other.txt", "other");
  mTree.File("target/both.txt", "old");
  EXPECT_EQ(CopyFolderError("source", "target", false), 58);
  EXPECT_EQ(mTree.Read("target/both.txt"), "old");
  EXPECT_EQ(mTree.Read("target/other.txt"), "other");
}

TEST_F(CopyFolder, OneMemberThatCannotBeCopiedDoesNotStopTheRest) {
  mTree.File("source/a.txt", "new a");
  mTree.File("source/b.txt", "new b");
  mTree.File("source/sub/c.txt", "new c");
  mTree.File("target/a.txt", "kept");
  mTree.SetReadOnly("target/a.txt");
  EXPECT_EQ(CopyFolderError("source", "target"), 70);
  EXPECT_EQ(mTree.Read("target/a.txt"), "kept");
  EXPECT_EQ(mTree.Read("target/b.txt"), "new b");
  EXPECT_EQ(mTree.Read("target/sub/c.txt"), "new c");
}

TEST_F(CopyFolder, RefusesWhatCannotBeDone) {
  mTree.File("source/a.txt", "a");
  mTree.File("file", "file");
  EXPECT_EQ(CopyFolderError("none", "target"), 76);
  EXPECT_EQ(CopyFolderError("file", "target"), 76);
  EXPECT_EQ(CopyFolderError("source", "file"), 58);
  EXPECT_EQ(CopyFolderError("source", "none/target"), 76);
  EXPECT_EQ(mTree.List(), (Names{"file", "source/", "source/a.txt"}));
  EXPECT_EQ(mTree.Read("file"), "file");
}

TEST_F(CopyFolder, RefusesToCopyAFolderIntoItself) {
  mTree.File("source/a.txt", "a");
  mTree.Folder("source/sub");
  for (const char* target : {"source", "source/sub", "source/new", "source/sub/new", "source/new/newer"})
    EXPECT_EQ(CopyFolderError("source", target), 75) << target;
  EXPECT_EQ(mTree.List(), (Names{"source/", "source/a.txt", "source/sub/"}));
}

TEST_F(CopyFolder, ANameThatOnlyBeginsLikeTheSourceIsNoneOfItsSubFolders) {
  mTree.File("source/a.txt", "a");
  EXPECT_EQ(CopyFolderError("source", "source2"), 0);
  EXPECT_EQ(mTree.Read("source2/a.txt"), "a");
}

TEST_F(CopyFolder, AFullDiskEndsItWithWholeFilesOnly) {
  const std::string text = LongContent();
  mTree.File("source/a.txt", text);
  mTree.File("source/sub/b.txt", text);
  mTree.File("source/sub/c.txt", "c");
  const Names everything = mTree.List("source");
  int error = 61;
  for (int call = 1; error == 61; ++call) {
    mTree.File("target/a.txt", "old");
    FailingFileSystem files(call);
    error = ErrorNumber([&] { files.CopyFolder(mTree.Path("source"), mTree.Path("target"), true); });
    EXPECT_EQ(files.Calls() >= call, error == 61);
    EXPECT_THAT(everything, testing::IsSupersetOf(mTree.List("target"))) << call;
    EXPECT_THAT(mTree.Read("target/a.txt"), testing::AnyOf("old", text)) << call;
    EXPECT_THAT(mTree.Read("target/sub/b.txt"), testing::AnyOf("<no such file>", text)) << call;
    EXPECT_THAT(mTree.Read("target/sub/c.txt"), testing::AnyOf("<no such file>", "c")) << call;
    EXPECT_TRUE(error == 61 || mTree.List("target") == everything);
    mTree.Remove("target");
  }
  EXPECT_EQ(error, 0);
}

TEST_F(CopyFolder, ATickThatThrowsEndsIt) {
  mTree.File("source/a.txt", "a");
  mTree.File("source/b.txt", "b");
  int ticks = 0;
  const Tick stop = [&] {
    if (++ticks == 3) throw std::runtime_error("stopped");
  };
  EXPECT_THROW(mFiles->CopyFolder(mTree.Path("source"), mTree.Path("target"), true, stop),
               std::runtime_error);
  EXPECT_FALSE(mTree.Exists("target/b.txt"));
}

// --- Text streams

TEST_F(TextStreams, ReadBackWhatWasWritten) {
  const std::string first("line\r\n\xff\0", 8);
  const auto writer = mFiles->CreateTextFile(mTree.Path("new.txt"), false);
  writer->Write(first);
  writer->Write("");
  writer->Write("end");
  writer->Close();
  EXPECT_EQ(mTree.Read("new.txt"), first + "end");
  EXPECT_EQ(mFiles->OpenTextFile(mTree.Path("new.txt"))->ReadAll(), first + "end");
}

TEST_F(TextStreams, ReadEmptyAndLongFiles) {
  mTree.File("empty");
  mTree.File("long", LongContent());
  EXPECT_EQ(mFiles->OpenTextFile(mTree.Path("empty"))->ReadAll(), "");
  EXPECT_EQ(mFiles->OpenTextFile(mTree.Path("long"))->ReadAll(), LongContent());
}

TEST_F(TextStreams, AFileAppearsWhenItIsClosed) {
  const auto writer = mFiles->CreateTextFile(mTree.Path("new.txt"), false);
  writer->Write("text");
  EXPECT_FALSE(mTree.Exists("new.txt"));
  writer->Close();
  EXPECT_EQ(mTree.Read("new.txt"), "text");
}

TEST_F(TextStreams, ADroppedWriterLeavesNothing) {
  mTree.File("old.txt", "old");
  mFiles->CreateTextFile(mTree.Path("old.txt"), true)->Write("new");
  mFiles->CreateTextFile(mTree.Path("new.txt"), false)->Write("new");
  EXPECT_EQ(mTree.Read("old.txt"), "old");
  EXPECT_EQ(mTree.List(), Names{"old.txt"});
}

TEST_F(TextStreams, OverwriteOnlyWhenTold) {
  mTree.File("old.txt", "old and longer");
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("old.txt"), false); }), 58);
  const auto writer = mFiles->CreateTextFile(mTree.Path("old.txt"), true);
  writer->Write("new");
  EXPECT_EQ(mTree.Read("old.txt"), "old and longer");
  writer->Close();
  EXPECT_EQ(mTree.Read("old.txt"), "new");
  EXPECT_EQ(mTree.List(), Names{"old.txt"});
}

TEST_F(TextStreams, AFileThatCameInBetweenIsNotOverwritten) {
  const auto writer = mFiles->CreateTextFile(mTree.Path("new.txt"), false);
  writer->Write("ours");
  mTree.File("new.txt", "theirs");
  EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 58);
  EXPECT_EQ(mTree.Read("new.txt"), "theirs");
}

TEST_F(TextStreams, RefuseWhatCannotBeWritten) {
  mTree.Folder("folder");
  mTree.File("kept.txt", "kept");
  mTree.SetReadOnly("kept.txt");
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("kept.txt"), true); }), 70);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("folder"), true); }), 70);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CreateTextFile(mTree.Path("none/new.txt"), true); }), 76);
  EXPECT_EQ(mTree.Read("kept.txt"), "kept");
  EXPECT_EQ(mTree.List(), (Names{"folder/", "kept.txt"}));
}

// --- Which folder is which

TEST_F(Places, AFolderLiesWithinItselfAndThoseAboveIt) {
  mTree.Folder("a/b/c");
  mTree.Folder("a2");
  EXPECT_TRUE(mFiles->LiesWithin(mTree.Path("a"), mTree.Root("a")));
  EXPECT_TRUE(mFiles->LiesWithin(mTree.Path("a/b/c"), mTree.Path("a")));
  EXPECT_FALSE(mFiles->LiesWithin(mTree.Path("a"), mTree.Path("a/b")));
  EXPECT_FALSE(mFiles->LiesWithin(mTree.Path("a2"), mTree.Path("a")));
}

}  // namespace
}  // namespace brackwell
