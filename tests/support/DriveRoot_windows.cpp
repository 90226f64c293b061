#include "support/DriveRoot_windows.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/FileTimes.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

namespace fs = std::filesystem;

fs::path ToPath(const std::string& path) { return {std::u8string(path.begin(), path.end())}; }

std::string ToName(const fs::path& path) {
  const std::u8string name = path.generic_u8string();
  return {name.begin(), name.end()};
}

bool IsOurs(const fs::directory_entry& member) {
  return !member.path().filename().wstring().starts_with(L'.');
}

/// A file that is gone when it is closed, as it is when its program ends in whatever way.
win32::Handle Lock(const std::string& root) {
  const std::wstring path = win32::NativePath(root + ".brackwell-test");
  for (;;) {
    win32::Handle lock(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                   FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (lock.IsOpen()) return lock;
    Sleep(20);
  }
}

}  // namespace

bool DriveRoot::AreMade() { return std::getenv("BRACKWELL_MADE_DRIVES") != nullptr; }

DriveRoot::DriveRoot(char letter) : mPath(std::string(1, letter) + ":\\"), mLock(Lock(mPath)) { Clear(); }

DriveRoot::~DriveRoot() { Clear(); }

std::string DriveRoot::Path(const std::string& name) const {
  std::string path = mPath + name;
  std::ranges::replace(path, '/', '\\');
  return path;
}

void DriveRoot::File(const std::string& name, const std::string& content, int seconds) {
  const fs::path path = ToPath(Path(name));
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
  SetModificationTime(Path(name), TempTree::Time(seconds));
}

std::string DriveRoot::Read(const std::string& name) const {
  std::ifstream file(ToPath(Path(name)), std::ios::binary);
  return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "<no such file>";
}

std::vector<std::string> DriveRoot::List() const {
  std::vector<std::string> found;
  const fs::path top = ToPath(mPath);
  for (fs::recursive_directory_iterator at(top), end; at != end; ++at) {
    if (!IsOurs(*at))
      at.disable_recursion_pending();
    else
      found.push_back(ToName(at->path().lexically_relative(top)) + (at->is_directory() ? "/" : ""));
  }
  std::ranges::sort(found);
  return found;
}

void DriveRoot::Clear() const {
  std::error_code ignored;
  for (const auto& member : fs::directory_iterator(ToPath(mPath)))
    if (IsOurs(member)) fs::remove_all(member.path(), ignored);
}

}  // namespace brackwell
