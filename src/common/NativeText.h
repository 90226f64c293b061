#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brackwell {

/// A native path or name as ShownText has it.
QString ToShownText(std::string_view native);

/// The native path that a form's text stands for.
std::string ToNativePath(const QString& text);

/// The text for a tool tip, which takes what looks like markup for markup; names may look so. Nothing for an
/// empty text.
QString ToToolTip(const QString& text);

}  // namespace brackwell
