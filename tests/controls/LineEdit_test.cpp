#include "controls/LineEdit.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace brackwell {

using namespace Qt::StringLiterals;

/// A box that is shown, with a text in which the cursor stands.
class LineEditTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<LineEdit> mBox;

 private Q_SLOTS:
  void init() {
    mBox = std::make_unique<LineEdit>(nullptr);
    mBox->setText(u"begin end"_s);
    mBox->setCursorPosition(6);
    mBox->show();
    mBox->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(mBox.get()));
    QApplication::clipboard()->setText(u"one\ntwo\r\nthree"_s);
  }

  void PastingByKeysCutsAtTheFirstBreak() {
    QSignalSpy edited(mBox.get(), &QLineEdit::textEdited);
    QTest::keySequence(mBox.get(), QKeySequence::Paste);
    QCOMPARE(mBox->text(), u"begin oneend"_s);
    QCOMPARE(mBox->cursorPosition(), 9);
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited[0][0].toString(), u"begin oneend"_s);
  }

  void PastingByTheMenuDoesToo() {
    const std::unique_ptr<QMenu> menu(mBox->createStandardContextMenu());
    for (QAction* action : menu->actions())
      if (action->text().startsWith(u"&Paste"_s)) action->trigger();
    QCOMPARE(mBox->text(), u"begin oneend"_s);
  }

  void PastingOverASelectionReplacesItAlone() {
    mBox->setSelection(0, 5);
    mBox->paste();
    QCOMPARE(mBox->text(), u"one end"_s);
  }

  void DroppingDoesToo() {
    QMimeData dragged;
    dragged.setText(u"one\ntwo"_s);
    QDragEnterEvent enter(mBox->rect().center(), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(mBox.get(), &enter);
    QDropEvent drop(QPointF(mBox->rect().center()), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(mBox.get(), &drop);
    QVERIFY(mBox->text().contains(u"one"_s));
    QCOMPARE(mBox->text().remove(u"one"_s), u"begin end"_s);
  }

  void SettingATextDoesToo() {
    for (const char16_t lineBreak : {u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'}) {
      mBox->setText(u"one"_s + QChar(lineBreak) + u"two"_s + QChar(lineBreak));
      QCOMPARE(mBox->text(), u"one"_s);
    }
    mBox->setText(u"\none"_s);
    QCOMPARE(mBox->text(), QString());
    mBox->setText(u" a\tb "_s);
    QCOMPARE(mBox->text(), u" a\tb "_s);
  }

  void WhatIsTypedStaysAndCanBeUndone() {
    QTest::keyClicks(mBox.get(), u"x y"_s);
    QCOMPARE(mBox->text(), u"begin x yend"_s);
    QVERIFY(mBox->hasAcceptableInput());
    mBox->undo();
    QCOMPARE(mBox->text(), u"begin end"_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::LineEditTest)
#include "LineEdit_test.moc"
