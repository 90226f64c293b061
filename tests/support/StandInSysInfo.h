#pragma once

#include <memory>

namespace brackwell {

/// For as long as it lives, the system has no system information program but this object's.
class StandInSysInfo {
 public:
  StandInSysInfo();
  ~StandInSysInfo();
  StandInSysInfo(const StandInSysInfo&) = delete;
  StandInSysInfo& operator=(const StandInSysInfo&) = delete;

  /// A program that can be told to have started.
  void Install();
  bool HasStarted() const;
  /// One that cannot be started.
  void InstallBroken();

 private:
  struct Known;
  std::unique_ptr<Known> mKnown;
};

}  // namespace brackwell
