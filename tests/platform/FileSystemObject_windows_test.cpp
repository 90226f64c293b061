#include <gtest/gtest.h>

#include <fstream>

#include "platform/FileSystemObject.h"
#include "platform/TempFolder.h"
#include "platform/Win32.h"
#include "support/LongPaths_windows.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using Names = std::vector<std::string>;
using win32::Handle;
using win32::NativePath;

constexpr int NoError = 0;

template <typename Call>
int NumberRaisedBy(Call call) {
  try {
    call();
    return NoError;
  } catch (const FileSystemError& error) {
    return error.Number();
  }
}

void SetAttributes(const std::string& path, DWORD attributes) {
  ASSERT_TRUE(SetFileAttributesW(NativePath(path).c_str(), attributes));
}

DWORD AttributesOf(const std::string& path) { return GetFileAttributesW(NativePath(path).c_str()); }

/// As a program that lets nobody else in.
Handle OpenAlone(const std::string& path) {
  return Handle(CreateFileW(NativePath(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

void SetModified(const std::string& path, std::int64_t ticksFrom1601) {
  const Handle file = win32::Open(NativePath(path), FILE_WRITE_ATTRIBUTES);
  FILE_BASIC_INFO dates{};
  dates.LastWriteTime.QuadPart = ticksFrom1601;
  ASSERT_TRUE(SetFileInformationByHandle(file.Get(), FileBasicInfo, &dates, sizeof dates));
}

class FileSystemObjectOnWindows : public testing::Test {
 protected:
  int CopyNumber(const std::string& source, const std::string& target) {
    return NumberRaisedBy([&] { files->CopyFile(tree.Path(source), tree.Path(target), true); });
  }

  TempTree tree;
  std::unique_ptr<FileSystemObject> files = CreateFileSystemObject();
};

TEST_F(FileSystemObjectOnWindows, DrivesAreLettersAndShares) {
  tree.File("a.txt");
  EXPECT_EQ(files->Drive(tree.Path("a.txt")), "C:");
  EXPECT_EQ(files->Drive("C:\\"), "C:");
  EXPECT_EQ(files->Drive("\\\\server\\share\\folder\\a.txt"), "\\\\server\\share");
}

TEST_F(FileSystemObjectOnWindows, NamesAreFoundInAnyCaseAndWithEitherSeparator) {
  tree.File("Folder/Read Me.txt", "text");
  const std::string other = tree.Path() + "/FOLDER/read me.TXT";
  EXPECT_TRUE(files->FileExists(other));
  EXPECT_EQ(files->GetFile(other).Size, 4u);
  EXPECT_EQ(files->OpenTextFile(other)->ReadAll(), "text");
  EXPECT_TRUE(files->LiesWithin(tree.Path("FOLDER"), tree.Path("Folder")));
  EXPECT_TRUE(files->LiesWithin(tree.Path("folder"), tree.Path()));
  EXPECT_FALSE(files->LiesWithin(tree.Path(), tree.Path("Folder")));
}

TEST_F(FileSystemObjectOnWindows, ShortNamesLeadToTheSameFile) {
  tree.File("a long file name.text", "text");
  const std::string path = tree.Path("a long file name.text");
  EXPECT_EQ(files->OpenTextFile(files->ShortPath(path))->ReadAll(), "text");
  EXPECT_EQ(FileName(files->ShortPath(path)), files->ShortName(path));
  EXPECT_LE(files->ShortName(path).size(), 12u);
  EXPECT_EQ(files->ShortName(tree.Path("none.text")), "none.text");
}

TEST_F(FileSystemObjectOnWindows, TypesAreKnownByTheNameAlone) {
  tree.Folder("folder.txt");
  EXPECT_FALSE(files->Type(tree.Path("none.txt")).empty());
  EXPECT_NE(files->Type(tree.Path("folder.txt")), files->Type(tree.Path("none.txt")));
}

TEST_F(FileSystemObjectOnWindows, AttributesAreThoseOfTheSystem) {
  tree.File("a.txt");
  constexpr unsigned Asked = Attribute::ReadOnly | Attribute::Hidden | Attribute::System;
  for (const unsigned attributes : {Attribute::ReadOnly, Attribute::Hidden | Attribute::System, 0u}) {
    SetAttributes(tree.Path("a.txt"), attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes);
    EXPECT_EQ(files->GetFile(tree.Path("a.txt")).Attributes & Asked, attributes);
  }
  EXPECT_TRUE(files->GetFolder(tree.Path())->Properties().Attributes & Attribute::Directory);
}

TEST_F(FileSystemObjectOnWindows, DatesAreWholeSecondsRoundedDown) {
  constexpr std::int64_t StartOf1970 = 116'444'736'000'000'000;
  tree.File("a.txt");
  for (const auto& [ticks, seconds] : {std::pair{19'999'999, 1}, {0, 0}, {-1, -1}, {-15'000'000, -2}}) {
    SetModified(tree.Path("a.txt"), StartOf1970 + ticks);
    EXPECT_EQ(files->GetFile(tree.Path("a.txt")).DateLastModified.time_since_epoch().count(), seconds);
  }
}

TEST_F(FileSystemObjectOnWindows, ANewFileTakesTheAttributesOfItsSource) {
  tree.File("a.txt", "new");
  SetAttributes(tree.Path("a.txt"), FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(CopyNumber("a.txt", "b.txt"), NoError);
  EXPECT_TRUE(AttributesOf(tree.Path("b.txt")) & FILE_ATTRIBUTE_SYSTEM);
  EXPECT_FALSE(AttributesOf(tree.Path("b.txt")) & FILE_ATTRIBUTE_HIDDEN) << "as it was while being written";
  SetAttributes(tree.Path("a.txt"), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(CopyNumber("a.txt", "c.txt"), NoError);
  EXPECT_TRUE(AttributesOf(tree.Path("c.txt")) & FILE_ATTRIBUTE_READONLY);
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) SetAttributes(tree.Path(name), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FileSystemObjectOnWindows, AFileThatIsThereKeepsItsAttributes) {
  tree.File("a.txt", "new");
  tree.File("b.txt", "old");
  SetAttributes(tree.Path("a.txt"), FILE_ATTRIBUTE_READONLY);
  SetAttributes(tree.Path("b.txt"), FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(CopyNumber("a.txt", "b.txt"), NoError);
  EXPECT_EQ(tree.Read("b.txt"), "new");
  constexpr DWORD Asked = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN;
  EXPECT_EQ(AttributesOf(tree.Path("b.txt")) & Asked, DWORD{FILE_ATTRIBUTE_SYSTEM});
  for (const char* name : {"a.txt", "b.txt"}) SetAttributes(tree.Path(name), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FileSystemObjectOnWindows, ACopyKeepsOtherStreams) {
  tree.File("a.txt", "new");
  std::ofstream(tree.Path("a.txt") + ":zone") << "internet";
  SetAttributes(tree.Path("a.txt"), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(CopyNumber("a.txt", "b.txt"), NoError);
  EXPECT_EQ(tree.Read("b.txt"), "new");
  EXPECT_EQ(tree.Read("b.txt:zone"), "internet");
  EXPECT_EQ(tree.List(), (Names{"a.txt", "b.txt"}));
  for (const char* name : {"a.txt", "b.txt"}) SetAttributes(tree.Path(name), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FileSystemObjectOnWindows, AFileThatIsThereKeepsItsStreams) {
  tree.File("a.txt", "new");
  tree.File("b.txt", "a longer old one");
  std::ofstream(tree.Path("b.txt") + ":zone") << "own";
  EXPECT_EQ(CopyNumber("a.txt", "b.txt"), NoError);
  EXPECT_EQ(tree.Read("b.txt"), "new");
  EXPECT_EQ(tree.Read("b.txt:zone"), "own");
}

TEST_F(FileSystemObjectOnWindows, AReadOnlyTargetIsKept) {
  tree.File("a.txt", "new");
  tree.File("b.txt", "old");
  SetAttributes(tree.Path("b.txt"), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(CopyNumber("a.txt", "b.txt"), 70);
  EXPECT_EQ(NumberRaisedBy([&] { files->CreateTextFile(tree.Path("b.txt"), true); }), 70);
  SetAttributes(tree.Path("b.txt"), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(tree.Read("b.txt"), "old");
  EXPECT_EQ(tree.List(), (Names{"a.txt", "b.txt"}));
}

TEST_F(FileSystemObjectOnWindows, AFileThatAnotherProgramKeepsToItselfIsDenied) {
  tree.File("a.txt", "new", 7);
  tree.File("b.txt", "old");
  {
    const Handle alone = OpenAlone(tree.Path("a.txt"));
    ASSERT_TRUE(alone.IsOpen());
    EXPECT_EQ(CopyNumber("a.txt", "b.txt"), 70);
    EXPECT_EQ(NumberRaisedBy([&] { files->OpenTextFile(tree.Path("a.txt")); }), 70);
    EXPECT_EQ(files->GetFile(tree.Path("a.txt")).DateLastModified, TempTree::Time(7)) << "looking is allowed";
  }
  {
    const Handle alone = OpenAlone(tree.Path("b.txt"));
    ASSERT_TRUE(alone.IsOpen());
    EXPECT_EQ(CopyNumber("a.txt", "b.txt"), 70);
    EXPECT_EQ(NumberRaisedBy([&] { files->GetFolder(tree.Path())->Rename("b.txt", "c.txt"); }), 70);
    const auto writer = files->CreateTextFile(tree.Path("b.txt"), true);
    writer->Write("new");
    EXPECT_EQ(NumberRaisedBy([&] { writer->Close(); }), 70);
  }
  EXPECT_EQ(tree.Read("b.txt"), "old");
  EXPECT_EQ(tree.List(), (Names{"a.txt", "b.txt"}));
}

TEST_F(FileSystemObjectOnWindows, NobodyCanWriteToASourceWhileItIsCopied) {
  tree.File("a.txt", "text");
  const auto openForWriting = [&] {
    const Handle writer = win32::Open(NativePath(tree.Path("a.txt")), GENERIC_WRITE);
    return writer.IsOpen() ? ERROR_SUCCESS : GetLastError();
  };
  for (const char* target : {"new.txt", "b.txt"}) {
    tree.File("b.txt", "old");
    DWORD error = ERROR_SUCCESS;
    files->CopyFile(tree.Path("a.txt"), tree.Path(target), true, [&] { error = openForWriting(); });
    EXPECT_EQ(error, DWORD{ERROR_SHARING_VIOLATION}) << target;
    EXPECT_EQ(tree.Read(target), "text");
  }
  EXPECT_EQ(openForWriting(), DWORD{ERROR_SUCCESS});
}

TEST_F(FileSystemObjectOnWindows, AFileBeingWrittenIsHiddenAndASecondWriterFindsRoom) {
  const auto first = files->CreateTextFile(tree.Path("a.txt"), true);
  const auto second = files->CreateTextFile(tree.Path("a.txt"), true);
  const auto folder = files->GetFolder(tree.Path());
  for (const Member& member : folder->Files())
    EXPECT_TRUE(AttributesOf(tree.Path(std::string(member.Name))) & FILE_ATTRIBUTE_HIDDEN) << member.Name;
  EXPECT_FALSE(files->FileExists(tree.Path("a.txt")));
  first->Write("first");
  second->Write("second");
  second->Close();
  first->Close();
  EXPECT_EQ(tree.Read("a.txt"), "first");
  EXPECT_FALSE(AttributesOf(tree.Path("a.txt")) & FILE_ATTRIBUTE_HIDDEN);
}

TEST_F(FileSystemObjectOnWindows, PathsMayBeLongerThanTheOldLimit) {
  std::string folder = tree.Path();
  Names made;
  while (folder.size() < 400) {
    folder = JoinPath(folder, "a folder with a rather long name");
    files->CreateFolder(folder);
    made.push_back(folder);
  }
  const auto writer = files->CreateTextFile(JoinPath(folder, "a.txt"), false);
  writer->Write("text");
  writer->Close();
  files->CopyFile(JoinPath(folder, "a.txt"), JoinPath(folder, "b.txt"), false);
  files->GetFolder(folder)->Rename("b.txt", "c.txt");
  EXPECT_EQ(files->OpenTextFile(JoinPath(folder, "c.txt"))->ReadAll(), "text");
  {
    const auto listing = files->GetFolder(folder);
    EXPECT_EQ(listing->Files().size(), 2u);
    EXPECT_TRUE(listing->Find("C.TXT"));
  }
  EXPECT_TRUE(files->LiesWithin(folder, tree.Path()));
  files->CopyFolder(made.front(), tree.Path("copy"), false);
  EXPECT_TRUE(files->FileExists(tree.Path("copy") + folder.substr(made.front().size()) + "\\c.txt"));
  RemoveTree(*files, made.front());
  RemoveTree(*files, tree.Path("copy"));
  EXPECT_EQ(tree.List(), Names{});
}

TEST_F(FileSystemObjectOnWindows, NamesOfDevicesAndWithDotsAtTheEndAreNamesLikeAnyOther) {
  const Names names{"aux.c", "end.", "nul"};
  for (const std::string& name : names) {
    const auto writer = files->CreateTextFile(tree.Path() + "\\" + name, false);
    writer->Write(name);
    writer->Close();
  }
  const auto folder = files->GetFolder(tree.Path());
  Names listed;
  for (const Member& member : folder->Files()) listed.emplace_back(member.Name);
  EXPECT_EQ(listed, names);
  for (const std::string& name : names)
    EXPECT_EQ(folder->Find(name).value_or(FileStatus{}).Size, name.size()) << name;
  RemoveTree(*files, tree.Path());
}

TEST_F(FileSystemObjectOnWindows, AnEmptyDriveIsAnErrorAndNoPrompt) {
  const UINT before = SetErrorMode(0);
  CreateFileSystemObject();
  EXPECT_TRUE(GetErrorMode() & SEM_FAILCRITICALERRORS);
  SetErrorMode(before);
}

TEST_F(FileSystemObjectOnWindows, WildcardsFindNothing) {
  tree.File("a.txt");
  EXPECT_FALSE(files->FileExists(tree.Path() + "\\*.txt"));
  EXPECT_FALSE(files->GetFolder(tree.Path())->Find("?.txt"));
  EXPECT_EQ(NumberRaisedBy([&] { files->GetFolder(tree.Path() + "\\*"); }), 76);
}

TEST_F(FileSystemObjectOnWindows, DevicesAreNotRead) {
  tree.File("a.txt", "old");
  EXPECT_EQ(NumberRaisedBy([&] { files->OpenTextFile("\\\\.\\NUL"); }), 75);
  EXPECT_NE(NumberRaisedBy([&] { files->CopyFile("\\\\.\\NUL", tree.Path("a.txt"), true); }), NoError);
  EXPECT_EQ(tree.Read("a.txt"), "old");
}

class LinksOnWindows : public FileSystemObjectOnWindows {
 protected:
  void Link(const std::string& name, const std::string& target, DWORD flags = 0) {
    constexpr DWORD AsUser = 2;  // allowed without privilege to developers
    ASSERT_TRUE(CreateSymbolicLinkW(NativePath(tree.Path(name)).c_str(), win32::Widen(target).c_str(),
                                    flags | AsUser));
  }
  void FolderLink(const std::string& name, const std::string& target) {
    Link(name, target, SYMBOLIC_LINK_FLAG_DIRECTORY);
  }
};

TEST_F(LinksOnWindows, AreCopiedAsLinks) {
  tree.Folder("folder");
  FolderLink("link", "folder");
  files->CopyFile(tree.Path("link"), tree.Path("copy"), false);
  EXPECT_EQ(files->GetFile(tree.Path("copy")).Attributes, Attribute::Alias);
  EXPECT_TRUE(files->LiesWithin(tree.Path("copy"), tree.Path("folder")));
}

TEST_F(LinksOnWindows, AreNotCopiedOntoTheFileThatTheyLeadTo) {
  tree.File("target/a.txt", "the only content");
  tree.Folder("source");
  Link("source/a.txt", "..\\target\\a.txt");
  EXPECT_EQ(CopyNumber("source/a.txt", "target/a.txt"), 70);
  EXPECT_EQ(tree.Read("target/a.txt"), "the only content");
}

TEST_F(LinksOnWindows, ToFoldersTakeThePlaceOfFilesAndGiveItUp) {
  tree.Folder("folder");
  tree.File("file", "text");
  tree.File("old", "old");
  FolderLink("link", "folder");
  EXPECT_EQ(CopyNumber("link", "old"), NoError);
  EXPECT_EQ(files->GetFile(tree.Path("old")).Attributes, Attribute::Alias);
  EXPECT_EQ(CopyNumber("file", "old"), NoError);
  EXPECT_EQ(tree.Read("old"), "text");
  EXPECT_TRUE(files->FolderExists(tree.Path("folder")));
  EXPECT_EQ(files->GetFolder(tree.Path())->Files().size(), 3u) << "nothing is left beside them";
}

TEST_F(LinksOnWindows, StayWhereNothingCanTakeTheirPlace) {
  tree.Folder("folder");
  tree.File("old", "old");
  FolderLink("link", "folder");
  const Handle alone = OpenAlone(tree.Path("old"));
  EXPECT_EQ(CopyNumber("link", "old"), 70);
  EXPECT_EQ(files->GetFolder(tree.Path())->Files().size(), 2u) << "nothing is left beside them";
}

TEST(TempFolder, IsThereAndEndsInASeparator) {
  const std::string folder = GetTempFolder();
  EXPECT_TRUE(EndsWithSeparator(folder));
  EXPECT_TRUE(CreateFileSystemObject()->FolderExists(folder));
}

}  // namespace
}  // namespace brackwell
