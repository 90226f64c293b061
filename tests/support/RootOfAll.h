#pragma once

#include <QDir>

namespace brackwell {

/// The root of the drive that the system is on: "/", or "C:\" on Windows.
inline QString RootOfAll() { return QDir::toNativeSeparators(QDir::rootPath()); }

}  // namespace brackwell
