#pragma once

#include <string>

namespace brackwell {

/// The user's folder for temporary files, ending in the path separator. On POSIX: TMPDIR, else a folder of
/// the user's own below /tmp, made on first use (mode 0700). Raises PermissionDenied where that name belongs
/// to somebody else, so that nobody can read or plant reports.
std::string GetTempFolder();

/// Where to write a file of this name that a program of the user's is to open: in the temporary folder. On
/// POSIX, if the program that opens such files is a snap, which cannot see that folder: in one that it can,
/// of the user's own, made on first use with the same errors (~/snap/NAME/common/brackwell).
std::string ReportPath(const std::string& fileName);

}  // namespace brackwell
