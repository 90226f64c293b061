#pragma once

#include <string>

#include "support/TempTree.h"

namespace brackwell {

/// An empty disk with exFAT in user space, as many memory sticks have it: it ignores case, refuses some
/// names, and knows no links, owners, modes or renames that do not replace. Mounted for as long as this
/// lives.
class ExFatDisk {
 public:
  ExFatDisk();
  ~ExFatDisk();
  ExFatDisk(const ExFatDisk&) = delete;
  ExFatDisk& operator=(const ExFatDisk&) = delete;

  /// False without the right to mount, or without the programs that make and mount one.
  bool IsThere() const { return mIsMounted; }
  std::string Path(const std::string& name = {}) const {
    return mTree.Path(name.empty() ? "disk" : "disk/" + name);
  }

 private:
  TempTree mTree;
  std::string mDevice;
  bool mIsMounted = false;
};

}  // namespace brackwell
