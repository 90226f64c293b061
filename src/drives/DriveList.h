#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "common/Html.h"
#include "platform/Drives.h"
#include "platform/NumberText.h"

namespace brackwell {

struct DriveColumn {
  std::string_view Key;  // the first column has none
  std::string_view Caption;
};

/// The columns of the list of drives, in their order.
inline constexpr std::array<DriveColumn, 12> DriveColumns{{{"", "Drive"},
                                                           {"AvailableSpace", "Available Space"},
                                                           {"DriveType", "Drive Type"},
                                                           {"FileSystem", "File System"},
                                                           {"FreeSpace", "Free Space"},
                                                           {"IsReady", "Is Ready"},
                                                           {"Path", "Path"},
                                                           {"RootFolder", "Root Folder"},
                                                           {"SerialNumber", "Serial Number"},
                                                           {"ShareName", "Share Name"},
                                                           {"TotalSize", "Total Size"},
                                                           {"VolumeName", "Volume Name"}}};

/// A number of bytes with two decimals, halves rounded up: "1.05 GB". The scale is mixed on purpose: 1 KB is
/// 1,024 bytes, the units above are powers of ten of it; each begins above its own size, so 1,024 bytes are
/// "1024.00 bytes".
std::string FormatDriveSize(double bytes, const std::string& decimalSeparator = DecimalSeparator());

/// "CD-ROM"; empty for a number that is no type.
std::string_view DriveTypeName(DriveType type);

/// The cells of one drive, by DriveColumns. A row whose drive goes away while it is read ends there.
using DriveRow = std::vector<std::string>;

/// A row for each drive, in their order. A drive that is not ready is not asked for what is on its medium.
std::vector<DriveRow> LoadDriveList(const DriveCollection& drives);

/// The printable page of the list as it is shown.
std::string DriveReport(std::string_view title, ListTable list);

}  // namespace brackwell
