#include <QLineEdit>

#include "compare/ComparisonWindow.h"
#include "support/DriveRoot_windows.h"
#include "support/LockedFile_windows.h"

// The comparison's window on what Windows alone has: drives, and files that others keep locked.

namespace brackwell {

class frmCompareWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void DrivesAreComparedAndFixed();
  void DrivesWithoutAMediumAreToldAsMissing();
  void LockedFilesAreToldOneByOne();
};

namespace {

void ChooseFolders(ComparisonWindow& window, const QString& source, const QString& target) {
  window.Get<uctSelectDir>("uctSelSource").SetFolder(source);
  window.Get<uctSelectDir>("uctSelTarget").SetFolder(target);
}

}  // namespace

void frmCompareWindowsTest::DrivesAreComparedAndFixed() {
  if (!DriveRoot::AreMade()) QSKIP(NoMadeDrives);
  DriveRoot source('H');
  DriveRoot target('N');
  source.File("a.txt", "new", 10);
  target.File("a.txt", "old");
  source.File("sub/b.txt", "b");
  ComparisonWindow window;
  window.Get<QLineEdit>("txtPrefix").setText(u"."_s);
  ChooseFolders(window, u"H:\\"_s, u"N:\\"_s);
  window.Click("cmdCompare");
  QCOMPARE(window.Lines(), (QStringList{u"a.txt | Source file is newer than target file | o | o"_s,
                                        u"sub | Sub-folder was not found in target folder | - | o"_s}));
  QCOMPARE(window.Status(), QString());
  for (const int row : {0, 1}) window.ClickCell(row, 5);
  window.Click("cmdFix");
  QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"2 files/folders have been fixed."_s});
  QCOMPARE(target.List(), (std::vector<std::string>{"a.txt", "sub/", "sub/b.txt"}));
  QCOMPARE(target.Read("a.txt"), std::string("new"));
}

void frmCompareWindowsTest::DrivesWithoutAMediumAreToldAsMissing() {
  if (!DriveRoot::AreMade()) QSKIP(NoMadeDrives);
  ComparisonWindow window;
  ChooseFolders(window, u"E:\\"_s, u"C:\\"_s);
  window.Click("cmdCompare");
  QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"The source folder does not exist."_s});
  ChooseFolders(window, u"C:\\"_s, u"B:\\"_s);
  window.Click("cmdCompare");
  QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"The target folder does not exist."_s});
}

void frmCompareWindowsTest::LockedFilesAreToldOneByOne() {
  ComparisonWindow window;
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) window.Tree.File(std::string("s/") + name, "new", 10);
  for (const char* name : {"a.txt", "c.txt"}) window.Tree.File(std::string("t/") + name, "old", 0);
  const LockedFile target(window.Tree.Path("t/a.txt"), FILE_SHARE_READ);
  const LockedFile source(window.Tree.Path("s/b.txt"), 0);
  QVERIFY(target.IsOpen() && source.IsOpen());
  QCOMPARE(window.Compare().size(), 3);
  for (const int row : {0, 1, 2}) window.ClickCell(row, 5);
  window.Click("cmdFix");
  QCOMPARE(window.Boxes.TakeTexts(),
           (QStringList{u"There was a problem fixing file a.txt\nError: 70\nDescription: Permission denied"_s,
                        u"There was a problem fixing file b.txt\nError: 70\nDescription: Permission denied"_s,
                        u"3 files/folders have been fixed."_s}));
  QCOMPARE(window.Lines(), (QStringList{u"a.txt | Source file is newer than target file | o | x"_s,
                                        u"b.txt | Source file was not found in target folder | - | x"_s,
                                        u"c.txt | Source file is newer than target file (FIXED) | - | -"_s}));
}

}  // namespace brackwell

QTEST_MAIN(brackwell::frmCompareWindowsTest)
#include "frmCompare_windows_test.moc"
