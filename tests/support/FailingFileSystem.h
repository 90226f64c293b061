#pragma once

#include <atomic>
#include <memory>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// The real file system, until the n-th call that can fail: that one raises `error`, and so do all after it.
/// Ticks during a long call count as calls, so a copy can fail in its middle. Any thread may call.
class FailingFileSystem final : public FileSystemObject {
 public:
  /// `failAt` counts from 1; 0 never fails.
  explicit FailingFileSystem(int failAt = 0, FileError error = FileError::DiskFull);

  /// How many calls there have been.
  int Calls() const { return mCalls; }
  /// Called in each of them, before it fails: to wait, say, so that a run takes its time. A run
  /// that has several threads calls it on all of them at once.
  std::function<void()> OnCall;

  /// Counts, waits and fails as part of this one.
  std::unique_ptr<FileSystemObject> Within(const std::vector<std::string>& roots) const override;
  bool FileExists(const std::string& path) const override;
  bool FolderExists(const std::string& path) const override;
  ItemProperties GetFile(const std::string& path) const override;
  std::unique_ptr<Folder> GetFolder(const std::string& path, const Tick& tick = {}) const override;
  bool LiesWithin(const std::string& folder, const std::string& ancestor) const override;
  std::string Drive(const std::string& path) const override;
  std::string ShortName(const std::string& path) const override;
  std::string ShortPath(const std::string& path) const override;
  std::string Type(const std::string& path) const override;
  std::string Type(std::string_view name, ItemKind kind) const override;
  void CopyFile(const std::string& source, const std::string& target, bool overwrite,
                const Tick& tick = {}) override;
  void CopyAsNewFile(const std::string& source, const std::string& target, const Tick& tick = {}) override;
  void CreateFolder(const std::string& path) override;
  void CopyFolderProperties(const std::string& source, const std::string& target) override;
  std::unique_ptr<TextReader> OpenTextFile(const std::string& path) const override;
  std::unique_ptr<TextWriter> CreateTextFile(const std::string& path, bool overwrite) override;

 private:
  friend class FailingFolder;
  FailingFileSystem(const FailingFileSystem& whole, std::unique_ptr<FileSystemObject> real);
  void Count(const std::string& path) const;
  Tick Counting(const std::string& path, const Tick& tick) const;

  const FailingFileSystem* const mWhole = nullptr;  // that this one is part of
  const std::unique_ptr<FileSystemObject> mReal = CreateFileSystemObject();
  const int mFailAt;
  const FileError mError;
  mutable std::atomic<int> mCalls = 0;
};

}  // namespace brackwell
