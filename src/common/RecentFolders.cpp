#include "common/RecentFolders.h"

#include <algorithm>

#include "common/Settings.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

const QString Section = u"General"_s;
constexpr int MostFolders = 10;

/// A key for each folder: a name may hold any character that could stand between two.
QString Key(int number) { return u"RecentFolder%1"_s.arg(number); }

}  // namespace

QStringList RecentFolders() {
  QStringList folders;
  for (int number = 0; number < MostFolders; ++number) folders << GetSetting(Section, Key(number));
  folders.removeAll(QString());
  folders.removeDuplicates();
  return folders;
}

void RememberFolder(const QString& folder) {
  QStringList folders = RecentFolders();
  if (folder.isEmpty() || folders.value(0) == folder) return;
  folders.removeAll(folder);
  folders.prepend(folder);
  std::vector<Setting> settings;
  for (int number = 0; number < std::min<int>(MostFolders, folders.size()); ++number)
    settings.push_back({Section, Key(number), folders[number]});
  SaveSettings(settings);
}

}  // namespace brackwell
