#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/Progress.h"
#include "dirdisplay/DisplayOutput.h"
#include "support/OwnFolders.h"
#include "support/TempTree.h"

namespace brackwell {

using Lines = std::vector<std::string>;

/// The folder "top" of a temporary tree, to be described by the stylesheets that the program comes with. The
/// output goes into the folder "out".
class DescribedFolder : public testing::Test {
 protected:
  DescribedFolder() : mOut((Tree.Folder("out"), Tree.Path("out"))) {
    Tree.Folder("top");
    Options.Folder = Tree.Path("top");
    Options.Format = DisplayFormat::Xml;
    Options.ProgramFolder = BRACKWELL_RESOURCES;
    Options.FolderInfo = {{"Full Name", "Path"}};
    Options.FileInfo = {{"Name", "Name"}};
  }

  /// The text of the output: "~" for the tree, "/" between the elements of a path. An error that ends the run
  /// gives its number and path instead, a stopped run "stopped".
  std::string Display() { return Display(*Files); }
  std::string Display(FileSystemObject& files) {
    Told.clear();
    Events events(*this);
    try {
      const auto path = DisplayDirectory(files, Options, events,
                                         [this](const std::string& text) { Told.push_back(Shown(text)); });
      return path ? Shown(Files->OpenTextFile(*path)->ReadAll()) : "stopped";
    } catch (const FileSystemError& error) {
      return std::to_string(error.Number()) + " " + Shown(error.Path());
    }
  }

  /// An XML document tag by tag, without its declaration and its root's end.
  Lines Elements() { return Elements(Display()); }
  static Lines Elements(std::string text) {
    Lines lines;
    if (text.starts_with("<?xml")) text.erase(0, text.find('\n') + 1);
    for (std::size_t at = text.find("><"); at != std::string::npos; at = text.find("><")) {
      lines.push_back(text.substr(0, at + 1));
      text.erase(0, at + 1);
    }
    return lines.empty() ? Lines{text} : lines;
  }

  static Lines SplitLines(const std::string& text) {
    Lines lines;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find(LineEnd, at), text.size());
      lines.push_back(text.substr(at, end - at));
      at = end + std::string_view(LineEnd).size();
    }
    return lines;
  }

  std::string Shown(std::string_view text) const {
    const std::string tree = Tree.Path();
    std::string shown;
    while (!text.empty()) {
      const bool isTree = text.starts_with(tree);
      shown += isTree ? '~' : text[0] == PathSeparator ? '/' : text[0];
      text.remove_prefix(isTree ? tree.size() : 1);
    }
    return shown;
  }

  /// Called whenever a run lets events run.
  std::function<void()> OnEvents;
  bool Stop = false;

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  DisplayOptions Options;
  Lines Told;  // errors of stylesheets

 private:
  class Events final : public Progress {
   public:
    explicit Events(const DescribedFolder& test) : mTest(test) {}
    void Message(std::string_view /*text*/) override {}
    void DoEvents() override {
      if (mTest.OnEvents) mTest.OnEvents();
    }
    bool Stopped() const override { return mTest.Stop; }

   private:
    const DescribedFolder& mTest;
  };

  const OwnTempFolder mOut;
};

}  // namespace brackwell
