#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// After the one above, which it needs.
#include <shellapi.h>
// Our own functions have these names.
#undef CopyFile
#undef MoveFile

#include <string>
#include <string_view>

#include "platform/FileSystemError.h"

// What the Windows sources of the ground floor share.

namespace brackwell::win32 {

/// Owns a handle of an opened file or folder.
class Handle {
 public:
  explicit Handle(HANDLE handle = INVALID_HANDLE_VALUE) : mHandle(handle) {}
  Handle(Handle&& other) noexcept : mHandle(other.mHandle) { other.mHandle = INVALID_HANDLE_VALUE; }
  Handle& operator=(Handle&& other) noexcept;
  ~Handle();

  HANDLE Get() const { return mHandle; }
  bool IsOpen() const { return mHandle != INVALID_HANDLE_VALUE; }

 private:
  HANDLE mHandle;
};

/// From here on, an empty drive is an error and not a prompt of the system, whoever asks in this program.
void ForbidPrompts();

/// UTF-8 to UTF-16 and back. Half surrogates, which Windows allows in names, travel as the three bytes that
/// UTF-8 would have for them, so every name comes back as it was. Bytes that are nothing of the kind become
/// U+FFFD.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);

/// The absolute path in the form that system calls take as it is, however long and whatever its names.
std::wstring NativePath(std::string_view path);
/// A path in that form, or any other, as users know it.
std::string UsualPath(std::wstring_view path);
/// Where an opened file or folder really is, links resolved; empty where the system cannot tell.
std::string FinalPath(const Handle& opened);

/// Fetches a text whose length is not known before: `fetch` fills a buffer of so many characters and gives
/// the length, or the size that is needed, or 0 on failure, which gives an empty text.
template <typename Fetch>
std::wstring FetchText(Fetch fetch) {
  std::wstring text(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = fetch(text.data(), static_cast<DWORD>(text.size()));
    const bool fits = length < text.size();
    text.resize(fits ? length : length + 1);
    if (fits) return text;
  }
}

/// Opens a file or folder whatever others do with it. `access` 0 is enough to ask for its properties.
Handle Open(const std::wstring& nativePath, DWORD access, DWORD flags = 0);

/// Writes all of it at the file's position; raises.
void WriteAll(const Handle& file, std::string_view bytes, const std::string& path);

/// Maps GetLastError to our error. `missing` is what ERROR_FILE_NOT_FOUND means for the call.
FileError ErrorOf(DWORD code, FileError missing = FileError::PathNotFound);
[[noreturn]] void Raise(DWORD code, const std::string& path, FileError missing = FileError::PathNotFound);

/// Throws for an item that could not be given its name: BadFileName where the folder is there, but its disk
/// cannot hold such a name.
[[noreturn]] void RaiseForName(DWORD code, const std::string& path);

}  // namespace brackwell::win32
