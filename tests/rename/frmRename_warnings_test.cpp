#include <QAccessible>
#include <QClipboard>

#include "rename/RenameWindow.h"

// New names that will not be what they seem.

namespace brackwell {
namespace {

const QString Taken = u"There is a file or folder of this name, so this file keeps its old one."_s;
const QString Wrapped = u"The number has outgrown its width, so only its last digits are kept."_s;

QString ToolTip(RenameWindow& window, int row) {
  return window.Form->List().index(row, RenameList::NewFileColumn).data(Qt::ToolTipRole).toString();
}

/// What a screen reader is told of the new name, beside the name.
QString Description(RenameWindow& window, int row) {
  window.View().visualRect(window.Form->List().index(row, 0));  // has it laid out
  QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&window.View());
  return table->tableInterface()->cellAt(row, RenameList::NewFileColumn)->text(QAccessible::Description);
}

QImage CellImage(RenameWindow& window, int row, int column) {
  QAbstractItemView& view = window.View();
  const QRect cell = view.visualRect(window.Form->List().index(row, column));
  return view.viewport()->grab(cell).toImage();
}

bool HasColour(const QImage& image, const QColor& colour) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y) == colour) return true;
  return false;
}

/// As the web's guidelines for accessible content reckon it.
double Contrast(const QColor& a, const QColor& b) {
  const auto luminance = [](const QColor& colour) {
    const auto part = [](double value) {
      return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
  };
  const double x = luminance(a);
  const double y = luminance(b);
  return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

QPalette Dark() {
  QPalette palette;
  palette.setColor(QPalette::Base, QColor(42, 42, 42));
  palette.setColor(QPalette::Text, Qt::white);
  return palette;
}

}  // namespace

class frmRenameWarningsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void ATakenNameIsWarnedOfInEveryWay() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    QCOMPARE(Description(window, 0), Taken);
    QCOMPARE(Description(window, 1), QString());
    QVERIFY(ToolTip(window, 0).contains(u"x1.JPG\n"_s + Taken));
    QVERIFY(ToolTip(window, 1).contains(u"x2.JPG"_s) && !ToolTip(window, 1).contains(u'\n'));
    const QColor warning = ListView::WarningColor(window.View().palette());
    QVERIFY(HasColour(CellImage(window, 0, 1), warning));
    QVERIFY(!HasColour(CellImage(window, 0, 0), warning));
    QVERIFY(!HasColour(CellImage(window, 1, 1), warning));
  }

  void TheRunDoesWhatWasSaid() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Rename();
    QCOMPARE(window.OnDisk(), (QStringList{u"a.jpg"_s, u"x2.JPG"_s, u"x3.JPG"_s}));
  }

  void TickingAndMovingDecideAnew() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    QCOMPARE(Description(window, 0), Taken);
    window.Select(1);
    window.Move(0).click();
    QCOMPARE(window.Lines(), (QStringList{u"[x] x1.JPG -> x1.JPG"_s, u"[x] a.jpg -> x2.JPG"_s}));
    QCOMPARE(Description(window, 0) + Description(window, 1), QString());
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(Description(window, 1), Taken);
    window.Click("cmdCheck(1)");
    QCOMPARE(Description(window, 0) + Description(window, 1), QString());
  }

  void AnUntickedFileIsNotWarnedOfThoughItsOldNameStays() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Get<QLineEdit>("txtPrefix").clear();
    window.Select(0);
    QTest::keyClick(&window.View(), Qt::Key_Space);
    QCOMPARE(window.Lines().front(), u"[ ] a.jpg -> x1.JPG"_s);
    QCOMPARE(Description(window, 0), QString());
  }

  void AFolderHasItsNameToo() {
    RenameWindow window;
    window.Add({u"a.jpg"_s});
    window.Tree.Folder("images/X1.jpg");
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    QCOMPARE(Description(window, 0), Taken);
    window.Rename();
    QCOMPARE(window.Lines(), QStringList{u"[x] a.jpg"_s});
  }

  void AWrappedNumberIsWarnedOf() {
    RenameWindow window;
    window.Add({u"a"_s, u"b"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"9"_s);
    QCOMPARE(Description(window, 0), QString());
    QCOMPARE(Description(window, 1), Wrapped);
    window.SetNames(u"x"_s, u"09"_s);
    QCOMPARE(Description(window, 1), QString());
  }

  void WithCopiesOnlyEarlierCopiesCount() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    QCOMPARE(Description(window, 0), Taken);
    auto& preserve = window.Get<QCheckBox>("chkPreserve");
    preserve.click();
    QCOMPARE(Description(window, 0), QString());
    window.Rename();
    window.SetNames(u"x"_s, u"2"_s);
    QCOMPARE(Description(window, 0),
             u"There is a copy of this name in 'Renamed Files', which is replaced."_s);
    QCOMPARE(Description(window, 1), QString());
    preserve.click();
    QCOMPARE(Description(window, 0), QString());
  }

  void TheColourIsReadable() {
    for (const QPalette& palette : {QPalette(Qt::lightGray), Dark()}) {
      const QColor warning = ListView::WarningColor(palette);
      QVERIFY(Contrast(warning, palette.color(QPalette::Base)) > 4.5);
      QVERIFY(warning != palette.color(QPalette::Text));
    }
  }

  void TheColourFollowsThePalette() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    const QColor before = ListView::WarningColor(window.View().palette());
    window.View().setPalette(Dark());
    const QColor dark = ListView::WarningColor(Dark());
    QVERIFY(dark != before);
    QVERIFY(HasColour(CellImage(window, 0, 1), dark));
  }

  void TheSignStandsInASelectedRowToo() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s, u"x1.JPG"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    const QAbstractItemView& view = window.View();
    const int height = view.visualRect(window.Form->List().index(0, 0)).height();
    QCOMPARE(view.visualRect(window.Form->List().index(1, 0)).height(), height);
    window.Select(0);
    const QImage warned = CellImage(window, 0, 1).copy(0, 0, 24, height);
    window.Select(1);
    QVERIFY(warned != CellImage(window, 1, 1).copy(0, 0, 24, height));
  }

  void TheSelectedRowIsCopied() {
    RenameWindow window;
    window.Add({u"a.jpg"_s, u"b.jpg"_s});
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    window.Select(1);
    QTest::keyClick(&window.View(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"b.jpg\tx2.JPG"_s);
  }

  void PaintingAsksNoDisk() {
    RenameWindow window;
    QStringList names;
    for (int file = 0; file < 50; ++file) names << u"x%1.jpg"_s.arg(file);
    window.Add(names);
    QVERIFY(window.ChooseAll());
    window.SetNames(u"x"_s, u"1"_s);
    const int calls = window.Files.Calls();
    window.View().viewport()->grab();
    window.Select(20);
    window.Move(0).click();
    window.View().viewport()->grab();
    QCOMPARE(window.Files.Calls(), calls);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmRenameWarningsTest)
#include "frmRename_warnings_test.moc"
