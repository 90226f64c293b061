#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brackwell {

/// A native path or name as it is shown: what is no valid text as U+FFFD, control characters (a line break in a
/// name, say) by their pictures, so that every name stays on one line and none looks like another.
QString ToShownText(std::string_view native);

/// The native path that a form's text stands for.
std::string ToNativePath(const QString& text);

}  // namespace brackwell
