#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// Why a test is skipped that needs a name which this system forbids.
inline constexpr char NoSuchName[] = "no file can have this name here";

/// A folder of its own for each test, gone with the test. Names are paths below it, "/" between their
/// elements on every system; they may be any bytes on POSIX and are UTF-8 on Windows.
class TempTree {
 public:
  TempTree();
  ~TempTree();
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;

  /// The native path of `name`; of the folder itself, without separator at its end, by default.
  std::string Path(const std::string& name = {}) const;
  /// The same with a separator at its end, as a folder chosen by the user has it.
  std::string Root(const std::string& name) const;

  /// Makes the folders on the way as well.
  void Folder(const std::string& name);
  void File(const std::string& name, const std::string& content = {});
  /// With a modification time `seconds` after the start of 2020.
  void File(const std::string& name, const std::string& content, int seconds);
  void SetModified(const std::string& name, int seconds);
  void SetReadOnly(const std::string& name);
  void Remove(const std::string& name);

  std::string Read(const std::string& name) const;
  bool Exists(const std::string& name) const;
  /// Everything below `name`, folders with "/" at their end, in plain byte order.
  std::vector<std::string> List(const std::string& name = {}) const;

  static DateTime Time(int seconds);
  /// Whether files can have this name here: on Windows no controls, no markup and nothing that is no text.
  static bool CanName(const std::string& name);

 private:
  std::filesystem::path At(const std::string& name) const;
  std::filesystem::path mFolder;
};

}  // namespace brackwell
