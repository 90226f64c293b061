#include "dirdisplay/frmDirDisplay.h"

#include <QClipboard>
#include <QGroupBox>
#include <QHeaderView>

#include "dirdisplay/DisplayWindow.h"
#include "support/RootOfAll.h"

// What the window shows and remembers.

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"DirectoryDisplay"_s;
const QStringList Keys{u"DisplayFormat"_s, u"FolderInfo"_s,  u"FolderSelected"_s,
                       u"FolderInclude"_s, u"FolderSubs"_s,  u"FileInfo"_s,
                       u"FileSelected"_s,  u"FileInclude"_s, u"SaveFormValues"_s};

const QStringList FolderCaptions{
    u"Full Name"_s,     u"Date Created"_s, u"Date Last Accessed"_s, u"Date Last Modified"_s,
    u"File Quantity"_s, u"Is Root"_s,      u"Parent Folder"_s,      u"Short Name"_s,
    u"Short Path"_s,    u"Size"_s,         u"Subfolder Quantity"_s, u"Type"_s};
const QStringList FileCaptions{u"Name"_s, u"Date Created"_s, u"Date Last Accessed"_s, u"Date Last Modified"_s,
                               u"Path"_s, u"Short Name"_s,   u"Short Path"_s,         u"Size"_s,
                               u"Type"_s, u"Extension"_s};

void Store(const QString& key, const QString& value) { SaveSetting(Section, key, value); }

/// Everything stored but the switch, as "key=value" lines.
QStringList Stored() {
  QStringList lines;
  for (const QString& key : Keys.first(8)) lines << key + u"="_s + GetSetting(Section, key, u"(none)"_s);
  return lines;
}

}  // namespace

class frmDirDisplayTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    for (const QString& key : Keys) DeleteSetting(Section, key);
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
  }

  void AFirstStartShowsEverythingAsDesigned();
  void CaptionsStandAsTheyAre();
  void ControlsHaveNamesForEverybody();
  void NothingIsOfferedToPrint();
  void TheFolderChosenIsShown();
  void TheSelectedPropertyIsCopied();
  void StoredChoicesComeBack();
  void WhatIsStoredWrongLeavesTheDesign();
  void ANewerPropertyIsAppended();
  void AnUnknownPropertyStays();
  void AKeyThatEndsAnotherChecksBoth();
  void ClosingStoresEverythingInItsForm();
  void ClosingStoresNothingWhenTheUserWantsNothingKept();
  void ARoundTripKeepsOrderAndChecks();
  void TheFirstAndTheLastItemMoveOneWayOnly();
  void AMovedItemKeepsItsMarkAndStaysSelected();
  void NothingMovesBeyondTheEnds();
  void KeysMoveTheSelectedItem();
  void TheFocusDoesNotGoToTheOppositeButton();
  void SpaceChecksTheSelectedItem();
  void ListsFillTheirWidth();
  void SeveralWindowsAreIndependent();
};

void frmDirDisplayTest::AFirstStartShowsEverythingAsDesigned() {
  DisplayWindow window;
  QCOMPARE(window.Form->windowTitle(), u"Directory Display"_s);
  QCOMPARE(window.Get<QLabel>("lblDirectory").text(), QString());
  for (const char* format : {"optFormat(0)", "optFormat(1)", "optFormat(2)"})
    QVERIFY(!window.Get<QRadioButton>(format).isChecked());
  for (const char* box : {"chkIncludeFolders", "chkSubfolders", "chkIncludeFiles"})
    QVERIFY(window.Get<QCheckBox>(box).isChecked());
  QCOMPARE(window.Items("lvwFolderInfo"), FolderCaptions);
  QCOMPARE(window.Items("lvwFileInfo"), FileCaptions);
  QCOMPARE(window.Moves("lvwFolderInfo") + window.Moves("lvwFileInfo"), QString());
}

void frmDirDisplayTest::CaptionsStandAsTheyAre() {
  DisplayWindow window;
  const auto text = [&](const char* name) { return window.Get<QAbstractButton>(name).text(); };
  QCOMPARE(window.Get<QLabel>("hdgDirectory").text(), u"&Select Directory"_s);
  QCOMPARE(window.Get<QLabel>("hdgDirectory").buddy(), &window.Get<QWidget>("FolderTree"));
  QCOMPARE(text("optFormat(0)"), u"Text"_s);
  QCOMPARE(text("optFormat(1)"), u"HTML Table"_s);
  QCOMPARE(text("optFormat(2)"), u"XML"_s);
  QCOMPARE(text("chkIncludeFolders"), u"Include folders in display?"_s);
  QCOMPARE(text("chkSubfolders"), u"Include subfolders?"_s);
  QCOMPARE(text("chkIncludeFiles"), u"Include files in display?"_s);
  QCOMPARE(text("cmdDisplay"), u"&Display"_s);
  QCOMPARE(text("cmdClose"), u"&Close"_s);
  const auto frameOf = [&](const char* name) {
    return qobject_cast<QGroupBox*>(window.Get<QWidget>(name).parentWidget())->title();
  };
  QCOMPARE(frameOf("optFormat(2)"), u"Display Format"_s);
  QCOMPARE(frameOf("chkIncludeFolders"), u"Folders"_s);
  QCOMPARE(frameOf("lvwFolderInfo"), u"Folders"_s);
  QCOMPARE(frameOf("chkIncludeFiles"), u"Files"_s);
  QCOMPARE(frameOf("cmdMoveFileInfo(1)"), u"Files"_s);
  const auto heading = [&](const char* list) {
    return window.Get<ListView>(list).model()->headerData(0, Qt::Horizontal).toString();
  };
  QCOMPARE(heading("lvwFolderInfo"), u"Show this folder data"_s);
  QCOMPARE(heading("lvwFileInfo"), u"Show this file data"_s);
}

void frmDirDisplayTest::ControlsHaveNamesForEverybody() {
  DisplayWindow window;
  QStringList names;
  for (const char* name :
       {"FolderTree", "lblDirectory", "optFormat(0)", "optFormat(1)", "optFormat(2)", "chkIncludeFolders",
        "chkSubfolders", "chkIncludeFiles", "lvwFolderInfo", "lvwFileInfo", "cmdMoveFolderInfo(0)",
        "cmdMoveFolderInfo(1)", "cmdMoveFileInfo(0)", "cmdMoveFileInfo(1)", "cmdDisplay", "cmdClose"}) {
    const QString spoken = window.Get<QWidget>(name).accessibleName();
    QVERIFY2(!spoken.isEmpty() && !spoken.contains(u'&'), name);
    if (QString::fromLatin1(name).startsWith(u"cmdMove"_s)) names << spoken;
  }
  names.removeDuplicates();
  QCOMPARE(names.size(), 4);
}

void frmDirDisplayTest::NothingIsOfferedToPrint() {
  DisplayWindow window;
  window.Form->Form_Activate();
  QVERIFY(window.Form->metaObject()->indexOfMethod("PrintData()") < 0);
  QVERIFY(!window.Enabled.contains(u"Print+"_s));
}

void frmDirDisplayTest::TheSelectedPropertyIsCopied() {
  DisplayWindow window;
  auto& list = window.Get<ListView>("lvwFileInfo");
  list.setCurrentIndex(list.model()->index(1, 0));
  QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  QCOMPARE(QGuiApplication::clipboard()->text(), u"Date Created"_s);
}

void frmDirDisplayTest::TheFolderChosenIsShown() {
  if (!TempTree::CanName("caf\xe9\n<b>")) QSKIP(NoSuchName);
  DisplayWindow window;
  window.Tree.Folder("caf\xe9\n<b>");
  window.Choose(window.Tree.Path("caf\xe9\n<b>"));
  const QString shown = QString::fromStdString(window.Tree.Path()) + u"/caf\ufffd\u240a<b>"_s;
  QCOMPARE(window.Get<QLabel>("lblDirectory").text(), shown);
  QCOMPARE(window.Get<QLabel>("lblDirectory").accessibleDescription(), shown);
  window.Choose(RootOfAll().toStdString());
  QCOMPARE(window.Get<QLabel>("lblDirectory").text(), RootOfAll());
}

void frmDirDisplayTest::StoredChoicesComeBack() {
  Store(u"DisplayFormat"_s, u"1"_s);
  Store(u"FolderInclude"_s, u"0"_s);
  Store(u"FolderSubs"_s, u"0"_s);
  Store(u"FileInclude"_s, u"1"_s);
  Store(u"FileInfo"_s, u"Size|Size;Name|Name;"_s);
  Store(u"FileSelected"_s, u"Size;"_s);
  DisplayWindow window;
  QVERIFY(window.Get<QRadioButton>("optFormat(1)").isChecked());
  QVERIFY(!window.Get<QCheckBox>("chkIncludeFolders").isChecked());
  QVERIFY(!window.Get<QCheckBox>("chkSubfolders").isChecked());
  QVERIFY(window.Get<QCheckBox>("chkIncludeFiles").isChecked());
  QCOMPARE(window.Items("lvwFileInfo").first(3), (QStringList{u"+Size"_s, u"Name"_s, u"Date Created"_s}));
  QCOMPARE(window.Items("lvwFolderInfo"), FolderCaptions);
}

void frmDirDisplayTest::WhatIsStoredWrongLeavesTheDesign() {
  Store(u"DisplayFormat"_s, u"-1"_s);
  Store(u"FolderInclude"_s, u"perhaps"_s);
  Store(u"FileInfo"_s, u"nonsense;;|"_s);
  DisplayWindow window;
  for (const char* format : {"optFormat(0)", "optFormat(1)", "optFormat(2)"})
    QVERIFY(!window.Get<QRadioButton>(format).isChecked());
  QVERIFY(window.Get<QCheckBox>("chkIncludeFolders").isChecked());
  QCOMPARE(window.Items("lvwFileInfo").last(10), FileCaptions);
}

void frmDirDisplayTest::ANewerPropertyIsAppended() {
  Store(u"FolderInfo"_s, u"Type|Type;Size|Size;"_s);
  Store(u"FolderSelected"_s, u"Type;"_s);
  DisplayWindow window;
  QStringList rest = FolderCaptions;
  rest.removeAll(u"Type"_s);
  rest.removeAll(u"Size"_s);
  QCOMPARE(window.Items("lvwFolderInfo"), (QStringList{u"+Type"_s, u"Size"_s} + rest));
}

void frmDirDisplayTest::AnUnknownPropertyStays() {
  Store(u"FileInfo"_s, u"Colour|Colour;"_s);
  DisplayWindow window;
  QCOMPARE(window.Items("lvwFileInfo"), QStringList{u"Colour"_s} + FileCaptions);
}

void frmDirDisplayTest::AKeyThatEndsAnotherChecksBoth() {
  Store(u"FileSelected"_s, u"ShortPath;"_s);
  DisplayWindow window;
  QCOMPARE(window.Items("lvwFileInfo").filter(u"+"_s), (QStringList{u"+Path"_s, u"+Short Path"_s}));
}

void frmDirDisplayTest::ClosingStoresEverythingInItsForm() {
  DisplayWindow window;
  window.Check("lvwFolderInfo", u"Size"_s);
  window.Check("lvwFolderInfo", u"Full Name"_s);
  window.Get<QCheckBox>("chkSubfolders").click();
  window.Click("cmdClose");
  QCOMPARE(
      Stored(),
      (QStringList{u"DisplayFormat=-1"_s,
                   u"FolderInfo=Full Name|Path;Date Created|DateCreated;Date Last Accessed|DateLastAccessed;"
                   "Date Last Modified|DateLastModified;File Quantity|Files;Is Root|IsRootFolder;"
                   "Parent Folder|ParentFolder;Short Name|ShortName;Short Path|ShortPath;Size|Size;"
                   "Subfolder Quantity|Subfolders;Type|Type;"_s,
                   u"FolderSelected=Path;Size;"_s, u"FolderInclude=1"_s, u"FolderSubs=0"_s,
                   u"FileInfo=Name|Name;Date Created|DateCreated;Date Last Accessed|DateLastAccessed;"
                   "Date Last Modified|DateLastModified;Path|Path;Short Name|ShortName;Short Path|ShortPath;"
                   "Size|Size;Type|Type;Extension|Extension;"_s,
                   u"FileSelected="_s, u"FileInclude=1"_s}));
  QTRY_VERIFY(!window.Form);
}

void frmDirDisplayTest::ClosingStoresNothingWhenTheUserWantsNothingKept() {
  Store(u"SaveFormValues"_s, u"0"_s);
  Store(u"DisplayFormat"_s, u"2"_s);
  const QStringList before = Stored();
  DisplayWindow window;
  window.Get<QRadioButton>("optFormat(0)").click();
  window.Check("lvwFileInfo", u"Size"_s);
  window.Click("cmdClose");
  QCOMPARE(Stored(), before);
}

void frmDirDisplayTest::ARoundTripKeepsOrderAndChecks() {
  QStringList folderItems;
  QStringList fileItems;
  {
    DisplayWindow window;
    window.Get<QRadioButton>("optFormat(2)").click();
    window.Check("lvwFolderInfo", u"Type"_s);
    window.ClickItem("lvwFolderInfo", u"Type"_s);
    for (int i = 0; i < 3; ++i) window.Click("cmdMoveFolderInfo(0)");
    window.Check("lvwFileInfo", u"Short Name"_s);
    window.Check("lvwFileInfo", u"Name"_s);
    folderItems = window.Items("lvwFolderInfo");
    fileItems = window.Items("lvwFileInfo");
    window.Click("cmdClose");
  }
  DisplayWindow next;
  QVERIFY(next.Get<QRadioButton>("optFormat(2)").isChecked());
  QCOMPARE(next.Items("lvwFolderInfo"), folderItems);
  QCOMPARE(next.Items("lvwFileInfo"), fileItems);
}

void frmDirDisplayTest::TheFirstAndTheLastItemMoveOneWayOnly() {
  DisplayWindow window;
  window.ClickItem("lvwFileInfo", u"Name"_s);
  QCOMPARE(window.Moves("lvwFileInfo"), u"down"_s);
  QCOMPARE(window.Moves("lvwFolderInfo"), QString());
  window.ClickItem("lvwFileInfo", u"Size"_s);
  QCOMPARE(window.Moves("lvwFileInfo"), u"up down"_s);
  window.ClickItem("lvwFileInfo", u"Extension"_s);
  QCOMPARE(window.Moves("lvwFileInfo"), u"up"_s);
  QTest::keyClick(&window.Get<ListView>("lvwFileInfo"), Qt::Key_Home);
  QCOMPARE(window.Moves("lvwFileInfo"), u"down"_s);
}

void frmDirDisplayTest::AMovedItemKeepsItsMarkAndStaysSelected() {
  DisplayWindow window;
  auto& list = window.Get<ListView>("lvwFileInfo");
  window.Check("lvwFileInfo", u"Date Created"_s);
  window.ClickItem("lvwFileInfo", u"Date Created"_s);
  window.Click("cmdMoveFileInfo(0)");
  QCOMPARE(window.Items("lvwFileInfo").first(3),
           (QStringList{u"+Date Created"_s, u"Name"_s, u"Date Last Accessed"_s}));
  QCOMPARE(list.currentIndex().row(), 0);
  QVERIFY(list.selectionModel()->isRowSelected(0));
  QCOMPARE(window.Moves("lvwFileInfo"), u"down"_s);
  window.Click("cmdMoveFileInfo(1)");
  window.Click("cmdMoveFileInfo(1)");
  QCOMPARE(window.Items("lvwFileInfo").first(3),
           (QStringList{u"Name"_s, u"Date Last Accessed"_s, u"+Date Created"_s}));
  QCOMPARE(window.Moves("lvwFileInfo"), u"up down"_s);
}

void frmDirDisplayTest::NothingMovesBeyondTheEnds() {
  DisplayWindow window;
  const auto press = [&](const char* button) {
    window.Get<QPushButton>(button).setEnabled(true);
    window.Get<QPushButton>(button).click();
  };
  press("cmdMoveFileInfo(0)");  // nothing is selected
  press("cmdMoveFileInfo(1)");
  window.ClickItem("lvwFileInfo", u"Name"_s);
  press("cmdMoveFileInfo(0)");
  window.ClickItem("lvwFileInfo", u"Extension"_s);
  press("cmdMoveFileInfo(1)");
  QCOMPARE(window.Items("lvwFileInfo"), FileCaptions);
}

void frmDirDisplayTest::KeysMoveTheSelectedItem() {
  DisplayWindow window;
  auto& list = window.Get<ListView>("lvwFolderInfo");
  window.Area.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window.Area));
  list.setFocus();  // which selects the first item
  QTest::keyClick(&list, Qt::Key_Up, Qt::AltModifier);
  QCOMPARE(window.Items("lvwFolderInfo"), FolderCaptions);
  QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
  QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
  QCOMPARE(window.Items("lvwFolderInfo").first(3),
           (QStringList{u"Date Created"_s, u"Date Last Accessed"_s, u"Full Name"_s}));
  QTest::keyClick(&list, Qt::Key_Up, Qt::AltModifier | Qt::KeypadModifier);
  QCOMPARE(window.Items("lvwFolderInfo")[1], u"Full Name"_s);
  QTest::keyClick(&list, Qt::Key_Down);
  QCOMPARE(list.currentIndex().row(), 2);
  QCOMPARE(window.Moves("lvwFolderInfo"), u"up down"_s);
}

void frmDirDisplayTest::TheFocusDoesNotGoToTheOppositeButton() {
  DisplayWindow window;
  window.ClickItem("lvwFileInfo", u"Date Created"_s);
  window.Area.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window.Area));
  auto& up = window.Get<QPushButton>("cmdMoveFileInfo(0)");
  up.setFocus();
  QTest::keyClick(&up, Qt::Key_Space);
  QCOMPARE(window.Form->focusWidget(), &window.Get<ListView>("lvwFileInfo"));
  QCOMPARE(window.Items("lvwFileInfo").first(), u"Date Created"_s);
}

void frmDirDisplayTest::SpaceChecksTheSelectedItem() {
  DisplayWindow window;
  window.ClickItem("lvwFileInfo", u"Size"_s);
  QTest::keyClick(&window.Get<ListView>("lvwFileInfo"), Qt::Key_Space);
  QCOMPARE(window.Items("lvwFileInfo").filter(u"+"_s), QStringList{u"+Size"_s});
}

void frmDirDisplayTest::ListsFillTheirWidth() {
  DisplayWindow window;
  for (const int width : {700, 900}) {
    window.Frame->resize(width, 600);
    for (const char* name : {"lvwFolderInfo", "lvwFileInfo"}) {
      auto& list = window.Get<ListView>(name);
      QVERIFY(list.columnWidth(0) <= list.viewport()->width());
      QVERIFY(list.columnWidth(0) > list.width() - 40);
    }
  }
}

void frmDirDisplayTest::SeveralWindowsAreIndependent() {
  DisplayWindow first;
  DisplayWindow second;
  second.Choose(RootOfAll().toStdString());
  second.Check("lvwFileInfo", u"Size"_s);
  QCOMPARE(first.Get<QLabel>("lblDirectory").text(), QString());
  QCOMPARE(first.Items("lvwFileInfo"), FileCaptions);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmDirDisplayTest)
#include "frmDirDisplay_test.moc"
