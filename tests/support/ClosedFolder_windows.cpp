#include "support/ClosedFolder.h"

#include <stdexcept>
#include <vector>

#include "platform/Win32.h"
// After the one above, which it needs.
#include <sddl.h>

namespace brackwell {
namespace {

void Check(BOOL done) {
  if (!done) throw std::runtime_error("access list: error " + std::to_string(GetLastError()));
}

}  // namespace

/// The folder stays open, since what may not be read cannot be opened to change that either.
struct ClosedFolder::Before {
  win32::Handle Folder;
  std::vector<std::byte> Access;
};

ClosedFolder::ClosedFolder(const std::string& path, To whom) : mBefore(std::make_unique<Before>()) {
  mBefore->Folder =
      win32::Open(win32::NativePath(path), READ_CONTROL | WRITE_DAC, FILE_FLAG_BACKUP_SEMANTICS);
  DWORD size = 0;
  GetKernelObjectSecurity(mBefore->Folder.Get(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  mBefore->Access.resize(size);
  Check(GetKernelObjectSecurity(mBefore->Folder.Get(), DACL_SECURITY_INFORMATION, mBefore->Access.data(),
                                size, &size));
  // Denied to everyone: to list the folder, or to add to it and to delete from it. All else is allowed.
  const wchar_t* access =
      whom == To::Readers ? L"D:P(D;;0x1;;;WD)(A;;FA;;;WD)" : L"D:P(D;;0x46;;;WD)(A;;FA;;;WD)";
  PSECURITY_DESCRIPTOR closed = nullptr;
  Check(ConvertStringSecurityDescriptorToSecurityDescriptorW(access, SDDL_REVISION_1, &closed, nullptr));
  const BOOL done = SetKernelObjectSecurity(mBefore->Folder.Get(), DACL_SECURITY_INFORMATION, closed);
  LocalFree(closed);
  Check(done);
}

ClosedFolder::~ClosedFolder() {
  SetKernelObjectSecurity(mBefore->Folder.Get(), DACL_SECURITY_INFORMATION, mBefore->Access.data());
}

}  // namespace brackwell
