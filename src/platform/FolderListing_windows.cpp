#include "platform/FolderListing_windows.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/MemberList.h"

namespace brackwell::win32 {
namespace {

constexpr unsigned KnownAttributes = Attribute::ReadOnly | Attribute::Hidden | Attribute::System |
                                     Attribute::Directory | Attribute::Archive | Attribute::Compressed;

DateTime DateOf(std::int64_t ticks) {
  constexpr std::int64_t TicksPerSecond = 10'000'000;
  constexpr std::int64_t SecondsFrom1601To1970 = 11'644'473'600;
  if (ticks == 0) return {};
  return DateTime(std::chrono::seconds(ticks / TicksPerSecond - SecondsFrom1601To1970));
}

DateTime DateOf(const FILETIME& time) {
  return DateOf(static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime));
}

FileStatus StatusOf(const Found& found) {
  return {.IsFolder = found.IsFolder(),
          .Size = found.IsFolder() ? 0 : found.Size(),
          .DateLastModified = DateOf(found.Information.ftLastWriteTime)};
}

/// Other reparse points are files and folders like any other: kept in a cloud, compressed, deduplicated.
bool IsLinkTag(DWORD attributes, DWORD tag) {
  return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (tag == 0 || IsReparseTagNameSurrogate(tag));
}

/// A search, closed at its end.
class Search {
 public:
  explicit Search(const std::wstring& pattern)
      : mHandle(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &mItem, FindExSearchNameMatch, nullptr,
                                 FIND_FIRST_EX_LARGE_FETCH)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (HasItem()) FindClose(mHandle);
  }

  bool HasItem() const { return mHandle != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& Item() const { return mItem; }
  bool Next() { return FindNextFileW(mHandle, &mItem); }

 private:
  WIN32_FIND_DATAW mItem{};
  HANDLE mHandle;
};

template <typename Data>
BY_HANDLE_FILE_INFORMATION InformationOf(const Data& data) {
  BY_HANDLE_FILE_INFORMATION information{};
  information.dwFileAttributes = data.dwFileAttributes;
  information.ftCreationTime = data.ftCreationTime;
  information.ftLastAccessTime = data.ftLastAccessTime;
  information.ftLastWriteTime = data.ftLastWriteTime;
  information.nFileSizeHigh = data.nFileSizeHigh;
  information.nFileSizeLow = data.nFileSizeLow;
  return information;
}

/// What the folder has noted of a file that cannot be asked itself, such as the system's paging file.
bool FindNoted(const std::wstring& nativePath, Found& found) {
  const Search search(nativePath);
  if (!search.HasItem()) return false;
  const WIN32_FIND_DATAW& item = search.Item();
  found = {InformationOf(item), IsLinkTag(item.dwFileAttributes, item.dwReserved0)};
  return true;
}

bool IsLink(const std::wstring& nativePath) {
  const Search search(nativePath);
  return search.HasItem() && IsLinkTag(search.Item().dwFileAttributes, search.Item().dwReserved0);
}

bool IsDotName(std::wstring_view name) { return name == L"." || name == L".."; }

class Listing final : public Folder {
 public:
  Listing(std::string path, Tick tick, Way way)
      : mPath(std::move(path)), mWay(std::move(way)), mMembers(std::move(tick)) {}

  const std::string& Path() const override { return mPath; }

  /// Those of what a link leads to, where the chosen folder is one.
  ItemProperties Properties() const override {
    const auto found = FindFollowing(mPath);
    if (!found) throw FileSystemError(FileError::PathNotFound, mPath);
    return PropertiesOf(*found, mPath);
  }

  FolderState State() const override {
    const Handle folder = Open(NativePath(mPath), FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION place;
    FILE_BASIC_INFO times;
    if (!folder.IsOpen() || !GetFileInformationByHandle(folder.Get(), &place) ||
        !GetFileInformationByHandleEx(folder.Get(), FileBasicInfo, &times, sizeof times))
      Raise(GetLastError(), mPath);
    const std::int64_t modified = times.LastWriteTime.QuadPart;
    const std::int64_t changed = times.ChangeTime.QuadPart;
    return {.Volume = place.dwVolumeSerialNumber,
            .Index = std::uint64_t{place.nFileIndexHigh} << 32 | place.nFileIndexLow,
            .ModificationTicks = static_cast<std::uint64_t>(modified),
            .ChangeTicks = static_cast<std::uint64_t>(changed),
            .LastChanged = DateOf(std::max(modified, changed))};
  }

  const std::vector<Member>& Files() override {
    ReadMembers();
    return mMembers.Files();
  }

  const std::vector<Member>& SubFolders() override {
    ReadMembers();
    return mMembers.SubFolders();
  }

  std::optional<FileStatus> Find(std::string_view name) const override {
    if (name.empty()) return std::nullopt;
    const auto found = FindItem(JoinPath(mPath, name));
    return found ? std::optional(StatusOf(*found)) : std::nullopt;
  }

  ItemDetails FileDetails(std::string_view name) const override {
    const std::string path = JoinPath(mPath, name);
    const Found found = GetItem(path, FileError::FileNotFound);
    if (found.IsFolder()) throw FileSystemError(FileError::FileNotFound, path);
    return DetailsOf(found);
  }

  /// The file system itself takes names that differ in case only for the same.
  void Rename(const std::string& name, const std::string& newName) override {
    const std::string target = JoinPath(mPath, newName);
    if (!IsFileName(newName)) throw FileSystemError(FileError::PathFileAccess, target);
    if (name == newName) return;
    if (!MoveFileExW(NativePath(JoinPath(mPath, name)).c_str(), NativePath(target).c_str(), 0))
      Raise(GetLastError(), target, FileError::FileNotFound);
  }

 private:
  void ReadMembers() {
    if (mRead) return;
    mMembers.Clear();
    ReadNames();
    mMembers.Order();
    mRead = true;
  }

  void ReadNames() {
    Search search(NativePath(JoinPath(mPath, "*")));
    if (!search.HasItem()) {
      if (GetLastError() == ERROR_FILE_NOT_FOUND) return;  // an empty root: it has no dot names either
      Raise(GetLastError(), mPath);
    }
    do {
      if (!IsDotName(search.Item().cFileName)) Gather(search.Item());
    } while (search.Next());
    if (GetLastError() != ERROR_NO_MORE_FILES) Raise(GetLastError(), mPath);
  }

  void Gather(const WIN32_FIND_DATAW& item) {
    const std::string name = Narrow(item.cFileName);
    const bool isLink = IsLinkTag(item.dwFileAttributes, item.dwReserved0);
    mMembers.Gather(name, !isLink && (item.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, isLink);
  }

  const std::string mPath;
  const Way mWay;
  MemberList mMembers;
  bool mRead = false;
};

}  // namespace

std::uint64_t Found::Size() const {
  return std::uint64_t{Information.nFileSizeHigh} << 32 | Information.nFileSizeLow;
}

std::unique_ptr<Folder> OpenListing(const std::string& path, const Tick& tick, Way way) {
  const Found found = GetItem(path, FileError::PathNotFound);
  const auto target = found.IsLink ? FindFollowing(path) : found;
  if (!target || !target->IsFolder()) throw FileSystemError(FileError::PathNotFound, path);
  return std::make_unique<Listing>(path, tick, std::move(way));
}

std::optional<Found> FindItem(const std::string& path) {
  Found found;
  if (LookUp(path, found) != ERROR_SUCCESS) return std::nullopt;
  return found;
}

std::optional<Found> FindFollowing(const std::string& path) {
  auto found = FindItem(path);
  if (!found || !found->IsLink) return found;
  const Handle target = Open(NativePath(path), 0, FILE_FLAG_BACKUP_SEMANTICS);
  Found followed;
  if (!target.IsOpen() || !GetFileInformationByHandle(target.Get(), &followed.Information)) return found;
  return followed;
}

Found GetItem(const std::string& path, FileError missing) {
  Found found;
  if (const DWORD error = LookUp(path, found)) Raise(error, path, missing);
  return found;
}

DWORD LookUp(const std::string& path, Found& found) {
  const std::wstring nativePath = NativePath(path);
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(nativePath.c_str(), GetFileExInfoStandard, &data)) {
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION && FindNoted(nativePath, found) ? ERROR_SUCCESS : error;
  }
  const bool mayBeLink = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  found = {InformationOf(data), mayBeLink && IsLink(nativePath)};
  return ERROR_SUCCESS;
}

bool IsFolderItself(const Handle& opened) {
  FILE_ATTRIBUTE_TAG_INFO item{};
  return GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo, &item, sizeof item) &&
         (item.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         !IsLinkTag(item.FileAttributes, item.ReparseTag);
}

ItemDetails DetailsOf(const Found& found) {
  const DWORD attributes = found.Information.dwFileAttributes;
  const unsigned known = found.IsLink ? KnownAttributes & ~Attribute::Directory : KnownAttributes;
  return {.Kind = found.IsFolder() ? ItemKind::Folder
                  : found.IsLink   ? ItemKind::Link
                                   : ItemKind::File,
          .Attributes = (attributes & known) | (found.IsLink ? Attribute::Alias : 0),
          .DateCreated = DateOf(found.Information.ftCreationTime),
          .DateLastAccessed = DateOf(found.Information.ftLastAccessTime),
          .DateLastModified = DateOf(found.Information.ftLastWriteTime),
          .Size = found.IsFolder() ? 0 : found.Size()};
}

ItemProperties PropertiesOf(const Found& found, const std::string& path) {
  ItemProperties properties{DetailsOf(found), {}, {}, {}};
  properties.Path = WithoutSeparator(path);
  properties.Name = FileName(path);
  properties.ParentFolder = ParentPath(path);
  return properties;
}

}  // namespace brackwell::win32
