#pragma once

#include <QString>
#include <QStringList>
#include <memory>

namespace brackwell {

/// For as long as it lives, documents are handed to a stand-in of this object's instead of the programs that
/// the system would open them with.
class StandInOpener {
 public:
  StandInOpener();
  ~StandInOpener();
  StandInOpener(const StandInOpener&) = delete;
  StandInOpener& operator=(const StandInOpener&) = delete;

  /// From here on no program opens documents.
  void OpenNothing();

  /// What has been handed over so far: documents by their paths, "/" between their elements on every system.
  QStringList Opened() const;

 private:
  struct Known;
  std::unique_ptr<Known> mKnown;
};

}  // namespace brackwell
