#include <QApplication>
#include <QCheckBox>
#include <QMouseEvent>
#include <QTimer>
#include <QToolButton>
#include <thread>

#include "replace/ReplaceWindow.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/LargeFolder.h"
#include "support/When.h"

// Runs whose user does something else meanwhile, and runs that come to a bad end.

namespace brackwell {

namespace {

constexpr int FileCount = 20;
constexpr int ManyFiles = 500;  // which are counted ahead

void PostClick(QWidget& widget) {
  const QPointF place = widget.rect().center();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(&widget, new QMouseEvent(type, place, widget.mapToGlobal(place),
                                                         Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
}

int Done(const ReplaceWindow& window) {
  int done = 0;
  for (const ReplaceRow& row : window.Form->List().Rows())
    if (row.Result.What != ReplaceResult::Kind::None) ++done;
  return done;
}

/// Files that take their time; `step` is called from the events that the run lets through, after a few.
void InTheMiddle(ReplaceWindow& window, const std::function<void()>& step, int files = FileCount) {
  window.HoldingFiles(files);
  window.Fill(u"abc"_s, u"abcabc"_s);
  window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(5)); };
  When([&window] { return window.Form && window.Form->IsRunning() && Done(window) >= 3; }, step);
}

void PressEsc(ReplaceWindow& window) {
  window.Area.activateWindow();  // another may still be, after a message box
  QVERIFY(QTest::qWaitForWindowActive(&window.Area));
  QTest::keyClick(window.Form, Qt::Key_Escape);
}

/// One file that is read in many pieces; `step` is called while it is.
void InTheMiddleOfAFile(ReplaceWindow& window, const std::function<void()>& step) {
  window.Tree.File("t/large.txt", std::string(32 << 20, '.'));
  window.Fill();
  window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(5)); };
  When([&window] { return window.Panel(u"NUM1"_s) == u"1"_s; }, step);
}

/// Calls `step` behind each message box of the given text, before it is answered.
class BehindBox : public QObject {
 public:
  BehindBox(QString begin, std::function<void()> step) : mBegin(std::move(begin)), mStep(std::move(step)) {
    qApp->installEventFilter(this);
  }
  int Times() const { return mTimes; }

  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
    if (box && box->text().startsWith(mBegin))
      QMetaObject::invokeMethod(
          box,
          [this] {
            ++mTimes;
            mStep();
          },
          Qt::QueuedConnection);
    return false;
  }

 private:
  const QString mBegin;
  const std::function<void()> mStep;
  int mTimes = 0;
};

/// How often each file holds the phrase now: "2 2 1 1".
QString Contents(const ReplaceWindow& window) {
  QStringList counts;
  for (int i = 0; i < FileCount; ++i) {
    const std::string content = window.Tree.Read("t/" + std::to_string(i) + ".txt");
    counts << QString::number(content.size() / 3);
  }
  return counts.join(u' ');
}

int FilesHolding(const ReplaceWindow& window, const QString& count) {
  return static_cast<int>(Contents(window).split(u' ').count(count));
}

}  // namespace

class frmReplaceRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    ForgetReplaceSettings();
  }

  // --- stopped, closed, clicked again ----------------------------------------------------

  void TheWindowTellsWhatItIsDoing() {
    ReplaceWindow window;
    QString status;
    bool isBusy = false;
    InTheMiddle(window, [&] {
      status = window.Status();
      isBusy =
          QGuiApplication::overrideCursor() && QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
    });
    QCOMPARE(window.Find().size(), FileCount);
    QVERIFY(isBusy);
    const QStringList panels = status.split(u'|');
    QVERIFY(panels[0].startsWith(u"Working - "_s + QString::fromStdString(window.Tree.Root("t"))));
    QVERIFY(panels[1].toInt() >= 3 && panels[1].toInt() < FileCount);
    QCOMPARE(panels[2], QString::number(FileCount));
    QCOMPARE(window.Status(), u"%1 total matches were found|%1|%1"_s.arg(FileCount));
  }

  void EscStopsAfterTheFileInHand_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("result");
    QTest::addColumn<int>("files");
    QTest::newRow("find") << u"cmdFind"_s << u"found"_s << FileCount;
    QTest::newRow("find in many") << u"cmdFind"_s << u"found"_s << ManyFiles;
    QTest::newRow("replace") << u"cmdReplace"_s << u"replaced"_s << FileCount;
  }
  void EscStopsAfterTheFileInHand() {
    QFETCH(QString, button);
    QFETCH(QString, result);
    QFETCH(int, files);
    ReplaceWindow window;
    InTheMiddle(
        window, [&] { PressEsc(window); }, files);
    window.Click(qPrintable(button));
    const int done = Done(window);
    QVERIFY(done >= 3 && done < files);
    QVERIFY(!window.Form->IsRunning());
    QCOMPARE(window.Status(),
             u"%1 total matches were "_s.arg(done) + result + u"|%1|%2"_s.arg(done).arg(files));
    const QStringList lines = window.Lines();
    QCOMPARE(lines.size(), files);
    QCOMPARE(lines[done - 1].section(u": "_s, 1), u"1 matches "_s + result);
    QCOMPARE(lines[done].section(u": "_s, 1), QString());
    QCOMPARE(FilesHolding(window, u"2"_s), result == u"replaced"_s ? done : 0);
  }

  void EscDuringTheScanKeepsTheFilesListed() {
    ReplaceWindow window;
    for (int i = 0; i < FileCount; ++i) window.Tree.File("t/" + std::to_string(i) + "/x.txt", "abc");
    window.Fill();
    window.Get<QCheckBox>("chkSubdir").click();
    window.Files.OnCall = [] { std::this_thread::sleep_for(std::chrono::milliseconds(5)); };
    QString status;
    When([&] { return window.Form->IsRunning() && window.Form->List().rowCount() >= 2; },
         [&] {
           status = window.Status();
           PressEsc(window);
         });
    const auto listed = static_cast<int>(window.Replace().size());
    QVERIFY(listed >= 2 && listed < FileCount);
    QVERIFY(status.startsWith(u"Scanning - "_s + QString::fromStdString(window.Tree.Root("t"))));
    QVERIFY(status.endsWith(u"||"_s));
    QCOMPARE(window.Status(), u"0 total matches were replaced||%1"_s.arg(listed));
    for (int i = 0; i < FileCount; ++i)
      QCOMPARE(window.Tree.Read("t/" + std::to_string(i) + "/x.txt"), "abc");
  }

  void ClosingInTheMiddleEndsTheRunFirst() {
    ReplaceWindow window;
    bool wasThere = false;
    InTheMiddle(window, [&] {
      window.Click("cmdClose");
      wasThere = window.Form;  // still on the stack
    });
    window.Click("cmdReplace");
    QVERIFY(wasThere);
    QTRY_VERIFY(!window.Form && !window.Frame);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(1));  // the question before the run
    const int replaced = FilesHolding(window, u"2"_s);
    QVERIFY(replaced >= 3 && replaced < FileCount);
    QCOMPARE(FilesHolding(window, u"1"_s), FileCount - replaced);
    QCOMPARE(GetSetting(u"Replace"_s, u"Folder"_s), QString::fromStdString(window.Tree.Root("t")));
  }

  void ClosingInTheMiddleOfManyEndsTheRunFirst() {
    ReplaceWindow window;
    bool wasThere = false;
    InTheMiddle(
        window,
        [&] {
          window.Click("cmdClose");
          wasThere = window.Form;
        },
        ManyFiles);
    window.Click("cmdFind");
    QVERIFY(wasThere);
    QVERIFY(window.Files.Calls() < ManyFiles);
    QTRY_VERIFY(!window.Form && !window.Frame);
    QVERIFY(window.Boxes.Shown().empty());
  }

  void ASecondFindInManyStartsAnew() {
    ReplaceWindow window;
    InTheMiddle(
        window,
        [&] {
          window.Tree.File("t/added.txt", "abcabc");
          window.Click("cmdFind");
        },
        ManyFiles);
    QCOMPARE(window.Find().size(), ManyFiles + 1);
    QCOMPARE(window.Status(), u"%1 total matches were found|%2|%2"_s.arg(ManyFiles + 2).arg(ManyFiles + 1));
  }

  void EscStopsInTheMiddleOfAFileThatIsOnlyRead() {
    ReplaceWindow window;
    InTheMiddleOfAFile(window, [&] { PressEsc(window); });
    QCOMPARE(window.Find(), QStringList{u"large.txt: "_s});
    QVERIFY(window.Status().startsWith(u"0 total matches were found|"_s));
    QVERIFY(window.Files.Calls() < 100);  // the whole of it takes more
  }

  void ASecondFindStartsAnew() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Files.OnCall = nullptr;
      window.Tree.File("t/added.txt", "abc");
      window.Click("cmdFind");
    });
    QCOMPARE(window.Find().size(), FileCount + 1);
    QCOMPARE(window.Status(), u"%1 total matches were found|%1|%1"_s.arg(FileCount + 1));
  }

  void AFindEndsAReplaceAfterTheFileInHand() {
    ReplaceWindow window;
    InTheMiddle(window, [&] { window.Click("cmdFind"); });
    window.Replace();
    const int replaced = FilesHolding(window, u"2"_s);
    QVERIFY(replaced >= 3 && replaced < FileCount);
    QCOMPARE(window.ResultHeader(), u"Finds"_s);
    QCOMPARE(window.Status(),
             u"%1 total matches were found|%2|%2"_s.arg(FileCount + replaced).arg(FileCount));
  }

  void ASecondReplaceThatIsNotConfirmedLeavesTheFirstAlone() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Boxes.AnswerNext(QMessageBox::Cancel);
      window.Click("cmdReplace");
      QVERIFY(window.Form->IsRunning());
    });
    window.Replace();
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
    QCOMPARE(FilesHolding(window, u"2"_s), FileCount);
    QCOMPARE(window.Status(), u"%1 total matches were replaced|%1|%1"_s.arg(FileCount));
  }

  void ASecondReplaceThatIsRefusedLeavesTheFirstAlone() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Type("txtReplace", u"ABC"_s);
      window.Click("cmdReplace");
    });
    window.Replace();
    QCOMPARE(window.Boxes.TakeTexts().last(), u"Your find and replace text strings are the same."_s);
    QCOMPARE(FilesHolding(window, u"2"_s), FileCount);
  }

  void ASecondReplaceEndsTheFirstAndThenRunsOnce() {
    ReplaceWindow window;
    int done = 0;
    InTheMiddle(window, [&] {
      done = Done(window);
      window.Click("cmdReplace");
      QVERIFY(window.Form->IsRunning());
    });
    window.Replace();
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
    QCOMPARE(window.ResultHeader(), u"Replaces"_s);
    const int twice = FilesHolding(window, u"4"_s);
    QVERIFY(twice >= done && twice <= done + 1);
    QCOMPARE(FilesHolding(window, u"2"_s), FileCount - twice);
    QVERIFY(!window.Form->IsRunning());
  }

  void WhatWasConfirmedIsWhatRuns() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Type("txtReplace", u"sure"_s);
      window.Click("cmdReplace");
      window.Type("txtReplace", u"not sure"_s);
      window.Type("txtExtensions", u"none"_s);
    });
    window.Replace();
    for (int i = 0; i < FileCount; ++i) {
      const std::string content = window.Tree.Read("t/" + std::to_string(i) + ".txt");
      QVERIFY(content == "sure" || content == "suresure");
    }
  }

  void EscTakesASecondReplaceBack() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Click("cmdReplace");
      PressEsc(window);
    });
    window.Replace();
    QCOMPARE(FilesHolding(window, u"4"_s), 0);
    QVERIFY(FilesHolding(window, u"1"_s) > 0);
    QCOMPARE(window.Panel(u"MESSAGE"_s),
             u"%1 total matches were replaced"_s.arg(FilesHolding(window, u"2"_s)));
  }

  void ACloseTakesASecondReplaceBack() {
    ReplaceWindow window;
    InTheMiddle(window, [&] {
      window.Click("cmdReplace");
      window.Click("cmdClose");
    });
    window.Click("cmdReplace");
    QTRY_VERIFY(!window.Form);
    QCOMPARE(FilesHolding(window, u"4"_s), 0);
    QVERIFY(FilesHolding(window, u"1"_s) > 0);
  }

  void TwoQuickClicksOnFindGiveOneResult() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill();
    PostClick(window.Get<QPushButton>("cmdFind"));
    PostClick(window.Get<QPushButton>("cmdFind"));
    QTRY_COMPARE(window.Status(), u"%1 total matches were found|%1|%1"_s.arg(FileCount));
    QVERIFY(!window.Form->IsRunning());
    QCOMPARE(window.Lines().size(), FileCount);
  }

  // --- behind message boxes: what a screen reader can press there ------------------------

  void AClickBehindTheQuestionDoesNotReplaceTwice() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill(u"abc"_s, u"abcabc"_s);
    const BehindBox behind(u"Please verify"_s, [&] {
      window.Get<QPushButton>("cmdReplace").click();
      window.Get<QPushButton>("cmdFind").click();
    });
    window.Replace();
    QCOMPARE(behind.Times(), 1);
    QCOMPARE(FilesHolding(window, u"2"_s), FileCount);
    QCOMPARE(window.Panel(u"MESSAGE"_s), u"%1 total matches were replaced"_s.arg(FileCount));
  }

  void AClickBehindAProblemStartsNothing() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Tree.SetReadOnly("t/0.txt");
    window.Fill(u"abc"_s, u"abcabc"_s);
    const BehindBox behind(u"Can't open "_s, [&] {
      QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
      QVERIFY(window.Form->IsRunning());
      QCOMPARE(
          window.Status(),
          u"Working - %1|1|%2"_s.arg(QString::fromStdString(window.Tree.Path("t/0.txt"))).arg(FileCount));
      QCOMPARE(window.Lines().first(), u"0.txt: 1 matches replaced"_s);
      window.Get<QPushButton>("cmdReplace").click();
      window.Get<QPushButton>("cmdFind").click();
    });
    window.Replace();
    QCOMPARE(behind.Times(), 1);
    QCOMPARE(window.ResultHeader(), u"Replaces"_s);
    QCOMPARE(FilesHolding(window, u"1"_s), 1);
    QCOMPARE(FilesHolding(window, u"2"_s), FileCount - 1);
  }

  void ClosingBehindAQuestionReplacesNothing() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill();
    bool wasThere = false;
    const BehindBox behind(u"Please verify"_s, [&] {
      window.Get<QPushButton>("cmdClose").click();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      wasThere = window.Form;
    });
    window.Click("cmdReplace");
    QVERIFY(wasThere);
    QTRY_VERIFY(!window.Form);
    QCOMPARE(window.Replaced(FileCount), 0);
  }

  void ClosingBehindAWarningIsSafe() {
    ReplaceWindow window;
    window.Choose();
    const BehindBox behind(u"Please select the extensions"_s,
                           [&] { window.Get<QPushButton>("cmdClose").click(); });
    window.Click("cmdFind");
    QCOMPARE(behind.Times(), 1);
    QTRY_VERIFY(!window.Form);
  }

  void ClosingBehindAProblemEndsTheRun() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Tree.SetReadOnly("t/0.txt");
    window.Fill();
    const BehindBox behind(u"Can't open "_s, [&] { window.Get<QPushButton>("cmdClose").click(); });
    window.Click("cmdReplace");
    QTRY_VERIFY(!window.Form);
    QCOMPARE(window.Replaced(FileCount), 0);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
  }

  // --- errors --------------------------------------------------------------------------

  void AnErrorEndsTheRunAndIsTold_data() {
    QTest::addColumn<FileError>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("unreadable") << FileError::PermissionDenied << u"70\nDescription: Permission denied"_s;
    QTest::newRow("device") << FileError::DeviceError << u"57\nDescription: Device I/O error"_s;
  }
  void AnErrorEndsTheRunAndIsTold() {
    QFETCH(FileError, error);
    QFETCH(QString, text);
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill();
    const std::string path = window.Tree.Path("t/<b>.txt");
    window.Files.OnCall = [&] {
      if (window.Replaced(FileCount) == 3) throw FileSystemError(error, path);
    };
    QCOMPARE(window.Replace().size(), FileCount);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(2));
    const ShownBox& box = window.Boxes.Shown()[1];
    QCOMPARE(box.Text, u"Error: "_s + text + u'\n' + QString::fromStdString(path));
    QCOMPARE(box.Icon, QMessageBox::Critical);
    QCOMPARE(box.Title, u"Find and Replace"_s);
    QCOMPARE(window.Status(), u"3 total matches were replaced|4|%1"_s.arg(FileCount));
    QCOMPARE(window.Replaced(FileCount), 3);
    QVERIFY(!window.Form->IsRunning());

    window.Files.OnCall = nullptr;
    window.Replace();
    QCOMPARE(window.Status(), u"%1 total matches were replaced|%2|%2"_s.arg(FileCount - 3).arg(FileCount));
    QCOMPARE(window.Replaced(FileCount), FileCount);
  }

  void TooManyMatchesAreTold() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill();
    const std::string path = window.Tree.Path("t/1.txt");
    window.Files.OnCall = [&] {
      if (Done(window) == 1) throw OverflowError(path);
    };
    window.Find();
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"Error: 6\nDescription: Overflow\n"_s + QString::fromStdString(path)});
    QCOMPARE(window.Status(), u"1 total matches were found|2|%1"_s.arg(FileCount));
  }

  void AFileThatVanishesKeepsItsRowWithoutAResult() {
    ReplaceWindow window;
    window.HoldingFiles(FileCount);
    window.Fill();
    window.Files.OnCall = [&] {
      if (Done(window) == 3 && window.Tree.Exists("t/11.txt")) window.Tree.Remove("t/11.txt");
    };
    QVERIFY(window.Replace().contains(u"11.txt: "_s));
    QCOMPARE(window.Boxes.TakeTexts().size(), 1);  // the question before the run
    QCOMPARE(window.Status(), u"%1 total matches were replaced|%2|%2"_s.arg(FileCount - 1).arg(FileCount));
  }

  void AFolderThatVanishesIsTold() {
    ReplaceWindow window;
    window.Fill();
    window.Files.OnCall = [&] {
      if (window.Tree.Exists("t")) window.Tree.Remove("t");
    };
    window.Find();
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(1));
    QVERIFY(window.Boxes.Shown()[0].Text.startsWith(u"Error: 76\nDescription: Path not found\n"_s));
    QCOMPARE(window.Status(), u"0 total matches were found||"_s);
  }

  void AnErrorAfterACloseIsNotTold() {
    ReplaceWindow window;
    int thrown = 0;
    InTheMiddleOfAFile(window, [&] {
      window.Click("cmdClose");
      window.Files.OnCall = [&thrown] {
        ++thrown;
        throw FileSystemError(FileError::DeviceError, "x");
      };
    });
    window.Click("cmdReplace");
    QCOMPARE(thrown, 1);
    QTRY_VERIFY(!window.Form);
    QCOMPARE(window.Boxes.Shown().size(), std::size_t(1));  // the question before the run
  }

  void AnErrorBeforeASecondRunIsToldFirst() {
    ReplaceWindow window;
    bool isThrown = false;
    InTheMiddleOfAFile(window, [&] {
      window.Click("cmdFind");
      window.Files.OnCall = [&isThrown] {
        if (std::exchange(isThrown, true)) return;
        throw FileSystemError(FileError::DeviceError, "x");
      };
    });
    window.Replace();
    QCOMPARE(window.Boxes.TakeTexts().last(), u"Error: 57\nDescription: Device I/O error\nx"_s);
    QCOMPARE(window.Status(), u"0 total matches were found|1|1"_s);
    QCOMPARE(window.Lines(), QStringList{u"large.txt: 0 matches found"_s});
  }

  // --- the whole program -----------------------------------------------------------------

  void TheProgramEndsInTheMiddleOfASearch() {
    TempTree tree;
    MakeLargeFolder(tree, "large");
    const MessageBoxes boxes;
    frmMain main(ToolTable());
    main.show();
    main.findChild<QToolButton*>(u"Replace"_s)->click();
    const QPointer<frmReplace> form = main.findChild<frmReplace*>();
    form->findChild<uctSelectDir*>(u"uctSelectDir"_s)
        ->SetFolder(QString::fromStdString(tree.Root("large")));
    form->findChild<QLineEdit*>(u"txtExtensions"_s)->setText(u"txt"_s);
    form->findChild<QLineEdit*>(u"txtFind"_s)->setText(u"abc"_s);
    form->findChild<QCheckBox*>(u"chkSubdir"_s)->click();
    bool wasThere = false;
    When([&] { return form && form->IsRunning() && form->List().rowCount() > 100; },
         [&] {
           main.close();
           wasThere = form && main.isVisible();
         });
    form->findChild<QPushButton*>(u"cmdFind"_s)->click();
    QVERIFY(wasThere);
    QTRY_VERIFY(!form && !main.isVisible());
    QVERIFY(boxes.Shown().empty());
    QCOMPARE(GetSetting(u"Replace"_s, u"Folder"_s), QString::fromStdString(tree.Root("large")));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmReplaceRunTest)
#include "frmReplace_run_test.moc"
