#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>

#include "replace/ReplaceWindow.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"

namespace brackwell {

namespace {

QString Stored(const QString& key) { return GetSetting(u"Replace"_s, key, u"(none)"_s); }

QRect PlaceOf(ReplaceWindow& window, const char* name) {
  const QWidget& control = window.Get<QWidget>(name);
  return {control.mapTo(window.Form, QPoint()), control.size()};
}

}  // namespace

/// The controls of the window one by one: captions, places, keys, and what is remembered of them.
class frmReplaceControlsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { ForgetReplaceSettings(); }

  void CaptionsAndToolTips() {
    ReplaceWindow window;
    const auto caption = [&](const char* name) { return window.Get<QLabel>(name).text(); };
    QCOMPARE(window.Form->windowTitle(), u"Find and Replace"_s);
    QCOMPARE(window.Get<uctSelectDir>("uctSelectDir").Caption(), u"Select folder to search"_s);
    QCOMPARE(window.Get<QCheckBox>("chkSubdir").text(), u"Scan subdirectories?"_s);
    QVERIFY(!window.Get<QCheckBox>("chkSubdir").isChecked());
    QCOMPARE(caption("hdgExtensions"), u"Search in files with these extensions"_s);
    QCOMPARE(caption("hdgExclude"), u"Exclude files/subfolders that begin with"_s);
    QCOMPARE(caption("hdgFind"), u"Enter the phrase that you want to find within the files."_s);
    QCOMPARE(caption("hdgReplace"), u"Enter the phrase that you want to replace the found text with"_s);
    QCOMPARE(window.Get<QPushButton>("cmdFind").text(), u"&Find Only"_s);
    QCOMPARE(window.Get<QPushButton>("cmdReplace").text(), u"Find and &Replace"_s);
    QCOMPARE(window.Get<QPushButton>("cmdClose").text(), u"&Close"_s);
    QCOMPARE(window.Get<QLineEdit>("txtExtensions").toolTip(),
             u"Do not include the dot and separate each extension with a semi-colon."_s);
    QCOMPARE(window.Get<QLineEdit>("txtExclude").toolTip(), u"Separate values with semi-colons"_s);
    QCOMPARE(window.Status(), u"||"_s);
  }

  void EveryBoxIsCalledByItsHeading() {
    ReplaceWindow window;
    for (const char* name : {"Extensions", "Exclude", "Find", "Replace"}) {
      const auto& heading = window.Get<QLabel>((std::string("hdg") + name).c_str());
      auto& box = window.Get<QLineEdit>((std::string("txt") + name).c_str());
      QCOMPARE(heading.buddy(), &box);
      QCOMPARE(QAccessible::queryAccessibleInterface(&box)->text(QAccessible::Name), heading.text());
    }
    QCOMPARE(window.Get<ListView>("lvwResults").accessibleName(), u"Results"_s);
  }

  void NothingIsStoredBeforeAnythingIsTyped() {
    const ReplaceWindow window;
    for (const QString& key : {u"Folder"_s, u"Extensions"_s, u"Exclude"_s})
      QCOMPARE(Stored(key), u"(none)"_s);
  }

  void BothListsAreStoredAtOnce() {
    ReplaceWindow window;
    QTest::keyClicks(&window.Get<QLineEdit>("txtExtensions"), u"Txt; "_s);
    QCOMPARE(Stored(u"Extensions"_s), u"Txt; "_s);
    QTest::keyClicks(&window.Get<QLineEdit>("txtExclude"), u"bak"_s);
    QCOMPARE(Stored(u"Exclude"_s), u"bak"_s);
    window.Type("txtExclude", {});
    QCOMPARE(Stored(u"Exclude"_s), QString());
    QCOMPARE(Stored(u"Folder"_s), u"(none)"_s);
  }

  void WhatIsRememberedComesBack() {
    QString folder;
    {
      ReplaceWindow window;
      window.Fill();
      window.Type("txtExclude", u"bak"_s);
      window.Get<QCheckBox>("chkSubdir").click();
      folder = window.Get<uctSelectDir>("uctSelectDir").Folder();
      window.Frame->close();
    }
    QCOMPARE(Stored(u"Folder"_s), folder);
    ReplaceWindow window;
    QCOMPARE(window.Get<uctSelectDir>("uctSelectDir").Folder(), folder);
    QCOMPARE(window.Get<QLineEdit>("txtExtensions").text(), u"txt"_s);
    QCOMPARE(window.Get<QLineEdit>("txtExclude").text(), u"bak"_s);
    QCOMPARE(window.Get<QLineEdit>("txtFind").text(), QString());
    QCOMPARE(window.Get<QLineEdit>("txtReplace").text(), QString());
    QVERIFY(!window.Get<QCheckBox>("chkSubdir").isChecked());
    window.Type("txtFind", u"abc"_s);
    window.Click("cmdFind");
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Please path you selected does not exist."_s});
  }

  void WithoutSavingNothingIsStored() {
    SaveSetting(u"Replace"_s, u"SaveFormValues"_s, u"0"_s);
    SaveSetting(u"Replace"_s, u"Folder"_s, u"/kept/"_s);
    SaveSetting(u"Replace"_s, u"Extensions"_s, u"htm"_s);
    ReplaceWindow window;
    QCOMPARE(window.Get<QLineEdit>("txtExtensions").text(), u"htm"_s);
    window.Fill();
    window.Type("txtExclude", u"bak"_s);
    window.Frame->close();
    QCOMPARE(Stored(u"Folder"_s), u"/kept/"_s);
    QCOMPARE(Stored(u"Extensions"_s), u"htm"_s);
    QCOMPARE(Stored(u"Exclude"_s), u"(none)"_s);
  }

  void SavingFollowsTheOptionAtOnce() {
    ReplaceWindow window;
    window.Type("txtExtensions", u"a"_s);
    SaveSetting(u"Replace"_s, u"SaveFormValues"_s, u"0"_s);
    window.Type("txtExtensions", u"b"_s);
    QCOMPARE(Stored(u"Extensions"_s), u"a"_s);
    SaveSetting(u"Replace"_s, u"SaveFormValues"_s, u"1"_s);
    window.Type("txtExtensions", u"c"_s);
    QCOMPARE(Stored(u"Extensions"_s), u"c"_s);
  }

  void PrintIsOnWhileTheWindowIsActive() {
    ReplaceWindow window;
    window.Form->Form_Activate();
    window.Form->Form_Deactivate();
    QCOMPARE(window.Enabled, (QStringList{u"Print+"_s, u"Print-"_s}));
    window.Frame->close();
    QCOMPARE(window.Enabled.size(), 3);
    QCOMPARE(window.Enabled.last(), u"Print-"_s);
  }

  void TabLeadsFromTopToBottom() {
    ReplaceWindow window;
    window.Area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    QStringList names;
    window.Get<uctSelectDir>("uctSelectDir").setFocus();
    for (int i = 0; i < 20; ++i) {
      const QWidget* control = QApplication::focusWidget();
      const bool isPart = control->objectName() == u"cmdSelect"_s;
      const QString name = isPart ? control->parentWidget()->objectName() : control->objectName();
      if (names.contains(name)) break;
      names << name;
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(names.join(u' '),
             u"uctSelectDir txtExtensions txtExclude chkSubdir txtFind txtReplace lvwResults cmdFind "
             "cmdReplace cmdClose"_s);
  }

  void AcceleratorsComeBeforeTheMenus() {
    MessageBoxes boxes;
    frmMain main(ToolTable());
    main.show();
    main.findChild<QAction*>(u"mnuTools_Replace"_s)->trigger();
    const QPointer<frmReplace> form = main.findChild<frmReplace*>();
    auto* box = form->findChild<QLineEdit*>(u"txtFind"_s);
    const auto press = [&](Qt::Key key) {
      main.activateWindow();
      QVERIFY(QTest::qWaitForWindowActive(&main));
      box->setFocus();
      QTest::keyClick(box, key, Qt::AltModifier);
    };
    std::size_t asked = 0;
    for (const auto key : {Qt::Key_F, Qt::Key_R}) {
      press(key);
      ++asked;
      QTRY_COMPARE(boxes.Shown().size(), asked);
      QVERIFY(!QApplication::activePopupWidget());
      QCOMPARE(box->text(), QString());
    }
    press(Qt::Key_C);
    QTRY_VERIFY(!form);
  }

  void TheWindowOpensMaximisedWhereTheOptionsSaySo() {
    SaveSetting(u"General"_s, u"ChildMaximized"_s, u"1"_s);
    frmMain main(ToolTable());
    main.show();
    main.findChild<QAction*>(u"mnuTools_Replace"_s)->trigger();
    DeleteSetting(u"General"_s, u"ChildMaximized"_s);
    QVERIFY(main.findChild<QMdiSubWindow*>(u"Replace"_s)->isMaximized());
    main.findChild<QAction*>(u"mnuTools_Replace"_s)->trigger();
    QCOMPARE(main.findChildren<frmReplace*>().size(), 2);
  }

  void TheLayoutFollowsTheWindow_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << QSize(860, 560);
    QTest::newRow("large") << QSize(1700, 1100);
    QTest::newRow("narrow") << QSize(430, 420);
  }
  void TheLayoutFollowsTheWindow() {
    QFETCH(QSize, size);
    ReplaceWindow window;
    window.Area.resize(size + QSize(50, 50));
    window.Frame->resize(size);
    QTest::qWait(1);
    const auto place = [&](const char* name) { return PlaceOf(window, name); };
    const int left = 8;
    const int right = window.Form->width() - 8;

    // From edge to edge: the boxes and the list.
    for (const char* name : {"txtFind", "txtReplace", "lvwResults"}) {
      QCOMPARE(place(name).left(), left);
      QCOMPARE(place(name).right() + 1, right);
    }
    QCOMPARE(place("cmdSelect").right() + 1, right);
    // The extensions, then what keeps to the right of them.
    QCOMPARE(place("txtExtensions").left(), left);
    QVERIFY(place("txtExclude").left() > place("txtExtensions").right());
    QCOMPARE(place("hdgExclude").left(), place("txtExclude").left());
    QVERIFY(place("hdgExclude").bottom() < place("txtExclude").top());
    QVERIFY(place("chkSubdir").left() > place("txtExclude").right());
    QVERIFY(place("chkSubdir").right() < right);
    // The buttons at the lower right, and the list over all that is left.
    QCOMPARE(place("cmdClose").right() + 1, right);
    QVERIFY(place("cmdReplace").right() < place("cmdClose").left());
    QVERIFY(place("cmdFind").right() < place("cmdReplace").left());
    QCOMPARE(place("cmdFind").top(), place("cmdClose").top());
    QVERIFY(place("cmdClose").top() - place("lvwResults").bottom() < 10);
    QVERIFY(place("lvwResults").top() - place("txtReplace").bottom() < 10);
    QVERIFY(place("stbReplace").top() - place("cmdClose").bottom() < 10);
    QVERIFY(place("stbReplace").bottom() < window.Form->height());
    // Nothing is cut off, and no scroll bar needed below the list.
    for (const QLabel* heading : window.Form->findChildren<QLabel*>()) {
      if (!heading->objectName().startsWith(u"hdg"_s)) continue;
      QVERIFY(heading->height() >= heading->heightForWidth(heading->width()));
    }
    const auto& list = window.Get<ListView>("lvwResults");
    QVERIFY(list.header()->length() <= list.viewport()->width());
    QVERIFY(list.header()->length() > list.viewport()->width() - 40);
    QVERIFY(list.columnWidth(1) >= list.fontMetrics().horizontalAdvance(u"123456 matches replaced"_s));
  }

  void AtItsSmallestEveryBoxKeepsItsHeight() {
    ReplaceWindow window;
    window.Frame->resize(window.Frame->minimumSizeHint());
    QTest::qWait(1);
    for (const char* name : {"txtExtensions", "txtExclude", "txtFind", "txtReplace"}) {
      const auto& box = window.Get<QLineEdit>(name);
      QVERIFY(box.height() >= box.sizeHint().height());
    }
  }

  void ALongPathIsShortenedInItsMiddle() {
    ReplaceWindow window;
    QCOMPARE(window.Get<ListView>("lvwResults").textElideMode(), Qt::ElideMiddle);
    const QSize before = window.Form->minimumSizeHint();
    window.Get<uctSelectDir>("uctSelectDir").SetFolder(u'/' + QString(3000, u'x'));
    QCOMPARE(window.Form->minimumSizeHint(), before);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmReplaceControlsTest)
#include "frmReplace_controls_test.moc"
