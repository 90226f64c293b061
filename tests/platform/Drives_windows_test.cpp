#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "drives/DriveList.h"
#include "platform/Drives.h"
#include "platform/FileSystemError.h"
#include "support/ErrorNumber.h"

namespace brackwell {
namespace {

/// The drives that tools/windows/wine-run makes: one of each type, and two without a medium.
class MadeDrives : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("BRACKWELL_MADE_DRIVES")) GTEST_SKIP() << "this machine has drives of its own";
    for (auto& drive : Drives()) mDrives[drive->DriveLetter()] = std::move(drive);
  }

  const Drive& At(const std::string& letter) const { return *mDrives.at(letter); }

  std::map<std::string, std::unique_ptr<Drive>> mDrives;
};

TEST_F(MadeDrives, AreAllThere) {
  std::string letters;
  for (const auto& [letter, drive] : mDrives) letters += letter;
  EXPECT_EQ(letters, "ABCDEHNRZ");
}

TEST_F(MadeDrives, ComeInTheOrderOfTheirLetters) {
  std::string letters;
  for (const auto& drive : Drives()) letters += drive->DriveLetter();
  EXPECT_EQ(letters, "ABCDEHNRZ");
}

TEST_F(MadeDrives, HaveTheirTypes) {
  EXPECT_EQ(At("A").Type(), DriveType::Removable);
  EXPECT_EQ(At("D").Type(), DriveType::CdRom);
  EXPECT_EQ(At("H").Type(), DriveType::Fixed);
  EXPECT_EQ(At("N").Type(), DriveType::Network);
  EXPECT_EQ(At("R").Type(), DriveType::RamDisk);
}

TEST_F(MadeDrives, TellEverythingOfTheirMedium) {
  const std::map<std::string, std::string> labels{{"A", "Made floppy"},
                                                  {"D", "Made cdrom"},
                                                  {"H", "Made hd"},
                                                  {"N", "Made network"},
                                                  {"R", "Made ramdisk"}};
  for (const auto& [letter, label] : labels) {
    const Drive& drive = At(letter);
    EXPECT_TRUE(drive.IsReady());
    EXPECT_EQ(drive.Path(), letter + ":");
    EXPECT_EQ(drive.RootFolder(), letter + ":\\");
    EXPECT_EQ(drive.VolumeName(), label);
    EXPECT_EQ(drive.SerialNumber(), static_cast<std::int32_t>(0x8765ABCD));
    EXPECT_EQ(drive.FileSystem(), letter == "D" ? "CDFS" : "NTFS");
    ASSERT_TRUE(drive.Space());
    EXPECT_GT(drive.Space()->TotalSize, 0);
    EXPECT_LE(drive.Space()->AvailableSpace, drive.Space()->TotalSize);
  }
}

TEST_F(MadeDrives, WithoutAMediumAreNotReady) {
  for (const char* letter : {"B", "E"}) {
    const Drive& drive = At(letter);
    EXPECT_FALSE(drive.IsReady());
    EXPECT_EQ(drive.Path(), std::string(letter) + ":");
    EXPECT_EQ(drive.ShareName(), "");
    EXPECT_NE(ErrorNumber([&] { drive.Space(); }), 0);
  }
  EXPECT_EQ(At("B").Type(), DriveType::Removable);
  EXPECT_EQ(At("E").Type(), DriveType::CdRom);
}

TEST_F(MadeDrives, AreListedInTheirRows) {
  std::map<std::string, DriveRow> rows;
  for (const DriveRow& row : LoadDriveList(Drives())) rows[row.front()] = row;
  const auto cells = [&](const std::string& letter) {
    DriveRow row = rows.at(letter);
    for (const std::size_t size : {1, 4, 10})  // of the disk that all of them are made on
      if (!row.at(size).empty()) row.at(size) = row.at(size).ends_with("B") ? "size" : "?";
    return row;
  };
  EXPECT_EQ(cells("H"), (DriveRow{"H", "size", "Fixed", "NTFS", "size", "True", "H:", "H:\\", "-2023380019",
                                  "", "size", "Made hd"}));
  EXPECT_EQ(cells("D"), (DriveRow{"D", "size", "CD-ROM", "CDFS", "size", "True", "D:", "D:\\", "-2023380019",
                                  "", "size", "Made cdrom"}));
  EXPECT_EQ(cells("B"), (DriveRow{"B", "", "Removable", "", "", "False", "B:", "", "", "", "", ""}));
  EXPECT_EQ(cells("E"), (DriveRow{"E", "", "CD-ROM", "", "", "False", "E:", "", "", "", "", ""}));
}

TEST_F(MadeDrives, OnTheMachineHaveNoShare) {
  for (const char* letter : {"A", "C", "D", "H", "R"}) EXPECT_EQ(At(letter).ShareName(), "");
}

}  // namespace
}  // namespace brackwell
