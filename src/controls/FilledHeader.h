#pragma once

#include <QHeaderView>
#include <QPainter>
#include <QStyleOptionHeader>

namespace brackwell {

/// Column headings that go on, empty, to the edge of their list.
class FilledHeader : public QHeaderView {
 public:
  explicit FilledHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override {
    QHeaderView::paintEvent(event);
    QStyleOptionHeader rest;
    initStyleOption(&rest);
    rest.rect = viewport()->rect();
    rest.rect.setLeft(length() - offset());
    rest.section = count();
    rest.position = QStyleOptionHeader::End;
    if (rest.rect.isEmpty()) return;
    QPainter painter(viewport());
    style()->drawControl(QStyle::CE_HeaderSection, &rest, &painter, this);
  }
};

}  // namespace brackwell
