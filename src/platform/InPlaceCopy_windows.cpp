#include "platform/InPlaceCopy_windows.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace brackwell::win32 {
namespace {

constexpr DWORD BufferSize = 256 << 10;

OVERLAPPED At(std::uint64_t position) {
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>(position);
  at.OffsetHigh = static_cast<DWORD>(position >> 32);
  return at;
}

DWORD SetSize(const Handle& file, std::uint64_t size) {
  LARGE_INTEGER end;
  end.QuadPart = static_cast<LONGLONG>(size);
  const bool done = SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.Get());
  return done ? ERROR_SUCCESS : GetLastError();
}

}  // namespace

DWORD CopyBytes(const Handle& from, std::uint64_t fromAt, const Handle& to, std::uint64_t toAt,
                std::uint64_t length, std::uint64_t& done, const Tick& tick) {
  const auto buffer = std::make_unique<std::byte[]>(BufferSize);
  for (done = 0; done < length;) {
    const auto wanted = static_cast<DWORD>(std::min<std::uint64_t>(length - done, BufferSize));
    OVERLAPPED source = At(fromAt + done);
    DWORD got = 0;
    if (!ReadFile(from.Get(), buffer.get(), wanted, &got, &source)) return GetLastError();
    if (got == 0) return ERROR_HANDLE_EOF;
    OVERLAPPED target = At(toAt + done);
    DWORD written = 0;
    if (!WriteFile(to.Get(), buffer.get(), got, &written, &target)) return GetLastError();
    done += written;
    if (written != got) return ERROR_DISK_FULL;
    if (tick) tick();
  }
  return ERROR_SUCCESS;
}

DWORD CopyInPlace(const Handle& source, std::uint64_t size, const Handle& target, std::uint64_t oldSize,
                  const Tick& tick) {
  std::uint64_t done = 0;
  // Reserves the room, so that a full disk is found before a byte is overwritten.
  DWORD error = size > oldSize ? SetSize(target, size) : ERROR_SUCCESS;
  if (error == ERROR_SUCCESS) error = CopyBytes(source, 0, target, 0, size, done, tick);
  if (error == ERROR_SUCCESS) error = SetSize(target, size);
  if (error == ERROR_SUCCESS) return error;
  std::uint64_t restored = 0;
  // The piece that failed may be there in part.
  CopyBytes(source, size, target, 0, std::min(done + BufferSize, oldSize), restored);
  SetSize(target, oldSize);
  return error;
}

}  // namespace brackwell::win32
