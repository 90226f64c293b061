#include "common/RecentFolders.h"

#include <QTest>

#include "common/Settings.h"
#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class RecentFolders_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    for (int number = 0; number < 10; ++number) DeleteSetting(u"General"_s, u"RecentFolder%1"_s.arg(number));
  }

  void ThereAreNoneAtFirst() { QCOMPARE(RecentFolders(), QStringList()); }

  void TheNewestComesFirst() {
    RememberFolder(u"/a/"_s);
    RememberFolder(u"/b/"_s);
    QCOMPARE(RecentFolders(), (QStringList{u"/b/"_s, u"/a/"_s}));
  }

  void NoneIsThereTwice() {
    for (const QString& folder : {u"/a/"_s, u"/b/"_s, u"/a/"_s, u"/a/"_s}) RememberFolder(folder);
    QCOMPARE(RecentFolders(), (QStringList{u"/a/"_s, u"/b/"_s}));
    SaveSetting(u"General"_s, u"RecentFolder2"_s, u"/b/"_s);  // by hand
    QCOMPARE(RecentFolders(), (QStringList{u"/a/"_s, u"/b/"_s}));
  }

  void TenAreKept() {
    for (int number = 0; number < 12; ++number) RememberFolder(u"/%1/"_s.arg(number));
    const QStringList folders = RecentFolders();
    QCOMPARE(folders.size(), 10);
    QCOMPARE(folders.first(), u"/11/"_s);
    QCOMPARE(folders.last(), u"/2/"_s);
  }

  void AnyNameIsKept() {
    const QString folder = u"/a\nb;c|d,\"e\" %2F\t&/ä/"_s;
    RememberFolder(folder);
    RememberFolder(u"/x/"_s);
    QCOMPARE(RecentFolders(), (QStringList{u"/x/"_s, folder}));
  }

  void NoFolderIsNone() {
    RememberFolder({});
    QCOMPARE(RecentFolders(), QStringList());
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::RecentFolders_test)
#include "RecentFolders_test.moc"
