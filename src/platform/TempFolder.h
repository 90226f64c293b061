#pragma once

#include <string>

namespace brackwell {

/// The user's folder for temporary files, ending in the path separator. On POSIX: TMPDIR, else a folder of
/// the user's own below /tmp, made on first use (mode 0700). Raises PermissionDenied where that name belongs
/// to somebody else, so that nobody can read or plant reports.
std::string GetTempFolder();

}  // namespace brackwell
