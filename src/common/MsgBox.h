#pragma once

#include <QString>

class QWidget;

namespace brackwell {

enum class MsgIcon { None, Critical, Question, Exclamation, Information };

// Message boxes take their text as it is: a file name with "<" in it is no markup. They are modal and work in
// the middle of a busy run, whose pointer comes back afterwards.

/// Tells the user something; one OK button.
void MsgBox(QWidget* parent, const QString& text, MsgIcon icon, const QString& title);

/// Yes and No buttons; true for Yes.
bool MsgBoxYesNo(QWidget* parent, const QString& text, MsgIcon icon, const QString& title);

/// OK and Cancel buttons; true for OK.
bool MsgBoxOkCancel(QWidget* parent, const QString& text, MsgIcon icon, const QString& title);

}  // namespace brackwell
