#include "common/NativeText.h"

#include "common/Text.h"

namespace brackwell {

using namespace Qt::StringLiterals;

QString ToShownText(std::string_view native) { return QString::fromStdString(ShownText(native)); }

std::string ToNativePath(const QString& text) { return text.toStdString(); }

QString ToToolTip(const QString& text) {
  return text.isEmpty() ? text
                        : u"<span style='white-space: pre-wrap'>"_s + text.toHtmlEscaped() + u"</span>"_s;
}

}  // namespace brackwell
