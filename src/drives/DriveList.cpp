#include "drives/DriveList.h"

#include <cmath>
#include <cstdio>

#include "platform/FileSystemError.h"

namespace brackwell {
namespace {

std::string TwoDecimals(double numerator, double denominator, const std::string& decimalSeparator) {
  // In hundredths, so that halves are exact.
  char digits[400];
  std::snprintf(digits, sizeof digits, "%03.0f", std::round(numerator * 100 / denominator));
  std::string text(digits);
  return text.insert(text.size() - 2, decimalSeparator);
}

std::string SizeText(const Drive& drive, double DriveSpace::*size) {
  const std::optional<DriveSpace> space = drive.Space();
  return space ? FormatDriveSize((*space).*size) : std::string();
}

std::string SerialText(const Drive& drive) {
  const std::optional<std::int32_t> serial = drive.SerialNumber();
  return serial ? std::to_string(*serial) : std::string();
}

void AddReadyCells(const Drive& drive, DriveRow& row) {
  row.push_back(SizeText(drive, &DriveSpace::AvailableSpace));
  row.emplace_back(DriveTypeName(drive.Type()));
  row.push_back(drive.FileSystem());
  row.push_back(SizeText(drive, &DriveSpace::FreeSpace));
  row.emplace_back("True");
  row.push_back(drive.Path());
  row.push_back(drive.RootFolder());
  row.push_back(SerialText(drive));
  row.push_back(drive.ShareName());
  row.push_back(SizeText(drive, &DriveSpace::TotalSize));
  row.push_back(drive.VolumeName());
}

void AddCellsWithoutMedium(const Drive& drive, DriveRow& row) {
  const DriveRow cells{"",
                       std::string(DriveTypeName(drive.Type())),
                       "",
                       "",
                       "False",
                       drive.Path(),
                       "",
                       "",
                       drive.ShareName(),
                       "",
                       ""};
  row.insert(row.end(), cells.begin(), cells.end());
}

}  // namespace

std::string FormatDriveSize(double bytes, const std::string& decimalSeparator) {
  struct Unit {
    double Size;
    std::string_view Name;
  };
  constexpr Unit Units[] = {{1'024'000'000, " GB"}, {1'024'000, " MB"}, {1'024, " KB"}};
  for (const Unit& unit : Units)
    if (bytes > unit.Size) return TwoDecimals(bytes, unit.Size, decimalSeparator) + std::string(unit.Name);
  return TwoDecimals(bytes, 1, decimalSeparator) + " bytes";
}

std::string_view DriveTypeName(DriveType type) {
  switch (type) {
    case DriveType::Unknown:
      return "Unknown";
    case DriveType::Removable:
      return "Removable";
    case DriveType::Fixed:
      return "Fixed";
    case DriveType::Network:
      return "Network";
    case DriveType::CdRom:
      return "CD-ROM";
    case DriveType::RamDisk:
      return "RAM Disk";
  }
  return {};
}

std::vector<DriveRow> LoadDriveList(const DriveCollection& drives) {
  std::vector<DriveRow> rows;
  for (const auto& drive : drives) {
    DriveRow& row = rows.emplace_back();
    row.push_back(drive->DriveLetter());
    try {
      if (drive->IsReady())
        AddReadyCells(*drive, row);
      else
        AddCellsWithoutMedium(*drive, row);
    } catch (const FileSystemError&) {
      // Taken out since: the row stays as far as it got, and the next drive is read.
    }
  }
  return rows;
}

std::string DriveReport(std::string_view title, ListTable list) {
  for (std::vector<std::string>& row : list.Rows)
    for (std::string& cell : row) cell = HtmlName(cell);
  // The table closes the page, and so does the page itself; browsers do not mind, and readers of the page
  // may know it so.
  return "<html>" + HtmlHead(title) + "<body>" + ListView_ToHtml(list) + "</table></body></html>";
}

}  // namespace brackwell
