#pragma once

#include <QString>

namespace brackwell {

/// The help file's page about the tool with this key, "compare.html"; the first page where there is none.
QString HelpTopicOf(const QString& toolKey);

}  // namespace brackwell
