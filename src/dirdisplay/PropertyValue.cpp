#include "dirdisplay/PropertyValue.h"

#include <utility>

#include "common/Text.h"
#include "platform/DateText.h"

namespace brackwell {
namespace {

const ItemDetails& DetailsOf(FolderItem& folder) {
  if (!folder.Details) folder.Details = folder.Object.Properties();
  return *folder.Details;
}

/// Some file systems keep no date of creation.
PropertyValue DateOrNothing(DateTime date) {
  return date == DateTime{} ? PropertyValue() : PropertyValue(date);
}

PropertyValue ReadFolderProperty(FolderItem& folder, InfoKey key) {
  const std::string& path = folder.Object.Path();
  switch (key) {
    case InfoKey::Attributes:
      return std::uint64_t{DetailsOf(folder).Attributes};
    case InfoKey::DateCreated:
      return DateOrNothing(DetailsOf(folder).DateCreated);
    case InfoKey::DateLastAccessed:
      return DetailsOf(folder).DateLastAccessed;
    case InfoKey::DateLastModified:
      return DetailsOf(folder).DateLastModified;
    case InfoKey::Files:
      return std::uint64_t{folder.Object.Files().size()};
    case InfoKey::IsRootFolder:
      return ParentPath(path).empty();
    case InfoKey::Name:
      return std::string(FileName(path));
    case InfoKey::ParentFolder:
      return std::string(ParentPath(path));
    case InfoKey::Path:
      return std::string(WithoutSeparator(path));
    case InfoKey::ShortName:
      return folder.Files.ShortName(path);
    case InfoKey::ShortPath:
      return folder.Files.ShortPath(path);
    case InfoKey::Subfolders:
      return std::uint64_t{folder.Object.SubFolders().size()};
    case InfoKey::Type:
      // A drive is known by its root alone.
      return folder.Files.Type(ParentPath(path).empty() ? std::string_view(path) : FileName(path),
                               ItemKind::Folder);
    case InfoKey::Size:
    case InfoKey::Extension:
    case InfoKey::Unknown:
      break;
  }
  return {};
}

struct TextMaker {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(std::uint64_t value) const { return std::to_string(value); }
  std::string operator()(DateTime value) const { return GeneralDate(value); }
  std::string operator()(std::string& value) const { return std::move(value); }
};

}  // namespace

std::string ToText(PropertyValue value) { return std::visit(TextMaker{}, value); }

PropertyValue GetFolderProperty(FolderItem& folder, InfoKey key) try {
  return ReadFolderProperty(folder, key);
} catch (const FileSystemError&) {
  return {};
}

bool NeedsDetails(InfoKey key) {
  return key == InfoKey::Attributes || key == InfoKey::DateCreated || key == InfoKey::DateLastAccessed ||
         key == InfoKey::DateLastModified || key == InfoKey::Size || key == InfoKey::Type;
}

PropertyValue GetFileProperty(const FileItem& file, InfoKey key) {
  const auto path = [&file] { return JoinPath(file.FolderPath, file.Name); };
  switch (key) {
    case InfoKey::Attributes:
      return std::uint64_t{file.Details.Attributes};
    case InfoKey::DateCreated:
      return DateOrNothing(file.Details.DateCreated);
    case InfoKey::DateLastAccessed:
      return file.Details.DateLastAccessed;
    case InfoKey::DateLastModified:
      return file.Details.DateLastModified;
    case InfoKey::Extension:
      return GetFileExtension(file.Name);
    case InfoKey::Name:
      return std::string(file.Name);
    case InfoKey::ParentFolder:
      return std::string(WithoutSeparator(file.FolderPath));
    case InfoKey::Path:
      return path();
    case InfoKey::ShortName:
      return file.Files.ShortName(path());
    case InfoKey::ShortPath:
      return file.Files.ShortPath(path());
    case InfoKey::Size:
      return file.Details.Size;
    case InfoKey::Type:
      return file.Files.Type(file.Name, file.Details.Kind);
    case InfoKey::Files:
    case InfoKey::IsRootFolder:
    case InfoKey::Subfolders:
    case InfoKey::Unknown:
      break;
  }
  return {};
}

}  // namespace brackwell
