#include "platform/Win32.h"
// After the one above, which it needs.
#include <winnetwk.h>

#include <chrono>

#include "platform/Drives.h"
#include "platform/LateAnswers.h"

namespace brackwell {
namespace {

constexpr std::chrono::milliseconds Patience{300};  // for all servers together

struct Volume {
  std::string FileSystem;
  std::int32_t SerialNumber = 0;
  std::string VolumeName;
};

Volume ReadVolume(const std::string& root) {
  wchar_t name[MAX_PATH + 1] = L"";
  wchar_t fileSystem[MAX_PATH + 1] = L"";
  DWORD serial = 0;
  if (!GetVolumeInformationW(win32::Widen(root).c_str(), name, MAX_PATH + 1, &serial, nullptr, nullptr,
                             fileSystem, MAX_PATH + 1))
    win32::Raise(GetLastError(), root, FileError::DiskNotReady);
  return {.FileSystem = win32::Narrow(fileSystem),
          .SerialNumber = static_cast<std::int32_t>(serial),
          .VolumeName = win32::Narrow(name)};
}

DriveSpace ReadSpace(const std::string& root) {
  ULARGE_INTEGER available{};
  ULARGE_INTEGER total{};
  ULARGE_INTEGER free{};
  if (!GetDiskFreeSpaceExW(win32::Widen(root).c_str(), &available, &total, &free))
    win32::Raise(GetLastError(), root, FileError::DiskNotReady);
  return {.AvailableSpace = static_cast<double>(available.QuadPart),
          .FreeSpace = static_cast<double>(free.QuadPart),
          .TotalSize = static_cast<double>(total.QuadPart)};
}

DriveType TypeOf(const std::string& root) {
  switch (GetDriveTypeW(win32::Widen(root).c_str())) {
    case DRIVE_REMOVABLE:
      return DriveType::Removable;
    case DRIVE_FIXED:
      return DriveType::Fixed;
    case DRIVE_REMOTE:
      return DriveType::Network;
    case DRIVE_CDROM:
      return DriveType::CdRom;
    case DRIVE_RAMDISK:
      return DriveType::RamDisk;
    default:
      return DriveType::Unknown;
  }
}

std::string ShareOf(const std::string& path) {
  std::wstring share(MAX_PATH, L'\0');
  auto size = static_cast<DWORD>(share.size());
  DWORD error = WNetGetConnectionW(win32::Widen(path).c_str(), share.data(), &size);
  if (error == ERROR_MORE_DATA) {
    share.resize(size);
    error = WNetGetConnectionW(win32::Widen(path).c_str(), share.data(), &size);
  }
  // One that is remembered but not connected now has its name, too.
  if (error != NO_ERROR && error != ERROR_CONNECTION_UNAVAIL) return {};
  return win32::Narrow(share.c_str());
}

/// What a drive tells of its medium.
class Medium {
 public:
  virtual ~Medium() = default;
  // Raise.
  virtual brackwell::Volume Volume() const = 0;
  virtual DriveSpace Space() const = 0;
};

class LocalMedium final : public Medium {
 public:
  explicit LocalMedium(std::string root) : mRoot(std::move(root)) {}
  brackwell::Volume Volume() const override { return ReadVolume(mRoot); }
  DriveSpace Space() const override { return ReadSpace(mRoot); }

 private:
  const std::string mRoot;
};

/// A server that does not answer in time is not ready.
class RemoteMedium final : public Medium {
 public:
  RemoteMedium(const std::string& root, std::chrono::steady_clock::time_point deadline)
      : mRoot(root), mDeadline(deadline) {
    static LateAnswers<Content> answers;
    mAnswer = answers.Ask(root, [root] { return Content{ReadVolume(root), ReadSpace(root)}; });
  }
  brackwell::Volume Volume() const override { return Answer().Volume; }
  DriveSpace Space() const override { return Answer().Space; }

 private:
  struct Content {
    brackwell::Volume Volume;
    DriveSpace Space;
  };

  const Content& Answer() const {
    if (!LateAnswers<Content>::IsHere(mAnswer, mDeadline))
      throw FileSystemError(FileError::DiskNotReady, mRoot);
    return mAnswer.get();
  }

  const std::string mRoot;
  const std::chrono::steady_clock::time_point mDeadline;
  LateAnswers<Content>::Future mAnswer;
};

class WindowsDrive final : public Drive {
 public:
  WindowsDrive(char letter, std::chrono::steady_clock::time_point deadline)
      : mLetter(1, letter), mType(TypeOf(RootPath())) {
    if (mType == DriveType::Network)
      mMedium = std::make_unique<RemoteMedium>(RootPath(), deadline);
    else
      mMedium = std::make_unique<LocalMedium>(RootPath());
  }

  std::string DriveLetter() const override { return mLetter; }
  DriveType Type() const override { return mType; }
  std::string Path() const override { return mLetter + ":"; }
  std::string ShareName() const override {
    return mType == DriveType::Network ? ShareOf(Path()) : std::string();
  }
  bool IsReady() const override {
    try {
      mMedium->Volume();
      mMedium->Space();
      return true;
    } catch (const FileSystemError&) {
      return false;
    }
  }

  std::optional<DriveSpace> Space() const override { return mMedium->Space(); }
  std::string FileSystem() const override { return mMedium->Volume().FileSystem; }
  std::string RootFolder() const override {
    mMedium->Volume();
    return RootPath();
  }
  std::optional<std::int32_t> SerialNumber() const override { return mMedium->Volume().SerialNumber; }
  std::string VolumeName() const override { return mMedium->Volume().VolumeName; }

 private:
  std::string RootPath() const { return mLetter + ":\\"; }

  const std::string mLetter;
  const DriveType mType;
  std::unique_ptr<Medium> mMedium;
};

}  // namespace

DriveCollection Drives() {
  win32::ForbidPrompts();
  const auto deadline = std::chrono::steady_clock::now() + Patience;
  const DWORD letters = GetLogicalDrives();
  DriveCollection drives;
  for (int i = 0; i < 26; ++i)
    if (letters >> i & 1)
      drives.push_back(std::make_unique<WindowsDrive>(static_cast<char>('A' + i), deadline));
  return drives;
}

}  // namespace brackwell
