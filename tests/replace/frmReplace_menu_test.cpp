#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>

#include "replace/ReplaceWindow.h"
#include "support/StandInOpener.h"

// What a right click on the results offers, and what is copied of them.

namespace brackwell {

class frmReplaceMenuTest : public QObject {
  Q_OBJECT

 private:
  static QMenu* Menu(ReplaceWindow& window, int row) {
    auto& list = window.Get<ListView>("lvwResults");
    delete list.findChild<QMenu*>();
    const QPoint at = row < 0 ? QPoint(20, list.viewport()->height() - 5)
                              : list.visualRect(list.model()->index(row, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, list.viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(list.viewport(), &event);
    return list.findChild<QMenu*>();
  }

 private Q_SLOTS:
  void cleanup() { ForgetReplaceSettings(); }

  void AResultIsOpenedAndItsPathCopied() {
    ReplaceWindow window;
    window.HoldingFiles(2);
    window.Fill();
    QVERIFY(!window.Find().isEmpty());
    const StandInOpener opener;
    Menu(window, 1)->findChild<QAction*>(u"mnuOpen"_s)->trigger();
    QVERIFY(opener.Opened().value(0).endsWith(u"/t/1.txt"_s));
    Menu(window, 0)->findChild<QAction*>(u"mnuOpenFolder"_s)->trigger();
    QVERIFY(opener.Opened().value(1).endsWith(u"/t"_s));
    Menu(window, 0)->findChild<QAction*>(u"mnuCopyPath"_s)->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString::fromStdString(window.Tree.Path("t/0.txt")));
  }

  void BesideTheResultsThereIsNoMenu() {
    ReplaceWindow window;
    QVERIFY(!Menu(window, -1));
    window.HoldingFiles(1);
    window.Fill();
    QVERIFY(!window.Find().isEmpty());
    QVERIFY(!Menu(window, -1));
    QVERIFY(Menu(window, 0)->isVisible());
  }

  void AllResultsAreCopied() {
    ReplaceWindow window;
    window.HoldingFiles(2);
    window.Fill();
    QVERIFY(!window.Find().isEmpty());
    auto& list = window.Get<ListView>("lvwResults");
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    const QString root = QString::fromStdString(window.Tree.Root("t"));
    QCOMPARE(QGuiApplication::clipboard()->text(),
             root + u"0.txt\t1 matches found\n"_s + root + u"1.txt\t1 matches found"_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmReplaceMenuTest)
#include "frmReplace_menu_test.moc"
