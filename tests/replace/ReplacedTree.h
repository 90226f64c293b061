#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "common/Progress.h"
#include "replace/ReplaceEngine.h"
#include "support/TempTree.h"

namespace brackwell {

using Lines = std::vector<std::string>;

/// The folder "t" of a temporary tree, searched in the way of the window.
class ReplacedTree : public testing::Test {
 protected:
  ReplacedTree() {
    Tree.Folder("t");
    Options.Folder = Tree.Root("t");
    Options.Subfolders = true;
    Options.ExtensionList = {"txt"};
  }

  /// What the window shows of a run: a line for each file, its path below "t", a colon and its result; a
  /// message box begins with "!"; the total or the error that ended it comes last.
  Lines Find(const std::string& phrase) { return Run(phrase, {}, false); }
  Lines Replace(const std::string& phrase, const std::string& replacement) {
    return Run(phrase, replacement, true);
  }

  /// The files that are listed.
  Lines Scan() {
    Run("no such phrase", {}, false);
    Lines names;
    for (const ReplaceRow& row : Rows) names.push_back(Below(row.Path));
    return names;
  }

  std::string Below(std::string path) const {
    const std::string root = Tree.Root("t");
    if (path.starts_with(root)) path.erase(0, root.size());
    std::ranges::replace(path, PathSeparator, '/');
    return path;
  }

  /// Called whenever a run lets events through.
  std::function<void()> OnEvents;
  bool Stop = false;

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  ReplaceOptions Options;
  ReplaceRows Rows;
  Lines Messages;  // of the status bar
  std::size_t Item = 0;
  bool Finished = false;

 private:
  class Events final : public Progress {
   public:
    explicit Events(ReplacedTree& test) : mTest(test) {}
    void Message(std::string_view text) override { mTest.Messages.emplace_back(text); }
    void DoEvents() override {
      if (mTest.OnEvents) mTest.OnEvents();
    }
    bool Stopped() const override { return mTest.Stop; }

   private:
    ReplacedTree& mTest;
  };

  Lines Run(const std::string& phrase, const std::string& replacement, bool replaceMode) {
    Rows.clear();
    Messages.clear();
    Finished = false;
    Options.Find = phrase;
    Options.Replace = replacement;
    Options.ReplaceMode = replaceMode;
    Lines boxes;
    Events events(*this);
    ReplaceEngine engine(*Files, Options, events, Rows, [&](ReplaceProblem problem, const ReplaceRow& row) {
      constexpr const char* Kinds[] = {"!open ", "!encode ", "!unsupported "};
      boxes.push_back(Kinds[static_cast<int>(problem)] + Below(row.Path));
    });
    std::string end;
    try {
      Finished = engine.ScanFolder() && engine.ProcessFiles();
      end = TotalText(engine.Total(), replaceMode);
    } catch (const FileSystemError& error) {
      end = "error " + std::to_string(error.Number()) + " " + Below(error.Path());
    } catch (const OverflowError& error) {
      end = "error " + std::to_string(error.Number()) + " " + Below(error.Path());
    }
    Item = engine.Item();
    Lines lines;
    for (const ReplaceRow& row : Rows) lines.push_back(Below(row.Path) + ": " + ResultText(row.Result));
    lines.insert(lines.end(), boxes.begin(), boxes.end());
    lines.push_back(end);
    return lines;
  }
};

}  // namespace brackwell
