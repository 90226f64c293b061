#pragma once

#include <QString>
#include <memory>

// Include this in every test that shows windows. Before anything else runs it gives the test a store of
// settings of its own, empty and thrown away afterwards, and a platform without a display.

namespace brackwell {

class IsolatedSettings {
 public:
  IsolatedSettings();
  ~IsolatedSettings();
  IsolatedSettings(const IsolatedSettings&) = delete;
  IsolatedSettings& operator=(const IsolatedSettings&) = delete;

  /// Forgets all settings.
  void Clear() const;
  /// The file in which the program's settings are kept; on Windows their key in the registry.
  QString Place() const;

 private:
  struct Store;
  const std::unique_ptr<const Store> mStore;
};

inline const IsolatedSettings isolatedSettings;

}  // namespace brackwell
