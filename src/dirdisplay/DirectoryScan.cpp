#include "dirdisplay/DirectoryScan.h"

#include <algorithm>
#include <utility>

#include "common/Files.h"
#include "common/Progress.h"
#include "common/Text.h"
#include "dirdisplay/XmlDocument.h"
#include "platform/DateText.h"

namespace brackwell {
namespace {

/// Ends a walk from wherever it is.
struct StoppedByUser {};

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
      return folder.Files.Type(FileName(path), ItemKind::Folder);
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

std::uint64_t SizeOf(const std::optional<FileStatus>& status) { return status ? status->Size : 0; }

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

DirectoryScan::DirectoryScan(const FileSystemObject& files, const ScanOptions& options, XmlDocument& document,
                             bool oneLine, Progress& progress)
    : mFiles(files),
      mOptions(options),
      mDocument(document),
      mOneLine(oneLine),
      mProgress(progress),
      mTick([this] { DoEvents(); }) {}

bool DirectoryScan::AddFolderNode(const std::string& path, xmlNode* parent, int xmlType) try {
  mXmlType = xmlType;
  mFolderName = mDocument.Intern("folder");
  mFileName = mDocument.Intern("file");
  mFolderProperties = PropertiesOf(mOptions.FolderInfo, FolderKey);
  mFileProperties = PropertiesOf(mOptions.FileInfo, FileKey);
  mNeedsDetails = std::ranges::any_of(mFileProperties, NeedsDetails, &Property::Key);
  mSumsUp = mOptions.IncludeFolders && mOptions.IncludeSubfolders &&
            std::ranges::count(mFolderProperties, InfoKey::Size, &Property::Key) > 0;
  mLevels.clear();
  mPath = path;
  EnterFolder(parent, nullptr, false);
  while (!mLevels.empty()) {
    if (mLevels.back().Next < mLevels.back().SubFolders.size())
      EnterSubFolder();
    else
      LeaveFolder();
  }
  return true;
} catch (const StoppedByUser&) {
  return false;
}

/// An element cannot have two attributes of one name: the last value is set in the place of the first.
std::vector<DirectoryScan::Property> DirectoryScan::PropertiesOf(const std::vector<InfoItem>& items,
                                                                 InfoKey (*keyOf)(std::string_view)) {
  std::vector<Property> properties;
  for (const InfoItem& item : items) {
    const Property property{mDocument.Intern(NodeName(item.Caption)), keyOf(item.Key)};
    const auto same = std::ranges::find(properties, property.NodeName, &Property::NodeName);
    if (mXmlType == 1 && same != properties.end())
      *same = property;
    else
      properties.push_back(property);
  }
  return properties;
}

/// Describes the folder at mPath and all its files while it is open, and leaves its sub-folders for later.
void DirectoryScan::EnterFolder(xmlNode* parent, xmlNode* before, bool leadsBack) {
  mProgress.Message(mPath);
  DoEvents();
  const auto folder = mFiles.GetFolder(mPath, mTick);
  Level level{.Element = mDocument.AddElement(parent, before, mFolderName), .PathLength = mPath.size()};
  if (mOptions.IncludeFolders) AddFolderProperties(*folder, level);
  if (leadsBack) return;
  if (mOptions.IncludeSubfolders)
    for (const Member& member : folder->SubFolders())
      level.SubFolders.push_back({std::string(member.Name), member.IsLink});
  AddFiles(*folder, level);
  mLevels.push_back(std::move(level));
}

void DirectoryScan::EnterSubFolder() {
  Level& level = mLevels.back();
  const SubFolder& subFolder = level.SubFolders[level.Next++];
  mPath.resize(level.PathLength);
  if (!EndsWithSeparator(mPath)) mPath += PathSeparator;
  mPath += subFolder.Name;
  const bool leadsBack =
      subFolder.IsLink && LeadsBack(mFiles, mPath.substr(0, mLevels.front().PathLength), mPath);
  EnterFolder(level.Element, level.FirstFile, leadsBack);
}

void DirectoryScan::LeaveFolder() {
  const Level level = std::move(mLevels.back());
  mLevels.pop_back();
  const std::string size = std::to_string(level.Size);
  for (xmlNode* const text : level.SizeTexts) mDocument.SetText(text, size);
  if (!mLevels.empty()) mLevels.back().Size += level.Size;
}

void DirectoryScan::AddFolderProperties(Folder& folder, Level& level) {
  FolderItem item{mFiles, folder};
  for (const Property& property : mFolderProperties) {
    if (property.Key == InfoKey::Size && mSumsUp)
      level.SizeTexts.push_back(AddPropertyNode(level.Element, property, {}));
    else if (property.Key == InfoKey::Size)
      AddPropertyNode(level.Element, property, SizeBelow(mPath));
    else
      AddPropertyNode(level.Element, property, GetFolderProperty(item, property.Key));
  }
}

void DirectoryScan::AddFiles(Folder& folder, Level& level) {
  if (!mOptions.IncludeFiles && !mSumsUp) return;
  FileItem file{mFiles, folder.Path(), {}};
  for (const Member& member : folder.Files()) {
    DoEvents();
    file.Name = member.Name;
    const bool readsDetails = mOptions.IncludeFiles && mNeedsDetails;
    if (readsDetails) file.Details = folder.FileDetails(member.Name);
    if (mSumsUp) level.Size += readsDetails ? file.Details.Size : SizeOf(folder.Find(member.Name));
    if (mOptions.IncludeFiles) AddFileNode(file, level);
  }
}

void DirectoryScan::AddFileNode(const FileItem& file, Level& level) {
  xmlNode* const element = mDocument.AddElement(level.Element, nullptr, mFileName);
  if (!level.FirstFile) level.FirstFile = element;
  for (const Property& property : mFileProperties)
    AddPropertyNode(element, property, GetFileProperty(file, property.Key));
}

/// Gives the node that holds the value's text.
xmlNode* DirectoryScan::AddPropertyNode(xmlNode* owner, const Property& property, PropertyValue value) {
  xmlNode* const text = mXmlType == 1
                            ? mDocument.AddAttribute(owner, property.NodeName)
                            : mDocument.AddText(mDocument.AddElement(owner, nullptr, property.NodeName));
  if (const auto* const date = std::get_if<DateTime>(&value)) {
    mDocument.SetText(text, DateContent(*date));
    return text;
  }
  std::string content = ToText(std::move(value));
  MakeXmlText(content, mOneLine);
  if (property.Key == InfoKey::Type)
    XmlDocument::SetInterned(text, mDocument.Intern(content));
  else
    mDocument.SetText(text, content);
  return text;
}

/// Files often have the same date as one shortly before, and a date's text is the one that takes longest.
const std::string& DirectoryScan::DateContent(DateTime date) {
  KnownDate& known =
      mKnownDates[static_cast<std::size_t>(date.time_since_epoch().count()) % mKnownDates.size()];
  if (known.Text.empty() || known.Date != date) {
    known = {date, ToText(date)};
    MakeXmlText(known.Text, mOneLine);
  }
  return known.Text;
}

PropertyValue DirectoryScan::SizeBelow(const std::string& path) const try {
  return FolderSize(mFiles, path, mTick);
} catch (const FileSystemError&) {
  return {};
}

void DirectoryScan::DoEvents() const {
  mProgress.DoEvents();
  if (mProgress.Stopped()) throw StoppedByUser{};
}

}  // namespace brackwell
