#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Progress.h"
#include "platform/FileSystemObject.h"

// The image renamer without its window: an ExtensionFilter picks a folder's files, which make a WorkList; a
// Naming gives the ticked ones numbers; RenameFiles turns the outcome, which the user has seen by then, into
// renames or copies.

namespace brackwell {

/// Where copies go, below the folder of the originals.
inline constexpr std::string_view RenamedFilesFolder = "Renamed Files";

/// Which files are listed. Extensions are upper case and without the dot.
struct ExtensionFilter {
  std::vector<std::string> Extensions;
  std::array<std::string, 2> OtherExtensions;  // as typed; "*" for all files, also those without an extension

  bool ExtensionSelected(std::string_view extension) const;
};

/// One file of the work list.
struct RenameItem {
  std::string Name;  // native
  bool Checked = true;
  std::optional<std::int64_t> Number;  // of its new name, where it has one
};

/// In the order in which the files are numbered.
using WorkList = std::vector<RenameItem>;

/// The work list of these file names: all ticked, none with a new name.
WorkList ListFiles(const std::vector<std::string>& names, const ExtensionFilter& filter);

/// How new names are made: the prefix, the number in just so many digits, the extension in upper case.
struct Naming {
  std::string Prefix;
  std::int32_t Start = 0;
  std::size_t Width = 0;
};

/// Whether a text can be the starting number.
bool IsStartNumber(std::string_view text);

/// The naming that a user has typed; nothing without a prefix or a starting number. The width is that of the
/// typed text, zeros and all.
std::optional<Naming> ReadNaming(std::string_view prefix, std::string_view startNumber);

/// Numbers the ticked items from the top.
void AssignNewNames(WorkList& list, const Naming& naming);

/// Empty where the item has none. A number of more digits than the width keeps only its last ones.
std::string NewName(const Naming& naming, const RenameItem& item);

/// Whether its number has more digits than the width.
bool IsWrapped(const Naming& naming, const RenameItem& item);

/// Everything that RenameFiles needs to know.
struct RenamePlan {
  std::string Folder;
  bool Preserve = false;  // copies into RenamedFilesFolder instead of renames
  Naming Names;
  WorkList Items;
};

/// Renames or copies the ticked items from the top. A rename never overwrites, a copy replaces an earlier
/// one, but no link; what fails, or would get a name that IsFileName refuses, is left as it is. False where
/// it was stopped before its end.
bool RenameFiles(FileSystemObject& files, const RenamePlan& plan, Progress& progress);

/// What the user is told at the end; empty after renames in place.
std::string ClosingMessage(bool preserve);

}  // namespace brackwell
