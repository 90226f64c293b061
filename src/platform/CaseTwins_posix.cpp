#include "platform/CaseTwins_posix.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/CaseRules.h"
#include "platform/Paths.h"

namespace brackwell::posix {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

template <typename Visit>
void ForEachName(const Handle& folder, const std::string& path, Visit visit) {
  const int readable = openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseFolder> names(readable < 0 ? nullptr : fdopendir(readable));
  if (!names) Raise(errno, path);
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(names.get());
    if (!entry) break;
    visit(entry->d_name);
  }
  if (errno != 0) Raise(errno, path);
}

bool IsThere(const Handle& folder, const std::string& name) {
  struct stat found {};
  return fstatat(folder.Get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
}

std::string InOtherCase(const std::string& name) {
  std::string other = Upper(name);
  return other == name ? Lower(name) : other;
}

/// How the folder itself spells a name that it finds; nothing where it does so as `name` does.
std::optional<std::string> OtherSpelling(const Handle& folder, const std::string& path,
                                         const std::string& name) {
  bool isListed = false;
  std::optional<std::string> other;
  ForEachName(folder, path, [&](const char* listed) {
    if (name == listed)
      isListed = true;
    else if (CompareIgnoreCase(name, listed) == 0)
      other = listed;
  });
  return isListed ? std::nullopt : other;
}

}  // namespace

void CaseTwins::Check(const Location& source, const Location& target, const Handle& targetFolder) {
  const std::string name(FileName(target.Path()));
  const std::string otherCase = InOtherCase(name);
  // On a disk that tells case apart this look-up is all that it costs.
  if (otherCase == name || !IsThere(targetFolder, otherCase)) return;
  const Handle sourceFolder = OpenParent(source);
  if (!HasTwin(std::string(FileName(source.Path())), sourceFolder, source.Path())) return;
  const auto spelling = OtherSpelling(targetFolder, target.Path(), name);
  if (spelling && IsThere(sourceFolder, *spelling))
    throw FileSystemError(FileError::FileAlreadyExists, target.Path());
}

bool CaseTwins::HasTwin(const std::string& name, const Handle& folder, const std::string& path) {
  struct stat now {};
  if (fstat(folder.Get(), &now) != 0) Raise(errno, path);
  if (!mNames || !IsUnchanged(mFolder, now)) {
    mNames.reset();
    NameCounts names;
    ForEachName(folder, path, [&](const char* listed) { names.Add(NameCounts::KeyOf(listed)); });
    mNames = std::move(names);
    mFolder = now;
  }
  return mNames->Count(NameCounts::KeyOf(name)) > 1;
}

}  // namespace brackwell::posix
