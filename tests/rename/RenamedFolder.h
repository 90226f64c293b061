#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "platform/CaseRules.h"
#include "rename/FolderFiles.h"
#include "rename/RenameEngine.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

namespace brackwell {

using Lines = std::vector<std::string>;

/// Lets a run go on until it is told otherwise.
class TestProgress final : public Progress {
 public:
  void Message(std::string_view text) override { Messages.emplace_back(text); }
  void DoEvents() override {
    ++Events;
    if (OnEvents) OnEvents();
  }
  bool Stopped() const override { return Stop; }

  Lines Messages;
  int Events = 0;
  bool Stop = false;
  std::function<void()> OnEvents;
};

/// A temporary tree with the folder "images", whose files are listed, numbered and renamed as the window does
/// it.
class RenamedFolder {
 public:
  RenamedFolder() { Tree.Folder("images"); }

  /// A file whose content is its first name, so that it is known under any other.
  void File(const std::string& name) { Tree.File("images/" + name, name); }
  void Files(const Lines& names) {
    for (const std::string& name : names) File(name);
  }

  WorkList List(const ExtensionFilter& filter = {.Extensions = {}, .OtherExtensions = {"*", ""}}) {
    return ListFiles(FolderFiles(FileSystem).Read(Tree.Path("images")), filter);
  }

  /// Numbers the list and renames; false where it was stopped.
  bool Rename(WorkList list, const std::string& prefix, const std::string& start, bool preserve = false) {
    return Rename(FileSystem, std::move(list), prefix, start, preserve);
  }
  bool Rename(FileSystemObject& files, WorkList list, const std::string& prefix, const std::string& start,
              bool preserve) {
    const Naming naming = ReadNaming(prefix, start).value();
    AssignNewNames(list, naming);
    return RenameFiles(
        files,
        {.Folder = Tree.Path("images"), .Preserve = preserve, .Names = naming, .Items = std::move(list)},
        Events);
  }

  /// "name: content" of every file in the folder and below.
  Lines Found(const std::string& folder = "images") {
    Lines found;
    for (const std::string& name : Tree.List(folder))
      if (!name.ends_with('/')) found.push_back(name + ": " + Tree.Read(folder + "/" + name));
    return found;
  }

  TempTree Tree;
  FailingFileSystem FileSystem;
  TestProgress Events;
};

}  // namespace brackwell
