#pragma once

#include <string>
#include <vector>

#include "platform/Win32.h"

namespace brackwell {

/// Why a test is skipped that needs such drives.
inline constexpr char NoMadeDrives[] = "this machine has drives of its own";

/// The root of a drive that tools/windows/wine-run makes. It is empty at first and when it goes, but for
/// names that begin with a dot, and belongs to one test of all that run.
class DriveRoot {
 public:
  static bool AreMade();

  explicit DriveRoot(char letter);
  ~DriveRoot();
  DriveRoot(const DriveRoot&) = delete;
  DriveRoot& operator=(const DriveRoot&) = delete;

  /// "H:\".
  const std::string& Path() const { return mPath; }
  /// The native path of a name below it, "/" between its elements.
  std::string Path(const std::string& name) const;

  void File(const std::string& name, const std::string& content, int seconds = 0);
  std::string Read(const std::string& name) const;
  /// Everything below it, folders with "/" at their end, without names that begin with a dot.
  std::vector<std::string> List() const;

 private:
  void Clear() const;

  const std::string mPath;
  win32::Handle mLock;
};

}  // namespace brackwell
