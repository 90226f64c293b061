#include "platform/FileCopy_windows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/FileRewrite_windows.h"
#include "platform/FolderListing_windows.h"
#include "platform/PendingFile_windows.h"
#include "platform/SetAside_windows.h"
#include "platform/Win32.h"

namespace brackwell::win32 {
namespace {

constexpr DWORD BufferSize = 256 << 10;  // bytes between two ticks

void CallTick(const Tick& tick) {
  if (tick) tick();
}

/// What tells whether a file is the same and nobody has written to it or changed its properties in between.
struct Look {
  BY_HANDLE_FILE_INFORMATION Information{};
  FILE_BASIC_INFO Dates{};

  bool Take(const Handle& file) {
    return file.IsOpen() && GetFileInformationByHandle(file.Get(), &Information) &&
           GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &Dates, sizeof Dates);
  }
  std::uint64_t Size() const {
    return std::uint64_t{Information.nFileSizeHigh} << 32 | Information.nFileSizeLow;
  }
  bool IsOfSameFile(const Look& other) const {
    return Information.dwVolumeSerialNumber == other.Information.dwVolumeSerialNumber &&
           Information.nFileIndexHigh == other.Information.nFileIndexHigh &&
           Information.nFileIndexLow == other.Information.nFileIndexLow;
  }
  bool IsUnchanged(const Look& now) const {
    return IsOfSameFile(now) && Size() == now.Size() &&
           Dates.LastWriteTime.QuadPart == now.Dates.LastWriteTime.QuadPart &&
           Dates.ChangeTime.QuadPart == now.Dates.ChangeTime.QuadPart;
  }
};

struct Source {
  Handle File;
  Look Opened;
};

/// Without letting others write, where nobody does already: then it cannot change while it is copied. Where
/// another program has it open for writing, Windows tells what has become of it by size and dates alone. New
/// bytes in the place of old ones may get their date only when that program closes the file, those of a
/// mapped file even later, so such a change can go unnoticed.
Handle OpenToCopy(const std::string& path) {
  const std::wstring nativePath = NativePath(path);
  constexpr DWORD Reading = FILE_SHARE_READ | FILE_SHARE_DELETE;
  Handle unwritten(CreateFileW(nativePath.c_str(), GENERIC_READ, Reading, nullptr, OPEN_EXISTING,
                               FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (unwritten.IsOpen() || GetLastError() != ERROR_SHARING_VIOLATION) return unwritten;
  return Open(nativePath, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
}

Source OpenSource(const std::string& path) {
  Source source;
  source.File = OpenToCopy(path);
  if (!source.File.IsOpen()) Raise(GetLastError(), path, FileError::FileNotFound);
  if (GetFileType(source.File.Get()) != FILE_TYPE_DISK)
    throw FileSystemError(FileError::PathFileAccess, path);
  if (!source.Opened.Take(source.File)) Raise(GetLastError(), path);
  return source;
}

/// By name, which may lead to another file by now.
bool HasStayedTheSame(const Source& source, const std::string& path) {
  Look now;
  return now.Take(Open(NativePath(path), 0)) && source.Opened.IsUnchanged(now);
}

std::optional<Found> FindTarget(const std::string& path) {
  Found found;
  const DWORD error = LookUp(path, found);
  if (error == ERROR_SUCCESS) return found;
  if (error != ERROR_FILE_NOT_FOUND) RaiseForName(error, path);
  return std::nullopt;
}

/// Asked for before a long copy is made, not after it.
void CheckTarget(const std::optional<Found>& existing, const std::string& path, bool overwrite) {
  if (!existing) return;
  if (existing->IsFolder()) throw FileSystemError(FileError::PermissionDenied, path);
  if (!overwrite) throw FileSystemError(FileError::FileAlreadyExists, path);
  const bool isReadOnly = (existing->Information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (!existing->IsLink && isReadOnly) throw FileSystemError(FileError::PermissionDenied, path);
}

/// As far as the source went when it was opened: one that others add to all the time has an end as well.
void CopyContent(const Source& from, const std::string& sourcePath, const Handle& to,
                 const std::string& targetPath, const Tick& tick) {
  const auto buffer = std::make_unique<std::byte[]>(BufferSize);
  for (std::uint64_t left = from.Opened.Size(); left > 0;) {
    const auto wanted = static_cast<DWORD>(std::min<std::uint64_t>(left, BufferSize));
    DWORD length = 0;
    if (!ReadFile(from.File.Get(), buffer.get(), wanted, &length, nullptr)) Raise(GetLastError(), sourcePath);
    if (length == 0) return;
    left -= length;
    DWORD written = 0;
    if (!WriteFile(to.Get(), buffer.get(), length, &written, nullptr)) Raise(GetLastError(), targetPath);
    if (written != length) throw FileSystemError(FileError::DiskFull, targetPath);
    CallTick(tick);
  }
}

/// The date of last change and the attributes that belong to the file rather than to how its disk keeps it.
FILE_BASIC_INFO PropertiesFor(const FILE_BASIC_INFO& source) {
  constexpr DWORD Copied = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  FILE_BASIC_INFO properties{};
  properties.LastWriteTime = source.LastWriteTime;
  properties.FileAttributes = source.FileAttributes & Copied;
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
  CopyContent(source, sourcePath, pending->File(), targetPath, tick);
  return pending;
}

void Place(PendingFile& made, const std::string& path, const std::optional<Found>& existing) {
  if (!existing || !IsMadeAsFolder(*existing)) return made.Commit(existing.has_value());
  SetAside old(path, *existing);
  made.Commit(false);
  old.Remove();
}

/// False where the source has changed meanwhile; then nothing else has happened.
bool CopyToNewFile(const std::string& sourcePath, const std::string& targetPath,
                   const std::optional<Found>& existing, const Tick& tick) {
  const Source source = OpenSource(sourcePath);
  Look target;
  if (existing && !existing->IsLink && target.Take(Open(NativePath(targetPath), 0)) &&
      source.Opened.IsOfSameFile(target))
    throw FileSystemError(FileError::PermissionDenied, targetPath);
  const auto pending = CopyWhole(source, sourcePath, targetPath, tick);
  if (!HasStayedTheSame(source, sourcePath)) return false;
  pending->SetProperties(PropertiesFor(source.Opened.Dates));
  Place(*pending, targetPath, existing);
  return true;
}

/// For what must not be left half done: whoever wants the run to end says so again with the next tick.
Tick WithoutErrors(const Tick& tick) {
  return [&tick] {
    try {
      CallTick(tick);
    } catch (...) {
    }
  };
}

/// The same for a target that is a file already.
bool CopyOnto(const std::string& sourcePath, const std::string& targetPath, const Tick& tick) {
  const Source source = OpenSource(sourcePath);
  auto old = std::make_shared<Handle>(Open(NativePath(targetPath), GENERIC_READ));
  if (!old->IsOpen()) Raise(GetLastError(), targetPath);
  Look target;
  if (!target.Take(*old)) Raise(GetLastError(), targetPath);
  if (target.IsOfSameFile(source.Opened)) throw FileSystemError(FileError::PermissionDenied, targetPath);
  const auto rewrite = RewriteFile(old, target.Information, targetPath, WithoutErrors(tick));
  CallTick(tick);
  CopyContent(source, sourcePath, rewrite->Content(), targetPath, tick);
  if (!HasStayedTheSame(source, sourcePath)) return false;
  rewrite->CloseAsCopy(source.Opened.Dates.LastWriteTime);
  return true;
}

/// Where links cannot be kept, the system may make an empty folder or copy the content in place of one.
void MakeLinkLike(const Found& link, const std::string& from, const std::string& to,
                  const std::string& shownPath) {
  const std::wstring source = NativePath(from);
  const std::wstring target = NativePath(to);
  const bool made = IsMadeAsFolder(link)
                        ? CreateDirectoryExW(source.c_str(), target.c_str(), nullptr)
                        : CopyFileExW(source.c_str(), target.c_str(), nullptr, nullptr, nullptr,
                                      COPY_FILE_COPY_SYMLINK | COPY_FILE_FAIL_IF_EXISTS);
  if (!made) RaiseForName(GetLastError(), shownPath);
  Found copy;
  if (LookUp(to, copy) == ERROR_SUCCESS && !copy.IsLink) {
    Remove(to, copy);
    throw FileSystemError(FileError::PathFileAccess, shownPath);
  }
  const Handle opened =
      Open(target, FILE_WRITE_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT);
  FILE_BASIC_INFO times{};
  times.LastWriteTime.LowPart = link.Information.ftLastWriteTime.dwLowDateTime;
  times.LastWriteTime.HighPart = static_cast<LONG>(link.Information.ftLastWriteTime.dwHighDateTime);
  // What cannot be kept there is no reason to refuse the link.
  if (opened.IsOpen()) SetFileInformationByHandle(opened.Get(), FileBasicInfo, &times, sizeof times);
}

void TakePlace(const std::string& neighbour, const std::string& target, const Found& existing) {
  const std::wstring from = NativePath(neighbour);
  const std::wstring to = NativePath(target);
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING)) return;
  // So the system says where one of the two is made as a folder.
  if (GetLastError() != ERROR_ACCESS_DENIED) Raise(GetLastError(), target);
  SetAside old(target, existing);
  if (!MoveFileExW(from.c_str(), to.c_str(), 0)) Raise(GetLastError(), target);
  old.Remove();
}

void CopyLink(const Found& link, const std::string& source, const std::string& target,
              const std::optional<Found>& existing) {
  if (!existing) return MakeLinkLike(link, source, target, target);
  const std::string neighbour = NeighbourPath(target, 0);
  Found leftover;
  if (LookUp(neighbour, leftover) == ERROR_SUCCESS && leftover.IsLink) Remove(neighbour, leftover);
  MakeLinkLike(link, source, neighbour, target);
  try {
    TakePlace(neighbour, target, *existing);
  } catch (const FileSystemError&) {
    Remove(neighbour, link);
    throw;
  }
}

bool LeadToTheSameFile(const std::string& a, const std::string& b) {
  Look first;
  Look second;
  return first.Take(Open(NativePath(a), 0)) && second.Take(Open(NativePath(b), 0)) &&
         first.IsOfSameFile(second);
}

bool TryToCopy(const std::string& source, const std::string& target, bool overwrite, const Tick& tick) {
  const Found found = GetItem(source, FileError::FileNotFound);
  if (found.IsFolder()) throw FileSystemError(FileError::FileNotFound, source);
  const auto existing = FindTarget(target);
  CheckTarget(existing, target, overwrite);
  if (found.IsLink) {
    // In the place of what it leads to it would lead to itself, and the content be gone.
    if (existing && !existing->IsLink && LeadToTheSameFile(source, target))
      throw FileSystemError(FileError::PermissionDenied, target);
    CopyLink(found, source, target, existing);
    return true;
  }
  if (existing && !existing->IsLink) return CopyOnto(source, target, tick);
  return CopyToNewFile(source, target, existing, tick);
}

/// Calls `copy` until it has found its source unchanged.
template <typename Copy>
void CopyUnchanged(const std::string& source, Copy copy) {
  constexpr int Attempts = 2;
  for (int attempt = 0; attempt < Attempts; ++attempt)
    if (copy()) return;
  throw KeepsChanging(source);
}

}  // namespace

void CopyOneFile(const std::string& source, const std::string& target, bool overwrite, const Tick& tick) {
  CopyUnchanged(source, [&] { return TryToCopy(source, target, overwrite, tick); });
}

void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick) {
  CopyUnchanged(source, [&] {
    const auto found = FindFollowing(source);
    if (!found || found->IsLink || found->IsFolder()) throw FileSystemError(FileError::FileNotFound, source);
    const auto existing = FindTarget(target);
    if (existing && existing->IsLink) throw FileSystemError(FileError::PathFileAccess, target);
    CheckTarget(existing, target, true);
    return CopyToNewFile(source, target, existing, tick);
  });
}

}  // namespace brackwell::win32
