#include "platform/Win32.h"
#include "support/FileTimes.h"

namespace brackwell {

/// The standard library's own means refuse folders here.
void SetModificationTime(const std::string& path, DateTime time) {
  constexpr std::int64_t SecondsFrom1601To1970 = 11'644'473'600;
  constexpr std::int64_t TicksPerSecond = 10'000'000;
  const win32::Handle item =
      win32::Open(win32::NativePath(path), FILE_WRITE_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
  FILE_BASIC_INFO times{};
  times.LastWriteTime.QuadPart = (time.time_since_epoch().count() + SecondsFrom1601To1970) * TicksPerSecond;
  if (!SetFileInformationByHandle(item.Get(), FileBasicInfo, &times, sizeof times))
    win32::Raise(GetLastError(), path);
}

}  // namespace brackwell
