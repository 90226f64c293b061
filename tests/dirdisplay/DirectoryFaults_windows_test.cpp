#include "common/Files.h"
#include "dirdisplay/DescribedFolder.h"
#include "platform/Win32.h"
#include "support/DriveRoot_windows.h"
#include "support/LockedFile_windows.h"
#include "support/LongPaths_windows.h"

// The display of what Windows alone has: drives, short names, attributes, files that are kept locked, paths
// beyond the old limit.

namespace brackwell {
namespace {

class DirectoryOnWindows : public DescribedFolder {
 protected:
  DirectoryOnWindows() { Options.XmlType = 1; }

  void SetAttributes(const std::string& name, DWORD attributes) {
    ASSERT_TRUE(SetFileAttributesW(win32::NativePath(Tree.Path(name)).c_str(), attributes));
  }

  /// The elements that hold `text`.
  Lines With(const std::string& text) {
    Lines elements = Elements();
    std::erase_if(elements,
                  [&](const std::string& element) { return element.find(text) == std::string::npos; });
    return elements;
  }
};

TEST_F(DirectoryOnWindows, TheRootOfADriveIsARoot) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  DriveRoot drive('H');
  drive.File("sub/a.txt", "12345");
  Options.Folder = drive.Path();
  Options.FolderInfo = {{"Path", "Path"},           {"Is Root", "IsRootFolder"},
                        {"Parent", "ParentFolder"}, {"Short", "ShortPath"},
                        {"Name", "Name"},           {"Subs", "Subfolders"}};
  Options.FileInfo = {{"Path", "Path"}};
  const Lines root = With("<folder");
  ASSERT_EQ(root.size(), 2u);
  EXPECT_EQ(root[0], R"(<folder path="H:/" is_root="True" parent="" short="H:/" name="" subs="1">)");
  EXPECT_TRUE(root[1].starts_with(R"(<folder path="H:/sub" is_root="False" parent="H:/")")) << root[1];
  EXPECT_EQ(With("a.txt"), Lines{R"(<file path="H:/sub/a.txt"/>)"});
}

TEST_F(DirectoryOnWindows, ADriveWithoutAMediumCannotBeDisplayed) {
  if (!DriveRoot::AreMade()) GTEST_SKIP() << NoMadeDrives;
  for (const char* root : {"B:\\", "E:\\"}) {
    Options.Folder = root;
    EXPECT_TRUE(Display().ends_with(std::string(root, 2) + "/")) << Display();
    EXPECT_EQ(Tree.List("out"), Lines{});
  }
}

TEST_F(DirectoryOnWindows, AttributesAreTheSystemsBits) {
  constexpr DWORD Archive = FILE_ATTRIBUTE_ARCHIVE;  // Wine has it on every file
  for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_HIDDEN}, DWORD{FILE_ATTRIBUTE_READONLY},
                                 DWORD{FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN}}) {
    const std::string name = std::to_string(attributes | Archive);
    Tree.File("top/" + name);
    SetAttributes("top/" + name, attributes | Archive);
  }
  Tree.Folder("top/18");
  SetAttributes("top/18", FILE_ATTRIBUTE_HIDDEN);
  Options.FileInfo = {{"Name", "Name"}, {"Bits", "ATTRIBUTES"}};
  Options.FolderInfo = {{"Name", "NAME"}, {"Bits", "ATTRIBUTES"}};
  EXPECT_EQ(With("<file"), (Lines{R"(<file name="33" bits="33"/>)", R"(<file name="34" bits="34"/>)",
                                  R"(<file name="38" bits="38"/>)"}));
  EXPECT_EQ(With("<folder"), (Lines{R"(<folder name="top" bits="16">)", R"(<folder name="18" bits="18"/>)"}));
  SetAttributes("top/33", FILE_ATTRIBUTE_NORMAL);
}

TEST_F(DirectoryOnWindows, ACompressedFileTellsSo) {
  Tree.File("top/a", std::string(100000, 'a'));
  {
    const win32::Handle file =
        win32::Open(win32::NativePath(Tree.Path("top/a")), GENERIC_READ | GENERIC_WRITE);
    USHORT format = 1;  // COMPRESSION_FORMAT_DEFAULT
    DWORD size = 0;
    constexpr DWORD SetCompression = 0x9C040;  // FSCTL_SET_COMPRESSION
    if (!DeviceIoControl(file.Get(), SetCompression, &format, sizeof format, nullptr, 0, &size, nullptr))
      GTEST_SKIP() << "this disk compresses nothing";
  }
  Options.FileInfo = {{"Bits", "ATTRIBUTES"}};
  const Lines found = With("<file");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_NE(std::stoi(found[0].substr(found[0].find('"') + 1)) & 2048, 0) << found[0];
}

TEST_F(DirectoryOnWindows, ShortNamesAreThoseOfTheDisk) {
  Tree.File("top/a rather long name.text");
  Options.FileInfo = {{"Short Name", "ShortName"}, {"Short Path", "ShortPath"}};
  const Lines found = With("<file");
  ASSERT_EQ(found.size(), 1u);
  wchar_t path[MAX_PATH];
  ASSERT_NE(GetShortPathNameW(win32::Widen(Tree.Path("top/a rather long name.text")).c_str(), path, MAX_PATH),
            0u);
  const std::string shortPath = win32::Narrow(path);
  EXPECT_EQ(found[0], "<file short_name=\"" + std::string(FileName(shortPath)) + "\" short_path=\"" +
                          Shown(shortPath) + "\"/>");
  EXPECT_NE(FileName(shortPath), "a rather long name.text") << "the disk has no short names";
}

TEST_F(DirectoryOnWindows, ALockedFileIsDescribed) {
  Tree.File("top/a.txt", "12345", 10);
  const LockedFile locked(Tree.Path("top/a.txt"), 0);
  ASSERT_TRUE(locked.IsOpen());
  Options.FileInfo = {{"Size", "Size"}, {"Name", "Name"}, {"Short Name", "ShortName"}};
  EXPECT_EQ(With("<file").front().substr(0, 30), R"(<file size="5" name="a.txt" sh)");
}

TEST_F(DirectoryOnWindows, ALockedOutputIsToldAndKept) {
  Tree.File("top/a.txt");
  Tree.File("out/dir_display.xml", "shown by a browser that keeps it");
  const LockedFile locked(Tree.Path("out/dir_display.xml"), FILE_SHARE_READ);
  ASSERT_TRUE(locked.IsOpen());
  EXPECT_EQ(Display(), "70 ~/out/dir_display.xml");
  EXPECT_EQ(Tree.Read("out/dir_display.xml"), "shown by a browser that keeps it");
  EXPECT_EQ(Tree.List("out"), Lines{"dir_display.xml"});
}

TEST_F(DirectoryOnWindows, PathsBeyondTheOldLimitAreDescribed) {
  const std::string folder = MakeFolders(*Files, Tree.Path("top"), LongFolder);
  WriteTextFile(*Files, JoinPath(folder, LongName), true, "12345");
  Options.FolderInfo = {{"Full Name", "Path"}, {"Size", "Size"}};
  Options.FileInfo = {{"Path", "Path"}, {"Size", "Size"}, {"Short", "ShortPath"}};
  EXPECT_EQ(With("<folder").size(), 5u);
  EXPECT_EQ(With("full_name=\"" + Shown(folder) + "\" size=\"5\"").size(), 1u);
  EXPECT_EQ(With("path=\"" + Shown(JoinPath(folder, LongName)) + "\" size=\"5\"").size(), 1u);
  Options.Format = DisplayFormat::Text;
  EXPECT_NE(Display().find(LongName), std::string::npos);
  RemoveTree(*Files, Tree.Path("top"));
}

}  // namespace
}  // namespace brackwell
