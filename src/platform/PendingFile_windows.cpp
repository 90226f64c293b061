#include "platform/PendingFile_windows.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <new>
#include <vector>

#include "platform/Paths.h"

namespace brackwell::win32 {
namespace {

Handle OpenHidden(const std::wstring& nativePath, DWORD disposition) {
  return Handle(CreateFileW(nativePath.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE | WRITE_DAC, 0, nullptr,
                            disposition, FILE_ATTRIBUTE_HIDDEN, nullptr));
}

struct Copying {
  const Tick& OnPiece;
  std::exception_ptr Error;
};

DWORD CALLBACK CopyGoesOn(LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD, HANDLE,
                          HANDLE, void* copying) {
  auto& [onPiece, error] = *static_cast<Copying*>(copying);
  try {
    if (onPiece) onPiece();
    return PROGRESS_CONTINUE;
  } catch (...) {
    error = std::current_exception();  // which must not pass through the system
    return PROGRESS_CANCEL;
  }
}

/// What looks for viruses looks into a new file first.
Handle OpenCopied(const std::wstring& nativePath) {
  constexpr int Patience = 50;
  for (int attempt = 0;; ++attempt) {
    Handle file = OpenHidden(nativePath, OPEN_EXISTING);
    if (file.IsOpen() || GetLastError() != ERROR_SHARING_VIOLATION || attempt == Patience) return file;
    Sleep(20);
  }
}

/// A copy of `model`: nothing else but the system's own copying knows all that a file has.
Handle CreateCopy(const std::wstring& nativePath, const std::string& model, const Tick& tick) {
  Copying copying{tick, {}};
  const bool copied = CopyFileExW(NativePath(model).c_str(), nativePath.c_str(), CopyGoesOn, &copying,
                                  nullptr, COPY_FILE_FAIL_IF_EXISTS);
  if (copying.Error) std::rethrow_exception(copying.Error);
  if (!copied) return Handle();
  SetFileAttributesW(nativePath.c_str(), FILE_ATTRIBUTE_HIDDEN);  // not read-only, whatever the model is
  Handle file = OpenCopied(nativePath);
  if (file.IsOpen()) return file;
  const DWORD error = GetLastError();
  DeleteFileW(nativePath.c_str());
  SetLastError(error);
  return Handle();
}

}  // namespace

/// The same names for the same target, so that the next writer finds what a power cut left; short, since the
/// target's own name may already be as long as names can be.
std::string NeighbourPath(const std::string& path, int number) {
  const std::string_view name = FileName(path);
  char neighbour[48];
  std::snprintf(neighbour, sizeof neighbour, ".brackwell-%016zx-%d.tmp", std::hash<std::string_view>{}(name),
                number);
  return JoinPath(ParentPath(path), neighbour);
}

PendingFile::PendingFile(const std::string& path) : mPath(path) {
  Open([](const std::wstring& neighbour) { return OpenHidden(neighbour, CREATE_NEW); });
}

PendingFile::PendingFile(const std::string& path, const std::string& model, const Tick& tick) : mPath(path) {
  Open([&](const std::wstring& neighbour) { return CreateCopy(neighbour, model, tick); });
}

void PendingFile::Open(const Create& create) {
  mProperties.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  mFile = CreateNeighbour(create);
  if (!SetRemovedOnClose(true)) Raise(GetLastError(), mPath);
}

Handle PendingFile::CreateNeighbour(const Create& create) const {
  DWORD error = ERROR_SUCCESS;
  for (int number = 0; number < NeighbourNumbers; ++number) {
    const std::wstring neighbour = NativePath(NeighbourPath(mPath, number));
    Handle file = create(neighbour);
    // What a power cut left can be deleted, what is being written cannot.
    if (!file.IsOpen() && GetLastError() == ERROR_FILE_EXISTS && DeleteFileW(neighbour.c_str()))
      file = create(neighbour);
    if (file.IsOpen()) return file;
    error = GetLastError();
    // A file that goes when it is closed, as those of other writers do, cannot be told from a forbidden one.
    const bool mayBeTaken =
        error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_DELETE_PENDING;
    if (!mayBeTaken) break;
  }
  Raise(error, mPath);
}

void PendingFile::Commit(bool replace) {
  FILE_BASIC_INFO properties = mProperties;
  const bool placed =
      SetRemovedOnClose(false) &&
      SetFileInformationByHandle(mFile.Get(), FileBasicInfo, &properties, sizeof properties) &&
      TakePlace(replace);
  if (placed) {
    mFile = Handle();  // from now on it is everybody's
    return;
  }
  const DWORD error = GetLastError();
  FILE_BASIC_INFO removable{};
  removable.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  SetFileInformationByHandle(mFile.Get(), FileBasicInfo, &removable, sizeof removable);
  SetRemovedOnClose(true);
  RaiseForName(error, mPath);
}

bool PendingFile::SetRemovedOnClose(bool removed) {
  FILE_DISPOSITION_INFO disposition{};
  disposition.DeleteFile = removed;
  return SetFileInformationByHandle(mFile.Get(), FileDispositionInfo, &disposition, sizeof disposition);
}

/// By handle, so that no other program can get hold of the file in between.
bool PendingFile::TakePlace(bool replace) {
  const std::wstring target = NativePath(mPath);
  const std::size_t nameBytes = target.size() * sizeof(wchar_t);
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + nameBytes);
  auto* rename = new (buffer.data()) FILE_RENAME_INFO{};
  rename->ReplaceIfExists = replace;
  rename->FileNameLength = static_cast<DWORD>(nameBytes);
  std::memcpy(rename->FileName, target.data(), nameBytes);
  return SetFileInformationByHandle(mFile.Get(), FileRenameInfo, rename, static_cast<DWORD>(buffer.size()));
}

bool HasOtherStreams(const std::string& path) {
  WIN32_FIND_STREAM_DATA stream;
  const HANDLE search = FindFirstStreamW(NativePath(path).c_str(), FindStreamInfoStandard, &stream, 0);
  if (search == INVALID_HANDLE_VALUE) return false;
  const bool another = FindNextStreamW(search, &stream);
  FindClose(search);
  return another;
}

}  // namespace brackwell::win32
