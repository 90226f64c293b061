// What real file systems can hold and do, and what becomes of the display.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <system_error>

#include "common/Text.h"
#include "dirdisplay/DescribedFolder.h"
#include "support/FailingFileSystem.h"
#include "support/FullDisk_posix.h"
#include "support/NoThreads_posix.h"
#include "support/WithoutPrivileges_posix.h"

namespace brackwell {
namespace {

class DirectoryFaults : public DescribedFolder {
 protected:
  DirectoryFaults() { Options.XmlType = 1; }

  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(Tree.Path(name).c_str(), mode), 0); }
  void Link(const std::string& target, const std::string& name) {
    ASSERT_EQ(symlink(target.c_str(), Tree.Path(name).c_str()), 0);
  }

  /// What xmllint has to say of the last XML document; empty where it is well-formed.
  std::string Lint() const {
    const std::string command = "xmllint --huge --noout '" + Tree.Path("out/dir_display.xml") + "' 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    std::string said;
    char text[200];
    while (std::fgets(text, sizeof text, pipe)) said += text;
    const int status = pclose(pipe);
    return status == 0 ? said : "exit code " + std::to_string(status) + ": " + said;
  }

  /// The names of the files, as the document has them.
  Lines Names() {
    Lines names;
    for (const std::string& element : Elements())
      if (element.starts_with("<file name=\"")) names.push_back(element.substr(12, element.size() - 15));
    return names;
  }
};

using HostileNames = DirectoryFaults;
using Rights = DirectoryFaults;
using Links = DirectoryFaults;
using Disks = DirectoryFaults;
using Sizes = DirectoryFaults;

// --- Names

TEST_F(HostileNames, WhatXmlCannotHoldIsReplaced) {
  Tree.File("top/a\x01z");
  Tree.File("top/b\xFFz");
  Tree.File("top/c\xC3");
  Tree.File("top/d\xED\xA0\x80z");      // a surrogate
  Tree.File("top/e\xEF\xBF\xBEz");      // U+FFFE
  Tree.File("top/f\xEF\xBF\xBFz");      // U+FFFF
  Tree.File("top/g\xC0\xAFz");          // overlong
  Tree.File("top/h\xF4\x90\x80\x80z");  // beyond Unicode
  Tree.File("top/i\x1B[31mz");
  const std::string r = "\xEF\xBF\xBD";
  EXPECT_EQ(Names(), (Lines{"a" + r + "z", "b" + r + "z", "c" + r, "d" + r + r + r + "z", "e" + r + "z",
                            "f" + r + "z", "g" + r + r + "z", "h" + r + r + r + r + "z", "i" + r + "[31mz"}));
  EXPECT_EQ(Lint(), "");
}

TEST_F(HostileNames, MarkupIsText) {
  Tree.File("top/a\"'&lt;");
  Tree.File("top/b<!--");
  Tree.File("top/c]]>");
  Tree.File("top/d&#0;");
  EXPECT_EQ(Names(), (Lines{"a&quot;'&amp;lt;", "b&lt;!--", "c]]&gt;", "d&amp;#0;"}));
  EXPECT_EQ(Lint(), "");
  Options.Format = DisplayFormat::Html;
  const std::string page = Display();
  EXPECT_NE(page.find("<td>a\"'&amp;lt;</td>"), std::string::npos) << page;
  EXPECT_NE(page.find("<td>b&lt;!--</td>"), std::string::npos);
}

TEST_F(HostileNames, LineBreaksAndTabsAreKeptInXmlAndShownElsewhere) {
  Tree.File("top/a\nb\tc\rd");
  EXPECT_EQ(Names(), Lines{"a&#10;b&#9;c&#13;d"});
  EXPECT_EQ(Lint(), "");
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(SplitLines(Display()).back(),
            "  File\ta\xE2\x90\x8A"
            "b\xE2\x90\x89"
            "c\xE2\x90\x8D"
            "d");
  Options.Format = DisplayFormat::Html;
  EXPECT_NE(Display().find("<td>a&#9226;b&#9225;c&#9229;d</td>"), std::string::npos);
}

TEST_F(HostileNames, ControlCharactersAreKeptInXmlOnly) {
  // U+0080, U+0085 and U+2028
  Tree.File("top/a\xC2\x80z\xC2\x85y\xE2\x80\xA8x");
  EXPECT_EQ(Names(), Lines{"a\xC2\x80z\xC2\x85y\xE2\x80\xA8x"});
  EXPECT_EQ(Lint(), "");
  Options.Format = DisplayFormat::Text;
  const std::string r = "\xEF\xBF\xBD";
  EXPECT_EQ(SplitLines(Display()).back(), "  File\ta" + r + "z" + r + "y" + r + "x");
  Options.Format = DisplayFormat::Html;
  EXPECT_NE(Display().find("<td>a&#65533;z&#65533;y&#65533;x</td>"), std::string::npos);
}

TEST_F(HostileNames, AnyBytesMakeAWholeDocumentInBothStyles) {
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    std::string name = std::to_string(i) + "-";
    for (unsigned length = random() % 30; length > 0; --length) {
      const char c = static_cast<char>(random() % 256);
      name += c == '/' || c == '\0' ? '&' : c;
    }
    Tree.File((i % 20 == 0 ? "top/sub" + name + "/x" : "top/" + name));
  }
  Options.FileInfo = {{"Name", "Name"}, {"Path", "Path"}, {"Extension", "Extension"}, {"Type", "Type"}};
  for (const int type : {0, 1}) {
    Options.XmlType = type;
    EXPECT_NE(Display(), "");
    EXPECT_EQ(Lint(), "");
  }
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(SplitLines(Display()).size(), 4 + 1 + 10 + 200u);
  Options.Format = DisplayFormat::Html;
  EXPECT_TRUE(Display().ends_with("</html>\n"));
  EXPECT_EQ(Told, Lines{});
}

TEST_F(HostileNames, TheChosenFoldersOwnName) {
  Tree.Folder("<top>\x01&");
  Options.Folder = Tree.Path("<top>\x01&");
  EXPECT_EQ(Elements().front(),
            "<directory_display style=\"attribute\" path=\"~/&lt;top&gt;\xEF\xBF\xBD&amp;\">");
  EXPECT_EQ(Lint(), "");
}

TEST_F(HostileNames, TheMarkerInANameIsADelimiterToo) {
  Tree.File("top/xDELIM-TBDy");
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(SplitLines(Display()).back(), "  File\tx\ty");
}

// --- What may not be read

TEST_F(Rights, AnUnreadableFolderEndsItWithItsPath) {
  Tree.File("top/a");
  Tree.File("top/locked/file");
  Mode("top/locked", 0);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Display(), "70 ~/top/locked");
  Options.IncludeSubfolders = false;
  EXPECT_EQ(Names(), Lines{"a"});
}

TEST_F(Rights, ASizeThatCannotBeSummedUpIsEmpty) {
  Tree.File("top/a", "1");
  Tree.File("top/sub/locked/file", "22");
  Mode("top/sub/locked", 0);
  Options.IncludeSubfolders = false;
  Options.FolderInfo = {{"Size", "Size"}, {"Name", "Name"}};
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Elements().at(1), "<folder size=\"\" name=\"top\">");
}

TEST_F(Rights, TheChosenFolderUnreadableHasItsOwnPropertiesWhereNoMembersAreAsked) {
  Tree.File("top/a");
  Mode("top", 0);
  Options.FolderInfo = {{"Name", "Name"}, {"File Quantity", "Files"}, {"Subfolder Quantity", "Subfolders"}};
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Display(), "70 ~/top");
  Options.IncludeFiles = Options.IncludeSubfolders = false;
  EXPECT_EQ(Elements().at(1), "<folder name=\"top\" file_quantity=\"\" subfolder_quantity=\"\"/>");
}

TEST_F(Rights, FilesThatMayNotBeLookedAtEndItWhereTheyAreLookedAt) {
  Tree.File("top/listed/file");
  Mode("top/listed", 0444);
  const WithoutPrivileges asAnyUser;
  EXPECT_EQ(Names(), Lines{"file"});
  Options.FileInfo.push_back({"Size", "Size"});
  EXPECT_EQ(Display(), "70 ~/top/listed/file");
}

// --- Links and what is no file

TEST_F(Links, AreFilesAndNeverEntered) {
  Tree.File("other/file", "12345");
  Tree.File("top/a", "1");
  Link("../other", "top/link");
  Link(".", "top/self");
  Link("nowhere", "top/dangling");
  Options.FolderInfo = {{"Name", "Name"}, {"Size", "Size"}, {"File Quantity", "Files"}};
  Options.FileInfo = {{"Name", "Name"}, {"Size", "Size"}};
  EXPECT_EQ(Elements(),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">",
                   "<folder name=\"top\" size=\"17\" file_quantity=\"4\">", "<file name=\"a\" size=\"1\"/>",
                   "<file name=\"dangling\" size=\"7\"/>", "<file name=\"link\" size=\"8\"/>",
                   "<file name=\"self\" size=\"1\"/>", "</folder>"}));
}

TEST_F(Links, PipesAndDevicesAreFiles) {
  Link("nowhere", "top/dangling");
  ASSERT_EQ(mkfifo(Tree.Path("top/pipe").c_str(), 0600), 0);
  Options.FileInfo = {{"Name", "Name"}, {"Type", "Type"}, {"Size", "Size"}};
  const auto type = [this](const std::string& name) { return Files->Type(Tree.Path("top/" + name)); };
  EXPECT_EQ(Elements(),
            (Lines{"<directory_display style=\"attribute\" path=\"~/top\">", "<folder full_name=\"~/top\">",
                   "<file name=\"dangling\" type=\"" + type("dangling") + "\" size=\"7\"/>",
                   "<file name=\"pipe\" type=\"" + type("pipe") + "\" size=\"0\"/>", "</folder>"}));
  EXPECT_NE(type("pipe"), type("dangling"));
}

TEST_F(Links, TheChosenFolderMayBeOne) {
  Tree.File("top/a", "1");
  Link("top", "chosen");
  Options.Folder = Tree.Path("chosen");
  Options.FileInfo = {{"Path", "Path"}};
  EXPECT_EQ(Elements().at(2), "<file path=\"~/chosen/a\"/>");
}

TEST_F(Links, TheRootIsARoot) {
  Options.Folder = "/";
  Options.IncludeFiles = Options.IncludeSubfolders = false;
  Options.FolderInfo = {
      {"Full Name", "Path"}, {"Is Root", "IsRootFolder"}, {"Parent Folder", "ParentFolder"}};
  EXPECT_EQ(Elements(), (Lines{"<directory_display style=\"attribute\" path=\"/\">",
                               "<folder full_name=\"/\" is_root=\"True\" parent_folder=\"\"/>"}));
}

// --- Disks

TEST_F(Disks, AFullOneLeavesTheOutputBefore) {
  for (int i = 0; i < 3000; ++i) Tree.File("top/file-" + std::to_string(i));
  for (const auto& [format, name] :
       {std::pair(DisplayFormat::Text, "txt"), std::pair(DisplayFormat::Html, "html"),
        std::pair(DisplayFormat::Xml, "xml")}) {
    Options.Format = format;
    const std::string output = std::string("out/dir_display.") + name;
    Tree.File(output, "old");
    {
      const FullDisk full;
      EXPECT_EQ(Display(), "61 ~/" + output);
    }
    EXPECT_EQ(Tree.Read(output), "old");
  }
  EXPECT_EQ(Tree.List("out"), (Lines{"dir_display.html", "dir_display.txt", "dir_display.xml"}));
}

TEST_F(Disks, APlantedLinkIsReplacedNotFollowed) {
  Tree.File("precious", "mine");
  Link("../precious", "out/dir_display.xml");
  EXPECT_EQ(Elements().front(), "<directory_display style=\"attribute\" path=\"~/top\">");
  EXPECT_EQ(Tree.Read("precious"), "mine");
}

TEST_F(Disks, AFolderInTheOutputsPlaceIsTold) {
  Tree.File("out/dir_display.xml/mine");
  EXPECT_TRUE(Display().ends_with(" ~/out/dir_display.xml")) << Display();
  EXPECT_EQ(Tree.List("out"), (Lines{"dir_display.xml/", "dir_display.xml/mine"}));
}

TEST_F(Disks, APipeInAStylesheetsPlaceIsNotWaitedFor) {
  Options.ProgramFolder = Tree.Path("program");
  Tree.Folder("program/xml");
  ASSERT_EQ(mkfifo(Tree.Path("program/xml/dir_display_text.xsl").c_str(), 0600), 0);
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(Display(), "");
  ASSERT_EQ(Told.size(), 1u);
  EXPECT_NE(Told[0].find("~/program/xml/dir_display_text.xsl"), std::string::npos) << Told[0];
}

// --- Sizes and numbers

TEST_F(Sizes, FilesBeyondFourGigabytes) {
  Tree.File("top/hole");
  ASSERT_EQ(truncate(Tree.Path("top/hole").c_str(), (off_t{5} << 30) + 1), 0);
  Options.FolderInfo = Options.FileInfo = {{"Size", "Size"}};
  EXPECT_EQ(Elements().at(1), "<folder size=\"5368709121\">");
  EXPECT_EQ(Elements().at(2), "<file size=\"5368709121\"/>");
}

TEST_F(Sizes, ManyFilesInOneFolder) {
  constexpr int Count = 100000;
  // Links to a few files are made much faster than files.
  for (const char* number : {"0", "1", "2", "3"}) Tree.File(number);
  const int folder = open(Tree.Path("top").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  for (int i = 0; i < Count; ++i)
    ASSERT_EQ(linkat(AT_FDCWD, Tree.Path(std::to_string(i % 4)).c_str(), folder,
                     ("file" + std::to_string(i)).c_str(), 0),
              0);
  close(folder);
  Options.FileInfo = {{"Name", "Name"}, {"Size", "Size"}};
  Options.Format = DisplayFormat::Text;
  EXPECT_EQ(SplitLines(Display()).size(), Count + 5u);
  Options.Format = DisplayFormat::Html;
  EXPECT_EQ(CountMatches(Display(), "<tr>"), Count + 1);
  EXPECT_EQ(Told, Lines{});
}

class Deep : public DirectoryFaults {
 protected:
  // With names of four letters, paths are longer than the system takes in one call.
  static constexpr int Depth = 1000;

  Deep() {
    int folder = open(Tree.Path("top").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < Depth; ++level) {
      mkdirat(folder, "deep", 0755);
      const int next = openat(folder, "deep", O_PATH | O_DIRECTORY | O_CLOEXEC);
      close(folder);
      folder = next;
    }
    const int file = openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    EXPECT_EQ(write(file, "12345", 5), 5);
    close(file);
    close(folder);
    Options.FolderInfo = {{"Name", "Name"}, {"Size", "Size"}};
  }
};

TEST_F(Deep, TreesAreDescribedInXml) {
  const Lines elements = Elements();
  EXPECT_EQ(elements.size(), 1 + 2 * (Depth + 1) + 1u);
  EXPECT_EQ(elements[1], "<folder name=\"top\" size=\"5\">");
  EXPECT_EQ(elements[Depth + 1], "<folder name=\"deep\" size=\"5\">");
  EXPECT_EQ(elements[Depth + 2], "<file name=\"file\"/>");
}

TEST_F(Deep, TreesAreDescribedInTextAndHtml) {
  Options.Format = DisplayFormat::Text;
  const Lines lines = SplitLines(Display());
  EXPECT_EQ(lines.size(), 4 + Depth + 1 + 1u);
  EXPECT_EQ(lines[5], "  Folder\tdeep\t5");
  EXPECT_EQ(lines.back(), std::string(102, ' ') + "File\tfile");  // where lines stop to move in
  Options.Format = DisplayFormat::Html;
  EXPECT_NE(Display().find("<tbody style=\"--level:1000\"><tr class=\"folder\">"), std::string::npos);
  EXPECT_EQ(Told, Lines{});
}

TEST_F(Deep, TreesAreSummedUpWithoutBeingDescribed) {
  Options.IncludeSubfolders = false;
  EXPECT_EQ(Elements().at(1), "<folder name=\"top\" size=\"5\"/>");
}

// --- While something else changes the folder

class Changing : public DirectoryFaults {
 protected:
  Changing() {
    Options.FolderInfo = {{"Name", "Name"}};
    Options.FileInfo = {{"Name", "Name"}, {"Size", "Size"}};
    for (const char* name : {"a", "b", "c"}) Tree.File(std::string("top/") + name + "/file", "1");
    Tree.File("top/x", "1");
    Tree.File("top/y", "1");
  }

  /// What is described when `change` happens at the n-th call of the file system, for each n.
  std::vector<Lines> AtEachCall(const std::function<void()>& change, const std::function<void()>& restore) {
    std::vector<Lines> all;
    for (int at = 1;; ++at) {
      FailingFileSystem files;
      files.OnCall = [&] {
        if (files.Calls() == at) change();
      };
      all.push_back(Elements(Display(files)));
      if (files.Calls() < at) return all;
      restore();
    }
  }
};

TEST_F(Changing, AFileThatIsGoneIsLeftOut) {
  const Lines whole = Elements();
  Lines without = whole;
  std::erase(without, "<file name=\"x\" size=\"1\"/>");
  const auto all = AtEachCall([&] { Tree.Remove("top/x"); }, [&] { Tree.File("top/x", "1"); });
  for (const Lines& lines : all) EXPECT_TRUE(lines == whole || lines == without) << lines.front();
  EXPECT_EQ(all.front(), without);
  EXPECT_EQ(all.back(), whole);
}

TEST_F(Changing, AFolderThatIsGoneIsLeftOut) {
  const auto described = [](const std::vector<std::string>& lines, const std::string& folder) {
    return std::ranges::count(lines, "<folder name=\"" + folder + "\">");
  };
  const auto all = AtEachCall([&] { Tree.Remove("top/b"); }, [&] { Tree.File("top/b/file", "1"); });
  for (const Lines& lines : all) {
    EXPECT_EQ(described(lines, "a") + described(lines, "c"), 2) << lines.front();
    EXPECT_EQ(lines.back(), "</folder>");
  }
  EXPECT_EQ(described(all.front(), "b"), 0);
  EXPECT_EQ(described(all.back(), "b"), 1);
}

TEST_F(Changing, TheChosenFolderGoneIsTold) {
  FailingFileSystem files;
  files.OnCall = [this] { Tree.Remove("top"); };
  EXPECT_EQ(Display(files), "76 ~/top");
}

// --- Threads

TEST_F(DirectoryFaults, NoThreadToBeHadIsTold) {
  {
    const NoThreads none;
    EXPECT_THROW(Display(), std::system_error);
  }
  EXPECT_EQ(Elements().size(), 2u);
}

}  // namespace
}  // namespace brackwell
