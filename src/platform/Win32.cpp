#include "platform/Win32.h"

#include <algorithm>
#include <utility>

#include "platform/Paths.h"

namespace brackwell::win32 {
namespace {

constexpr std::wstring_view LiteralPrefix = L"\\\\?\\";
constexpr std::wstring_view LiteralSharePrefix = L"\\\\?\\UNC\\";
constexpr DWORD DiskQuotaExceeded = 1295;  // not in every header
constexpr char32_t Replacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t code) { return code >= 0xD800 && code < 0xDC00; }
constexpr bool IsLowSurrogate(char32_t code) { return code >= 0xDC00 && code < 0xE000; }

constexpr std::size_t SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  if (first >= 0xF0 && first < 0xF5) return 4;
  return 0;
}

/// Takes one character off the front.
char32_t Next(std::string_view& text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const std::size_t length = SequenceLength(byte(0));
  char32_t code = length < 2 ? byte(0) : byte(0) & (0x7F >> length);
  bool valid = length > 0 && length <= text.size();
  for (std::size_t at = 1; valid && at < length; ++at) {
    valid = (byte(at) & 0xC0) == 0x80;
    code = code << 6 | (byte(at) & 0x3F);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  valid = valid && !overlong && code < 0x110000;
  text.remove_prefix(valid ? length : 1);
  return valid ? code : Replacement;
}

void Append(std::string& text, char32_t code) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xC0 | code >> 6);
  } else if (code < 0x10000) {
    add(0xE0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3F));
  } else {
    add(0xF0 | code >> 18);
    add(0x80 | (code >> 12 & 0x3F));
    add(0x80 | (code >> 6 & 0x3F));
  }
  add(0x80 | (code & 0x3F));
}

bool IsDriveLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

bool BeginsWithDrive(std::wstring_view path) {
  return path.size() >= 3 && IsDriveLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
}

/// True where some element would have to be worked out: "", "." or "..".
bool HasRelativeElement(std::wstring_view path) {
  while (!path.empty()) {
    const std::size_t length = std::min(path.find(L'\\'), path.size());
    const std::wstring_view element = path.substr(0, length);
    if (element.empty() || element == L"." || element == L"..") return true;
    path.remove_prefix(std::min(length + 1, path.size()));
  }
  return false;
}

/// Whether the path says all by itself where it leads.
bool IsAbsolute(std::wstring_view path) {
  if (BeginsWithDrive(path)) return !HasRelativeElement(path.substr(3));
  return path.starts_with(L"\\\\") && !HasRelativeElement(path.substr(2));
}

std::wstring WorkOut(const std::wstring& path) {
  return FetchText(
      [&](wchar_t* text, DWORD size) { return GetFullPathNameW(path.c_str(), size, text, nullptr); });
}

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  std::swap(mHandle, other.mHandle);
  return *this;
}

Handle::~Handle() {
  if (IsOpen()) CloseHandle(mHandle);
}

void ForbidPrompts() { SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX); }

std::wstring Widen(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  while (!text.empty()) {
    const char32_t code = Next(text);
    if (code < 0x10000) {
      wide += static_cast<wchar_t>(code);
    } else {
      wide += static_cast<wchar_t>(0xD7C0 + (code >> 10));
      wide += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
    }
  }
  return wide;
}

std::string Narrow(std::wstring_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t code = text[at];
    if (IsHighSurrogate(code) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]))
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++at] - 0xDC00);
    Append(narrow, code);
  }
  return narrow;
}

std::wstring NativePath(std::string_view path) {
  std::wstring wide = Widen(WithoutSeparator(path));
  std::replace(wide.begin(), wide.end(), L'/', L'\\');
  if (!IsAbsolute(wide)) wide = WorkOut(wide);
  // Taken literally, a path may be of any length, and names such as "aux.c" or "end." are names like any
  // other.
  if (BeginsWithDrive(wide)) return wide.insert(0, LiteralPrefix);
  const bool isDevice = wide.starts_with(LiteralPrefix) || wide.starts_with(L"\\\\.\\");
  if (wide.starts_with(L"\\\\") && !isDevice) return wide.replace(0, 2, LiteralSharePrefix);
  return wide;
}

std::string UsualPath(std::wstring_view path) {
  if (path.starts_with(LiteralSharePrefix)) return "\\\\" + Narrow(path.substr(LiteralSharePrefix.size()));
  if (path.starts_with(LiteralPrefix)) path.remove_prefix(LiteralPrefix.size());
  return Narrow(path);
}

std::string FinalPath(const Handle& opened) {
  return UsualPath(FetchText(
      [&](wchar_t* text, DWORD size) { return GetFinalPathNameByHandleW(opened.Get(), text, size, 0); }));
}

Handle Open(const std::wstring& nativePath, DWORD access, DWORD flags) {
  return Handle(CreateFileW(nativePath.c_str(), access,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                            flags, nullptr));
}

void WriteAll(const Handle& file, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    constexpr std::size_t Step = 1 << 20;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), Step));
    DWORD written = 0;
    if (!WriteFile(file.Get(), bytes.data(), wanted, &written, nullptr)) Raise(GetLastError(), path);
    if (written != wanted) throw FileSystemError(FileError::DiskFull, path);
    bytes.remove_prefix(written);
  }
}

FileError ErrorOf(DWORD code, FileError missing) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
      return missing;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_NAME:
    case ERROR_DIRECTORY:
      return FileError::PathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
    case ERROR_BUSY:
    case ERROR_WRITE_PROTECT:
      return FileError::PermissionDenied;
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
    case ERROR_DIR_NOT_EMPTY:
      return FileError::FileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case DiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return FileError::DiskFull;
    case ERROR_TOO_MANY_OPEN_FILES:
      return FileError::TooManyFiles;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
      return FileError::DeviceError;
    case ERROR_NOT_READY:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_UNRECOGNIZED_VOLUME:
    case ERROR_UNRECOGNIZED_MEDIA:
      return FileError::DiskNotReady;
    default:
      return FileError::PathFileAccess;
  }
}

void Raise(DWORD code, const std::string& path, FileError missing) {
  throw FileSystemError(ErrorOf(code, missing), path);
}

void RaiseForName(DWORD code, const std::string& path) {
  const bool mayBeTheName =
      code == ERROR_INVALID_NAME || code == ERROR_FILENAME_EXCED_RANGE || code == ERROR_BAD_PATHNAME;
  const DWORD folder = GetFileAttributesW(NativePath(ParentPath(path)).c_str());
  if (mayBeTheName && folder != INVALID_FILE_ATTRIBUTES) throw CannotHoldName(path);
  Raise(code, path);
}

}  // namespace brackwell::win32
