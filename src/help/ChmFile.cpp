#include "help/ChmFile.h"

#include <set>
#include <utility>

namespace brackwell {

std::optional<ChmFile> ChmFile::Open(const std::string& path) {
  std::optional<ChmObjects> objects = ReadChm(path);
  if (!objects) return std::nullopt;
  ChmFile file(std::move(*objects));
  if (file.mContents.empty() || !file.Find(file.mContents.front().Topic)) return std::nullopt;
  return file;
}

ChmFile::ChmFile(ChmObjects objects)
    : mObjects(std::move(objects)), mContents(ReadSiteMap(".hhc")), mIndex(ReadSiteMap(".hhk")) {
  std::set<std::string> added;
  for (const HelpEntry& entry : mContents)
    if (const std::string* page = Find(entry.Topic); page && added.insert(entry.Topic).second)
      mSearch.AddPage(entry.Topic, *page);
}

const std::string* ChmFile::Find(std::string_view name) const {
  const auto found = mObjects.find(name);
  return found == mObjects.end() ? nullptr : &found->second;
}

std::vector<std::string> ChmFile::Topics() const {
  std::vector<std::string> topics;
  for (const auto& [name, content] : mObjects)
    if (name.ends_with(".html")) topics.push_back(name);
  return topics;
}

std::vector<HelpEntry> ChmFile::ReadSiteMap(std::string_view ending) const {
  for (const auto& [name, content] : mObjects)
    if (name.ends_with(ending)) return ParseSiteMap(content);
  return {};
}

}  // namespace brackwell
