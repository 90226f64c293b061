#pragma once

#include <string>

#include "platform/Win32.h"

namespace brackwell {

/// For as long as it lives, another program has a file open, as it were, and lets others do with it what
/// `share` says: nothing at all, or FILE_SHARE_READ, ...
class LockedFile {
 public:
  LockedFile(const std::string& path, DWORD share)
      : mHandle(CreateFileW(win32::NativePath(path).c_str(), GENERIC_READ | (share == 0 ? GENERIC_WRITE : 0),
                            share, nullptr, OPEN_EXISTING, 0, nullptr)) {}

  bool IsOpen() const { return mHandle.IsOpen(); }

 private:
  win32::Handle mHandle;
};

}  // namespace brackwell
