#include <chrono>
#include <filesystem>

#include "support/FileTimes.h"

namespace brackwell {

void SetModificationTime(const std::string& path, DateTime time) {
  std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(time));
}

}  // namespace brackwell
