#include <QTest>

#include "common/Settings.h"
#include "platform/Registry.h"
#include "support/IsolatedSettings.h"
#include "support/OwnHive_windows.h"

// The keys of the registry in which settings are kept.

using namespace Qt::StringLiterals;

namespace brackwell {

namespace {

constexpr Hive HkeyCurrentUser = 0x80000001;
const std::string Key = "Software\\Brackwell\\Brackwell";

std::string InRegistry(const std::string& key, const std::string& name) {
  std::string value;
  return GetKeyValue(HkeyCurrentUser, key, name, value) ? value : "none";
}

/// As another program writes it.
void Write(const std::string& key, const wchar_t* name, DWORD type, const void* data, DWORD size) {
  QCOMPARE(RegSetKeyValueW(HKEY_CURRENT_USER, win32::Widen(key).c_str(), name, type, data, size), 0);
}

}  // namespace

class Settings_windows_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { isolatedSettings.Clear(); }

  void SectionsAreKeysAndGeneralIsTheKeyItself() {
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"a;\u00e4"_s);
    SaveSetting(u"General"_s, u"AppMaximized"_s, u"1"_s);
    QCOMPARE(InRegistry(Key + "\\Compare", "Prefix"), std::string("a;\xc3\xa4"));
    QCOMPARE(InRegistry(Key, "AppMaximized"), std::string("1"));
  }

  void WhatOthersWriteIsRead() {
    SaveSetting(u"Compare"_s, u"Prefix"_s, u"mine"_s);
    Write(Key + "\\COMPARE", L"prefix", REG_SZ, L"theirs", sizeof L"theirs");
    const DWORD one = 1;
    Write(Key, L"AppMaximized", REG_DWORD, &one, sizeof one);
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s), u"theirs"_s);
    QCOMPARE(GetSetting(u"General"_s, u"AppMaximized"_s), u"1"_s);
  }

  void WhatIsThereForEverybodyIsNotRead() {
    const OwnHive machine(HKEY_LOCAL_MACHINE);
    machine.Store(Key + "\\Compare", "Prefix", "everybody's");
    QCOMPARE(GetSetting(u"Compare"_s, u"Prefix"_s, u"none"_s), u"none"_s);
  }

  void DeletedValuesAreGone() {
    SaveSetting(u"Compare"_s, u"SourceFolder"_s, u"C:\\"_s);
    QCOMPARE(InRegistry(Key + "\\Compare", "SourceFolder"), std::string("C:\\"));
    DeleteSetting(u"Compare"_s, u"SourceFolder"_s);
    QCOMPARE(InRegistry(Key + "\\Compare", "SourceFolder"), std::string("none"));
  }
};

}  // namespace brackwell

QTEST_APPLESS_MAIN(brackwell::Settings_windows_test)
#include "Settings_windows_test.moc"
