#pragma once

#include <string>

#include "platform/Posix.h"

namespace brackwell::posix {

/// A file that is being written and has no name yet, or one of ours beside its target where the file system
/// cannot do without. It takes its target's place in one step; dropped before that, it leaves nothing behind.
/// What a killed program left is taken away the next time that the same target is written.
class PendingFile {
 public:
  /// `folder` holds, or will hold, `name`; `path` is the two together, for errors.
  PendingFile(Handle folder, std::string name, std::string path);
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  ~PendingFile();

  const Handle& File() const { return mFile; }
  int Descriptor() const { return mFile.Get(); }
  /// Raises FileAlreadyExists where the name is taken and is not to be replaced.
  void Commit(bool replace);
  /// Says that it will not take its target's place: it goes with its descriptor, even if we are killed.
  void GiveUpName();

 private:
  bool OpenUnnamed();
  void OpenNamed();
  void TakePlace(bool replace);
  bool LinkAs(const std::string& name) const;
  void GiveNeighbourName();
  bool RemoveLeftover(const std::string& neighbour) const;
  bool IsAt(const std::string& neighbour, const Handle& file) const;
  [[noreturn]] void RaiseLast() const;
  [[noreturn]] void RaiseForTheName(int code) const;

  Handle mFolder;
  Handle mFile;
  std::string mName;
  std::string mPath;
  std::string mNeighbour;  // empty while the file has no name
};

/// Gives `name` in an open folder to a new link with this text and modification time, in one step even where
/// a file or link has that name and is replaced. `path` is for errors.
void PutLink(const Handle& folder, const std::string& name, const std::string& path, const std::string& text,
             const timespec& modified, bool replace);

}  // namespace brackwell::posix
