#pragma once

#include <QString>

namespace brackwell {

/// The help file's page about the tool or dialog with this key, "compare.html"; the first page where there is
/// none.
QString HelpTopicOf(const QString& key);

}  // namespace brackwell
