#include "platform/FileSystemObject.h"

#include <unordered_map>
#include <utility>

#include "platform/FileCopy_windows.h"
#include "platform/FolderListing_windows.h"
#include "platform/PendingFile_windows.h"
#include "platform/Roots_windows.h"
#include "platform/TextFile_windows.h"
#include "platform/Win32.h"
// After the one above, which it needs.
#include <objbase.h>

namespace brackwell {
namespace {

using win32::Found;
using win32::Handle;
using win32::NativePath;
using win32::PendingFile;
using win32::Raise;

class FileWriter final : public TextWriter {
 public:
  FileWriter(const std::string& path, bool overwrite) : mPath(path), mOverwrite(overwrite), mFile(path) {}

  void Write(std::string_view bytes) override { win32::WriteAll(mFile.File(), bytes, mPath); }

  void Close() override { mFile.Commit(mOverwrite); }

 private:
  const std::string mPath;
  const bool mOverwrite;
  PendingFile mFile;
};

/// For as long as one lives, this thread may ask the shell.
class ShellUse {
 public:
  ShellUse()
      : mBegan(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}
  ~ShellUse() {
    if (mBegan) CoUninitialize();
  }
  ShellUse(const ShellUse&) = delete;
  ShellUse& operator=(const ShellUse&) = delete;

 private:
  const bool mBegan;
};

class WindowsFileSystem final : public FileSystemObject {
 public:
  explicit WindowsFileSystem(const std::vector<std::string>& roots = {}) : mRoots(roots) {}

  std::unique_ptr<FileSystemObject> Within(const std::vector<std::string>& roots) const override {
    return std::make_unique<WindowsFileSystem>(roots);
  }

  bool FileExists(const std::string& path) const override {
    const auto found = Find(path);
    return found && !found->IsFolder();
  }

  bool FolderExists(const std::string& path) const override {
    const auto found = Find(path);
    return found && found->IsFolder();
  }

  ItemProperties GetFile(const std::string& path) const override {
    const auto way = mRoots.HoldWayTo(path);
    const auto found = win32::FindItem(path);
    if (!found || found->IsFolder()) throw FileSystemError(FileError::FileNotFound, path);
    return win32::PropertiesOf(*found, path);
  }

  std::unique_ptr<Folder> GetFolder(const std::string& path, const Tick& tick) const override {
    return win32::OpenListing(path, tick, mRoots.HoldFolder(path));
  }

  bool LiesWithin(const std::string& folder, const std::string& ancestor) const override {
    const FileIdentity wanted = IdentityOf(ancestor);
    std::string at = win32::FinalPath(OpenFolder(folder));
    if (at.empty()) at = win32::UsualPath(NativePath(folder));  // some file systems cannot tell
    for (; !at.empty(); at = ParentPath(at))
      if (IdentityOf(at) == wanted) return true;
    return false;
  }

  std::string Drive(const std::string& path) const override {
    std::string drive = win32::UsualPath(NativePath(path));
    for (std::string parent(ParentPath(drive)); !parent.empty(); parent = ParentPath(drive)) drive = parent;
    if (EndsWithSeparator(drive)) drive.pop_back();
    return drive;
  }

  std::string ShortName(const std::string& path) const override {
    return std::string(FileName(ShortPath(path)));
  }

  std::string ShortPath(const std::string& path) const override {
    const std::wstring longPath = NativePath(path);
    const std::wstring shortPath = win32::FetchText(
        [&](wchar_t* text, DWORD size) { return GetShortPathNameW(longPath.c_str(), text, size); });
    return shortPath.empty() ? std::string(WithoutSeparator(path)) : win32::UsualPath(shortPath);
  }

  std::string Type(const std::string& path) const override {
    const auto found = win32::FindItem(path);
    // A drive is known by its root alone.
    const std::string_view name = ParentPath(path).empty() ? WithoutSeparator(path) : FileName(path);
    return TypeName(name, found ? found->Information.dwFileAttributes : FILE_ATTRIBUTE_NORMAL);
  }

  /// The shell goes by the extension alone, and takes its time. Folders are asked for by another thread than
  /// files.
  std::string Type(std::string_view name, ItemKind kind) const override {
    if (kind == ItemKind::Folder) {
      static const std::string folder = TypeName("folder", FILE_ATTRIBUTE_DIRECTORY);
      return EndsWithSeparator(name) ? TypeName(name, FILE_ATTRIBUTE_DIRECTORY) : folder;
    }
    const std::size_t dot = name.rfind('.');
    const std::string extension(dot == std::string_view::npos ? std::string_view() : name.substr(dot));
    const auto [known, isNew] = mTypes.try_emplace(extension);
    if (isNew) known->second = TypeName(name, FILE_ATTRIBUTE_NORMAL);
    return known->second;
  }

  void CopyFile(const std::string& source, const std::string& target, bool overwrite,
                const Tick& tick) override {
    const auto from = mRoots.HoldWayTo(source);
    const auto to = mRoots.HoldWayTo(target);
    win32::CopyOneFile(source, target, overwrite, tick);
  }

  void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick) override {
    const auto from = mRoots.HoldWayTo(source);
    const auto to = mRoots.HoldWayTo(target);
    win32::CopyAsNewFile(source, target, tick);
  }

  void CreateFolder(const std::string& path) override {
    const auto way = mRoots.HoldWayTo(path);
    if (!CreateDirectoryW(NativePath(path).c_str(), nullptr)) win32::RaiseForName(GetLastError(), path);
  }

  void CopyFolderProperties(const std::string& source, const std::string& target) override {
    const auto sourceWay = mRoots.HoldFolder(source);
    const auto targetWay = mRoots.HoldFolder(target);
    const Handle from = OpenChosen(source, FILE_READ_ATTRIBUTES);
    if (!from.IsOpen()) Raise(GetLastError(), source);
    FILE_BASIC_INFO properties{};
    if (!GetFileInformationByHandleEx(from.Get(), FileBasicInfo, &properties, sizeof properties))
      Raise(GetLastError(), source);
    properties.CreationTime.QuadPart = 0;
    properties.ChangeTime.QuadPart = 0;
    properties.FileAttributes &= FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                 FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_ARCHIVE;
    const Handle to = OpenChosen(target, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES);
    // Kept where the file system can keep them; the copy itself is done.
    if (to.IsOpen()) SetFileInformationByHandle(to.Get(), FileBasicInfo, &properties, sizeof properties);
  }

  std::unique_ptr<TextReader> OpenTextFile(const std::string& path) const override {
    const auto way = mRoots.HoldWayTo(path);
    const auto found = mRoots.IsBelow(path) ? win32::FindItem(path) : std::nullopt;
    if (found && found->IsLink) throw FileSystemError(FileError::PathFileAccess, path);
    return win32::OpenText(path);
  }

  std::unique_ptr<TextWriter> CreateTextFile(const std::string& path, bool overwrite) override {
    const auto way = mRoots.HoldWayTo(path);
    Found existing;
    if (win32::LookUp(path, existing) == ERROR_SUCCESS) {
      if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, path);
      if (existing.IsFolder() || (existing.Information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0)
        throw FileSystemError(FileError::PermissionDenied, path);
    }
    return std::make_unique<FileWriter>(path, overwrite);
  }

 private:
  static std::string TypeName(std::string_view name, DWORD attributes) {
    const ShellUse use;
    SHFILEINFOW information{};
    SHGetFileInfoW(win32::Widen(name).c_str(), attributes, &information, sizeof information,
                   SHGFI_USEFILEATTRIBUTES | SHGFI_TYPENAME);
    return win32::Narrow(information.szTypeName);
  }

  static Handle OpenFolder(const std::string& path) {
    Handle folder = win32::Open(NativePath(path), 0, FILE_FLAG_BACKUP_SEMANTICS);
    if (!folder.IsOpen()) Raise(GetLastError(), path);
    return folder;
  }

  /// A folder that a link leads to only where it was chosen as such.
  Handle OpenChosen(const std::string& path, DWORD access) const {
    const bool isBelow = mRoots.IsBelow(path);
    Handle folder = win32::Open(NativePath(path), access,
                                FILE_FLAG_BACKUP_SEMANTICS | (isBelow ? FILE_FLAG_OPEN_REPARSE_POINT : 0));
    if (isBelow && folder.IsOpen() && !win32::IsFolderItself(folder))
      throw FileSystemError(FileError::PathNotFound, path);
    return folder;
  }

  static FileIdentity IdentityOf(const std::string& path) {
    const Handle folder = OpenFolder(path);
    BY_HANDLE_FILE_INFORMATION information;
    if (!GetFileInformationByHandle(folder.Get(), &information)) Raise(GetLastError(), path);
    return {information.dwVolumeSerialNumber,
            std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
  }

  std::optional<Found> Find(const std::string& path) const try {
    const auto way = mRoots.HoldWayTo(path);
    return mRoots.IsBelow(path) ? win32::FindItem(path) : win32::FindFollowing(path);
  } catch (const FileSystemError&) {
    return std::nullopt;
  }

  const win32::Roots mRoots;
  mutable std::unordered_map<std::string, std::string> mTypes;  // by extension
};

}  // namespace

std::unique_ptr<FileSystemObject> CreateFileSystemObject() {
  win32::ForbidPrompts();
  return std::make_unique<WindowsFileSystem>();
}

}  // namespace brackwell
