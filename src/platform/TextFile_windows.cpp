#include "platform/TextFile_windows.h"

#include <algorithm>
#include <utility>

#include "platform/FileRewrite_windows.h"
#include "platform/Win32.h"

namespace brackwell::win32 {
namespace {

class FileReader final : public TextReader {
 public:
  FileReader(Handle file, const BY_HANDLE_FILE_INFORMATION& opened, std::string path)
      : mFile(std::make_shared<Handle>(std::move(file))), mOpened(opened), mPath(std::move(path)) {}

  std::uint64_t Size() const override {
    return std::uint64_t{mOpened.nFileSizeHigh} << 32 | mOpened.nFileSizeLow;
  }

  std::optional<FileIdentity> SharedIdentity() const override {
    if (mOpened.nNumberOfLinks < 2) return std::nullopt;
    return FileIdentity{mOpened.dwVolumeSerialNumber,
                        std::uint64_t{mOpened.nFileIndexHigh} << 32 | mOpened.nFileIndexLow};
  }

  std::size_t Read(char* buffer, std::size_t size) override {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, Size() - mAt));
    std::size_t done = 0;
    while (done < wanted) {
      const auto step = static_cast<DWORD>(std::min<std::size_t>(wanted - done, 1 << 30));
      DWORD length = 0;
      if (!ReadFile(mFile->Get(), buffer + done, step, &length, nullptr)) Raise(GetLastError(), mPath);
      if (length == 0) break;
      done += length;
    }
    mAt += done;
    return done;
  }

  std::string ReadAll() override {
    std::string content(static_cast<std::size_t>(Size() - mAt), '\0');
    content.resize(Read(content.data(), content.size()));
    return content;
  }

  void Rewind() override {
    if (!SetFilePointerEx(mFile->Get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN)) Raise(GetLastError(), mPath);
    mAt = 0;
  }

  std::unique_ptr<TextWriter> Rewrite(Tick tick) override {
    return RewriteFile(mFile, mOpened, mPath, std::move(tick));
  }

 private:
  const std::shared_ptr<Handle> mFile;  // the writer closes it: an open file cannot be replaced
  const BY_HANDLE_FILE_INFORMATION mOpened;
  const std::string mPath;
  std::uint64_t mAt = 0;
};

bool IsFolder(const std::wstring& nativePath) {
  const DWORD attributes = GetFileAttributesW(nativePath.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

std::unique_ptr<TextReader> OpenText(const std::string& path) {
  const std::wstring nativePath = NativePath(path);
  Handle file = Open(nativePath, GENERIC_READ);
  if (!file.IsOpen()) {
    const DWORD error = GetLastError();
    if (IsFolder(nativePath)) throw FileSystemError(FileError::PathFileAccess, path);
    Raise(error, path, FileError::FileNotFound);
  }
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) throw FileSystemError(FileError::PathFileAccess, path);
  BY_HANDLE_FILE_INFORMATION opened{};
  if (!GetFileInformationByHandle(file.Get(), &opened)) Raise(GetLastError(), path);
  return std::make_unique<FileReader>(std::move(file), opened, path);
}

}  // namespace brackwell::win32
