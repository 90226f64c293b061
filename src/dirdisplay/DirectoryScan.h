#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "dirdisplay/PropertyCatalogue.h"
#include "platform/FileSystemObject.h"

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

/// A property as it is typed, or nothing.
using PropertyValue = std::variant<std::monostate, bool, std::uint64_t, DateTime, std::string>;

/// The value as text: dates in the user's general format, "True" and "False", plain numbers.
std::string ToText(PropertyValue value);

/// An open folder of which properties are asked, one after the other.
struct FolderItem {
  const FileSystemObject& Files;
  Folder& Object;
  std::optional<ItemDetails> Details = {};  // read when first needed
};

/// A listed file.
struct FileItem {
  const FileSystemObject& Files;
  std::string_view FolderPath;
  std::string_view Name;
  ItemDetails Details = {};
};

/// A folder's property; nothing for one that cannot be read. Sizes are nothing too: they take a walk.
PropertyValue GetFolderProperty(FolderItem& folder, InfoKey key);

/// Whether a file's property is one of its Details.
bool NeedsDetails(InfoKey key);
PropertyValue GetFileProperty(const FileItem& file, InfoKey key);

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
    DateTime Date;
    std::string Text;
  };
  struct SubFolder {
    std::string Name;
    bool IsLink;
  };
  /// A folder that is described but for its sub-folders.
  struct Level {
    _xmlNode* Element;
    _xmlNode* FirstFile = nullptr;
    std::vector<_xmlNode*> SizeTexts = {};  // filled once all below is summed up
    std::uint64_t Size = 0;
    std::size_t PathLength;
    std::vector<SubFolder> SubFolders = {};
    std::size_t Next = 0;
  };

  std::vector<Property> PropertiesOf(const std::vector<InfoItem>& items, InfoKey (*keyOf)(std::string_view));
  void EnterFolder(_xmlNode* parent, _xmlNode* before, bool leadsBack);
  void EnterSubFolder();
  void LeaveFolder();
  void AddFolderProperties(Folder& folder, Level& level);
  void AddFiles(Folder& folder, Level& level);
  void AddFileNode(const FileItem& file, Level& level);
  _xmlNode* AddPropertyNode(_xmlNode* owner, const Property& property, PropertyValue value);
  const std::string& DateContent(DateTime date);
  PropertyValue SizeBelow(const std::string& path) const;
  void DoEvents() const;

  const FileSystemObject& mFiles;
  const ScanOptions& mOptions;
  XmlDocument& mDocument;
  const bool mOneLine;
  Progress& mProgress;
  const Tick mTick;

  int mXmlType = 0;
  const unsigned char* mFolderName = nullptr;
  const unsigned char* mFileName = nullptr;
  std::vector<Property> mFolderProperties;
  std::vector<Property> mFileProperties;
  bool mNeedsDetails = false;  // of files
  bool mSumsUp = false;        // folders' sizes come from the walk itself
  std::array<KnownDate, 256> mKnownDates;
  std::string mPath;           // of the folder in hand
  std::vector<Level> mLevels;  // not on the program's stack: trees may be deeper than that
};

}  // namespace brackwell
