#include "drives/DriveList.h"

#include <gmock/gmock.h>

#include "drives/MadeDrive.h"

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FormatDriveSize, ByTheTable) {
  const struct {
    double Bytes;
    const char* Text;
  } rows[] = {
      {0, "0.00 bytes"},
      {1, "1.00 bytes"},
      {500, "500.00 bytes"},
      {1024, "1024.00 bytes"},
      {1025, "1.00 KB"},
      {1152, "1.13 KB"},  // half of a hundredth is rounded up
      {1536, "1.50 KB"},
      {1'023'999, "1000.00 KB"},
      {1'024'000, "1000.00 KB"},
      {1'024'001, "1.00 MB"},
      {1'029'120, "1.01 MB"},  // 1.005, which no binary fraction is
      {1'536'000, "1.50 MB"},
      {1'024'000'000, "1000.00 MB"},
      {1'024'000'001, "1.00 GB"},
      {1'073'741'824, "1.05 GB"},
      {1'536'000'000, "1.50 GB"},
      {2'048'000'000, "2.00 GB"},
      {1'029'120'000, "1.01 GB"},
      {1e12, "976.56 GB"},
      {9007199254740993.0, "8796093.02 GB"},
      {18446744073709551616.0, "18014398509.48 GB"},
      {18446744073709551616.0 * 4096, "73786976294838.21 GB"},
  };
  for (const auto& row : rows) EXPECT_EQ(FormatDriveSize(row.Bytes, "."), row.Text) << row.Bytes;
}

TEST(FormatDriveSize, HasTheSeparatorOfTheLocale) {
  EXPECT_EQ(FormatDriveSize(1536, ","), "1,50 KB");
  EXPECT_EQ(FormatDriveSize(1536), "1" + DecimalSeparator() + "50 KB");
}

TEST(DriveTypeName, ByTheTable) {
  const std::vector<std::string_view> names{"Unknown", "Removable", "Fixed", "Network",
                                            "CD-ROM",  "RAM Disk",  "",      ""};
  for (int type = 0; type < 8; ++type)
    EXPECT_EQ(DriveTypeName(static_cast<DriveType>(type)), names[static_cast<std::size_t>(type)]);
  EXPECT_EQ(DriveTypeName(static_cast<DriveType>(-1)), "");
}

TEST(DriveColumns, TheirKeysAndCaptions) {
  std::string text;
  for (const DriveColumn& column : DriveColumns)
    text += std::string(column.Key) + "=" + std::string(column.Caption) + "|";
  EXPECT_EQ(text,
            "=Drive|AvailableSpace=Available Space|DriveType=Drive Type|FileSystem=File System|"
            "FreeSpace=Free Space|IsReady=Is Ready|Path=Path|RootFolder=Root Folder|"
            "SerialNumber=Serial Number|ShareName=Share Name|TotalSize=Total Size|VolumeName=Volume Name|");
}

TEST(LoadDriveList, AReadyDrive) {
  DriveCollection drives;
  drives.push_back(std::make_unique<MadeDrive>());
  const std::string point = DecimalSeparator();
  EXPECT_THAT(
      LoadDriveList(drives),
      ElementsAre(ElementsAre("C", "1" + point + "00 KB", "Fixed", "NTFS", "1" + point + "50 KB", "True",
                              "C:", "C:\\", "-559038737", "", "2" + point + "00 GB", "System")));
}

TEST(LoadDriveList, AFloppyDriveWithoutADisk) {
  DriveCollection drives;
  drives.push_back(MadeDrive::Empty("A", DriveType::Removable));
  EXPECT_THAT(LoadDriveList(drives),
              ElementsAre(ElementsAre("A", "", "Removable", "", "", "False", "A:", "", "", "", "", "")));
}

TEST(LoadDriveList, ADriveThatIsNotReadyIsNotAskedForItsMedium) {
  DriveCollection drives;
  auto drive = MadeDrive::Empty("Z", DriveType::Network);
  drive->Share = "\\\\server\\share";
  const auto reads = drive->Reads;
  drives.push_back(std::move(drive));
  EXPECT_THAT(LoadDriveList(drives), ElementsAre(ElementsAre("Z", "", "Network", "", "", "False", "Z:", "",
                                                             "", "\\\\server\\share", "", "")));
  EXPECT_EQ(*reads, 0);
}

TEST(LoadDriveList, WhatIsNotKnownStaysEmpty) {
  DriveCollection drives;
  auto drive = std::make_unique<MadeDrive>();
  drive->KnowsSpace = false;
  drive->Serial = {};
  drives.push_back(std::move(drive));
  EXPECT_THAT(LoadDriveList(drives), ElementsAre(ElementsAre("C", "", "Fixed", "NTFS", "", "True",
                                                             "C:", "C:\\", "", "", "", "System")));
}

TEST(LoadDriveList, ADriveThatGoesAwayLeavesItsRowAsFarAsItGot) {
  // By how many of its medium's properties can still be read.
  const std::size_t lengths[] = {1, 3, 4, 7, 8, 10, 11, 12};
  for (int reads = 0; reads < 8; ++reads) {
    DriveCollection drives;
    auto drive = std::make_unique<MadeDrive>();
    drive->GoesAwayAfter = reads;
    drives.push_back(std::move(drive));
    drives.push_back(std::make_unique<MadeDrive>());
    const std::vector<DriveRow> rows = LoadDriveList(drives);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].size(), lengths[reads]) << reads;
    EXPECT_EQ(rows[1].size(), 12U);
    EXPECT_TRUE(std::equal(rows[0].begin(), rows[0].end(), rows[1].begin()));
  }
}

TEST(LoadDriveList, NoDrives) { EXPECT_THAT(LoadDriveList({}), IsEmpty()); }

TEST(DriveReport, IsThePageToTheLastCharacter) {
  const ListTable list{.Headers = {"Drive", "Path"},
                       .ColumnWidths = {100, 300},
                       .Width = 400,
                       .Rows = {{"C", "C:"}, {"A", ""}, {"odd<b>", "\"/a\nb\""}, {"gone"}}};
  EXPECT_EQ(
      DriveReport("Disk Drive Information", list),
      "<html><head><title>Disk Drive Information</title></head><body>"
      "<table width=\"100%\" border=\"1\" bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\">"
      "<tr><td width=\"25%\" bgcolor=\"silver\" nowrap=\"nowrap\">Drive</td>"
      "<td width=\"75%\" bgcolor=\"silver\" nowrap=\"nowrap\">Path</td></tr>"
      "<tr><td width=\"25%\" nowrap=\"nowrap\">C</td><td width=\"75%\" nowrap=\"nowrap\">C:&nbsp;</td></tr>"
      "<tr><td width=\"25%\" nowrap=\"nowrap\">A</td><td width=\"75%\" nowrap=\"nowrap\">&nbsp;</td></tr>"
      "<tr><td width=\"25%\" nowrap=\"nowrap\">odd&lt;b&gt;</td>"
      "<td width=\"75%\" nowrap=\"nowrap\">&quot;/a\u240a"
      "b&quot;&nbsp;</td></tr>"
      "<tr><td width=\"25%\" nowrap=\"nowrap\">gone</td></tr>"
      "</table></body></html></table></body></html>");
}

}  // namespace
}  // namespace brackwell
