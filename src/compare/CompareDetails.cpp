#include "compare/CompareDetails.h"

#include <algorithm>
#include <array>

#include "common/Files.h"
#include "platform/DateText.h"

namespace brackwell {
namespace {

constexpr std::array<std::string_view, 12> FileProperties{
    "Attributes",   "DateCreated", "DateLastAccessed", "DateLastModified", "Drive", "Name",
    "ParentFolder", "Path",        "ShortName",        "ShortPath",        "Size",  "Type"};

constexpr std::array<std::string_view, 14> FolderProperties{
    "Attributes",   "DateCreated", "DateLastAccessed", "DateLastModified", "Drive", "Files",      "Name",
    "ParentFolder", "Path",        "ShortName",        "ShortPath",        "Size",  "Subfolders", "Type"};

/// Gives values by the name of their property.
class Giver {
 public:
  Giver(bool isFile, const std::function<void(std::size_t, std::string)>& give)
      : mNames(PropertyNames(isFile)), mGive(give) {}

  void operator()(std::string_view name, std::string value) const {
    mGive(static_cast<std::size_t>(std::ranges::find(mNames, name) - mNames.begin()), std::move(value));
  }

 private:
  const std::span<const std::string_view> mNames;
  const std::function<void(std::size_t, std::string)>& mGive;
};

void GiveCommon(const FileSystemObject& files, const ItemProperties& item, const Giver& give) {
  give("Attributes", std::to_string(item.Attributes));
  give("DateCreated", GeneralDate(item.DateCreated));
  give("DateLastAccessed", GeneralDate(item.DateLastAccessed));
  give("DateLastModified", GeneralDate(item.DateLastModified));
  give("Drive", files.Drive(item.Path));
  give("Name", item.Name);
  give("ParentFolder", item.ParentFolder);
  give("Path", item.Path);
  give("ShortName", files.ShortName(item.Path));
  give("ShortPath", files.ShortPath(item.Path));
  give("Type", files.Type(item.Path));
}

}  // namespace

std::span<const std::string_view> PropertyNames(bool isFile) {
  if (isFile) return FileProperties;
  return FolderProperties;
}

void ReadProperties(const FileSystemObject& files, const std::string& path, bool isFile,
                    const std::function<void(std::size_t, std::string)>& give, const Tick& tick) {
  const Giver giver(isFile, give);
  if (isFile) {
    if (!files.FileExists(path)) return;
    const ItemProperties file = files.GetFile(path);
    GiveCommon(files, file, giver);
    giver("Size", std::to_string(file.Size));
    return;
  }
  if (!files.FolderExists(path)) return;
  {
    const auto folder = files.GetFolder(path, tick);
    GiveCommon(files, folder->Properties(), giver);
    giver("Files", std::to_string(folder->Files().size()));
    giver("Subfolders", std::to_string(folder->SubFolders().size()));
  }
  giver("Size", std::to_string(FolderSize(files, path, tick)));
}

}  // namespace brackwell
