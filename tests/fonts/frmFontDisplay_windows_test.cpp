#include <QFontInfo>
#include <QFontMetrics>
#include <QRawFont>
#include <QTextBrowser>

#include "fonts/FontsWindow.h"
#include "support/OwnFolders.h"

// The sampler with the fonts of Windows itself. Fixedsys consists of bitmaps and has no outlines: Windows
// keeps it in a format of old, Wine here as TrueType.

namespace brackwell {

class frmFontDisplayWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QCOMPARE(QFontInfo(Bitmaps()).family(), u"Fixedsys"_s); }

  void MetricsOfBitmapsAreThoseOfTheText() {
    const QFontMetrics metrics(Bitmaps());
    const QRawFont font = QRawFont::fromFont(Bitmaps());
    QCOMPARE(font.unitsPerEm(), metrics.height());
    QVERIFY2(font.lineThickness() > 0 && font.lineThickness() < metrics.height(),
             qPrintable(QString::number(font.lineThickness())));
    QVERIFY2(font.xHeight() > 0 && font.xHeight() <= metrics.height(),
             qPrintable(QString::number(font.xHeight())));
  }

  void AFontOfBitmapsIsSampled() {
    const QTemporaryDir folder;
    const OwnTempFolder temporary(folder.path().toStdString());
    MadeFonts fonts;
    fonts.AddFamily("fixedsys.fon", "Fixedsys");
    fonts.Use();
    FontsWindow window;
    auto& sample = window.Get<WebView>("webSample");
    QVERIFY(!HasInk(sample.grab().toImage()));
    window.Type(u"IIII"_s);
    window.Click("cmdSample");
    QVERIFY(window.Boxes.TakeTexts().isEmpty());
    const auto* page = sample.findChild<QTextBrowser*>();
    QVERIFY(page && page->toPlainText().contains(u"IIII"_s));
    QVERIFY(HasInk(sample.grab().toImage()));
  }

 private:
  static QFont Bitmaps() {
    QFont font(u"Fixedsys"_s);
    font.setPixelSize(15);
    return font;
  }

  static bool HasInk(const QImage& image) {
    for (int y = 1; y < image.height() - 1; ++y)
      for (int x = 1; x < image.width() - 1; ++x)
        if (image.pixelColor(x, y) == QColor(Qt::black)) return true;
    return false;
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmFontDisplayWindowsTest)
#include "frmFontDisplay_windows_test.moc"
