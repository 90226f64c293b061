#pragma once

#include <sys/resource.h>

#include <csignal>

namespace brackwell {

/// For as long as it lives, nothing can be written to any file, not even by an administrator.
class FullDisk {
 public:
  FullDisk() : mSignal(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &mLimit);
    const rlimit none{0, mLimit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &mLimit);
    std::signal(SIGXFSZ, mSignal);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit mLimit{};
  void (*mSignal)(int);
};

}  // namespace brackwell
