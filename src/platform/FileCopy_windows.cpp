#include "platform/FileCopy_windows.h"

#include <cstddef>
#include <memory>
#include <optional>

#include "platform/FolderListing_windows.h"
#include "platform/PendingFile_windows.h"
#include "platform/Win32.h"

namespace brackwell::win32 {
namespace {

constexpr DWORD BufferSize = 256 << 10;  // bytes between two ticks

void CallTick(const Tick& tick) {
  if (tick) tick();
}

struct Source {
  Handle File;
  BY_HANDLE_FILE_INFORMATION Information{};
};

Source OpenSource(const std::string& path) {
  if (GetItem(path, FileError::FileNotFound).IsFolder()) throw FileSystemError(FileError::FileNotFound, path);
  Source source;
  source.File = Open(NativePath(path), GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
  if (!source.File.IsOpen()) Raise(GetLastError(), path, FileError::FileNotFound);
  if (GetFileType(source.File.Get()) != FILE_TYPE_DISK)
    throw FileSystemError(FileError::PathFileAccess, path);
  if (!GetFileInformationByHandle(source.File.Get(), &source.Information)) Raise(GetLastError(), path);
  return source;
}

/// Where the copy goes, links followed, and what is there now.
struct Target {
  std::string Path;
  std::optional<Found> Existing;
};

std::string ResolveLink(const std::string& path) {
  const Handle link = Open(NativePath(path), 0, FILE_FLAG_BACKUP_SEMANTICS);
  std::string resolved = link.IsOpen() ? FinalPath(link) : std::string();
  if (resolved.empty()) throw FileSystemError(FileError::PathFileAccess, path);
  return resolved;
}

Target FindTarget(const std::string& path) {
  Found found;
  if (const DWORD error = LookUp(path, found)) {
    if (error != ERROR_FILE_NOT_FOUND) Raise(error, path);
    return {path, std::nullopt};
  }
  if (!found.IsLink) return {path, found};
  return FindTarget(ResolveLink(path));
}

bool IsSameFile(const Source& source, const std::string& path) {
  const Handle file = Open(NativePath(path), 0);
  BY_HANDLE_FILE_INFORMATION information;
  return file.IsOpen() && GetFileInformationByHandle(file.Get(), &information) &&
         information.dwVolumeSerialNumber == source.Information.dwVolumeSerialNumber &&
         information.nFileIndexHigh == source.Information.nFileIndexHigh &&
         information.nFileIndexLow == source.Information.nFileIndexLow;
}

/// Asked for before a long copy is made, not after it.
void CheckReplaceable(const Target& target, const Source& source, bool overwrite) {
  if (!target.Existing) return;
  const DWORD attributes = target.Existing->Information.dwFileAttributes;
  if (target.Existing->IsFolder()) throw FileSystemError(FileError::PermissionDenied, target.Path);
  if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, target.Path);
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0 || IsSameFile(source, target.Path))
    throw FileSystemError(FileError::PermissionDenied, target.Path);
}

void CopyContent(const Handle& from, const std::string& sourcePath, const Handle& to,
                 const std::string& targetPath, const Tick& tick) {
  const auto buffer = std::make_unique<std::byte[]>(BufferSize);
  for (;;) {
    DWORD length = 0;
    if (!ReadFile(from.Get(), buffer.get(), BufferSize, &length, nullptr)) Raise(GetLastError(), sourcePath);
    if (length == 0) return;
    DWORD written = 0;
    if (!WriteFile(to.Get(), buffer.get(), length, &written, nullptr)) Raise(GetLastError(), targetPath);
    if (written != length) throw FileSystemError(FileError::DiskFull, targetPath);
    CallTick(tick);
  }
}

/// The date of last change and the attributes that belong to the file rather than to how its disk keeps it.
FILE_BASIC_INFO PropertiesFor(const BY_HANDLE_FILE_INFORMATION& source) {
  constexpr DWORD Copied = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  FILE_BASIC_INFO properties{};
  properties.LastWriteTime.LowPart = source.ftLastWriteTime.dwLowDateTime;
  properties.LastWriteTime.HighPart = static_cast<LONG>(source.ftLastWriteTime.dwHighDateTime);
  properties.FileAttributes = source.dwFileAttributes & Copied;
  if (properties.FileAttributes == 0) properties.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  return properties;
}

/// Where all that the source has cannot be copied, the content is what counts.
std::unique_ptr<PendingFile> CopyWhole(const Source& source, const std::string& sourcePath,
                                       const std::string& targetPath, const Tick& tick) {
  if (HasOtherStreams(sourcePath)) {
    try {
      return std::make_unique<PendingFile>(targetPath, sourcePath, tick);
    } catch (const FileSystemError& error) {
      if (error.Kind() == FileError::DiskFull) throw;
    }
  }
  auto pending = std::make_unique<PendingFile>(targetPath);
  CallTick(tick);
  CopyContent(source.File, sourcePath, pending->File(), targetPath, tick);
  return pending;
}

}  // namespace

void CopyOneFile(const std::string& sourcePath, const std::string& targetPath, bool overwrite,
                 const Tick& tick) {
  const Source source = OpenSource(sourcePath);
  const Target target = FindTarget(targetPath);
  CheckReplaceable(target, source, overwrite);
  const auto pending = CopyWhole(source, sourcePath, target.Path, tick);
  pending->SetProperties(PropertiesFor(source.Information));
  pending->Commit(overwrite);
}

}  // namespace brackwell::win32
