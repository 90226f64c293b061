#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brackwell {

/// While one is alive an administrator is let into files and folders by their modes alone, as any user is.
class WithoutPrivileges {
 public:
  WithoutPrivileges() {
    syscall(SYS_capget, &mHeader, mBefore);
    __user_cap_data_struct less[] = {mBefore[0], mBefore[1]};
    less[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
    syscall(SYS_capset, &mHeader, less);
  }
  ~WithoutPrivileges() { syscall(SYS_capset, &mHeader, mBefore); }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

 private:
  __user_cap_header_struct mHeader{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct mBefore[2]{};
};

}  // namespace brackwell
