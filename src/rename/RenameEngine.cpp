#include "rename/RenameEngine.h"

#include <algorithm>

#include "common/Numeric.h"
#include "common/Text.h"
#include "platform/CaseRules.h"

namespace brackwell {
namespace {

std::string NumberText(std::int64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  if (digits.size() >= width) return digits.substr(digits.size() - width);
  return std::string(width - digits.size(), '0') + digits;
}

/// Does one step for each ticked item, and goes on after one that fails.
template <typename Step>
bool ForEachChecked(const RenamePlan& plan, std::string_view doing, Progress& progress, Step step) {
  std::string message;
  for (const RenameItem& item : plan.Items) {
    if (!item.Checked) continue;
    message = doing;
    message += item.Name;
    progress.Message(message);
    progress.DoEvents();
    if (progress.Stopped()) return false;
    try {
      step(item.Name, NewName(plan.Names, item));
    } catch (const FileSystemError&) {
      // The list, read again afterwards, shows what was left.
    }
  }
  return true;
}

bool RenameInPlace(const FileSystemObject& files, const RenamePlan& plan, Progress& progress) {
  const auto folder = files.GetFolder(plan.Folder);
  return ForEachChecked(
      plan, "Renaming ", progress,
      [&](const std::string& name, const std::string& newName) { folder->Rename(name, newName); });
}

void CreateOrUse(FileSystemObject& files, const std::string& folder) {
  try {
    files.CreateFolder(folder);
  } catch (const FileSystemError&) {
    // It may be there already. If it is not, nothing is copied.
  }
}

/// The folder for the copies may be a link, which is not gone through: it may lead back to the originals.
bool CopyAll(FileSystemObject& files, const RenamePlan& plan, Progress& progress) {
  const auto inside = files.Within({plan.Folder});
  const std::string target = JoinPath(plan.Folder, RenamedFilesFolder);
  if (!inside->FolderExists(plan.Folder)) return true;
  CreateOrUse(*inside, target);
  if (!inside->FolderExists(target)) return true;
  return ForEachChecked(plan, "Copying ", progress, [&](const std::string& name, const std::string& newName) {
    if (!IsFileName(newName)) return;
    inside->CopyAsNewFile(JoinPath(plan.Folder, name), JoinPath(target, newName),
                          [&] { progress.DoEvents(); });
  });
}

}  // namespace

bool ExtensionFilter::ExtensionSelected(std::string_view extension) const {
  const auto is = [&](std::string_view text) { return text == extension; };
  if (std::ranges::find(OtherExtensions, "*") != OtherExtensions.end()) return true;
  if (std::ranges::any_of(Extensions, is)) return true;
  return std::ranges::any_of(OtherExtensions,
                             [&](const std::string& other) { return !other.empty() && is(Upper(other)); });
}

WorkList ListFiles(const std::vector<std::string>& names, const ExtensionFilter& filter) {
  WorkList list;
  for (const std::string& name : names)
    if (filter.ExtensionSelected(GetFileExtension(name))) list.push_back({.Name = name, .Number = {}});
  return list;
}

bool IsStartNumber(std::string_view text) { return ParseWholeNumber(text).has_value(); }

std::optional<Naming> ReadNaming(std::string_view prefix, std::string_view startNumber) {
  const auto start = ParseWholeNumber(startNumber);
  if (prefix.empty() || !start) return std::nullopt;
  return Naming{.Prefix = std::string(prefix), .Start = *start, .Width = startNumber.size()};
}

void AssignNewNames(WorkList& list, const Naming& naming) {
  std::int64_t number = naming.Start;
  for (RenameItem& item : list) item.Number = item.Checked ? std::optional(number++) : std::nullopt;
}

std::string NewName(const Naming& naming, const RenameItem& item) {
  if (!item.Number) return {};
  std::string name = naming.Prefix + NumberText(*item.Number, naming.Width);
  const std::string extension = GetFileExtension(item.Name);
  if (!extension.empty()) name += '.' + extension;
  return name;
}

bool IsWrapped(const Naming& naming, const RenameItem& item) {
  return item.Number && std::to_string(*item.Number).size() > naming.Width;
}

bool RenameFiles(FileSystemObject& files, const RenamePlan& plan, Progress& progress) {
  try {
    return plan.Preserve ? CopyAll(files, plan, progress) : RenameInPlace(files, plan, progress);
  } catch (const FileSystemError&) {
    return true;  // the folder cannot be reached: every file in it is left
  }
}

std::string ClosingMessage(bool preserve) {
  if (!preserve) return {};
  return "Files have been renamed and can be found in the '" + std::string(RenamedFilesFolder) +
         "' sub-folder.";
}

}  // namespace brackwell
