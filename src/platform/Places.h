#pragma once

#include <string>
#include <vector>

// Where a user begins to look for folders. Nothing here asks a file system, so nothing waits for one that
// does not answer.

namespace brackwell {

struct Volume {
  std::string Root;      // "C:\" on Windows, the mount point on POSIX
  bool MayHang = false;  // behind a network or a program that may have stopped answering
};

/// The volumes that users know, in OrderOfNames: every drive letter on Windows; elsewhere "/" and what is
/// mounted in the places for media.
std::vector<Volume> Volumes();

/// The user's own folder; empty where there is none.
std::string HomeFolder();

}  // namespace brackwell
