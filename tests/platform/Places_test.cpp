#include "platform/Places.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

TEST(Places, TheRootOfTheSystemIsAVolume) {
  const auto files = CreateFileSystemObject();
  const std::string root = WithSeparator(files->Drive(HomeFolder()));
  const std::vector<Volume> volumes = Volumes();
  EXPECT_TRUE(std::ranges::any_of(volumes, [&](const Volume& volume) {
    return root.starts_with(volume.Root) && files->FolderExists(volume.Root) && !volume.MayHang;
  }));
}

TEST(Places, TheHomeFolderIsThereAndEndsInNoSeparator) {
  EXPECT_TRUE(CreateFileSystemObject()->FolderExists(HomeFolder()));
  EXPECT_EQ(HomeFolder(), WithoutSeparator(HomeFolder()));
}

}  // namespace
}  // namespace brackwell
