#include <QMessageBox>
#include <functional>
#include <utility>

#include "rename/RenameWindow.h"
#include "support/ClosedFolder.h"

// The rename window where the disk does not play along, and names that no file may have.

namespace brackwell {

namespace {

/// Does something while the next message box waits for its answer.
class WhileAsked : public QObject {
 public:
  explicit WhileAsked(std::function<void()> step) : mStep(std::move(step)) { qApp->installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (mStep && event->type() == QEvent::Show && qobject_cast<QMessageBox*>(watched))
      std::exchange(mStep, nullptr)();
    return false;
  }

 private:
  std::function<void()> mStep;
};

}  // namespace

class frmRenameFaultsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QCOMPARE(QGuiApplication::overrideCursor(), nullptr); }

  void AFolderThatIsGoneSaysSoAndEmptiesTheList() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.Tree.Remove("images");
    window.Extension(u"JPG"_s).click();
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Cannot access specified folder."_s});
    QCOMPARE(window.Lines(), QStringList());
  }

  void AFolderThatGoesWhileTheQuestionIsAskedIsNotRenamedElsewhere() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    window.Add({u"b.jpg"_s}, "other");
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    bool chosen = false;
    const WhileAsked asked([&] {
      window.Tree.Remove("images");
      chosen = window.Choose("other");
    });
    window.Rename();
    QVERIFY(chosen);
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Are you sure you want to rename these files?"_s});
    QCOMPARE(window.OnDisk("other"), QStringList{u"b.jpg"_s});
  }

  void AFolderThatMayNotBeReadSaysSo() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    const ClosedFolder closed(window.Tree.Path("images"), ClosedFolder::To::Readers);
    QVERIFY(window.ChooseAll());
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Cannot access specified folder."_s});
    QCOMPARE(window.Lines(), QStringList());
    QCOMPARE(window.Panel(u"FOLDER"_s), QString::fromStdString(window.Tree.Path("images")));
  }

  void EveryCallThatFailsIsSurvived() {
    int calls = 0;
    {
      RenameWindow window;
      window.Add({u"a.jpg"_s, u"b.jpg"_s});
      QVERIFY(window.ChooseAll());
      window.SetNames(u"x"_s, u"1"_s);
      window.Rename();
      calls = window.Files.Calls();
    }
    for (int failAt = 1; failAt <= calls; ++failAt) {
      RenameWindow window(failAt);
      window.Add({u"a.jpg"_s, u"b.jpg"_s});
      QVERIFY(window.ChooseAll());
      window.SetNames(u"x"_s, u"1"_s);
      window.Rename();
      QCOMPARE(window.OnDisk().size(), 2);
      QVERIFY(!window.Form->IsRunning());
    }
  }

  void AReadOnlyFolderIsLeftInSilence() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    const ClosedFolder closed(window.Tree.Path("images"), ClosedFolder::To::Writers);
    window.SetNames(u"x"_s, u"1"_s);
    window.Rename();
    QCOMPARE(window.Boxes.TakeTexts(),
             (QStringList{u"Are you sure you want to rename these files?"_s, QString()}));
    QCOMPARE(window.Lines(), QStringList{u"[x] a.jpg"_s});
  }

  void NamesThatNoFileMayHaveAreLeft() {
    for (const QString& prefix : {u"../x"_s, u"a/b"_s, u"a\\b"_s, u"a:b"_s, QString(300, u'x')}) {
      RenameWindow window;
      window.Add({u"a.jpg"_s});
      QVERIFY(window.ChooseAll());
      window.SetNames(prefix, u"1"_s);
      window.Rename();
      QCOMPARE(window.OnDisk({}), (QStringList{u"images/"_s, u"images/a.jpg"_s}));
    }
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmRenameFaultsTest)
#include "frmRename_faults_test.moc"
