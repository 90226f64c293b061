#include "platform/TempFolder.h"

#include <gtest/gtest.h>

#include "common/Files.h"
#include "support/ClosedFolder.h"
#include "support/ErrorNumber.h"
#include "support/OwnFolders.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

class TempFolderOnWindows : public testing::Test {
 protected:
  /// What becomes of a report: 0, or the number of the error.
  int WriteReport(const std::string& content = "report") {
    return ErrorNumber([&] { WriteTextFile(*mFiles, GetTempFolder() + "report.htm", true, content); });
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

TEST_F(TempFolderOnWindows, MayHaveBlanksAndAnyLetters) {
  for (const std::string name : {"a folder", "\xc3\xbc\xe6\x97\xa5\xf0\x9f\x98\x80", "a 'b' & %c% [d]"}) {
    mTree.Folder(name);
    const OwnTempFolder temp(mTree.Path(name));
    EXPECT_EQ(GetTempFolder(), mTree.Root(name));
    EXPECT_EQ(WriteReport(), 0);
    EXPECT_EQ(mTree.Read(name + "/report.htm"), "report");
  }
}

TEST_F(TempFolderOnWindows, EndsInOneSeparator) {
  mTree.Folder("t");
  const OwnTempFolder temp(mTree.Root("t"));
  EXPECT_EQ(GetTempFolder(), mTree.Root("t"));
}

TEST_F(TempFolderOnWindows, MayHaveALongPath) {
  const std::string name(200, 'n');
  mTree.Folder(name);
  const OwnTempFolder temp(mTree.Path(name));
  EXPECT_EQ(GetTempFolder(), mTree.Root(name));
  EXPECT_EQ(WriteReport(), 0);
}

TEST_F(TempFolderOnWindows, ThatIsGoneIsAMissingPath) {
  const OwnTempFolder temp(mTree.Path("none"));
  EXPECT_EQ(GetTempFolder(), mTree.Root("none"));
  EXPECT_EQ(WriteReport(), 76);
  EXPECT_EQ(mTree.List(), std::vector<std::string>());
}

TEST_F(TempFolderOnWindows, ThatMayNotBeChangedKeepsTheLastReport) {
  mTree.File("t/report.htm", "old");
  const OwnTempFolder temp(mTree.Path("t"));
  {
    const ClosedFolder closed(mTree.Path("t"), ClosedFolder::To::Writers);
    EXPECT_EQ(WriteReport("new"), 70);
  }
  EXPECT_EQ(mTree.Read("t/report.htm"), "old");
  EXPECT_EQ(mTree.List("t"), std::vector<std::string>{"report.htm"});
}

}  // namespace
}  // namespace brackwell
