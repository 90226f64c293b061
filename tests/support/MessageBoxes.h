#pragma once

#include <QMessageBox>
#include <QObject>
#include <QQueue>
#include <QStringList>
#include <vector>

namespace brackwell {

struct ShownBox {
  QMessageBox::Icon Icon;
  QString Text;
  QString Title;
  QMessageBox::StandardButtons Buttons;
};

/// While it is alive, notes each message box that shows and answers it, so that a test is never held up by
/// one.
class MessageBoxes : public QObject {
 public:
  MessageBoxes();

  /// Queues the button for a box to come. A box without a queued answer gets OK, or else its escape button.
  void AnswerNext(QMessageBox::StandardButton button) { mAnswers.enqueue(button); }

  const std::vector<ShownBox>& Shown() const { return mShown; }
  /// The texts of the boxes shown since the last call.
  QStringList TakeTexts();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Answer(QMessageBox& box);

  std::vector<ShownBox> mShown;
  QQueue<QMessageBox::StandardButton> mAnswers;
  std::size_t mTaken = 0;
};

}  // namespace brackwell
