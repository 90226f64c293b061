#include "controls/uctSelectDir.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "common/FormHelpers.h"
#include "controls/BrowseFF.h"
#include "controls/ElidedLabel.h"
#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

constexpr int HeadingSpace = 2;  // pixels between heading and folder

}  // namespace

uctSelectDir::uctSelectDir(const FileSystemObject& files, BrowseFF& browse, QWidget* parent)
    : QWidget(parent),
      mFiles(files),
      mBrowse(browse),
      hdgDirectory(new QLabel(this)),
      lblDirectory(new ElidedLabel(this)),
      cmdSelect(new QPushButton(u"Select..."_s, this)) {
  hdgDirectory->setObjectName(u"hdgDirectory"_s);
  hdgDirectory->setTextFormat(Qt::PlainText);
  lblDirectory->setObjectName(u"lblDirectory"_s);
  lblDirectory->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  cmdSelect->setObjectName(u"cmdSelect"_s);
  setFocusProxy(cmdSelect);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  SetCaption(QString());
  connect(cmdSelect, &QPushButton::clicked, this, &uctSelectDir::cmdSelect_Click);
  connect(lblDirectory, &ElidedLabel::DoubleClicked, this, &uctSelectDir::cmdSelect_Click);
}

QString uctSelectDir::Caption() const { return hdgDirectory->text(); }

void uctSelectDir::SetCaption(const QString& caption) {
  hdgDirectory->setText(caption);
  setAccessibleName(caption);
  lblDirectory->setAccessibleName(caption);
  cmdSelect->setAccessibleName(u"Select "_s + caption);
  UserControl_Resize();
}

void uctSelectDir::SetPrompt(const QString& prompt) {
  mPrompt = prompt;
  cmdSelect->setAccessibleName(prompt);
}

QString uctSelectDir::Folder() const { return lblDirectory->text(); }

void uctSelectDir::SetFolder(const QString& folder) {
  lblDirectory->setText(folder);
  lblDirectory->setAccessibleDescription(folder);
}

void uctSelectDir::cmdSelect_Click() {
  const QPoint corner = lblDirectory->mapToGlobal(QPoint());
  mBrowse.Title = u"Select Folder"_s;
  mBrowse.Prompt = mPrompt.isEmpty() ? u"Select the "_s + Caption() : mPrompt;
  mBrowse.Top = corner.y();
  mBrowse.Left = corner.x();
  mBrowse.StartFolder = mFiles.FolderExists(Folder().toStdString()) ? Folder() : QString();
  if (!mBrowse.Show(this)) return;
  SetFolder(QString::fromStdString(WithSeparator(mBrowse.Folder().toStdString())));
}

QSize uctSelectDir::sizeHint() const { return {300, minimumSizeHint().height()}; }

QSize uctSelectDir::minimumSizeHint() const {
  const int line = std::max(lblDirectory->sizeHint().height(), cmdSelect->sizeHint().height());
  return {lblDirectory->sizeHint().width() + Margin / 2 + cmdSelect->sizeHint().width() + Margin,
          hdgDirectory->sizeHint().height() + HeadingSpace + line};
}

void uctSelectDir::UserControl_Resize() {
  const QSize button = cmdSelect->sizeHint();
  const int line = std::max(lblDirectory->sizeHint().height(), button.height());
  const int top = hdgDirectory->sizeHint().height() + HeadingSpace;
  hdgDirectory->setGeometry(0, 0, hdgDirectory->sizeHint().width(), hdgDirectory->sizeHint().height());
  cmdSelect->setGeometry(width() - Margin - button.width(), top, button.width(), line);
  lblDirectory->setGeometry(0, top, std::max(0, cmdSelect->x() - Margin / 2), line);
}

void uctSelectDir::resizeEvent(QResizeEvent* /*event*/) { UserControl_Resize(); }

void uctSelectDir::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  updateGeometry();
  UserControl_Resize();
}

}  // namespace brackwell
