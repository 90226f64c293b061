#include "drives/frmDrives.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QPushButton>
#include <QTemporaryDir>

#include "common/FormHelpers.h"
#include "controls/ListView.h"
#include "controls/StringTable.h"
#include "drives/MadeDrive.h"
#include "shell/ToolTable.h"
#include "shell/frmMain.h"
#include "support/OwnFolders.h"
#include "support/StandInOpener.h"
#include "support/ToolInArea.h"

namespace brackwell {

using namespace Qt::StringLiterals;

/// The usual drives of a machine.
DriveCollection SomeDrives() {
  DriveCollection drives;
  drives.push_back(MadeDrive::Empty("A", DriveType::Removable));
  drives.push_back(std::make_unique<MadeDrive>());
  drives.push_back(MadeDrive::Empty("D", DriveType::CdRom));
  return drives;
}

/// A drive window in a main window's area.
class DriveWindow : public ToolInArea<frmDrives> {
 public:
  explicit DriveWindow(const frmDrives::DriveSource& drives = SomeDrives, int failAt = 0)
      : ToolInArea(failAt) {
    Show(new frmDrives(Lent, drives), {1300, 700});
  }

  ListView& List() { return *Form->findChild<ListView*>(u"lvwDrives"_s); }
  QPushButton& Close() { return *Form->findChild<QPushButton*>(u"cmdClose"_s); }

  QStringList Lines() {
    QStringList lines;
    const QAbstractItemModel& model = *List().model();
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column)
        cells << model.index(row, column).data().toString();
      lines << cells.join(u"|"_s);
    }
    return lines;
  }
};

class frmDrivesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    mTemporary = std::make_unique<QTemporaryDir>();
    mTempFolder = std::make_unique<OwnTempFolder>(mTemporary->path().toStdString());
    qputenv("LC_ALL", "C");
  }
  void cleanup() { mTempFolder.reset(); }

  void EveryDriveIsARow() {
    DriveWindow window;
    QCOMPARE(window.Form->windowTitle(), u"Disk Drive Information"_s);
    QCOMPARE(window.Lines().join(u"\n"_s),
             u"A||Removable|||False|A:|||||\n"
             "C|1.00 KB|Fixed|NTFS|1.50 KB|True|C:|C:\\|-559038737||2.00 GB|System\n"
             "D||CD-ROM|||False|D:|||||"_s);
  }

  void TheColumnsHaveTheirKeysAndCaptions() {
    DriveWindow window;
    const QAbstractItemModel& model = *window.List().model();
    QCOMPARE(model.columnCount(), 12);
    for (int column = 0; column < 12; ++column) {
      const DriveColumn& expected = DriveColumns[static_cast<std::size_t>(column)];
      QCOMPARE(model.headerData(column, Qt::Horizontal).toString(),
               QString::fromUtf8(expected.Caption.data(), qsizetype(expected.Caption.size())));
      QCOMPARE(model.headerData(column, Qt::Horizontal, StringTable::KeyRole).toString(),
               QString::fromUtf8(expected.Key.data(), qsizetype(expected.Key.size())));
      QVERIFY(!window.List().isColumnHidden(column));
    }
  }

  void TheRowsAreCopied() {
    DriveWindow window;
    QTest::keyClick(&window.List(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&window.List(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), window.Lines().join(u'\n').replace(u'|', u'\t'));
  }

  void TheDrivesAreReadOncePerOpening() {
    int reads = 0;
    const auto drives = [&] {
      ++reads;
      return SomeDrives();
    };
    {
      DriveWindow window(drives);
      window.Frame->resize(500, 300);
      QCoreApplication::processEvents();
    }
    QCOMPARE(reads, 1);
    DriveWindow again(drives);
    QCOMPARE(reads, 2);
  }

  void ThePointerIsBusyWhileTheyAreRead() {
    bool wasBusy = false;
    DriveWindow window([&] {
      const QCursor* pointer = QApplication::overrideCursor();
      wasBusy = pointer && pointer->shape() == Qt::WaitCursor;
      return SomeDrives();
    });
    QVERIFY(wasBusy);
    QVERIFY(!QApplication::overrideCursor());
  }

  void OddNamesAreShownAsTheyAre() {
    DriveWindow window([] {
      DriveCollection drives = SomeDrives();
      auto drive = std::make_unique<MadeDrive>();
      drive->Letter = "caf\xe9";
      drive->Name = "<b>\n\xc3\xa4";
      drives.push_back(std::move(drive));
      return drives;
    });
    const QAbstractItemModel& model = *window.List().model();
    QCOMPARE(model.index(3, 0).data().toString(), u"caf\xfffd"_s);
    QCOMPARE(model.index(3, 11).data().toString(), u"<b>\x240a\xe4"_s);
  }

  void NoDrivesIsAnEmptyList() {
    DriveWindow window([] { return DriveCollection(); });
    QCOMPARE(window.List().model()->rowCount(), 0);
    QCOMPARE(window.List().model()->columnCount(), 12);
  }

  void ADriveThatGoesAwayLeavesTheRest() {
    DriveWindow window([] {
      DriveCollection drives;
      auto drive = std::make_unique<MadeDrive>();
      drive->Letter = "B";
      drive->GoesAwayAfter = 2;
      drives.push_back(std::move(drive));
      drives.push_back(std::make_unique<MadeDrive>());
      return drives;
    });
    QCOMPARE(window.Lines()[0], u"B|1.00 KB|Fixed|NTFS||||||||"_s);
    QCOMPARE(window.Lines()[1].count(u'|'), 11);
    QVERIFY(window.Boxes.Shown().empty());
  }

  void TheListFillsTheWindowAboveTheButton() {
    DriveWindow window;
    for (const QSize size : {QSize(1200, 600), QSize(500, 250)}) {
      window.Frame->resize(size);
      QCoreApplication::processEvents();
      const QRect inside = window.Form->rect();
      const QRect list = window.List().geometry();
      const QRect close = window.Close().geometry();
      QVERIFY(list.bottom() < close.top());
      QCOMPARE(inside.right() - close.right(), inside.right() - list.right());
      QVERIFY(inside.right() - list.right() < 20);
      QVERIFY(inside.bottom() - close.bottom() < 20);
      QCOMPARE(list.left(), inside.right() - list.right());
    }
  }

  void TheColumnsShowTheirTextsAndFillTheList() {
    DriveWindow window;
    window.Frame->resize(500, 250);
    QCoreApplication::processEvents();
    const QFontMetrics metrics(window.List().font());
    QVERIFY(window.List().columnWidth(8) > metrics.horizontalAdvance(u"Serial Number"_s));
    QVERIFY(window.List().header()->length() > window.List().width());
    window.Area.resize(3000, 700);
    window.Frame->resize(2500, 600);
    QCoreApplication::processEvents();
    const int room = window.List().viewport()->width() - window.List().header()->length();
    QVERIFY2(room >= 0 && room < 60, qPrintable(QString::number(room)));
  }

  void EverythingHasANameForWhoCannotSeeIt() {
    DriveWindow window;
    QCOMPARE(window.Form->accessibleName(), u"Disk Drive Information"_s);
    QCOMPARE(window.List().accessibleName(), u"Drives"_s);
    QCOMPARE(window.Close().accessibleName(), u"Close"_s);
    QCOMPARE(window.Close().text(), u"&Close"_s);
  }

  void PrintIsEnabledWhileTheWindowIsTheActiveOne() {
    DriveWindow window;
    window.Form->Form_Activate();
    window.Form->Form_Deactivate();
    QCOMPARE(window.Enabled.join(u" "_s), u"Print+ Print-"_s);
    window.Form->Form_Activate();
    window.Close().click();
    QCOMPARE(window.Enabled.join(u" "_s), u"Print+ Print- Print+ Print-"_s);
  }

  void CloseUnloadsTheWindow() {
    DriveWindow window;
    QTest::mouseClick(&window.Close(), Qt::LeftButton);
    QTRY_VERIFY(!window.Form);
    QTRY_VERIFY(!window.Frame);
  }

  void ThePageIsWrittenAndOpened() {
    const StandInOpener opener;
    DriveWindow window;
    Print(window);
    QCOMPARE(opener.Opened(), QStringList{Report()});
    const QString expected = ExpectedPage(window);
    QCOMPARE(QString::fromLatin1(Page()), expected);
    Print(window);
    QCOMPARE(QString::fromLatin1(Page()), expected);
  }

  void PrintGoesToTheActiveWindow() {
    const StandInOpener opener;
    frmMain main(ToolTable());
    main.show();
    main.findChild<QAction*>(u"mnuTools_DriveInfo"_s)->trigger();
    main.findChild<QAction*>(u"mnuFile_Print"_s)->trigger();
    QStringList opened{Report()};
    QCOMPARE(opener.Opened(), opened);
    main.findChild<QAction*>(u"mnuTools_Compare"_s)->trigger();
    main.findChild<QAction*>(u"mnuFile_Print"_s)->trigger();
    opened << mTemporary->filePath(u"dir_compare.htm"_s);
    QCOMPARE(opener.Opened(), opened);
    main.findChild<QAction*>(u"mnuTools_DriveInfo"_s)->trigger();
    QCOMPARE(main.findChildren<frmDrives*>().size(), 1);
    main.findChild<QAction*>(u"mnuFile_Print"_s)->trigger();
    opened << Report();
    QCOMPARE(opener.Opened(), opened);
  }

  void ThePageIsPlainWhateverTheNamesAre() {
    const StandInOpener opener;
    DriveWindow window([] {
      DriveCollection drives;
      auto drive = std::make_unique<MadeDrive>();
      drive->Name = "\xc3\xa4<script>\xff";
      drives.push_back(std::move(drive));
      return drives;
    });
    Print(window);
    QVERIFY(Page().contains(">&#228;&lt;script&gt;&#65533;&nbsp;</td></tr>"));
    QVERIFY(Page().endsWith("</table></body></html></table></body></html>"));
  }

  void WithoutAFolderToWriteToNothingIsOpened() {
    const StandInOpener opener;
    DriveWindow window(SomeDrives, 1);
    QVERIFY_EXCEPTION_THROWN(window.Form->PrintData(), FileSystemError);
    QVERIFY(opener.Opened().isEmpty());
    QVERIFY(window.Boxes.Shown().empty());
  }

  void ABrowserThatDoesNotStartIsTold() {
    StandInOpener opener;
    opener.OpenNothing();
    DriveWindow window;
    Print(window);
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"There is no application associated with the given file name extension."_s});
  }

  void TheMachinesOwnDrives() {
    MessageBoxes boxes;
    FailingFileSystem files(0, FileError::PermissionDenied);
    frmImages images;
    Services lent{.Files = files, .Images = images, .tlbMain_ENABLE = [](const QString&, bool) {}};
    const frmDrives form(lent);
    QVERIFY(form.findChild<ListView*>(u"lvwDrives"_s)->model()->rowCount() > 0);
  }

 private:
  QString Report() const { return mTemporary->filePath(u"drive_info.htm"_s); }
  QByteArray Page() const {
    QFile page(Report());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
  }

  /// By name, as the main window does.
  static void Print(DriveWindow& window) { QVERIFY(QMetaObject::invokeMethod(window.Form, "PrintData")); }

  static QString ExpectedPage(DriveWindow& window) {
    QStringList cells;
    for (int column = 0; column < 12; ++column)
      cells << u"<td width=\"%1%\" "_s.arg(
          qRound(window.List().columnWidth(column) * 100.0 / window.List().width()));
    QString page =
        u"<html><head><title>Disk Drive Information</title></head><body><table width=\"100%\" border=\"1\" "
        "bordercolor=\"black\" cellpadding=\"2\" cellspacing=\"0\"><tr>"_s;
    for (int column = 0; column < 12; ++column)
      page += cells[column] + u"bgcolor=\"silver\" nowrap=\"nowrap\">"_s +
              window.List().model()->headerData(column, Qt::Horizontal).toString() + u"</td>"_s;
    page += u"</tr>"_s;
    for (const QString& line : window.Lines()) {
      const QStringList texts = line.split(u'|');
      page += u"<tr>"_s;
      for (int column = 0; column < 12; ++column)
        page += cells[column] + u"nowrap=\"nowrap\">"_s + texts[column] +
                (column > 0 ? u"&nbsp;</td>"_s : u"</td>"_s);
      page += u"</tr>"_s;
    }
    return page + u"</table></body></html></table></body></html>"_s;
  }

  std::unique_ptr<QTemporaryDir> mTemporary;
  std::unique_ptr<OwnTempFolder> mTempFolder;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmDrivesTest)
#include "frmDrives_test.moc"
