#include <QApplication>
#include <QTimer>
#include <QToolButton>
#include <chrono>
#include <thread>

#include "rename/RenameWindow.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/When.h"

// Renaming while its user does something else.

namespace brackwell {

namespace {

constexpr int Many = 40;

}  // namespace

class frmRenameRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QCOMPARE(QGuiApplication::overrideCursor(), nullptr); }

  void ARunShowsThatItIsBusyAndTakesNoOrders() {
    RenameWindow window;
    MakeSlow(window);
    bool seen = false;
    When([&] { return HasBegun(window); },
         [&] {
           seen = true;
           QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
           QVERIFY(window.Panel(u"MESSAGE"_s).startsWith(u"Renaming a"_s));
           for (const char* name : {"FolderTree", "fraExtension", "lvwFiles", "cmdCheck(0)", "cmdMoveItem(0)",
                                    "txtPrefix", "txtStartNum", "chkPreserve", "cmdSetNames", "cmdRename"})
             QVERIFY2(!window.Get<QWidget>(name).isEnabled(), name);
           QVERIFY(window.Get<QPushButton>("cmdClose").isEnabled());
           window.Click("cmdRename");
           QTest::keyClick(window.Form, Qt::Key_R, Qt::AltModifier);
         });
    window.Rename();
    QVERIFY(seen);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t{2});
    QCOMPARE(window.Tree.List("images").size(), std::size_t{Many});
    QVERIFY(window.Tree.Exists("images/x40"));
    for (const char* name : {"FolderTree", "fraExtension", "lvwFiles", "txtPrefix", "cmdRename"})
      QVERIFY2(window.Get<QWidget>(name).isEnabled(), name);
    QCOMPARE(window.Area.focusWidget(), &window.Get<QPushButton>("cmdRename"));
    QCOMPARE(window.Panel(u"MESSAGE"_s), QString());
  }

  void TheMoveButtonsComeBackAsTheyWere() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    bool ended = false;
    connect(window.Form, &frmRename::RunEnded, [&] {
      ended = true;
      for (int i = 0; i < 2; ++i) QVERIFY(!window.Move(i).isEnabled());
    });
    window.Rename();
    QVERIFY(ended);
  }

  void EscEndsItAfterTheFileInHand() {
    RenameWindow window;
    MakeSlow(window);
    When([&] { return HasBegun(window); },
         [&] {
           window.Area.activateWindow();  // which a real display does by itself when the question is answered
           QTRY_VERIFY(window.Form->hasFocus());
           QTest::keyClick(window.Form, Qt::Key_Escape);
         });
    window.Rename();
    QVERIFY(window.Tree.Exists("images/x01"));
    QVERIFY(!window.Tree.Exists("images/x40"));
    QCOMPARE(window.Tree.List("images").size(), std::size_t{Many});
    QCOMPARE(window.Panel(u"MESSAGE"_s), u"Stopped: not all files have been renamed."_s);
    QCOMPARE(window.Lines().size(), Many);
    QVERIFY(window.Lines().contains(u"[x] x01"_s));
    QCOMPARE(window.Boxes.TakeTexts(),
             (QStringList{u"Are you sure you want to rename these files?"_s, QString()}));
  }

  void CloseEndsItAndAsksNothing() {
    RenameWindow window;
    MakeSlow(window);
    When([&] { return HasBegun(window); }, [&] { window.Click("cmdClose"); });
    window.Boxes.AnswerNext(QMessageBox::Yes);
    QTimer::singleShot(0, &window.Get<QPushButton>("cmdRename"), &QPushButton::click);
    QTRY_VERIFY(!window.Form);
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Are you sure you want to rename these files?"_s});
    QVERIFY(window.Tree.Exists("images/x01"));
    QVERIFY(!window.Tree.Exists("images/x40"));
    QCOMPARE(window.Tree.List("images").size(), std::size_t{Many});
  }

  void ALongCopyLetsEventsThrough() {
    RenameWindow window;
    window.Tree.File("images/a", std::string(64 << 20, 'a'));
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(2)); };
    int events = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, [&] { events += window.Form->IsRunning() ? 1 : 0; });
    timer.start(1);
    window.Rename();
    QVERIFY(events > 0);
    QCOMPARE(window.Tree.Read("images/Renamed Files/x1").size(), std::size_t{64} << 20);
  }

  void TwoWindowsStandSideBySideInTheProgram() {
    TempTree tree;
    tree.File("images/a.jpg", "a");
    MessageBoxes boxes;
    frmMain main(ToolTable());
    main.resize(1100, 800);
    main.show();
    for (int i = 0; i < 2; ++i) main.findChild<QToolButton*>(u"RenImages"_s)->click();
    const auto forms = main.findChildren<frmRename*>();
    QCOMPARE(forms.size(), 2);
    forms[0]->findChild<QCheckBox*>(u"chkExtension(9)"_s)->click();
    for (frmRename* form : forms) {
      auto* folders = form->findChild<FolderTree*>();
      QVERIFY(folders->SetSelectedFolder(tree.Path("images")));
      QTRY_COMPARE(folders->SelectedFolder(), tree.Path("images"));
    }
    QCOMPARE(forms[0]->List().rowCount(), 1);
    QCOMPARE(forms[1]->List().rowCount(), 0);
    main.close();
    DeleteSetting(u"Rename"_s, u"JPG"_s);
  }

  void TheProgramEndsInTheMiddleOfARun() {
    TempTree tree;
    constexpr int Files = 8000;
    for (int i = 0; i < Files; ++i) tree.File("images/" + std::to_string(i));
    MessageBoxes boxes;
    boxes.AnswerNext(QMessageBox::Yes);
    auto main = std::make_unique<frmMain>(ToolTable());
    main->resize(1100, 800);
    main->show();
    main->findChild<QToolButton*>(u"RenImages"_s)->click();
    const QPointer<frmRename> form = main->findChild<frmRename*>();
    form->findChild<QLineEdit*>(u"txtOtherExtension(0)"_s)->setText(u"*"_s);
    auto* folders = form->findChild<FolderTree*>();
    QVERIFY(folders->SetSelectedFolder(tree.Path("images")));
    QTRY_COMPARE(folders->SelectedFolder(), tree.Path("images"));
    form->findChild<QLineEdit*>(u"txtPrefix"_s)->setText(u"x"_s);
    form->findChild<QLineEdit*>(u"txtStartNum"_s)->setText(u"00001"_s);
    form->findChild<QPushButton*>(u"cmdSetNames"_s)->click();
    When([form] { return form && form->IsRunning(); }, [&] { main->close(); });
    QTimer::singleShot(0, form->findChild<QPushButton*>(u"cmdRename"_s), &QPushButton::click);
    QTimer::singleShot(20000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!form);
    QCOMPARE(tree.List("images").size(), std::size_t{Files});
    QVERIFY(!tree.Exists("images/x0" + std::to_string(Files)));
  }

 private:
  /// Many files with new names, and a disk that takes its time.
  static void MakeSlow(RenameWindow& window) {
    for (int i = 0; i < Many; ++i) window.Tree.File("images/a" + std::to_string(10 + i));
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"01"_s);
    window.Get<QPushButton>("cmdRename").setFocus();
    window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(10)); };
  }
  static bool HasBegun(RenameWindow& window) {
    return window.Form && window.Form->IsRunning() && window.Tree.Exists("images/x01");
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmRenameRunTest)
#include "frmRename_run_test.moc"
