#include "dirdisplay/DirectoryScan.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/Progress.h"
#include "dirdisplay/XmlDocument.h"

namespace brackwell {
namespace {

/// Ends a walk from wherever it is.
struct StoppedByUser {};

}  // namespace

DirectoryScan::DirectoryScan(const FileSystemObject& files, const ScanOptions& options, XmlDocument& document,
                             bool oneLine, Progress& progress)
    : mFiles(files), mOptions(options), mDocument(document), mOneLine(oneLine), mProgress(progress) {}

bool DirectoryScan::AddFolderNode(const std::string& path, xmlNode* parent, int xmlType) try {
  mXmlType = xmlType;
  mFolderName = mDocument.Intern("folder");
  mFileName = mDocument.Intern("file");
  mFolderProperties = PropertiesOf(mOptions.FolderInfo, FolderKey);
  mFileProperties = PropertiesOf(mOptions.FileInfo, FileKey);
  mSumsUp = mOptions.IncludeFolders && mOptions.IncludeSubfolders &&
            std::ranges::count(mFolderProperties, InfoKey::Size, &Property::Key) > 0;
  mLevels.clear();
  FolderReader reader(mFiles, Plan(path));
  while (const auto part = reader.Next([this] { DoEvents(); })) {
    if (part->FirstFile == 0) {
      LeaveFolders(part->Depth);
      EnterFolder(*part, mLevels.empty() ? parent : mLevels.back().Element);
    }
    AddFiles(*part);
  }
  LeaveFolders(0);
  return true;
} catch (const StoppedByUser&) {
  return false;
}

ReadingPlan DirectoryScan::Plan(const std::string& path) const {
  ReadingPlan plan{.Folder = path,
                   .IncludesSubFolders = mOptions.IncludeSubfolders,
                   .IncludesFiles = mOptions.IncludeFiles,
                   .ReadsDetails = mOptions.IncludeFiles &&
                                   std::ranges::any_of(mFileProperties, NeedsDetails, &Property::Key),
                   .ReadsSizes = mSumsUp};
  if (mOptions.IncludeFolders)
    std::ranges::transform(mFolderProperties, std::back_inserter(plan.FolderProperties), &Property::Key);
  return plan;
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

/// Sub-folders come before files, though they are read later.
void DirectoryScan::EnterFolder(const FolderPart& part, xmlNode* parent) {
  mProgress.Message(part.Object->Path());
  DoEvents();
  Level level{.Element = mDocument.AddElement(parent, mLevels.empty() ? nullptr : mLevels.back().FirstFile,
                                              mFolderName)};
  for (std::size_t i = 0; i < part.Properties.size(); ++i) {
    xmlNode* const text = AddPropertyNode(level.Element, mFolderProperties[i], part.Properties[i]);
    if (mSumsUp && mFolderProperties[i].Key == InfoKey::Size) level.SizeTexts.push_back(text);
  }
  mLevels.push_back(std::move(level));
}

/// Leaves all that are not above a folder of that depth.
void DirectoryScan::LeaveFolders(std::size_t depth) {
  while (mLevels.size() > depth) {
    const Level level = std::move(mLevels.back());
    mLevels.pop_back();
    const std::string size = std::to_string(level.Size);
    for (xmlNode* const text : level.SizeTexts) mDocument.SetText(text, size);
    if (!mLevels.empty()) mLevels.back().Size += level.Size;
  }
}

void DirectoryScan::AddFiles(const FolderPart& part) {
  FileItem file{mFiles, part.Object->Path(), {}};
  for (std::size_t i = 0; i < part.EndFile - part.FirstFile; ++i) {
    DoEvents();
    if (!part.Details.empty()) {
      if (!part.Details[i]) continue;
      file.Details = *part.Details[i];
    }
    if (mSumsUp) mLevels.back().Size += file.Details.Size;
    if (!mOptions.IncludeFiles) continue;
    file.Name = part.Object->Files()[part.FirstFile + i].Name;
    AddFileNode(file, mLevels.back());
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
  xmlNode* const text = TextNode(property.Key, std::move(value));
  if (mXmlType == 1)
    mDocument.AddAttribute(owner, property.NodeName, text);
  else
    mDocument.AddText(mDocument.AddElement(owner, nullptr, property.NodeName), text);
  return text;
}

xmlNode* DirectoryScan::TextNode(InfoKey key, PropertyValue value) {
  if (const auto* const date = std::get_if<DateTime>(&value)) return DateNode(*date);
  std::string content = ToText(std::move(value));
  MakeXmlText(content, mOneLine);
  if (key != InfoKey::Type) return mDocument.NewText(content);
  xmlNode*& known = mKnownTypes[content];
  if (!known) known = mDocument.NewText(content);
  return known;
}

/// Files often have the same date as one shortly before, and a date's text is the one that takes longest.
xmlNode* DirectoryScan::DateNode(DateTime date) {
  KnownDate& known =
      mKnownDates[static_cast<std::size_t>(date.time_since_epoch().count()) % mKnownDates.size()];
  if (!known.Text || known.Date != date) {
    std::string text = ToText(date);
    MakeXmlText(text, mOneLine);
    known = {date, mDocument.NewText(text)};
  }
  return known.Text;
}

void DirectoryScan::DoEvents() const {
  mProgress.DoEvents();
  if (mProgress.Stopped()) throw StoppedByUser{};
}

}  // namespace brackwell
