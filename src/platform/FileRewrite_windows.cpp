#include "platform/FileRewrite_windows.h"

#include <utility>

#include "platform/PendingFile_windows.h"

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

class FileRewriter final : public TextWriter {
 public:
  FileRewriter(std::shared_ptr<Handle> file, const BY_HANDLE_FILE_INFORMATION& opened,
               const std::string& path)
      : mOld(std::move(file)), mOpened(opened), mPath(path), mNew(path) {
    mNew.SetProperties(PropertiesFor(opened));
  }

  void Write(std::string_view bytes) override { WriteAll(mNew.File(), bytes, mPath); }

  void Close() override {
    CheckUnchanged();
    *mOld = Handle();
    mNew.Commit(true);
  }

 private:
  void CheckUnchanged() const {
    const Handle file = Open(NativePath(mPath), 0);
    BY_HANDLE_FILE_INFORMATION now{};
    if (!file.IsOpen() || !GetFileInformationByHandle(file.Get(), &now) || !IsUnchanged(mOpened, now))
      throw FileSystemError(FileError::PathFileAccess, mPath);
  }

  const std::shared_ptr<Handle> mOld;
  const BY_HANDLE_FILE_INFORMATION mOpened;
  const std::string mPath;
  PendingFile mNew;
};

}  // namespace

std::unique_ptr<TextWriter> RewriteFile(std::shared_ptr<Handle> file,
                                        const BY_HANDLE_FILE_INFORMATION& opened, const std::string& path) {
  if ((opened.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0)
    throw FileSystemError(FileError::PermissionDenied, path);
  return std::make_unique<FileRewriter>(std::move(file), opened, path);
}

}  // namespace brackwell::win32
