#include "rename/frmRename.h"

#include <QGroupBox>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>

#include "rename/RenameWindow.h"

namespace brackwell {

namespace {

const QStringList Extensions =
    u"BMP CAM CGM DIB EMF FPX GIF IMG JPEG JPG KDC PCD PCX PIC PNG PSD PSP TGA TIFF WMF"_s.split(u' ');

QString Caption(const QWidget& control) {
  if (auto* button = qobject_cast<const QAbstractButton*>(&control)) return button->text();
  if (auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
  return {};
}

}  // namespace

/// The rename window from choosing a folder to renamed files.
class frmRenameTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QCOMPARE(QGuiApplication::overrideCursor(), nullptr); }

  // --- as it opens

  void AFirstStartHasNothingTickedAndNothingListed() {
    RenameWindow window;
    QCOMPARE(window.Form->windowTitle(), u"Rename Image Files"_s);
    for (const QString& extension : Extensions) QVERIFY(!window.Extension(extension).isChecked());
    for (int i = 0; i < 2; ++i) {
      QCOMPARE(window.Other(i).text(), QString());
      QVERIFY(!window.Move(i).isEnabled());
    }
    QCOMPARE(window.Get<QLineEdit>("txtPrefix").text(), QString());
    QCOMPARE(window.Get<QLineEdit>("txtStartNum").text(), QString());
    QVERIFY(!window.Get<QCheckBox>("chkPreserve").isChecked());
    QCOMPARE(window.Lines(), QStringList());
    QCOMPARE(window.Panel(u"FOLDER"_s), QString());
    QVERIFY(window.Boxes.Shown().empty());
  }

  void CaptionsAndToolTipsStandAsTheyAre() {
    RenameWindow window;
    const QList<QStringList> controls{{u"hdgFiles"_s, u"Files"_s, {}},
                                      {u"cmdCheck(0)"_s, {}, u"Check All"_s},
                                      {u"cmdCheck(1)"_s, {}, u"Uncheck All"_s},
                                      {u"cmdMoveItem(0)"_s, {}, u"Move selected item up"_s},
                                      {u"cmdMoveItem(1)"_s, {}, u"Move selected item down"_s},
                                      {u"hdgOtherExtension"_s, u"Other"_s, {}},
                                      {u"hdgPrefix"_s, u"Filename Prefix"_s, {}},
                                      {u"hdgStartNum"_s, u"Starting Number"_s, {}},
                                      {u"chkPreserve"_s, u"Preserve original files"_s, {}},
                                      {u"cmdSetNames"_s, u"Set New Names"_s, {}},
                                      {u"cmdRename"_s, u"&Rename"_s, {}},
                                      {u"cmdClose"_s, u"&Close"_s, {}}};
    for (const QStringList& control : controls) {
      const auto& widget = window.Get<QWidget>(qPrintable(control[0]));
      QCOMPARE(Caption(widget), control[1]);
      QCOMPARE(widget.toolTip(), control[2]);
    }
    QCOMPARE(window.Get<QGroupBox>("fraExtension").title(), u"Include these extensions"_s);
    for (int i = 0; i < Extensions.size(); ++i)
      QCOMPARE(window.Get<QCheckBox>(qPrintable(u"chkExtension(%1)"_s.arg(i))).text(), Extensions[i]);
    const QAbstractItemModel& list = window.Form->List();
    QCOMPARE(list.headerData(0, Qt::Horizontal).toString(), u"Original File"_s);
    QCOMPARE(list.headerData(1, Qt::Horizontal).toString(), u"New File"_s);
  }

  void PictureButtonsShowTheirPictures() {
    RenameWindow window;
    QCOMPARE(window.Images.MatchPicture(window.Get<QPushButton>("cmdCheck(0)").icon()), u"CheckAll"_s);
    QCOMPARE(window.Images.MatchPicture(window.Get<QPushButton>("cmdCheck(1)").icon()), u"UncheckAll"_s);
    QCOMPARE(window.Move(0).icon().cacheKey(), window.Images.imgMoveUp.cacheKey());
    QCOMPARE(window.Move(1).icon().cacheKey(), window.Images.imgMoveDown.cacheKey());
  }

  void EveryControlHasAnAccessibleName() {
    RenameWindow window;
    for (QWidget* control : window.Form->findChildren<QWidget*>())
      if (control->focusPolicy() != Qt::NoFocus && !control->objectName().startsWith(u"qt_"_s))
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
  }

  void TabGoesDownTheLeftSideAndThenDownTheRightOne() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    window.Select(1);
    window.Folders().setFocus();
    QStringList expected{u"FolderTree"_s};
    for (int i = 0; i < Extensions.size(); ++i) expected << u"chkExtension(%1)"_s.arg(i);
    expected << u"txtOtherExtension(0)"_s << u"txtOtherExtension(1)"_s << u"lvwFiles"_s << u"cmdCheck(0)"_s
             << u"cmdCheck(1)"_s << u"cmdMoveItem(0)"_s << u"cmdMoveItem(1)"_s << u"txtPrefix"_s
             << u"txtStartNum"_s << u"chkPreserve"_s << u"cmdSetNames"_s << u"cmdRename"_s << u"cmdClose"_s;
    QStringList visited;
    for (int i = 0; i < expected.size(); ++i) {
      QWidget* focused = window.Area.focusWidget();
      visited << focused->objectName();
      QTest::keyPress(focused, Qt::Key_Tab);  // released in a box for extensions, it would list anew
    }
    QCOMPARE(visited, expected);
  }

  void ThereIsNothingToPrint() {
    RenameWindow window;
    QCOMPARE(window.Form->metaObject()->indexOfMethod("PrintData()"), -1);
  }

  // --- what is listed

  void AFolderShowsItsFilesOfTheTickedExtensions() {
    RenameWindow window;
    window.Add({u"b.jpg"_s, u"A.JPG"_s, u"c.gif"_s, u"d.txt"_s, u"e"_s});
    window.Add({u"inner.jpg"_s}, "images/sub");
    window.Extension(u"JPG"_s).click();
    QCOMPARE(window.Lines(), QStringList());
    QVERIFY(window.Choose());
    QCOMPARE(window.Lines(), (QStringList{u"[x] A.JPG"_s, u"[x] b.jpg"_s}));
    QCOMPARE(window.Panel(u"FOLDER"_s), QString::fromStdString(window.Tree.Path("images")));
    window.Extension(u"GIF"_s).click();
    QCOMPARE(window.Lines(), (QStringList{u"[x] A.JPG"_s, u"[x] b.jpg"_s, u"[x] c.gif"_s}));
    window.Extension(u"JPG"_s).click();
    QCOMPARE(window.Lines(), QStringList{u"[x] c.gif"_s});
    QVERIFY(window.Choose("images/sub"));
    QCOMPARE(window.Lines(), QStringList());
  }

  void EachExtensionIsKeptUnderItsCaption() {
    {
      RenameWindow window;
      window.Extension(u"WMF"_s).click();
      window.Extension(u"BMP"_s).click();
      window.Extension(u"BMP"_s).click();
      QCOMPARE(GetSetting(u"Rename"_s, u"WMF"_s), u"1"_s);
      QCOMPARE(GetSetting(u"Rename"_s, u"BMP"_s), u"0"_s);
      SaveSetting(u"Rename"_s, u"GIF"_s, u"maybe"_s);
      SaveSetting(u"Rename"_s, u"other1"_s, u"<raw>"_s);
      RenameWindow next;
      QVERIFY(next.Extension(u"WMF"_s).isChecked());
      QVERIFY(!next.Extension(u"BMP"_s).isChecked());
      QVERIFY(!next.Extension(u"GIF"_s).isChecked());
      QCOMPARE(next.Other(0).text(), QString());
      QCOMPARE(next.Other(1).text(), u"<raw>"_s);
    }
  }

  void EveryKeyInAnOtherExtensionSavesAndListsAnew() {
    RenameWindow window;
    window.Add({u"a.raw"_s, u"b.ra"_s, u"c.jpg"_s});
    QVERIFY(window.Choose());
    const QSignalSpy listed(&window.Form->List(), &QAbstractItemModel::modelReset);
    QTest::keyClick(&window.Other(0), Qt::Key_R);
    QCOMPARE(GetSetting(u"Rename"_s, u"other0"_s), u"r"_s);
    QTest::keyClick(&window.Other(0), Qt::Key_A);
    QCOMPARE(window.Lines(), QStringList{u"[x] b.ra"_s});
    QTest::keyClick(&window.Other(0), Qt::Key_W);
    QCOMPARE(GetSetting(u"Rename"_s, u"other0"_s), u"raw"_s);
    QCOMPARE(listed.count(), 3);
    QCOMPARE(window.Lines(), QStringList{u"[x] a.raw"_s});
    QTest::keyClick(&window.Other(0), Qt::Key_Left);
    QCOMPARE(listed.count(), 4);
    QTest::keyClicks(&window.Other(1), u"*"_s);
    QCOMPARE(GetSetting(u"Rename"_s, u"other1"_s), u"*"_s);
    QCOMPARE(window.Lines().size(), 3);
  }

  void AKeyHeldDownListsOnceWhenItIsReleased() {
    RenameWindow window;
    QVERIFY(window.Choose());
    const QSignalSpy listed(&window.Form->List(), &QAbstractItemModel::modelReset);
    for (int i = 0; i < 5; ++i) {
      QKeyEvent release(QEvent::KeyRelease, Qt::Key_A, {}, u"a"_s, true);
      QCoreApplication::sendEvent(&window.Other(0), &release);
    }
    QCOMPARE(listed.count(), 0);
  }

  void AnExtensionPastedByMouseCounts() {
    RenameWindow window;
    window.Add({u"a.raw"_s});
    QVERIFY(window.Choose());
    window.Other(1).insert(u"Raw"_s);  // as its menu does
    QCOMPARE(GetSetting(u"Rename"_s, u"other1"_s), u"Raw"_s);
    QCOMPARE(window.Lines(), QStringList{u"[x] a.raw"_s});
  }

  void WhatChangesOnTheDiskShowsWithTheNextKey() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.Add({u"b.jpg"_s});
    QCOMPARE(window.Lines().size(), 1);
    QTest::keyClick(&window.Other(0), Qt::Key_End);
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg"_s, u"[x] b.jpg"_s}));
  }

  void ListingAnewForgetsOrderTicksAndNames() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Select(0);
    window.Move(1).click();
    window.Click("cmdCheck(1)");
    QTest::keyClick(&window.Other(0), Qt::Key_End);
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg"_s, u"[x] b.jpg"_s}));
    for (int i = 0; i < 2; ++i) QVERIFY(!window.Move(i).isEnabled());
  }

  // --- messages

  void EveryMessageIsTheOneAgreed() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.Click("cmdSetNames");
    window.SetNames(u"a"_s, u"x1"_s);
    window.Click("cmdRename");
    window.SetNames(u"a"_s, u"1"_s);
    window.Boxes.AnswerNext(QMessageBox::No);
    window.Click("cmdRename");
    window.Get<QCheckBox>("chkPreserve").click();
    window.Rename();
    window.SetNames(u"b"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    window.Rename();
    window.Tree.Remove("images");
    QTest::keyClick(&window.Other(0), Qt::Key_End);

    const ShownBox question{QMessageBox::Question,
                            u"Are you sure you want to rename these files?"_s,
                            {},
                            QMessageBox::Yes | QMessageBox::No};
    const std::vector<ShownBox> expected{
        {QMessageBox::Warning, u"Please specify the prefix for the new filenames."_s, {}, QMessageBox::Ok},
        {QMessageBox::Warning,
         u"The filename starting number must be a valid number preceeded with the number of zeroes you desire."_s,
         {},
         QMessageBox::Ok},
        {QMessageBox::Warning, u"There is nothing to rename!"_s, {}, QMessageBox::Ok},
        question,
        question,
        {QMessageBox::Information,
         u"Files have been renamed and can be found in the 'Renamed Files' sub-folder."_s,
         {},
         QMessageBox::Ok},
        question,
        {QMessageBox::Information, {}, {}, QMessageBox::Ok},
        {QMessageBox::Critical, u"Cannot access specified folder."_s, {}, QMessageBox::Ok}};
    QCOMPARE(window.Boxes.Shown().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const ShownBox& box = window.Boxes.Shown()[i];
      QCOMPARE(box.Text, expected[i].Text);
      QCOMPARE(box.Icon, expected[i].Icon);
      QCOMPARE(box.Buttons, expected[i].Buttons);
      QCOMPARE(box.Title, u"Rename Image Files"_s);
    }
    QCOMPARE(window.Lines(), QStringList());
  }

  void ThePrefixIsCheckedBeforeTheNumberAndTheFocusGoesToWhatIsWrong() {
    RenameWindow window;
    auto& prefix = window.Get<QLineEdit>("txtPrefix");
    auto& start = window.Get<QLineEdit>("txtStartNum");
    window.SetNames({}, u"x1"_s);
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Please specify the prefix for the new filenames."_s});
    QCOMPARE(window.Area.focusWidget(), &prefix);
    for (const QString& number : {u"x1"_s, QString(), u"1 2"_s, u"99999999999"_s}) {
      window.SetNames(u"a"_s, number);
      QVERIFY(window.Boxes.TakeTexts().value(0).startsWith(u"The filename starting number"_s));
      QCOMPARE(window.Area.focusWidget(), &start);
    }
    window.SetNames(u" "_s, u"&H1F"_s);
    QCOMPARE(window.Boxes.TakeTexts(), QStringList());
  }

  // --- naming

  void NamesAreShownBeforeAnythingIsRenamed() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.gif"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"pic"_s, u"007"_s);
    QCOMPARE(window.Lines(),
             (QStringList{u"[x] a.jpg -> pic007.JPG"_s, u"[x] b.gif -> pic008.GIF"_s, u"[x] c -> pic009"_s}));
    QCOMPARE(window.OnDisk(), (QStringList{u"a.jpg"_s, u"b.gif"_s, u"c"_s}));
  }

  void TickingRenumbersAtOnce() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(),
             (QStringList{u"[ ] a.jpg"_s, u"[x] b.jpg -> x1.JPG"_s, u"[x] c.jpg -> x2.JPG"_s}));
    QTest::keyClick(&window.View(), Qt::Key_Space);
    window.Select(1);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(),
             (QStringList{u"[x] a.jpg -> x1.JPG"_s, u"[ ] b.jpg"_s, u"[x] c.jpg -> x2.JPG"_s}));
  }

  void AClickOnABoxTicksIt() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    ListView& view = window.View();
    const QRect item = view.visualRect(window.Form->List().index(0, 0));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(item.left() + 10, item.center().y()));
    QCOMPARE(window.Lines(), (QStringList{u"[ ] a.jpg"_s, u"[x] b.jpg -> x1.JPG"_s}));
  }

  void TickingWithoutAPrefixLeavesTheNames() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QLineEdit>("txtPrefix").clear();
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(), (QStringList{u"[ ] a.jpg -> x1.JPG"_s, u"[x] b.jpg -> x2.JPG"_s}));
    window.Get<QLineEdit>("txtPrefix").setText(u"y"_s);
    window.Get<QLineEdit>("txtStartNum").setText(u"-"_s);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg -> x1.JPG"_s, u"[x] b.jpg -> x2.JPG"_s}));
  }

  void TickingBeforeTheNamesAreSetNamesAsSoonAsItCan() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(), (QStringList{u"[ ] a.jpg"_s, u"[x] b.jpg"_s}));
    window.Get<QLineEdit>("txtPrefix").setText(u"x"_s);
    window.Get<QLineEdit>("txtStartNum").setText(u"5"_s);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg -> x5.JPG"_s, u"[x] b.jpg -> x6.JPG"_s}));
  }

  void AllAreTickedAndUntickedAtOnce() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Click("cmdCheck(1)");
    QCOMPARE(window.Lines(), (QStringList{u"[ ] a.jpg"_s, u"[ ] b.jpg"_s}));
    window.Click("cmdRename");
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"There is nothing to rename!"_s});
    window.Click("cmdCheck(0)");
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg -> x1.JPG"_s, u"[x] b.jpg -> x2.JPG"_s}));
  }

  // --- the order

  void TheMoveButtonsFollowTheSelectedItem() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    const auto enabled = [&] {
      return QString(window.Move(0).isEnabled() ? u"up "_s : u"- "_s) +
             (window.Move(1).isEnabled() ? u"down"_s : u"-"_s);
    };
    QCOMPARE(enabled(), u"- -"_s);
    window.Select(0);
    QCOMPARE(enabled(), u"- down"_s);
    window.Select(1);
    QCOMPARE(enabled(), u"up down"_s);
    window.Select(2);
    QCOMPARE(enabled(), u"up -"_s);
    window.Move(0).click();
    QCOMPARE(enabled(), u"up down"_s);
    window.Move(0).click();
    QCOMPARE(enabled(), u"- down"_s);
    QCOMPARE(window.View().currentIndex().row(), 0);
    QCOMPARE(window.Lines(), (QStringList{u"[x] c"_s, u"[x] a"_s, u"[x] b"_s}));
  }

  void AnItemThatOnlyHasTheFocusIsNotMoved() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s});
    QVERIFY(window.ChooseAll());
    window.View().setFocus();
    QCOMPARE(window.View().currentIndex().row(), 0);
    QVERIFY(!window.Move(1).isEnabled());
    QTest::keyClick(&window.View(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(window.Lines(), (QStringList{u"[x] a"_s, u"[x] b"_s}));
  }

  void MovingChangesTheNumbersAtOnceAndKeepsTheTick() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Select(0);
    window.Move(1).click();
    QCOMPARE(window.Lines(), (QStringList{u"[x] b -> x1"_s, u"[x] a -> x2"_s, u"[x] c -> x3"_s}));
    QTest::keyClick(&window.View(), Qt::Key_Space);
    window.Move(1).click();
    QCOMPARE(window.Lines(), (QStringList{u"[x] b -> x1"_s, u"[x] c -> x2"_s, u"[ ] a"_s}));
    QVERIFY(window.View().selectionModel()->isRowSelected(2));
  }

  void AltWithTheArrowsMovesAsWell() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    window.View().setFocus();
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(&window.View(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&window.View(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&window.View(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(window.Lines(), (QStringList{u"[x] b"_s, u"[x] c"_s, u"[x] a"_s}));
    QCOMPARE(window.View().currentIndex().row(), 2);
    QTest::keyClick(&window.View(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(window.Lines(), (QStringList{u"[x] b"_s, u"[x] a"_s, u"[x] c"_s}));
  }

  void AMovedItemLosesItsNameWhereNoneCanBeMade() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QLineEdit>("txtPrefix").clear();
    window.Select(0);
    window.Move(1).click();
    QCOMPARE(window.Lines(), (QStringList{u"[x] b -> x2"_s, u"[x] a"_s}));
  }

  void AtTheTopTheFocusDoesNotGoToTheButtonThatMovesBack() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s});
    QVERIFY(window.ChooseAll());
    window.Select(1);
    window.Move(0).setFocus();
    QTest::keyClick(&window.Move(0), Qt::Key_Space);
    QVERIFY(window.View().hasFocus());
  }

  void DeleteDoesNothingAndOnlyOneItemIsSelected() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s, u"c"_s});
    QVERIFY(window.ChooseAll());
    window.Select(1);
    QTest::keyClick(&window.View(), Qt::Key_Delete);
    QTest::keyClick(&window.View(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&window.View(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(window.View().selectionModel()->selectedRows().size(), 1);
    QCOMPARE(window.Lines().size(), 3);
    QCOMPARE(window.OnDisk().size(), 3);
  }

  void NewNamesKeepSelectionAndPlace() {
    RenameWindow window;
    for (int i = 0; i < 500; ++i) window.Tree.File("images/" + std::to_string(1000 + i) + ".jpg");
    QVERIFY(window.ChooseAll());
    window.Select(250);
    window.View().verticalScrollBar()->setValue(window.View().verticalScrollBar()->maximum());
    const int place = window.View().verticalScrollBar()->value();
    window.SetNames(u"x"_s, u"1"_s);
    window.Click("cmdCheck(1)");
    window.Click("cmdCheck(0)");
    QCOMPARE(window.View().verticalScrollBar()->value(), place);
    QCOMPARE(window.View().currentIndex().row(), 250);
    QCOMPARE(window.Lines()[250], u"[x] 1250.jpg -> x1.JPG"_s);
  }

  // --- renaming

  void RenamesInPlaceAndListsWhatIsThereNow() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"Trip"_s, u"01"_s);
    window.Select(2);
    window.Move(0).click();
    window.Rename();
    QCOMPARE(window.OnDisk(), (QStringList{u"Trip01.JPG"_s, u"Trip02.JPG"_s, u"Trip03.JPG"_s}));
    QCOMPARE(window.Tree.Read("images/Trip02.JPG"), "c.jpg");
    QCOMPARE(window.Lines(), (QStringList{u"[x] Trip01.JPG"_s, u"[x] Trip02.JPG"_s, u"[x] Trip03.JPG"_s}));
    QCOMPARE(window.Panel(u"MESSAGE"_s), QString());
    window.Click("cmdRename");
    QCOMPARE(window.Boxes.TakeTexts().last(), u"There is nothing to rename!"_s);
  }

  void NoLeavesEverythingAsItIs() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Boxes.AnswerNext(QMessageBox::No);
    window.Click("cmdRename");
    QCOMPARE(window.OnDisk(), QStringList{u"a.jpg"_s});
    QCOMPARE(window.Lines(), QStringList{u"[x] a.jpg -> x1.JPG"_s});
  }

  void OriginalsArePreservedWhenAsked() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    window.Rename();
    QCOMPARE(window.OnDisk(), (QStringList{u"Renamed Files/"_s, u"Renamed Files/x1.JPG"_s,
                                           u"Renamed Files/x2.JPG"_s, u"a.jpg"_s, u"b.jpg"_s}));
    QCOMPARE(window.Lines(), (QStringList{u"[x] a.jpg"_s, u"[x] b.jpg"_s}));
  }

  void NamesAreThoseThatTheListShowsWhateverIsTypedSince() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QLineEdit>("txtPrefix").setText(u"y"_s);
    window.Rename();
    QCOMPARE(window.OnDisk(), QStringList{u"x1.JPG"_s});
  }

  void NamesOfAnyBytesAreListedAndRenamed() {
    if (!TempTree::CanName("\xff.jpg")) QSKIP(NoSuchName);
    RenameWindow window;
    window.Tree.File("images/\xff.jpg", "bytes");
    window.Tree.File("images/<b>a\nb.jpg", "markup");
    QVERIFY(window.ChooseAll());
    QCOMPARE(window.Lines(), (QStringList{u"[x] <b>a\u240Ab.jpg"_s, u"[x] \uFFFD.jpg"_s}));
    const QString toolTip = window.Form->List().index(0, 0).data(Qt::ToolTipRole).toString();
    QVERIFY(!toolTip.contains(u"<b>"_s));
    QCOMPARE(window.Form->List().index(0, 1).data(Qt::ToolTipRole).toString(), QString());
    window.SetNames(u"Ü"_s, u"1"_s);
    window.Rename();
    QCOMPARE(window.OnDisk().size(), 2);
    QCOMPARE(window.OnDisk(), (QStringList{u"Ü1.JPG"_s, u"Ü2.JPG"_s}));
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmRenameTest)
#include "frmRename_test.moc"
