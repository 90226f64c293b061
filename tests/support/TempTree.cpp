#include "support/TempTree.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <system_error>

namespace brackwell {
namespace {

namespace fs = std::filesystem;

fs::path ToPath(const std::string& name) { return fs::path(std::u8string(name.begin(), name.end())); }

std::string ToName(const fs::path& path) {
  const std::u8string name = path.generic_u8string();
  return std::string(name.begin(), name.end());
}

/// Folders that a test has locked would otherwise stay for ever.
void Unlock(const fs::path& folder) {
  std::error_code ignored;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
  for (const auto& entry : fs::directory_iterator(folder, ignored))
    if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) Unlock(entry.path());
}

}  // namespace

TempTree::TempTree() {
  std::random_device random;
  do {
    mFolder = fs::temp_directory_path() / ("brackwell-test-" + std::to_string(random()));
  } while (!fs::create_directory(mFolder));
}

TempTree::~TempTree() {
  std::error_code ignored;
  fs::remove_all(mFolder, ignored);
  if (ignored) {
    Unlock(mFolder);
    fs::remove_all(mFolder, ignored);
  }
}

fs::path TempTree::At(const std::string& name) const {
  return name.empty() ? mFolder : mFolder / ToPath(name);
}

std::string TempTree::Path(const std::string& name) const {
  const std::u8string path = At(name).make_preferred().u8string();
  return std::string(path.begin(), path.end());
}

std::string TempTree::Root(const std::string& name) const { return WithSeparator(Path(name)); }

void TempTree::Folder(const std::string& name) { fs::create_directories(At(name)); }

void TempTree::File(const std::string& name, const std::string& content) {
  const fs::path path = At(name);
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content;
  if (!file.flush()) throw std::system_error(std::make_error_code(std::errc::io_error), Path(name));
}

void TempTree::File(const std::string& name, const std::string& content, int seconds) {
  File(name, content);
  SetModified(name, seconds);
}

void TempTree::SetModified(const std::string& name, int seconds) {
  fs::last_write_time(At(name), std::chrono::file_clock::from_sys(Time(seconds)));
}

void TempTree::Remove(const std::string& name) { fs::remove_all(At(name)); }

std::string TempTree::Read(const std::string& name) const {
  std::ifstream file(At(name), std::ios::binary);
  if (!file) return "<no such file>";
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

bool TempTree::Exists(const std::string& name) const { return fs::exists(fs::symlink_status(At(name))); }

std::vector<std::string> TempTree::List(const std::string& name) const {
  std::vector<std::string> found;
  const fs::path top = At(name);
  for (const auto& entry : fs::recursive_directory_iterator(top))
    found.push_back(ToName(entry.path().lexically_relative(top)) +
                    (entry.is_directory() && !entry.is_symlink() ? "/" : ""));
  std::ranges::sort(found);
  return found;
}

DateTime TempTree::Time(int seconds) {
  constexpr DateTime StartOf2020{std::chrono::seconds(1577836800)};
  return StartOf2020 + std::chrono::seconds(seconds);
}

}  // namespace brackwell
