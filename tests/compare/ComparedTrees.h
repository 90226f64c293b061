#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "common/Progress.h"
#include "compare/CompareEngine.h"
#include "compare/CompareFixer.h"
#include "support/TempTree.h"

namespace brackwell {

using Lines = std::vector<std::string>;

/// The folders "s" and "t" of a temporary tree, to be compared and fixed in the way of the window.
class ComparedTrees : public testing::Test {
 protected:
  ComparedTrees() {
    Tree.Folder("s");
    Tree.Folder("t");
    Options.SourceRoot = Tree.Root("s");
    Options.TargetRoot = Tree.Root("t");
  }

  /// The rows in the order in which they are found: "- file", "d folder", with what they tell. An error that
  /// ends it comes as a last line: its number, and the path below the tree.
  Lines Walk() {
    Run();
    return Shown();
  }

  /// The same, sorted.
  Lines Compare() {
    Run();
    SortByName(Rows);
    return Shown();
  }

  /// Ticks every box of one side and copies. Gives the problems: the name of the row and the number.
  Lines FixTargets() { return Fix(&ToggleFixTarget); }
  Lines FixSources() { return Fix(&ToggleFixSource); }

  /// Called whenever a walk lets events run.
  std::function<void()> OnEvents;
  bool Stop = false;

  TempTree Tree;
  std::unique_ptr<FileSystemObject> Files = CreateFileSystemObject();
  CompareOptions Options;
  CompareRows Rows;

 private:
  class Events final : public Progress {
   public:
    explicit Events(const ComparedTrees& test) : mTest(test) {}
    void Message(std::string_view /*text*/) override {}
    void DoEvents() override {
      if (mTest.OnEvents) mTest.OnEvents();
    }
    bool Stopped() const override { return mTest.Stop; }

   private:
    const ComparedTrees& mTest;
  };

  void Run() {
    Rows.clear();
    mError.clear();
    Events events(*this);
    try {
      CompareEngine(*Files, Options, events, [this](CompareRow row) {
        Rows.push_back(std::move(row));
      }).RunComparison();
    } catch (const FileSystemError& error) {
      std::string path = error.Path();
      if (path.starts_with(Tree.Root(""))) path.erase(0, Tree.Root("").size());
      mError = std::to_string(error.Number()) + " " + path;
    }
  }

  Lines Shown() const {
    static constexpr std::array<const char*, 9> Marks{
        " only in source",  " only in target", " newer in source",
        " newer in target", " differs",        "",
        " only in source",  " only in target", ""};
    Lines lines;
    for (const CompareRow& row : Rows)
      lines.push_back((IsFile(row.Kind) ? "- " : "d ") + row.Name +
                      Marks[static_cast<std::size_t>(row.Kind)]);
    if (!mError.empty()) lines.push_back(mError);
    return lines;
  }

  Lines Fix(bool (*toggle)(CompareRow&)) {
    for (CompareRow& row : Rows) toggle(row);
    Lines problems;
    FixSelected(*Files,
                {.SourceRoot = Options.SourceRoot,
                 .TargetRoot = Options.TargetRoot,
                 .ShowFullPath = Options.ShowFullPath},
                Rows,
                {.Fixing = [](std::size_t) {},
                 .Problem =
                     [&](std::size_t row, const FileSystemError& error) {
                       problems.push_back(Rows[row].Name + " " + std::to_string(error.Number()));
                     },
                 .Fixed = [](std::size_t) {},
                 .Working = {}});
    return problems;
  }

  std::string mError;
};

}  // namespace brackwell
