#include "support/FolderLink.h"

#include <algorithm>

#include "platform/Win32.h"

namespace brackwell {

bool MakeFolderLink(const std::string& path, const std::string& target) {
  constexpr DWORD AllowUnprivileged = 2;  // not in every header
  std::wstring native = win32::Widen(target);
  std::ranges::replace(native, L'/', L'\\');
  const std::wstring link = win32::NativePath(path);
  // Wine reports success and makes none.
  return CreateSymbolicLinkW(link.c_str(), native.c_str(),
                             SYMBOLIC_LINK_FLAG_DIRECTORY | AllowUnprivileged) &&
         GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace brackwell
