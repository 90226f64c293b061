#include "common/NativeText.h"

#include "common/Text.h"

namespace brackwell {

QString ToShownText(std::string_view native) { return QString::fromStdString(ShownText(native)); }

std::string ToNativePath(const QString& text) { return text.toStdString(); }

}  // namespace brackwell
