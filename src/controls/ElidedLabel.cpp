#include "controls/ElidedLabel.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "common/NativeText.h"

namespace brackwell {
namespace {

constexpr int Padding = 3;  // pixels between frame and text

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const {
  const int border = 2 * (frameWidth() + Padding);
  return {fontMetrics().averageCharWidth() * 8 + border, fontMetrics().height() + border};
}

QRect ElidedLabel::TextArea() const { return contentsRect().adjusted(Padding, 0, -Padding, 0); }

QString ElidedLabel::ElidedText() const {
  QString line = text();
  line.replace(u'\n', u' ');
  return fontMetrics().elidedText(line, Qt::ElideMiddle, TextArea().width());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || fontMetrics().horizontalAdvance(text()) <= TextArea().width()) {
    return QLabel::event(event);
  }
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToToolTip(text()), this);
  return true;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawFrame(&painter);
  style()->drawItemText(&painter, TextArea(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                        palette(), isEnabled(), ElidedText(), foregroundRole());
}

void ElidedLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Q_EMIT DoubleClicked();
}

}  // namespace brackwell
