#include "common/Settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include "support/FullDisk_posix.h"
#include "support/IsolatedSettings.h"
#include "support/WithoutPrivileges_posix.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class Settings_test : public QObject {
  Q_OBJECT

 private:
  static void WriteStore(const QByteArray& content) {
    QDir().mkpath(QFileInfo(isolatedSettings.FileName()).path());
    QFile file(isolatedSettings.FileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
  }

  static QByteArray ReadStore() {
    QFile file(isolatedSettings.FileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

 private Q_SLOTS:
  void init() { WriteStore({}); }

  void MissingKeyGivesTheDefault() {
    QFile::remove(isolatedSettings.FileName());
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s), QString());
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s, u"none"_s), u"none"_s);
    QCOMPARE(GetSettingNumber(u"General"_s, u"AppMaximized"_s, 0), 0);
    QCOMPARE(GetSettingFlag(u"Compare"_s, u"SaveFolders"_s, true), true);
  }

  void SavedTextComesBack_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("list") << u"exe;dll"_s;
    QTest::newRow("commas") << u"a, b,,c"_s;
    QTest::newRow("quotes") << u"say \"a\""_s;
    QTest::newRow("blanks around") << u"  x "_s;
    QTest::newRow("tab") << u"\t"_s;
    QTest::newRow("percent") << u"100%20"_s;
    QTest::newRow("at sign") << u"@Invalid()"_s;
    QTest::newRow("separators") << u"C:\\Temp\\/x"_s;
    QTest::newRow("beyond ASCII") << u"Grüße 日本 \U0001F600"_s;
  }
  void SavedTextComesBack() {
    QFETCH(QString, text);
    SaveSetting(u"Replace"_s, u"Exclude"_s, text);
    QCOMPARE(GetSetting(u"Replace"_s, u"Exclude"_s, u"default"_s), text);
  }

  void KeysMayHoldAnyCharacter_data() {
    QTest::addColumn<QString>("key");
    for (const QString& key : {u"*.&jpg"_s, u"a/b"_s, u"/"_s, u"//x/"_s, u"a\\b"_s, u"50%"_s, u"%2F"_s,
                               u"Größe"_s, u"a=b;[c]"_s, u" blanks "_s, u"General"_s}) {
      QTest::newRow(qPrintable(key)) << key;
    }
  }
  void KeysMayHoldAnyCharacter() {
    QFETCH(QString, key);
    SaveSetting(u"Rename"_s, key, u"1"_s);
    SaveSetting(u"Rename"_s, u"other0"_s, u"raw"_s);
    QCOMPARE(GetSetting(u"Rename"_s, key), u"1"_s);
    QCOMPARE(GetSetting(u"Rename"_s, u"other0"_s), u"raw"_s);
    DeleteSetting(u"Rename"_s, key);
    QCOMPARE(GetSetting(u"Rename"_s, key, u"gone"_s), u"gone"_s);
  }

  void SectionsAreApart() {
    SaveSetting(u"Replace"_s, u"SaveFormValues"_s, u"1"_s);
    SaveSetting(u"DirectoryDisplay"_s, u"SaveFormValues"_s, u"0"_s);
    SaveSetting(u"General"_s, u"SaveFormValues"_s, u"2"_s);
    QCOMPARE(GetSetting(u"Replace"_s, u"SaveFormValues"_s), u"1"_s);
    QCOMPARE(GetSetting(u"DirectoryDisplay"_s, u"SaveFormValues"_s), u"0"_s);
    QCOMPARE(GetSetting(u"General"_s, u"SaveFormValues"_s), u"2"_s);
  }

  void CaseOfSectionAndKeyDoesNotMatter() {
    SaveSetting(u"Compare"_s, u"ShowFullPath"_s, u"0"_s);
    SaveSetting(u"COMPARE"_s, u"showfullpath"_s, u"1"_s);
    QCOMPARE(GetSetting(u"compare"_s, u"SHOWFULLPATH"_s), u"1"_s);
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nShowFullPath=1\n"));
  }

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
    QTest::newRow("file") << isolatedSettings.FileName();
    QTest::newRow("folder") << QFileInfo(isolatedSettings.FileName()).path();
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
    const QString folder = QFileInfo(isolatedSettings.FileName()).path();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s, u"none"_s), u"none"_s);
    QVERIFY(file.remove());
    QVERIFY(SaveSettings({{u"Compare"_s, u"Prefix"_s, u"new"_s}}));
    QCOMPARE(ReadStore(), QByteArray("[Compare]\nPrefix=new\n"));
  }

  void ThePlaceIsTheFile() { QCOMPARE(SettingsPlace(), isolatedSettings.FileName()); }

  void ChangesOfAnotherProgramAreSeen() {
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"mine"_s);
    WriteStore("[Compare]\nPrefix=from elsewhere\n");
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"from elsewhere"_s);
  }

  void NumbersAreRead_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::optional<int>>("number");
    const auto row = [](const char* text, std::optional<int> number) {
      QTest::newRow(text) << QString::fromLatin1(text) << number;
    };
    row("1", 1);
    row(" 2 ", 2);
    row("-1", -1);
    row("0.5", 0);
    row("1.5", 2);
    row("2.5", 2);
    row("1e2", 100);
    row("", std::nullopt);
    row("x", std::nullopt);
    row("1 2", std::nullopt);
    row("nan", std::nullopt);
    row("inf", std::nullopt);
    row("3000000000", std::nullopt);
  }
  void NumbersAreRead() {
    QFETCH(QString, text);
    QFETCH(std::optional<int>, number);
    SaveSetting(u"DirectoryDisplay"_s, u"XmlType"_s, text);
    QCOMPARE(GetSettingNumber(u"DirectoryDisplay"_s, u"XmlType"_s, 7), number);
  }

  void FlagsAreRead_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("whenDefaultIsTrue");
    QTest::addColumn<bool>("whenDefaultIsFalse");
    QTest::newRow("0") << u"0"_s << false << false;
    QTest::newRow("1") << u"1"_s << true << true;
    QTest::newRow("-1") << u"-1"_s << true << true;
    QTest::newRow("0.4") << u"0.4"_s << true << true;
    QTest::newRow("true") << u"true"_s << true << true;
    QTest::newRow("False") << u" False "_s << false << false;
    QTest::newRow("garbage") << u"yes"_s << true << false;
    QTest::newRow("empty") << QString() << true << false;
  }
  void FlagsAreRead() {
    QFETCH(QString, text);
    SaveSetting(u"Compare"_s, u"SaveFolders"_s, text);
    QTEST(GetSettingFlag(u"Compare"_s, u"SaveFolders"_s, true), "whenDefaultIsTrue");
    QTEST(GetSettingFlag(u"Compare"_s, u"SaveFolders"_s, false), "whenDefaultIsFalse");
  }
};

}  // namespace brackwell

QTEST_APPLESS_MAIN(brackwell::Settings_test)
#include "Settings_test.moc"
