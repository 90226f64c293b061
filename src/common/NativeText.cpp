#include "common/NativeText.h"

#include <algorithm>

namespace brackwell {

QString ToShownText(std::string_view native) {
  constexpr char16_t FirstControlPicture = 0x2400;
  constexpr char16_t PictureOfDelete = 0x2421;
  QString text = QString::fromUtf8(native.data(), static_cast<qsizetype>(native.size()));
  const auto isControl = [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; };
  if (std::none_of(text.cbegin(), text.cend(), isControl)) return text;
  for (QChar& c : text)
    if (isControl(c)) c = QChar(c.unicode() == 0x7F ? PictureOfDelete : FirstControlPicture + c.unicode());
  return text;
}

std::string ToNativePath(const QString& text) { return text.toStdString(); }

}  // namespace brackwell
