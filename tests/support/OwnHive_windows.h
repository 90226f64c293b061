#pragma once

#include <string>

#include "platform/Win32.h"

namespace brackwell {

/// For as long as it lives, this process finds a key of its own, empty at first, in the place of a hive of
/// the registry.
class OwnHive {
 public:
  explicit OwnHive(HKEY hive);
  ~OwnHive();
  OwnHive(const OwnHive&) = delete;
  OwnHive& operator=(const OwnHive&) = delete;

  /// A text under a value's name below the hive; the key is made on the way.
  void Store(const std::string& keyPath, const std::string& valueName, const std::string& text) const;
  /// Forgets everything in it.
  void Clear() const;

 private:
  HKEY mHive;
  HKEY mHome = nullptr;  // where the key is kept
  std::wstring mName;
  HKEY mKey = nullptr;
};

}  // namespace brackwell
