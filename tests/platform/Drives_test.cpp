#include "platform/Drives.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "platform/FileSystemError.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

TEST(DrivesOfThisMachine, HoldTheOneOfTheProgram) {
  const std::string root = std::filesystem::current_path().root_path().make_preferred().string();
  int found = 0;
  for (const auto& drive : Drives()) {
    if (!drive->IsReady() || drive->RootFolder() != root) continue;
    ++found;
    EXPECT_FALSE(drive->DriveLetter().empty());
    EXPECT_FALSE(drive->FileSystem().empty());
    const std::filesystem::space_info expected = std::filesystem::space(root);
    const auto space = drive->Space();
    ASSERT_TRUE(space);
    EXPECT_EQ(space->TotalSize, static_cast<double>(expected.capacity));
    EXPECT_LE(space->AvailableSpace, space->FreeSpace);
    EXPECT_LE(space->FreeSpace, space->TotalSize);
  }
  EXPECT_EQ(found, 1);
}

TEST(DrivesOfThisMachine, AreAllReadableWithoutError) {
  std::set<std::string> paths;
  for (const auto& drive : Drives()) {
    EXPECT_TRUE(paths.insert(drive->Path()).second) << drive->Path();
    EXPECT_GE(static_cast<int>(drive->Type()), 0);
    EXPECT_LE(static_cast<int>(drive->Type()), 5);
    if (!drive->IsReady()) continue;
    EXPECT_NO_THROW(drive->Space());
    EXPECT_NO_THROW(drive->SerialNumber());
    EXPECT_NO_THROW(drive->VolumeName());
    EXPECT_TRUE(EndsWithSeparator(drive->RootFolder()));
  }
}

}  // namespace
}  // namespace brackwell
