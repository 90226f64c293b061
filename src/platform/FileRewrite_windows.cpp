#include "platform/FileRewrite_windows.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "platform/FolderListing_windows.h"
#include "platform/InPlaceCopy_windows.h"
#include "platform/Paths.h"
#include "platform/PendingFile_windows.h"
#include "platform/TempFolder.h"

namespace brackwell::win32 {
namespace {

bool AreEqual(const FILETIME& a, const FILETIME& b) {
  return a.dwLowDateTime == b.dwLowDateTime && a.dwHighDateTime == b.dwHighDateTime;
}

/// The same file, and nobody has written to it in between.
bool IsUnchanged(const BY_HANDLE_FILE_INFORMATION& before, const BY_HANDLE_FILE_INFORMATION& now) {
  return before.dwVolumeSerialNumber == now.dwVolumeSerialNumber &&
         before.nFileIndexHigh == now.nFileIndexHigh && before.nFileIndexLow == now.nFileIndexLow &&
         before.nFileSizeHigh == now.nFileSizeHigh && before.nFileSizeLow == now.nFileSizeLow &&
         AreEqual(before.ftLastWriteTime, now.ftLastWriteTime);
}

FILE_BASIC_INFO PropertiesFor(const BY_HANDLE_FILE_INFORMATION& opened) {
  FILE_BASIC_INFO properties{};
  properties.CreationTime.LowPart = opened.ftCreationTime.dwLowDateTime;
  properties.CreationTime.HighPart = static_cast<LONG>(opened.ftCreationTime.dwHighDateTime);
  properties.FileAttributes = opened.dwFileAttributes;
  return properties;
}

std::uint64_t SizeOf(const BY_HANDLE_FILE_INFORMATION& file) {
  return std::uint64_t{file.nFileSizeHigh} << 32 | file.nFileSizeLow;
}

using Security = std::vector<std::byte>;

/// Nothing where the file system keeps none or it may not be known.
std::optional<Security> SecurityOf(const Handle& file) {
  constexpr SECURITY_INFORMATION Wanted = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  DWORD size = 0;
  GetKernelObjectSecurity(file.Get(), Wanted, nullptr, 0, &size);
  Security security(size);
  if (size == 0 || !GetKernelObjectSecurity(file.Get(), Wanted, security.data(), size, &size))
    return std::nullopt;
  return security;
}

bool HaveSameOwner(Security& a, Security& b) {
  PSID first = nullptr;
  PSID second = nullptr;
  BOOL byDefault = false;
  return GetSecurityDescriptorOwner(a.data(), &first, &byDefault) &&
         GetSecurityDescriptorOwner(b.data(), &second, &byDefault) && first && second &&
         EqualSid(first, second);
}

/// False where the new file cannot be given the owner and the access list of the old.
bool CopySecurity(const Handle& from, const Handle& to) {
  auto wanted = SecurityOf(from);
  auto made = SecurityOf(to);
  if (!wanted || !made) return !wanted && !made;
  if (*wanted == *made) return true;
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (!HaveSameOwner(*wanted, *made) || !GetSecurityDescriptorControl(wanted->data(), &control, &revision))
    return false;
  const SECURITY_INFORMATION inheriting = (control & SE_DACL_PROTECTED) != 0
                                              ? PROTECTED_DACL_SECURITY_INFORMATION
                                              : UNPROTECTED_DACL_SECURITY_INFORMATION;
  return SetKernelObjectSecurity(to.Get(), DACL_SECURITY_INFORMATION | inheriting, wanted->data());
}

/// Empty, with all else that the file has.
std::unique_ptr<PendingFile> MakeBeside(const std::string& path, const Tick& tick) {
  if (!HasOtherStreams(path)) return std::make_unique<PendingFile>(path);
  auto pending = std::make_unique<PendingFile>(path, path, tick);
  if (!SetEndOfFile(pending->File().Get())) Raise(GetLastError(), path);
  return pending;
}

/// Beside the file, or where that folder may not be changed, in the one for temporary files.
std::unique_ptr<PendingFile> MakePending(const std::string& path, const Tick& tick, bool& liesBeside) {
  try {
    liesBeside = true;
    return MakeBeside(path, tick);
  } catch (const FileSystemError& error) {
    if (error.Kind() != FileError::PermissionDenied) throw;
    liesBeside = false;
    return std::make_unique<PendingFile>(JoinPath(GetTempFolder(), FileName(path)));
  }
}

/// Refused while another program has the file open for writing: what that is about to write would get lost.
Handle OpenToWrite(const std::string& path) {
  Handle target(CreateFileW(NativePath(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!target.IsOpen()) Raise(GetLastError(), path);
  return target;
}

class FileRewriter final : public FileRewrite {
 public:
  FileRewriter(std::shared_ptr<Handle> file, const BY_HANDLE_FILE_INFORMATION& opened, std::string path,
               Tick tick)
      : mOld(std::move(file)), mOpened(opened), mPath(std::move(path)), mTick(std::move(tick)) {
    CheckUnchanged(OpenToWrite(mPath));
    mNew = MakePending(mPath, mTick, mLiesBeside);
    mNew->SetProperties(mProperties);
  }

  void Write(std::string_view bytes) override { WriteAll(mNew->File(), bytes, mPath); }

  void Close() override {
    CheckUnchanged(Open(NativePath(mPath), 0));
    OpenToWrite(mPath);
    if (!TryToReplace()) Overwrite();
  }

  const Handle& Content() const override { return mNew->File(); }

  void CloseAsCopy(const LARGE_INTEGER& modified) override {
    mProperties.LastWriteTime = modified;
    mNew->SetProperties(mProperties);
    Close();
  }

 private:
  void CheckUnchanged(const Handle& file) const {
    BY_HANDLE_FILE_INFORMATION now{};
    if (!file.IsOpen() || !GetFileInformationByHandle(file.Get(), &now) || !IsUnchanged(mOpened, now))
      throw FileSystemError(FileError::PathFileAccess, mPath);
  }

  /// False where the new content has to go into the very file that is there: it has other names, belongs to
  /// somebody else, is open elsewhere, or lies in a folder that may not be changed.
  bool TryToReplace() {
    if (!mLiesBeside || mOpened.nNumberOfLinks > 1) return false;
    if (!CopySecurity(*mOld, mNew->File())) return false;
    *mOld = Handle();
    try {
      mNew->Commit(true);
      return true;
    } catch (const FileSystemError& error) {
      if (error.Kind() != FileError::PermissionDenied) throw;
      return false;
    }
  }

  void Overwrite() {
    const Handle target = OpenToWrite(mPath);
    CheckUnchanged(target);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(mNew->File().Get(), &size)) Raise(GetLastError(), mPath);
    const auto newSize = static_cast<std::uint64_t>(size.QuadPart);
    std::uint64_t done = 0;
    // The old content goes behind the new.
    DWORD error = CopyBytes(target, 0, mNew->File(), newSize, SizeOf(mOpened), done, mTick);
    if (error == ERROR_SUCCESS) error = CopyInPlace(mNew->File(), newSize, target, SizeOf(mOpened), mTick);
    if (error == ERROR_SUCCESS && !SetModified(target)) error = GetLastError();
    if (error != ERROR_SUCCESS) Raise(error, mPath);
  }

  bool SetModified(const Handle& file) const {
    FILE_BASIC_INFO times{};
    times.LastWriteTime = mProperties.LastWriteTime;  // 0 leaves it as the writing has set it
    return SetFileInformationByHandle(file.Get(), FileBasicInfo, &times, sizeof times);
  }

  const std::shared_ptr<Handle> mOld;
  const BY_HANDLE_FILE_INFORMATION mOpened;
  const std::string mPath;
  const Tick mTick;
  FILE_BASIC_INFO mProperties = PropertiesFor(mOpened);
  std::unique_ptr<PendingFile> mNew;
  bool mLiesBeside = false;  // else in the folder for temporary files
};

}  // namespace

std::unique_ptr<FileRewrite> RewriteFile(std::shared_ptr<Handle> file,
                                         const BY_HANDLE_FILE_INFORMATION& opened, const std::string& path,
                                         Tick tick) {
  if ((opened.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0)
    throw FileSystemError(FileError::PermissionDenied, path);
  const auto found = FindItem(path);
  if (found && found->IsLink) throw FileSystemError(FileError::PathFileAccess, path);
  return std::make_unique<FileRewriter>(std::move(file), opened, path, std::move(tick));
}

}  // namespace brackwell::win32
