#pragma once

#include <memory>
#include <utility>

#include "platform/Drives.h"
#include "platform/FileSystemError.h"

namespace brackwell {

/// A drive as a test wants it.
class MadeDrive : public Drive {
 public:
  static std::unique_ptr<MadeDrive> Empty(const std::string& letter, DriveType kind) {
    auto drive = std::make_unique<MadeDrive>();
    drive->Letter = letter;
    drive->Kind = kind;
    drive->Ready = false;
    return drive;
  }

  std::string DriveLetter() const override { return Letter; }
  DriveType Type() const override { return Kind; }
  bool IsReady() const override { return Ready; }
  std::string Path() const override { return Letter + ":"; }
  std::string ShareName() const override { return Share; }

  std::optional<DriveSpace> Space() const override {
    const DriveSpace space{.AvailableSpace = 1025, .FreeSpace = 1536, .TotalSize = 2'048'000'000};
    return OfMedium(KnowsSpace ? std::optional(space) : std::nullopt);
  }
  std::string FileSystem() const override { return OfMedium(std::string("NTFS")); }
  std::string RootFolder() const override { return OfMedium(Letter + ":\\"); }
  std::optional<std::int32_t> SerialNumber() const override { return OfMedium(Serial); }
  std::string VolumeName() const override { return OfMedium(Name); }

  std::string Letter = "C";
  DriveType Kind = DriveType::Fixed;
  bool Ready = true;
  std::string Share;
  bool KnowsSpace = true;
  std::optional<std::int32_t> Serial = static_cast<std::int32_t>(0xDEADBEEF);
  std::string Name = "System";
  int GoesAwayAfter = 1000;  // reads of its medium
  std::shared_ptr<int> Reads = std::make_shared<int>(0);

 private:
  template <typename Value>
  Value OfMedium(Value value) const {
    if ((*Reads)++ >= GoesAwayAfter) throw FileSystemError(FileError::DiskNotReady, Path());
    return value;
  }
};

}  // namespace brackwell
