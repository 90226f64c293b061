#pragma once

#include <QLabel>

namespace brackwell {

/// A label for one line of plain text, such as a path: what does not fit is left out in the middle and shown
/// as a tool tip. It takes the width that it is given and never asks for more; text() is always the full
/// text.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void DoubleClicked();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  QRect TextArea() const;
  QString ElidedText() const;
};

}  // namespace brackwell
