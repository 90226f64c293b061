#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brackwell {

/// A native path or name as ShownText has it.
QString ToShownText(std::string_view native);

/// The native path that a form's text stands for.
std::string ToNativePath(const QString& text);

}  // namespace brackwell
