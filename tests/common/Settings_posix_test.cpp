#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include "common/Settings.h"
#include "support/FullDisk_posix.h"
#include "support/IsolatedSettings.h"
#include "support/WithoutPrivileges_posix.h"

// The file in which settings are kept, which people may edit and disks may refuse.

using namespace Qt::StringLiterals;

namespace brackwell {

class Settings_posix_test : public QObject {
  Q_OBJECT

 private:
  static void WriteStore(const QByteArray& content) {
    QDir().mkpath(QFileInfo(isolatedSettings.Place()).path());
    QFile file(isolatedSettings.Place());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
  }

  static QByteArray ReadStore() {
    QFile file(isolatedSettings.Place());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

 private Q_SLOTS:
  void init() { WriteStore({}); }

  void HandWrittenStoreIsRead() {
    WriteStore(
        "[general]\nappmaximized=1\n[%General]\nChildMaximized=0\n"
        "[compare]\nEXTENSIONS=exe,dll,tmp\nprefix=plain text\n");
    QCOMPARE(GetSetting(u"General"_s, u"AppMaximized"_s), u"1"_s);
    QCOMPARE(GetSetting(u"General"_s, u"ChildMaximized"_s), u"0"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Extensions"_s), u"exe,dll,tmp"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"plain text"_s);
  }

  void SavingLeavesOneOfSeveralSpellings() {
    WriteStore("[Compare]\nprefix=a\nPREFIX=b\n[COMPARE]\nPrefix=c\n");
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"new"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"new"_s);
    QCOMPARE(ReadStore().toLower().count("prefix="), 1);
  }

  void DeletingForgetsEverySpelling() {
    WriteStore("[Compare]\nsourcefolder=/a/\nSOURCEFOLDER=/b/\nTargetFolder=/c/\n");
    DeleteSetting(u"Compare"_s, u"SourceFolder"_s);
    DeleteSetting(u"Compare"_s, u"SourceFolder"_s);
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nTargetFolder=/c/\n"));
  }

  void SeveralAreSavedAtOnce() {
    WriteStore("[Compare]\nprefix=old\nPREFIX=older\n[Replace]\nExclude=kept\n");
    QVERIFY(SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}, {u"General"_s, u"AppMaximized"_s, u"1"_s}}));
    QCOMPARE(ReadStore(),
             QByteArray("[General]\nAppMaximized=1\n\n[Compare]\nPREFIX=new\n\n[Replace]\nExclude=kept\n"));
  }

  void SavingReplacesLinesThatAreNoSettings() {
    WriteStore("[General]\nnonsense\nAppMaximized=1\n");
    QVERIFY(SaveSettings({{u"General"_s, u"AppMaximized"_s, u"0"_s}}));
    QCOMPARE(ReadStore(), QByteArray("[General]\nAppMaximized=0\n"));
  }

  void WhatCannotBeWrittenIsNotSaved_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing stored") << QByteArray();
    QTest::newRow("a setting") << QByteArray("[Compare]\nPrefix=old\nprefix=older\n");
    QTest::newRow("nonsense as well") << QByteArray("[Compare]\nnonsense\nPrefix=old\n");
  }

  void WhatCannotBeWrittenIsNotSaved() {
    QFETCH(QByteArray, content);
    WriteStore(content);
    const QString before = GetSetting(u"Compare"_s, u"Prefix"_s);
    {
      const FullDisk full;
      QVERIFY(!SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}, {u"Compare"_s, u"Other"_s, u"1"_s}}));
    }
    QCOMPARE(ReadStore(), content);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), before);
    QCOMPARE(GetSetting(u"Compare"_s, u"Other"_s, u"none"_s), u"none"_s);
    SaveSetting(u"Replace"_s, u"Exclude"_s, u"x"_s);
    QVERIFY(!ReadStore().contains("new"));
    QVERIFY(SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    QCOMPARE(ReadStore().count("new"), 1);
  }

  void ProtectedSettingsAreLeftAlone_data() {
    QTest::addColumn<QString>("what");
    QTest::newRow("file") << isolatedSettings.Place();
    QTest::newRow("folder") << QFileInfo(isolatedSettings.Place()).path();
  }

  void ProtectedSettingsAreLeftAlone() {
    QFETCH(QString, what);
    WriteStore("[Compare]\nPrefix=old\n");
    const QFile::Permissions before = QFile::permissions(what);
    QVERIFY(QFile::setPermissions(what, QFile::ReadOwner | QFile::ExeOwner));
    {
      const WithoutPrivileges user;
      QVERIFY(!SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    }
    QVERIFY(QFile::setPermissions(what, before));
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nPrefix=old\n"));
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"old"_s);
  }

  void AFolderThatCannotBeMade() {
    const QString folder = QFileInfo(isolatedSettings.Place()).path();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s, u"none"_s), u"none"_s);
    QVERIFY(file.remove());
    QVERIFY(SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nPrefix=new\n"));
  }

  void ChangesOfAnotherProgramAreSeen() {
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"mine"_s);
    WriteStore("[Compare]\nPrefix=from elsewhere\n");
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"from elsewhere"_s);
  }

  void OneSpellingIsStored() {
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"0"_s);
    SaveSetting(u"COMPARE"_s, u"showfullpath"_s, u"1"_s);
    QCOMPARE(GetSetting(u"compare"_s, u"SHOWFULLPATH"_s), u"1"_s);
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nShowFullPath=1\n"));
  }
};

}  // namespace brackwell

QTEST_APPLESS_MAIN(brackwell::Settings_posix_test)
#include "Settings_posix_test.moc"
