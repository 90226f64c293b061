#pragma once

#include <QLineEdit>
#include <QRegularExpression>
#include <QValidator>

namespace brackwell {

/// Cuts what has come into a box at its first line break. The box would show it as a blank, which is not what
/// it stands for.
class FirstLine : public QValidator {
 public:
  using QValidator::QValidator;

  /// `end` is where what has come in ends. What was there behind it stays, and holds no breaks.
  State validate(QString& text, int& end) const override {
    static const QRegularExpression lineBreak(QStringLiteral("[\\n\\v\\f\\r\\x{85}\\x{2028}\\x{2029}]"));
    const auto at = static_cast<int>(text.indexOf(lineBreak));
    if (at < 0) return Acceptable;
    text.remove(at, end > at ? end - at : text.size());
    end = at;
    return Acceptable;
  }
};

/// A box for one line, however its text comes in: typed, pasted, dropped or set.
class LineEdit : public QLineEdit {
 public:
  explicit LineEdit(QWidget* parent) : QLineEdit(parent) { setValidator(new FirstLine(this)); }
};

}  // namespace brackwell
