#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brackwell {

/// A native path or name as ShownText has it.
QString ToShownText(std::string_view native);

/// A text as a tool tip: one that reads like markup would be taken for it.
QString ToToolTip(const QString& text);

/// The native path that a form's text stands for.
std::string ToNativePath(const QString& text);

/// The text for a tool tip, which takes what looks like markup for markup; names may look so.
QString AsToolTip(const QString& text);

}  // namespace brackwell
