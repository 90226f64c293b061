#include "common/MsgBox.h"

#include <QMessageBox>

#include "common/Busy.h"

namespace brackwell {
namespace {

QMessageBox::Icon ToIcon(MsgIcon icon) {
  switch (icon) {
    case MsgIcon::Critical:
      return QMessageBox::Critical;
    case MsgIcon::Question:
      return QMessageBox::Question;
    case MsgIcon::Exclamation:
      return QMessageBox::Warning;
    case MsgIcon::Information:
      return QMessageBox::Information;
    case MsgIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

int Show(QWidget* parent, const QString& text, MsgIcon icon, const QString& title,
         QMessageBox::StandardButtons buttons) {
  InputBlocker::DropPendingInput();
  const NormalPointer pointer;
  // Owned by the top-level window, which outlives a tool window that is closed meanwhile.
  QMessageBox box(parent ? parent->window() : nullptr);
  box.setWindowTitle(title);
  box.setTextFormat(Qt::PlainText);
  box.setText(text);
  box.setIcon(ToIcon(icon));
  box.setStandardButtons(buttons);
  return box.exec();
}

}  // namespace

void MsgBox(QWidget* parent, const QString& text, MsgIcon icon, const QString& title) {
  Show(parent, text, icon, title, QMessageBox::Ok);
}

bool MsgBoxYesNo(QWidget* parent, const QString& text, MsgIcon icon, const QString& title) {
  return Show(parent, text, icon, title, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool MsgBoxOkCancel(QWidget* parent, const QString& text, MsgIcon icon, const QString& title) {
  return Show(parent, text, icon, title, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

}  // namespace brackwell
