#include "platform/FileSystemObject.h"
#include "platform/SubFolders.h"

namespace brackwell {

void ListSubFolders(const std::string& path, const std::function<void(std::vector<std::string>)>& found) {
  const auto folder = CreateFileSystemObject()->GetFolder(path);
  std::vector<std::string> names;
  for (const Member& member : folder->SubFolders()) names.emplace_back(member.Name);
  found(std::move(names));
}

}  // namespace brackwell
