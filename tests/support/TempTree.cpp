#include "support/TempTree.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <system_error>
#include <vector>

#include "platform/Paths.h"
#include "replace/TextEncoding.h"
#include "support/FileTimes.h"

namespace brackwell {
namespace {

namespace fs = std::filesystem;

fs::path ToPath(const std::string& name) { return fs::path(std::u8string(name.begin(), name.end())); }

std::string ToName(const fs::path& path) {
  const std::u8string name = path.generic_u8string();
  return std::string(name.begin(), name.end());
}

void Unlock(const fs::path& path) {
  std::error_code ignored;
  if (!fs::is_symlink(fs::symlink_status(path, ignored)))
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
}

/// Removes what fs::remove_all cannot: what a test has locked, and trees deeper than a path can be long,
/// which are taken apart from the top.
void TakeApart(const fs::path& top) {
  std::error_code ignored;
  int number = 0;
  Unlock(top);
  std::vector<fs::path> folders{top};
  for (std::size_t at = 0; at < folders.size(); ++at) {
    const fs::path folder = folders[at];
    const std::vector<fs::directory_entry> members(fs::directory_iterator(folder, ignored), {});
    for (const auto& member : members) {
      Unlock(member.path());
      if (fs::remove(member.path(), ignored)) continue;
      const fs::path place = top / (".apart-" + std::to_string(number++));
      fs::rename(member.path(), place, ignored);
      if (!ignored) folders.push_back(place);
    }
  }
  for (; !folders.empty(); folders.pop_back()) fs::remove(folders.back(), ignored);
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
  if (ignored) TakeApart(mFolder);
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
  SetModificationTime(Path(name), Time(seconds));
}

void TempTree::SetReadOnly(const std::string& name) {
  constexpr auto Write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  fs::permissions(At(name), Write, fs::perm_options::remove);
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
                    (fs::is_directory(entry.symlink_status()) ? "/" : ""));
  std::ranges::sort(found);
  return found;
}

DateTime TempTree::Time(int seconds) {
  constexpr DateTime StartOf2020{std::chrono::seconds(1577836800)};
  return StartOf2020 + std::chrono::seconds(seconds);
}

bool TempTree::CanName(const std::string& name) {
  return PathSeparator == '/' || (IsFileName(name) && ValidUtf8Length(name) == name.size());
}

}  // namespace brackwell
