#pragma once

#include <pthread.h>

#include <cstddef>

namespace brackwell {

/// For as long as it lives, no thread can be started: each would get a stack larger than all memory.
class NoThreads {
 public:
  NoThreads() {
    pthread_getattr_default_np(&mBefore);
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 60);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
  }
  ~NoThreads() {
    pthread_setattr_default_np(&mBefore);
    pthread_attr_destroy(&mBefore);
  }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;

 private:
  pthread_attr_t mBefore{};
};

}  // namespace brackwell
