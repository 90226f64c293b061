#include "compare/CompareFixer.h"

#include "common/Text.h"

namespace brackwell {
namespace {

void CopyItem(FileSystemObject& files, bool isFile, const std::string& from, const std::string& to,
              const Tick& tick) {
  if (isFile)
    files.CopyFile(from, to, true, tick);
  else
    files.CopyFolder(from, to, true, tick);
}

}  // namespace

FixPaths PathsOf(const CompareRow& row, const FixOptions& options) {
  const bool targetSide = IsTargetSide(row.Kind);
  const std::string& root = targetSide ? options.TargetRoot : options.SourceRoot;
  const std::string& otherRoot = targetSide ? options.SourceRoot : options.TargetRoot;
  const std::string path = options.ShowFullPath ? row.Name : root + row.Name;
  const std::string otherPath = ReplaceRoot(path, root, otherRoot);
  return targetSide ? FixPaths{otherPath, path} : FixPaths{path, otherPath};
}

std::size_t FixSelected(FileSystemObject& files, const FixOptions& options, CompareRows& rows,
                        const FixEvents& events) {
  const auto inside = files.Within({options.SourceRoot, options.TargetRoot});
  std::size_t fixCount = 0;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    CompareRow& row = rows[index];
    if (row.FixSource != FixBox::On && row.FixTarget != FixBox::On) continue;
    const FixPaths paths = PathsOf(row, options);
    bool failed = false;
    const auto fix = [&](const std::string& from, const std::string& to) {
      ++fixCount;
      events.Fixing(index);
      try {
        CopyItem(*inside, IsFile(row.Kind), from, to, events.Working);
      } catch (const FileSystemError& error) {
        failed = true;
        events.Problem(index, error);
      }
      if (failed) return;
      MarkFixed(row);
      events.Fixed(index);
    };
    if (row.FixSource == FixBox::On) fix(paths.Target, paths.Source);
    if (row.FixTarget == FixBox::On) fix(paths.Source, paths.Target);
  }
  return fixCount;
}

}  // namespace brackwell
