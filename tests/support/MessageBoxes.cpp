#include "support/MessageBoxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>

namespace brackwell {

MessageBoxes::MessageBoxes() { qApp->installEventFilter(this); }

QStringList MessageBoxes::TakeTexts() {
  QStringList texts;
  for (; mTaken < mShown.size(); ++mTaken) texts << mShown[mTaken].Text;
  return texts;
}

bool MessageBoxes::eventFilter(QObject* watched, QEvent* event) {
  auto* box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
  if (box) {
    mShown.push_back({box->icon(), box->text(), box->windowTitle(), box->standardButtons()});
    QMetaObject::invokeMethod(
        box, [this, box] { Answer(*box); }, Qt::QueuedConnection);
  }
  return false;
}

void MessageBoxes::Answer(QMessageBox& box) {
  QAbstractButton* button = box.button(mAnswers.isEmpty() ? QMessageBox::Ok : mAnswers.dequeue());
  if (button)
    button->click();
  else
    box.reject();
}

}  // namespace brackwell
