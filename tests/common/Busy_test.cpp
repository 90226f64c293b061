#include "common/Busy.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "common/MsgBox.h"
#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {
namespace {

/// Counts what reaches it.
class Target : public QWidget {
 public:
  int Painted = 0;
  int Received = 0;

 protected:
  bool event(QEvent* event) override {
    switch (event->type()) {
      case QEvent::Paint:
        ++Painted;
        break;
      case QEvent::MouseButtonPress:
      case QEvent::KeyPress:
      case QEvent::Wheel:
      case QEvent::Drop:
      case QEvent::ContextMenu:
        ++Received;
        break;
      default:
        break;
    }
    return QWidget::event(event);
  }
};

/// Calls `use` once a message box is up.
template <class Use>
void OnMessageBox(Use use) {
  QTimer::singleShot(5, [use] {
    QWidget* box = QApplication::activeModalWidget();
    if (box)
      use(*box);
    else
      OnMessageBox(use);
  });
}

void PostClick(QWidget& widget) {
  const QPointF place(5, 5);
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QCoreApplication::postEvent(&widget, new QMouseEvent(type, place, widget.mapToGlobal(place),
                                                         Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
  }
}

}  // namespace

class Busy_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void InputIsThrownAway() {
    Target window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    {
      const InputBlocker blocker;
      QTest::mouseClick(&window, Qt::LeftButton);
      QTest::mouseDClick(&window, Qt::LeftButton);
      QTest::keyClick(&window, Qt::Key_A);
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {5, 5});
      QTest::keyClick(window.windowHandle(), Qt::Key_A);
    }
    QCoreApplication::processEvents();
    QCOMPARE(window.Received, 0);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {5, 5});
    QCOMPARE(window.Received, 1);
  }

  void InputThatWaitsAtTheEndIsNotDeliveredLater() {
    QPushButton button(u"Fix"_s);
    button.show();
    QSignalSpy clicks(&button, &QPushButton::clicked);
    {
      const InputBlocker blocker;
      PostClick(button);
    }
    QCoreApplication::processEvents();
    QCOMPARE(clicks.count(), 0);
    PostClick(button);
    QCoreApplication::processEvents();
    QCOMPARE(clicks.count(), 1);
  }

  void WindowsRepaint() {
    Target window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const InputBlocker blocker;
    QCoreApplication::processEvents();
    window.Painted = 0;
    window.update();
    QCoreApplication::processEvents();
    QVERIFY(window.Painted > 0);
  }

  void ShortcutsDoNothing() {
    QWidget window;
    QShortcut shortcut(QKeySequence(Qt::CTRL | Qt::Key_P), &window);
    QSignalSpy uses(&shortcut, &QShortcut::activated);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    {
      const InputBlocker blocker;
      QTest::keyClick(window.windowHandle(), Qt::Key_P, Qt::ControlModifier);
    }
    QCOMPARE(uses.count(), 0);
    QTest::keyClick(window.windowHandle(), Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(uses.count(), 1);
  }

  void WindowsStayOpen() {
    QWidget window;
    window.show();
    {
      const InputBlocker blocker;
      QVERIFY(!window.windowHandle()->close());
      QVERIFY(window.isVisible());
    }
    QVERIFY(window.windowHandle()->close());
  }

  void BlockersNest() {
    QPushButton button;
    button.show();
    QSignalSpy clicks(&button, &QPushButton::clicked);
    const InputBlocker outer;
    { const InputBlocker inner; }
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 0);
  }

  void AMessageBoxCanBeAnswered() {
    const InputBlocker blocker;
    OnMessageBox([](QWidget& box) { QTest::keyClick(box.windowHandle(), Qt::Key_Return); });
    QVERIFY(MsgBoxYesNo(nullptr, u"Go on?"_s, MsgIcon::Question, u"t"_s));
  }

  void WhatWasDoneBeforeIsNotTakenAsTheAnswer() {
    QPushButton button;
    button.show();
    QSignalSpy clicks(&button, &QPushButton::clicked);
    const InputBlocker blocker;
    PostClick(button);
    OnMessageBox([](QWidget& box) { box.close(); });
    MsgBox(nullptr, u"text"_s, MsgIcon::None, u"t"_s);
    QCOMPARE(clicks.count(), 0);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::Busy_test)
#include "Busy_test.moc"
