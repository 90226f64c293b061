#include "rename/RenameWindow.h"
#include "support/FullDisk_posix.h"

namespace brackwell {

class frmRenamePosixTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void AFullDiskLeavesTheOriginalsAndNoHalfCopies() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    {
      const FullDisk full;
      window.Rename();
    }
    QCOMPARE(window.OnDisk(), (QStringList{u"Renamed Files/"_s, u"a.jpg"_s, u"b.jpg"_s}));
  }

  void ALinkInThePlaceOfTheCopiesIsWarnedOf() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    std::filesystem::create_symlink("/", window.Tree.Path("images/Renamed Files"));
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QCheckBox>("chkPreserve").click();
    const QModelIndex name = window.Form->List().index(0, RenameList::NewFileColumn);
    QVERIFY(name.data(ListView::WarningRole).toBool());
    QCOMPARE(name.data(Qt::AccessibleDescriptionRole).toString(),
             u"'Renamed Files' is a file or a link here, so nothing is copied."_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmRenamePosixTest)
#include "frmRename_posix_test.moc"
