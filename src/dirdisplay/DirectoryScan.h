#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "dirdisplay/FolderReader.h"
#include "dirdisplay/PropertyCatalogue.h"
#include "dirdisplay/PropertyValue.h"

struct _xmlNode;

namespace brackwell {

class Progress;
class XmlDocument;

struct ScanOptions {
  bool IncludeFolders = true;
  bool IncludeSubfolders = true;
  bool IncludeFiles = true;
  std::vector<InfoItem> FolderInfo;  // what is ticked, in the order of the list
  std::vector<InfoItem> FileInfo;
};

/// Describes folders and what is in them as elements of a document.
class DirectoryScan {
 public:
  /// With `oneLine`, no value has a tab or a line break in it.
  DirectoryScan(const FileSystemObject& files, const ScanOptions& options, XmlDocument& document,
                bool oneLine, Progress& progress);

  /// Appends the element of the folder at `path`, with all that the options say is in it. False where it was
  /// stopped. Raises FileSystemError for a folder that cannot be opened or listed and for a file that cannot
  /// be read; what is described by then stays.
  bool AddFolderNode(const std::string& path, _xmlNode* parent, int xmlType);

 private:
  struct Property {
    const unsigned char* NodeName;  // the document's own
    InfoKey Key;
  };
  struct KnownDate {
    DateTime Date{};
    _xmlNode* Text = nullptr;
  };
  /// A folder that is described but for its sub-folders.
  struct Level {
    _xmlNode* Element;
    _xmlNode* FirstFile = nullptr;
    std::vector<_xmlNode*> SizeTexts = {};  // filled once all below is summed up
    std::uint64_t Size = 0;
  };

  std::vector<Property> PropertiesOf(const std::vector<InfoItem>& items, InfoKey (*keyOf)(std::string_view));
  ReadingPlan Plan(const std::string& path) const;
  void EnterFolder(const FolderPart& part, _xmlNode* parent);
  void LeaveFolders(std::size_t depth);
  void AddFiles(const FolderPart& part);
  void AddFileNode(const FileItem& file, Level& level);
  _xmlNode* AddPropertyNode(_xmlNode* owner, const Property& property, PropertyValue value);
  _xmlNode* TextNode(InfoKey key, PropertyValue value);
  _xmlNode* DateNode(DateTime date);
  void DoEvents() const;

  const FileSystemObject& mFiles;
  const ScanOptions& mOptions;
  XmlDocument& mDocument;
  const bool mOneLine;
  Progress& mProgress;

  int mXmlType = 0;
  const unsigned char* mFolderName = nullptr;
  const unsigned char* mFileName = nullptr;
  std::vector<Property> mFolderProperties;
  std::vector<Property> mFileProperties;
  bool mSumsUp = false;  // folders' sizes come from the walk itself
  std::array<KnownDate, 256> mKnownDates{};
  std::unordered_map<std::string, _xmlNode*> mKnownTypes;
  std::vector<Level> mLevels;  // the folder in hand and those above it
};

}  // namespace brackwell
