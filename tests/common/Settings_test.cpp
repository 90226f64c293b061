#include "common/Settings.h"

#include <QTest>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class Settings_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { isolatedSettings.Clear(); }

  void MissingKeyGivesTheDefault() {
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
  }

  void WhatIsDeletedIsForgotten() {
    SaveSetting(u"Compare"_s, u"SourceFolder"_s, u"a"_s);
    SaveSetting(u"Compare"_s, u"TargetFolder"_s, u"b"_s);
    for (int i = 0; i < 2; ++i) DeleteSetting(u"Compare"_s, u"SOURCEfolder"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"SourceFolder"_s, u"gone"_s), u"gone"_s);
    QCOMPARE(GetSetting(u"Compare"_s, u"TargetFolder"_s), u"b"_s);
  }

  void SeveralAreSavedAtOnce() {
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"old"_s);
    SaveSetting(u"Replace"_s, u"Exclude"_s, u"kept"_s);
    QVERIFY(SaveSettings({{u"Compare"_s, u"prefix"_s, u"new"_s}, {u"General"_s, u"AppMaximized"_s, u"1"_s}}));
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"new"_s);
    QCOMPARE(GetSetting(u"General"_s, u"AppMaximized"_s), u"1"_s);
    QCOMPARE(GetSetting(u"Replace"_s, u"Exclude"_s), u"kept"_s);
  }

  void ThePlaceIsTheStores() { QCOMPARE(SettingsPlace(), isolatedSettings.Place()); }

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
