#pragma once

#include <functional>
#include <string>

#include "platform/FileSystemObject.h"
#include "platform/Win32.h"

namespace brackwell::win32 {

/// A file that is being written, hidden beside its target. It takes its target's place in one step; dropped
/// before that, it leaves nothing behind, nor does a program that is killed: the system removes it.
class PendingFile {
 public:
  /// `path` is the file that is to be. It begins empty.
  explicit PendingFile(const std::string& path);
  /// It begins as a copy of `model` with all that this has: content, other streams, extended attributes.
  /// Calls `tick` from time to time, which may throw. Until the copy is made, a program that is killed leaves
  /// it behind, for the next writer of the same target to delete.
  PendingFile(const std::string& path, const std::string& model, const Tick& tick);
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  const Handle& File() const { return mFile; }
  /// Dates and attributes that the file is to have in its place; those that are 0 are the system's choice.
  void SetProperties(const FILE_BASIC_INFO& properties) { mProperties = properties; }
  /// Raises FileAlreadyExists where the name is taken and is not to be replaced. Call it once, last.
  void Commit(bool replace);

 private:
  using Create = std::function<Handle(const std::wstring& nativePath)>;

  void Open(const Create& create);
  Handle CreateNeighbour(const Create& create) const;
  bool SetRemovedOnClose(bool removed);
  bool TakePlace(bool replace);

  const std::string mPath;
  Handle mFile;
  FILE_BASIC_INFO mProperties{};
};

/// As many writers of one target at a time as anybody can have.
inline constexpr int NeighbourNumbers = 16;

/// The path of a neighbour of `path`: for what is to take its place, where `number` is below
/// NeighbourNumbers, or for what makes way.
std::string NeighbourPath(const std::string& path, int number);

/// Whether a file has more than its content: what a browser notes of where it is from, for example.
bool HasOtherStreams(const std::string& path);

}  // namespace brackwell::win32
