#include "dirdisplay/DirectoryScan.h"

#include <new>

#include "common/Files.h"
#include "dirdisplay/DescribedFolder.h"
#include "platform/DateText.h"
#include "support/FailingFileSystem.h"

namespace brackwell {
namespace {

std::string DateOf(int seconds) { return GeneralDate(TempTree::Time(seconds)); }

class DirectoryScanTest : public DescribedFolder {
 protected:
  DirectoryScanTest() { Options.XmlType = 1; }
  void Folders(std::vector<InfoItem> items) { Options.FolderInfo = std::move(items); }
  void FilesInfo(std::vector<InfoItem> items) { Options.FileInfo = std::move(items); }

  /// One property of the only file, of "top" itself.
  std::string FileValue(const std::string& key) {
    FilesInfo({{"Value", key}});
    return Value(Elements().at(2));
  }
  std::string FolderValue(const std::string& key) {
    Folders({{"Value", key}});
    return Value(Elements().at(1));
  }

 private:
  static std::string Value(const std::string& element) {
    const std::size_t begin = element.find("value=\"") + 7;
    return element.substr(begin, element.find('"', begin) - begin);
  }
};

TEST_F(DirectoryScanTest, AnEmptyFolderHasItsPropertiesOnly) {
  Folders({{"File Quantity", "Files"}, {"Subfolder Quantity", "Subfolders"}});
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top\">",
                               "<folder file_quantity=\"0\" subfolder_quantity=\"0\"/>"}));
}

TEST_F(DirectoryScanTest, SubFoldersComeBeforeFilesEachWithAllThatIsBelow) {
  Tree.File("top/a");
  Tree.File("top/Z");
  Tree.File("top/m/inner");
  Tree.File("top/m/deep/deepest");
  Tree.Folder("top/B");
  Folders({{"Name", "Name"}});
  EXPECT_EQ(Elements(),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder name=\"top\">",
                   "<folder name=\"B\"/>", "<folder name=\"m\">", "<folder name=\"deep\">",
                   "<file name=\"deepest\"/>", "</folder>", "<file name=\"inner\"/>", "</folder>",
                   "<file name=\"a\"/>", "<file name=\"Z\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, WithoutFolderDataTheNestingIsKept) {
  Options.IncludeFolders = false;
  Tree.File("top/sub/file");
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder>",
                               "<folder>", "<file name=\"file\"/>", "</folder>", "</folder>"}));
}

TEST_F(DirectoryScanTest, WithoutFilesThereAreFoldersOnly) {
  Options.IncludeFiles = false;
  Tree.File("top/sub/file");
  EXPECT_EQ(Elements(),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder full_name=\"~/top\">",
                   "<folder full_name=\"~/top/sub\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, WithoutSubFoldersOnlyTheChosenFolderIsDescribed) {
  Options.IncludeSubfolders = false;
  Tree.File("top/sub/file");
  Tree.File("top/a");
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top\">",
                               "<folder full_name=\"~/top\">", "<file name=\"a\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, ElementsHoldTheSameAsAttributes) {
  Options.XmlType = 0;
  Tree.File("top/sub/a", "abc");
  Folders({{"Full Name", "Path"}, {"Color", "Color"}});
  FilesInfo({{"Size", "Size"}, {"Name", "Name"}});
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"element\" path=\"~/top\">", "<folder>",
                               "<full_name>~/top</full_name>", "<color>", "</color>", "<folder>",
                               "<full_name>~/top/sub</full_name>", "<color>", "</color>", "<file>",
                               "<size>3</size>", "<name>a</name>", "</file>", "</folder>", "</folder>"}));
}

TEST_F(DirectoryScanTest, PropertiesComeInTheOrderOfTheList) {
  Folders({{"Size", "Size"}, {"Full Name", "Path"}});
  FilesInfo({{"Extension", "Extension"}, {"Size", "Size"}, {"Name", "Name"}});
  Tree.File("top/a.txt", "12345");
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top\">",
                               "<folder size=\"5\" full_name=\"~/top\">",
                               "<file extension=\"TXT\" size=\"5\" name=\"a.txt\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, FilesHaveTheirValues) {
  Tree.File("top/report.final.Txt", "123", 3661);
  EXPECT_EQ(FileValue("Name"), "report.final.Txt");
  EXPECT_EQ(FileValue("Path"), "~/top/report.final.Txt");
  EXPECT_EQ(FileValue("ParentFolder"), "~/top");
  EXPECT_EQ(FileValue("Size"), "3");
  EXPECT_EQ(FileValue("Extension"), "TXT");
  EXPECT_EQ(FileValue("datelastmodified"), DateOf(3661));
  EXPECT_EQ(FileValue("DateCreated"),
            GeneralDate(Files->GetFile(Tree.Path("top/report.final.Txt")).DateCreated));
  EXPECT_EQ(FileValue("Type"), Files->Type(Tree.Path("top/report.final.Txt")));
  EXPECT_EQ(FileValue("ShortName"), Files->ShortName(Tree.Path("top/report.final.Txt")));
  EXPECT_EQ(FileValue("Attributes"),
            std::to_string(Files->GetFile(Tree.Path("top/report.final.Txt")).Attributes));
}

TEST_F(DirectoryScanTest, FoldersHaveTheirValues) {
  Tree.File("top/sub/a", "123");
  Tree.File("top/b", "4567");
  Tree.SetModified("top", 3661);
  EXPECT_EQ(FolderValue("Name"), "top");
  EXPECT_EQ(FolderValue("ParentFolder"), "~");
  EXPECT_EQ(FolderValue("Files"), "1");
  EXPECT_EQ(FolderValue("Subfolders"), "1");
  EXPECT_EQ(FolderValue("IsRootFolder"), "False");
  EXPECT_EQ(FolderValue("Size"), "7");
  EXPECT_EQ(FolderValue("DATELASTMODIFIED"), DateOf(3661));
  EXPECT_EQ(FolderValue("Type"), Files->Type(Tree.Path("top")));
  EXPECT_EQ(FolderValue("ShortName"), Files->ShortName(Tree.Path("top")));
  EXPECT_EQ(FolderValue("ShortPath"), Shown(Files->ShortPath(Tree.Path("top"))));
  EXPECT_EQ(FolderValue("Attributes"), "16");
}

TEST_F(DirectoryScanTest, AFolderChosenWithASeparatorAtItsEndHasThePathOfOneWithout) {
  Options.Folder = Tree.Root("top");
  Tree.File("top/a");
  FilesInfo({{"Path", "Path"}});
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"~/top/\">",
                               "<folder full_name=\"~/top\">", "<file path=\"~/top/a\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, ExtensionsAreWhatComesAfterTheLastDot) {
  for (const char* name : {"README", "name.", ".profile", "x.tar.gz"}) Tree.File("top/" + std::string(name));
  FilesInfo({{"Name", "Name"}, {"Extension", "Extension"}});
  Lines expected{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder full_name=\"~/top\">"};
  const auto folder = Files->GetFolder(Tree.Path("top"));
  for (const Member& file : folder->Files()) {
    const std::string name(file.Name);
    const std::string extension = name == ".profile" ? "PROFILE" : name == "x.tar.gz" ? "GZ" : "";
    expected.push_back("<file name=\"" + name + "\" extension=\"" + extension + "\"/>");
  }
  expected.push_back("</folder>");
  EXPECT_EQ(Elements(), expected);
}

TEST_F(DirectoryScanTest, UnknownKeysAreEmpty) {
  Tree.File("top/a");
  EXPECT_EQ(FolderValue("Color"), "");
  EXPECT_EQ(FolderValue("Extension"), "");
  Folders({{"Full Name", "Path"}});
  EXPECT_EQ(FileValue("Subfolders"), "");
}

TEST_F(DirectoryScanTest, SizesAreOfEverythingBelow) {
  Tree.File("top/a", "1");
  Tree.File("top/x/b", "22");
  Tree.File("top/x/y/c", "333");
  Tree.File("top/z/d", "4444");
  Folders({{"Size", "Size"}});
  const Lines nested{"<directory_display style=\"attribute\" path=\"~/top\">",
                     "<folder size=\"10\">",
                     "<folder size=\"5\">",
                     "<folder size=\"3\"/>",
                     "</folder>",
                     "<folder size=\"4\"/>",
                     "</folder>"};
  Options.IncludeFiles = false;
  EXPECT_EQ(Elements(), nested);
  Options.IncludeSubfolders = false;
  EXPECT_EQ(Elements().at(1), "<folder size=\"10\"/>");
}

TEST_F(DirectoryScanTest, SizesTakeOneLookUpPerFile) {
  std::string folder = "top";
  for (int level = 0; level < 30; ++level) Tree.File((folder += "/d") + "/file", "x");
  FilesInfo({{"Size", "Size"}});
  FailingFileSystem without;
  Display(without);
  Folders({{"Size", "Size"}});
  FailingFileSystem with;
  Display(with);
  EXPECT_EQ(with.Calls(), without.Calls());
}

TEST_F(DirectoryScanTest, TwoSizesAreBothFilled) {
  Options.XmlType = 0;
  Folders({{"Size", "Size"}, {"Size", "size"}});
  Tree.File("top/a", "abc");
  Options.IncludeFiles = false;
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"element\" path=\"~/top\">", "<folder>",
                               "<size>3</size>", "<size>3</size>", "</folder>"}));
}

TEST_F(DirectoryScanTest, AnAttributeIsSetOnceTheLastValueInTheFirstPlace) {
  Tree.File("top/a.txt", "abc");
  FilesInfo({{"Size", "Size"}, {"Name", "Name"}, {"SIZE", "Extension"}});
  EXPECT_EQ(Elements().at(2), "<file size=\"TXT\" name=\"a.txt\"/>");
}

TEST_F(DirectoryScanTest, CaptionsThatAreNoNamesDoNotBreakTheDocument) {
  FilesInfo({{"<b>", "Name"}, {"", "Size"}, {"1st", "Extension"}, {"xmlns", "Name"}, {"a:b", "Name"}});
  Tree.File("top/a.txt", "abc");
  EXPECT_EQ(Elements().at(2), "<file _b_=\"a.txt\" _=\"3\" _1st=\"TXT\" _xmlns=\"a.txt\" a_b=\"a.txt\"/>");
  Options.XmlType = 0;
  FilesInfo({{"<b>", "Name"}, {"2", "Size"}});
  const Lines elements = Elements();
  EXPECT_EQ(elements.at(4), "<_b_>a.txt</_b_>");
  EXPECT_EQ(elements.at(5), "<_2>3</_2>");
}

TEST_F(DirectoryScanTest, AmpersandsAndQuotesAreEscaped) {
  Tree.File("top/R&D 'x'.txt");
  EXPECT_EQ(Elements().at(2), "<file name=\"R&amp;D 'x'.txt\"/>");
  Options.XmlType = 0;
  EXPECT_EQ(Elements().at(4), "<name>R&amp;D 'x'.txt</name>");
}

TEST_F(DirectoryScanTest, TextOutsideAsciiIsWrittenAsItIs) {
  Tree.File("top/\xC3\x9C\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(Elements().at(2), "<file name=\"\xC3\x9C\xE2\x82\xAC\xF0\x9F\x98\x80\"/>");
  EXPECT_TRUE(Display().starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
}

TEST_F(DirectoryScanTest, AMissingFolderEndsItWithItsPath) {
  Options.Folder = Tree.Path("none");
  EXPECT_EQ(Display(), "76 ~/none");
}

TEST_F(DirectoryScanTest, AnyFailingCallEndsItOrLeavesAFolderValueEmpty) {
  Tree.File("top/a/b/file", "x");
  Tree.File("top/file", "x");
  Folders({{"Date Created", "DateCreated"}, {"File Quantity", "Files"}, {"Size", "Size"}});
  FilesInfo({{"Size", "Size"}});
  FailingFileSystem all;
  Display(all);
  ASSERT_GT(all.Calls(), 10);
  for (int call = 1; call <= all.Calls(); ++call) {
    FailingFileSystem failing(call, FileError::PermissionDenied);
    EXPECT_TRUE(Display(failing).starts_with("70 ~/")) << call;
  }
}

TEST_F(DirectoryScanTest, AFoldersValuesThatCannotBeReadAreEmpty) {
  Options.IncludeFiles = Options.IncludeSubfolders = false;
  Folders({{"File Quantity", "Files"}, {"Size", "Size"}, {"Date Created", "DateCreated"}, {"Name", "Name"}});
  FailingFileSystem failing;
  failing.OnCall = [&] {
    // The first calls try the output file and open the folder; then each property is read.
    if (failing.Calls() > 2 && failing.Calls() < 6) throw FileSystemError(FileError::DeviceError, "any");
  };
  EXPECT_EQ(Elements(Display(failing)).at(1),
            "<folder file_quantity=\"\" size=\"\" date_created=\"\" name=\"top\"/>");
}

TEST_F(DirectoryScanTest, AFileThatIsGoneWhenItIsLookedAtIsLeftOut) {
  Tree.File("top/a");
  Tree.File("top/b");
  Tree.File("top/c");
  FilesInfo({{"Name", "Name"}, {"Size", "Size"}});
  FailingFileSystem failing;
  failing.OnCall = [&] {
    if (failing.Calls() == 4) Tree.Remove("top/b");  // listed, and a not yet read
  };
  EXPECT_EQ(Elements(Display(failing)),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder full_name=\"~/top\">",
                   "<file name=\"a\" size=\"0\"/>", "<file name=\"c\" size=\"0\"/>", "</folder>"}));
  FilesInfo({{"Name", "Name"}});
  Tree.File("top/b");
  FailingFileSystem again;
  again.OnCall = [&] {
    if (again.Calls() == 4) Tree.Remove("top/b");
  };
  EXPECT_EQ(Elements(Display(again)).at(3), "<file name=\"b\"/>");  // its name needs no look-up
}

TEST_F(DirectoryScanTest, AFileThatSomethingElseHasTakenThePlaceOfEndsIt) {
  Tree.File("top/a");
  Tree.File("top/b");
  FilesInfo({{"Name", "Name"}, {"Size", "Size"}});
  FailingFileSystem failing;
  failing.OnCall = [&] {
    if (failing.Calls() != 4) return;
    Tree.Remove("top/b");
    Tree.Folder("top/b");
  };
  EXPECT_EQ(Display(failing), "53 ~/top/b");
}

TEST_F(DirectoryScanTest, ASubFolderThatIsGoneWhenItIsEnteredIsLeftOut) {
  Tree.File("top/a");
  Tree.Folder("top/sub");
  Tree.Folder("top/sub2");
  FailingFileSystem files;
  files.OnCall = [&] {
    if (files.Calls() == 4) Tree.Remove("top/sub");
  };
  Folders({{"Name", "Name"}});
  EXPECT_EQ(Elements(Display(files)),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder name=\"top\">",
                   "<folder name=\"sub2\"/>", "<file name=\"a\"/>", "</folder>"}));
}

TEST_F(DirectoryScanTest, ADescriptionThatIsTooLargeForTheMemoryEndsIt) {
  for (int i = 0; i < 3000; ++i) Tree.File("top/" + std::string(200, 'x') + std::to_string(i));
  for (const auto format : {DisplayFormat::Text, DisplayFormat::Html, DisplayFormat::Xml}) {
    Options.Format = format;
    Options.MemoryLimit = std::size_t{3} << 19;
    EXPECT_THROW(Display(), std::bad_alloc);
    EXPECT_EQ(Tree.List("out"), Lines{});
    EXPECT_EQ(Told, Lines{});
    Options.MemoryLimit = std::nullopt;
    EXPECT_NE(Display(), "");
    Tree.Remove("out");
    Tree.Folder("out");
  }
}

TEST_F(DirectoryScanTest, StopsWhenAsked) {
  for (int i = 0; i < 20; ++i) Tree.File("top/sub/" + std::to_string(i));
  int events = 0;
  for (const auto format : {DisplayFormat::Text, DisplayFormat::Html, DisplayFormat::Xml}) {
    Options.Format = format;
    Stop = false;
    events = 0;
    OnEvents = [&] { Stop = ++events == 10; };
    EXPECT_EQ(Display(), "stopped");
    EXPECT_EQ(events, 10);
    EXPECT_EQ(Tree.List("out"), Lines{});
  }
}

}  // namespace
}  // namespace brackwell
