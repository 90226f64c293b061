#pragma once

#include <QStringList>

namespace brackwell {

/// The folders that the user chose last, in whatever window: the newest first, ten at most, none twice. They
/// may be gone by now.
QStringList RecentFolders();

/// The user has chosen this one.
void RememberFolder(const QString& folder);

}  // namespace brackwell
