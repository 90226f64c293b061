#include "platform/Help.h"

#include <cstring>

#include "platform/FileSystemObject.h"
#include "platform/Win32.h"

namespace brackwell {
namespace {

constexpr UINT DisplayTopic = 0;   // HH_DISPLAY_TOPIC
constexpr UINT DisplayToc = 1;     // HH_DISPLAY_TOC
constexpr UINT DisplaySearch = 3;  // HH_DISPLAY_SEARCH
constexpr UINT CloseAll = 18;      // HH_CLOSE_ALL

/// HH_FTS_QUERYW: what the search page is to look for. It wants its own size in front.
struct FullTextQuery {
  int Size;
  BOOL Unicode;
  LPCWSTR Text;
  LONG Proximity;
  BOOL StemmedSearch;
  BOOL TitleOnly;
  BOOL Execute;
  LPCWSTR Window;
};

using HtmlHelpFunction = HWND(WINAPI*)(HWND caller, LPCWSTR file, UINT command, DWORD_PTR data);

/// The help control library's one function; null where the system lacks it. The library stays loaded, since
/// its window lives in it.
HtmlHelpFunction HtmlHelp() {
  static const auto function = [] {
    const HMODULE library = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const FARPROC found = library ? GetProcAddress(library, "HtmlHelpW") : nullptr;
    return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(found));
  }();
  return function;
}

/// The viewer knows no long-path form, so files are named as users know them.
bool Show(const std::string& file, UINT command, const void* data = nullptr) {
  const HtmlHelpFunction htmlHelp = HtmlHelp();
  return htmlHelp &&
         htmlHelp(nullptr, win32::Widen(file).c_str(), command, reinterpret_cast<DWORD_PTR>(data)) != nullptr;
}

std::string UsualPath(const std::string& path) { return win32::UsualPath(win32::NativePath(path)); }

/// The viewer runs in this program and is not to stumble over a copy that was cut short, so the length that
/// the file gives of itself is looked at first. Bytes are in the order of this processor.
bool IsWhole(const std::string& path) try {
  constexpr std::size_t PlaceOfSizes = 0x38;  // where the part that tells the length begins
  constexpr std::size_t PlaceOfLength = 8;    // within that part
  const auto file = CreateFileSystemObject()->OpenTextFile(path);
  std::string head(4096, '\0');
  head.resize(file->Read(head.data(), head.size()));
  const auto number = [&head](std::uint64_t at) {
    std::uint64_t value = 0;
    if (at < head.size() && head.size() - at >= sizeof value) std::memcpy(&value, &head[at], sizeof value);
    return value;
  };
  return head.starts_with("ITSF") && number(number(PlaceOfSizes) + PlaceOfLength) == file->Size();
} catch (const FileSystemError&) {
  return false;
}

}  // namespace

bool ShowHelpContents(const std::string& helpFile) {
  return IsWhole(helpFile) && Show(UsualPath(helpFile), DisplayToc);
}

bool ShowHelpSearch(const std::string& helpFile) {
  if (!IsWhole(helpFile)) return false;
  FullTextQuery query{};
  query.Size = sizeof query;
  query.Execute = TRUE;
  return Show(UsualPath(helpFile), DisplaySearch, &query);
}

bool ShowHelpTopic(const std::string& helpFile, const std::string& topic) {
  return IsWhole(helpFile) && Show(UsualPath(helpFile) + "::/" + topic, DisplayTopic);
}

void CloseHelp() {
  // A library that was never needed is not loaded for this.
  if (GetModuleHandleW(L"hhctrl.ocx") && HtmlHelp()) HtmlHelp()(nullptr, nullptr, CloseAll, 0);
}

}  // namespace brackwell
