#include "shell/OptionsDialog.h"

#include <QGroupBox>
#include <QSettings>
#include <QTabBar>
#include <QTest>

#include "common/Settings.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// A window's controls as an indented text, containers with what they hold.
void Outline(const QWidget& parent, int depth, QStringList& lines) {
  for (const QWidget* child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    const QString name = child->objectName();
    const bool isOurs = !name.startsWith(u"qt_"_s);
    const auto* button = qobject_cast<const QAbstractButton*>(child);
    const auto* frame = qobject_cast<const QGroupBox*>(child);
    const QString caption = button ? button->text() : frame ? frame->title() : QString();
    if (isOurs) lines.append(QString(2 * depth, u' ') + name + (caption.isEmpty() ? u""_s : u' ' + caption));
    Outline(*child, isOurs ? depth + 1 : depth, lines);
  }
}

/// What is stored, as sorted lines "section/key=value"; keys of the section "General" stand alone.
QString Stored() {
  QSettings store(u"Brackwell"_s, u"Brackwell"_s);
  store.setFallbacksEnabled(false);
  QStringList lines;
  for (const QString& key : store.allKeys()) lines << key + u'=' + store.value(key).toString();
  lines.sort();
  return lines.join(u'\n');
}

}  // namespace

class frmOptionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void Pages();
  void Controls();
  void EveryControlHasAnAccessibleName();
  void AllPagesFitInWithoutScrolling();

  void FirstOpening();
  void StoredValuesAreShown();
  void GarbageLeavesTheDesignValues_data();
  void GarbageLeavesTheDesignValues();
  void StoredXmlType_data();
  void StoredXmlType();
  void StoredDelimiter_data();
  void StoredDelimiter();

  void TabEmptiesAndDisablesTheBox();
  void TheGroupsAreApart();

  void OkSavesEverything();
  void OkOnAnEmptyStore();
  void OkWithTab();
  void OkKeepsWhatBelongsToOthers();
  void EachFlagHasItsOwnKey_data();
  void EachFlagHasItsOwnKey();
  void AnyOtherDelimiterComesBack_data();
  void AnyOtherDelimiterComesBack();
  void OtherWithoutADelimiter();
  void CancelSavesNothing();

  void Keys();
  void Accelerators_data();
  void Accelerators();
};

void frmOptionsTest::init() { isolatedSettings.Clear(); }

void frmOptionsTest::Pages() {
  Options options;
  QCOMPARE(options.Dialog.windowTitle(), u"Options"_s);
  QStringList pages;
  for (int page = 0; page < options.Pages()->count(); ++page) pages.append(options.Pages()->tabText(page));
  QCOMPARE(pages, QStringList({u"&General"_s, u"Com&pare"_s, u"&Replace"_s, u"&Directory Display"_s}));
  QCOMPARE(options.Page(), u"&General"_s);
}

void frmOptionsTest::Controls() {
  Options options;
  QStringList lines;
  for (int page = 0; page < options.Pages()->count(); ++page) {
    lines.append(options.Pages()->widget(page)->objectName());
    Outline(*options.Pages()->widget(page), 1, lines);
  }
  QCOMPARE(lines.join(u'\n'),
           uR"(pagGeneral
  fraWindows Windows
    chkAppMax Maximize main window on application start
    chkChildMax Maximize child windows when opened
pagCompare
  chkCompareSaveFolders Save folders that are selected
  chkCompareShowFullPath Show full path for files and folders
pagReplace
  chkReplaceSaveForm Save form values that are entered
pagDirDisplay
  fraDirDisplayXmlType When displaying XML, create properties as
    optDirDisplayXmlType(1) Attributes
    optDirDisplayXmlType(0) Elements
  chkDirDisplaySave Save options when form is closed
  fraDirDisplayTextDelim Separate elements in text output with
    optDirDisplayTextDelim(0) Tab
    optDirDisplayTextDelim(1) Other
    txtDirDisplayTextDelim)"_s);
  QCOMPARE(options.Button(u"cmdOK"_s)->text(), u"&OK"_s);
  QCOMPARE(options.Button(u"cmdCancel"_s)->text(), u"&Cancel"_s);
}

void frmOptionsTest::EveryControlHasAnAccessibleName() {
  Options options;
  for (const QWidget* control : options.Dialog.findChildren<QWidget*>()) {
    const bool isQts =
        control->objectName().startsWith(u"qt_"_s) || qobject_cast<QTabBar*>(control->parent());
    if (isQts) continue;
    QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    QVERIFY2(!control->accessibleName().contains(u'&'), qPrintable(control->objectName()));
  }
}

void frmOptionsTest::AllPagesFitInWithoutScrolling() {
  Options options;
  const auto* bar = options.Pages()->tabBar();
  for (int page = 0; page < bar->count(); ++page) QVERIFY(bar->rect().contains(bar->tabRect(page)));
}

void frmOptionsTest::FirstOpening() {
  Options options;
  QCOMPARE(options.State(), AsDesigned);
}

void frmOptionsTest::StoredValuesAreShown() {
  SaveSetting(u"General"_s, u"AppMaximized"_s, u"1"_s);
  SaveSetting(u"General"_s, u"ChildMaximized"_s, u"1"_s);
  SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"1"_s);
  SaveSetting(u"Compare"_s, u"SaveFolders"_s, u"0"_s);
  SaveSetting(u"Replace"_s, u"SaveFormValues"_s, u"0"_s);
  SaveSetting(u"DirectoryDisplay"_s, u"SaveFormValues"_s, u"0"_s);
  SaveSetting(u"DirectoryDisplay"_s, u"XmlType"_s, u"1"_s);
  SaveSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s, u"CHR-9"_s);
  Options options;
  QCOMPARE(options.State(),
           uR"(chkAppMax
chkChildMax
chkCompareShowFullPath
optDirDisplayXmlType(1)
optDirDisplayTextDelim(0)
off "")"_s);
}

void frmOptionsTest::GarbageLeavesTheDesignValues_data() {
  QTest::addColumn<QString>("garbage");
  for (const char* garbage : {"", " ", "yes", "True", "2", "-1", "1 0", "0x1", "1e300", "nan"})
    QTest::newRow(garbage) << QString::fromLatin1(garbage);
  QTest::newRow("not ASCII") << u"日本"_s;
  QTest::newRow("long") << QString(100000, u'1');
}

void frmOptionsTest::GarbageLeavesTheDesignValues() {
  QFETCH(QString, garbage);
  SaveSetting(u"General"_s, u"AppMaximized"_s, garbage);
  SaveSetting(u"General"_s, u"ChildMaximized"_s, garbage);
  SaveSetting(u"Compare"_s, u"ShowFullPath"_s, garbage);
  SaveSetting(u"Compare"_s, u"SaveFolders"_s, garbage);
  SaveSetting(u"Replace"_s, u"SaveFormValues"_s, garbage);
  SaveSetting(u"DirectoryDisplay"_s, u"SaveFormValues"_s, garbage);
  SaveSetting(u"DirectoryDisplay"_s, u"XmlType"_s, garbage);
  const MessageBoxes boxes;
  Options options;
  QCOMPARE(options.State(), AsDesigned);
  QVERIFY(boxes.Shown().empty());
}

void frmOptionsTest::StoredXmlType_data() {
  QTest::addColumn<QString>("stored");
  QTest::addColumn<bool>("attributes");
  QTest::newRow("0") << u"0"_s << false;
  QTest::newRow("1") << u"1"_s << true;
  QTest::newRow("the same number in other digits") << u"01"_s << false;
  QTest::newRow("no index") << u"2"_s << false;
}

void frmOptionsTest::StoredXmlType() {
  QFETCH(QString, stored);
  QFETCH(bool, attributes);
  SaveSetting(u"DirectoryDisplay"_s, u"XmlType"_s, stored);
  Options options;
  QCOMPARE(options.IsChosen(u"optDirDisplayXmlType(1)"_s), attributes);
  QCOMPARE(options.IsChosen(u"optDirDisplayXmlType(0)"_s), !attributes);
}

void frmOptionsTest::StoredDelimiter_data() {
  QTest::addColumn<QString>("stored");
  QTest::addColumn<int>("chosen");
  QTest::addColumn<QString>("text");
  QTest::newRow("empty") << QString() << -1 << QString();
  QTest::newRow("Tab") << u"CHR-9"_s << 0 << QString();
  QTest::newRow("another case") << u"chr-9"_s << 1 << u"chr-9"_s;
  QTest::newRow("another code") << u"CHR-44"_s << 1 << u"CHR-44"_s;
  QTest::newRow("semicolon") << u";"_s << 1 << u";"_s;
  QTest::newRow("blank") << u" "_s << 1 << u" "_s;
  QTest::newRow("tab character") << u"\t"_s << 1 << u"\t"_s;
}

void frmOptionsTest::StoredDelimiter() {
  QFETCH(QString, stored);
  QFETCH(int, chosen);
  SaveSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s, stored);
  Options options;
  QCOMPARE(options.IsChosen(u"optDirDisplayTextDelim(0)"_s), chosen == 0);
  QCOMPARE(options.IsChosen(u"optDirDisplayTextDelim(1)"_s), chosen == 1);
  QTEST(options.Delimiter()->text(), "text");
  QCOMPARE(options.Delimiter()->isEnabled(), chosen == 1);
}

void frmOptionsTest::TabEmptiesAndDisablesTheBox() {
  Options options;
  options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
  QVERIFY(options.Delimiter()->isEnabled());
  options.Delimiter()->setText(u"|"_s);
  options.Button(u"optDirDisplayTextDelim(0)"_s)->click();
  QVERIFY(!options.Delimiter()->isEnabled());
  QCOMPARE(options.Delimiter()->text(), QString());
  options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
  QVERIFY(options.Delimiter()->isEnabled());
  QCOMPARE(options.Delimiter()->text(), QString());
}

void frmOptionsTest::TheGroupsAreApart() {
  Options options;
  options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
  options.Button(u"optDirDisplayXmlType(1)"_s)->click();
  QVERIFY(options.IsChosen(u"optDirDisplayTextDelim(1)"_s));
  QVERIFY(!options.IsChosen(u"optDirDisplayXmlType(0)"_s));
}

void frmOptionsTest::OkSavesEverything() {
  {
    Options options;
    for (const QString& name :
         {u"chkAppMax"_s, u"chkChildMax"_s, u"chkCompareSaveFolders"_s, u"chkCompareShowFullPath"_s,
          u"chkReplaceSaveForm"_s, u"optDirDisplayXmlType(1)"_s, u"chkDirDisplaySave"_s,
          u"optDirDisplayTextDelim(1)"_s})
      options.Button(name)->click();
    options.Delimiter()->setText(u";"_s);
    options.Ok();
    QVERIFY(!options.Dialog.isVisible());
    QCOMPARE(options.Dialog.result(), int(QDialog::Accepted));
  }
  QCOMPARE(Stored(),
           uR"(AppMaximized=1
ChildMaximized=1
Compare/SaveFolders=0
Compare/ShowFullPath=1
DirectoryDisplay/SaveFormValues=0
DirectoryDisplay/TextDelimiter=;
DirectoryDisplay/XmlType=1
Replace/SaveFormValues=0)"_s);
  Options again;
  QCOMPARE(again.State(),
           uR"(chkAppMax
chkChildMax
chkCompareShowFullPath
optDirDisplayXmlType(1)
optDirDisplayTextDelim(1)
on ";")"_s);
}

void frmOptionsTest::OkOnAnEmptyStore() {
  Options options;
  options.Ok();
  // No delimiter has been chosen, so there is still none.
  QCOMPARE(Stored(),
           uR"(AppMaximized=0
ChildMaximized=0
Compare/SaveFolders=1
Compare/ShowFullPath=0
DirectoryDisplay/SaveFormValues=1
DirectoryDisplay/XmlType=0
Replace/SaveFormValues=1)"_s);
}

void frmOptionsTest::OkWithTab() {
  Options options;
  options.Button(u"optDirDisplayTextDelim(0)"_s)->click();
  options.Ok();
  QCOMPARE(GetSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s), u"CHR-9"_s);
}

void frmOptionsTest::OkKeepsWhatBelongsToOthers() {
  SaveSetting(u"Compare"_s, u"SourceFolder"_s, u"/home/"_s);
  SaveSetting(u"Rename"_s, u"*.&jpg"_s, u"1"_s);
  Options options;
  options.Ok();
  QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s), u"/home/"_s);
  QCOMPARE(GetSetting(u"Rename"_s, u"*.&jpg"_s), u"1"_s);
}

void frmOptionsTest::EachFlagHasItsOwnKey_data() {
  QTest::addColumn<QString>("box");
  QTest::addColumn<QString>("section");
  QTest::addColumn<QString>("key");
  QTest::newRow("AppMaximized") << u"chkAppMax"_s << u"General"_s << u"AppMaximized"_s;
  QTest::newRow("ChildMaximized") << u"chkChildMax"_s << u"General"_s << u"ChildMaximized"_s;
  QTest::newRow("ShowFullPath") << u"chkCompareShowFullPath"_s << u"Compare"_s << u"ShowFullPath"_s;
  QTest::newRow("SaveFolders") << u"chkCompareSaveFolders"_s << u"Compare"_s << u"SaveFolders"_s;
  QTest::newRow("Replace") << u"chkReplaceSaveForm"_s << u"Replace"_s << u"SaveFormValues"_s;
  QTest::newRow("DirectoryDisplay") << u"chkDirDisplaySave"_s << u"DirectoryDisplay"_s << u"SaveFormValues"_s;
}

void frmOptionsTest::EachFlagHasItsOwnKey() {
  QFETCH(QString, box);
  QFETCH(QString, section);
  QFETCH(QString, key);
  const bool before = Options().IsChosen(box);
  for (const bool checked : {!before, before}) {
    Options options;
    options.Button(box)->click();
    options.Ok();
    QCOMPARE(GetSetting(section, key), checked ? u"1"_s : u"0"_s);
    QCOMPARE(Options().IsChosen(box), checked);
    QCOMPARE(Options().State().contains(box), checked);
  }
  QCOMPARE(Options().State(), AsDesigned);
}

void frmOptionsTest::AnyOtherDelimiterComesBack_data() {
  QTest::addColumn<QString>("text");
  for (const QString& text :
       {u","_s, u", "_s, u" "_s, u"\t"_s, u"\\"_s, u"\""_s, u"<->"_s, u"%2F"_s, u"ä日"_s})
    QTest::newRow(qPrintable(text)) << text;
}

void frmOptionsTest::AnyOtherDelimiterComesBack() {
  QFETCH(QString, text);
  {
    Options options;
    options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
    options.Delimiter()->setText(text);
    options.Ok();
  }
  QCOMPARE(GetSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s), text);
  Options again;
  QVERIFY(again.IsChosen(u"optDirDisplayTextDelim(1)"_s));
  QCOMPARE(again.Delimiter()->text(), text);
}

void frmOptionsTest::OtherWithoutADelimiter() {
  const MessageBoxes boxes;
  Options options;
  QVERIFY(QTest::qWaitForWindowActive(&options.Dialog));
  options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
  options.Pages()->setCurrentIndex(1);
  options.Ok();
  QCOMPARE(boxes.Shown().size(), std::size_t{1});
  Expect(boxes.Shown().front(), QMessageBox::Warning,
         u"Please specify the 'other' text delimiter you wish to use."_s);
  QVERIFY(options.Dialog.isVisible());
  QCOMPARE(options.Page(), u"&Directory Display"_s);
  QCOMPARE(options.Dialog.focusWidget(), options.Delimiter());
  QCOMPARE(Stored(), QString());

  QTest::keyClicks(options.Delimiter(), u"|"_s);
  QTest::keyClick(options.Delimiter(), Qt::Key_Return);
  QVERIFY(!options.Dialog.isVisible());
  QCOMPARE(GetSetting(u"DirectoryDisplay"_s, u"TextDelimiter"_s), u"|"_s);
}

void frmOptionsTest::CancelSavesNothing() {
  const MessageBoxes boxes;
  Options options;
  options.Button(u"chkAppMax"_s)->click();
  options.Button(u"optDirDisplayTextDelim(1)"_s)->click();
  options.Button(u"cmdCancel"_s)->click();
  QVERIFY(!options.Dialog.isVisible());
  QCOMPARE(options.Dialog.result(), int(QDialog::Rejected));
  QCOMPARE(Stored(), QString());
  QVERIFY(boxes.Shown().empty());
}

void frmOptionsTest::Keys() {
  Options cancelled;
  QVERIFY(QTest::qWaitForWindowActive(&cancelled.Dialog));
  QTest::keyClick(&cancelled.Dialog, Qt::Key_Escape);
  QVERIFY(!cancelled.Dialog.isVisible());
  QCOMPARE(Stored(), QString());

  for (const QString& focus : {u"chkAppMax"_s, u"sstOptions"_s}) {
    init();
    Options accepted;
    QVERIFY(QTest::qWaitForWindowActive(&accepted.Dialog));
    auto* control = accepted.Dialog.findChild<QWidget*>(focus);
    control->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!accepted.Dialog.isVisible());
    QVERIFY(!Stored().isEmpty());
  }
}

void frmOptionsTest::Accelerators_data() {
  QTest::addColumn<int>("page");
  for (int page = 0; page < 4; ++page) QTest::newRow(qPrintable(QString::number(page))) << page;
}

/// Whatever page is open, each letter does one thing: another page, OK or Cancel.
void frmOptionsTest::Accelerators() {
  QFETCH(int, page);
  const std::pair<Qt::Key, QString> keys[] = {{Qt::Key_G, u"&General"_s},
                                              {Qt::Key_P, u"Com&pare"_s},
                                              {Qt::Key_R, u"&Replace"_s},
                                              {Qt::Key_D, u"&Directory Display"_s}};
  for (const auto& [key, caption] : keys) {
    Options options;
    QVERIFY(QTest::qWaitForWindowActive(&options.Dialog));
    options.Pages()->setCurrentIndex(page);
    QTest::keyClick(&options.Dialog, key, Qt::AltModifier);
    QCOMPARE(options.Page(), caption);
  }
  for (const auto& [key, result] :
       {std::pair(Qt::Key_O, QDialog::Accepted), {Qt::Key_C, QDialog::Rejected}}) {
    Options options;
    QVERIFY(QTest::qWaitForWindowActive(&options.Dialog));
    options.Pages()->setCurrentIndex(page);
    QTest::keyClick(&options.Dialog, key, Qt::AltModifier);
    QTRY_VERIFY(!options.Dialog.isVisible());
    QCOMPARE(options.Dialog.result(), int(result));
  }
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmOptionsTest)
#include "frmOptions_test.moc"
