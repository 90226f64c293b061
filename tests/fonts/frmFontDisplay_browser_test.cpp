#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "fonts/FontsWindow.h"
#include "platform/Sandbox.h"

namespace brackwell {

/// The sample as the browser shows it, with fonts whose letters are black boxes.
class frmFontDisplayBrowserTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    const QString folder = QStringLiteral(BRACKWELL_PROGRAM_FOLDER);
    if (!QFileInfo::exists(folder + u"/brackwell_webview.so"_s) || !CanShareMemory())
      QSKIP("no browser here");
    QCoreApplication::setLibraryPaths({folder});
    qputenv("TMPDIR", mTemporary.path().toLocal8Bit());
  }

  void FontsAreShownUnderTheirNames() {
    QFile usual(u"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"_s);
    QVERIFY(usual.open(QIODevice::ReadOnly));
    mFonts.Add("a.ttf", usual.readAll().toStdString());
    mFonts.Add("b.ttf", Boxes("Made Sans"));
    mFonts.Use();
    FontsWindow window;
    QCOMPARE(window.Items(), (QStringList{u"+DejaVu Sans"_s, u"+Made Sans"_s}));
    QTest::qWait(300);
    window.Tick(1, false);
    Sample(window);
    QTest::qWait(300);
    QVERIFY(!HasBox(window));
    window.Tick(1, true);
    Sample(window);
    QTRY_VERIFY_WITH_TIMEOUT(HasBox(window), 120000);
  }

  void TabPassesThroughTheBrowserInItsPlace() {
    mFonts.Add("b.ttf", Boxes("Made Sans"));
    mFonts.Use();
    FontsWindow window;
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    Sample(window);
    Sample(window);
    window.Get<QToolButton>("chkStrikethru").setFocus();
    const QStringList forth{u"webSample"_s, u"cmdSample"_s, u"cmdClose"_s, u"cmdAll(0)"_s};
    for (const QString& name : forth) {
      QTest::keyClick(window.Area.windowHandle(), Qt::Key_Tab);
      QTRY_COMPARE(Focused(window), name);
    }
    const QStringList back{u"cmdClose"_s, u"cmdSample"_s, u"webSample"_s, u"chkStrikethru"_s};
    for (const QString& name : back) {
      QTest::keyClick(window.Area.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
      QTRY_COMPARE(Focused(window), name);
    }
  }

  void TwoThousandFonts() {
    for (int i = 0; i < 2000; ++i)
      mFonts.Add(std::to_string(i) + ".ttf", Boxes("Made N" + std::to_string(i)));
    mFonts.Use();
    FontsWindow window;
    QTest::qWait(300);
    QVERIFY(window.Get<QLabel>("hdgFonts").text().startsWith(u"&Fonts - 200"_s));
    Sample(window);
    QTRY_VERIFY_WITH_TIMEOUT(HasBox(window), 120000);
    QVERIFY(window.Get<WebView>("webSample").HasEngine());
  }

 private:
  static MadeFont Boxes(const std::string& family) {
    return {.Names = {{MadeFont::Family, family}, {MadeFont::Style, "Regular"}}, .BoxHeight = 900};
  }

  static QWidget* Browser(FontsWindow& window) {
    for (QWidget* child : window.Form->findChildren<QWidget*>())
      if (child->inherits("QWebEngineView")) return child;
    return nullptr;
  }

  /// Until the whole page is there.
  static void Sample(FontsWindow& window) {
    QVERIFY(Browser(window));
    QSignalSpy loaded(Browser(window), SIGNAL(loadFinished(bool)));
    window.Click("cmdSample");
    QVERIFY(loaded.wait(120000));
  }

  /// The control that has the focus or holds what has it.
  static QString Focused(FontsWindow& window) {
    const auto& browser = window.Get<WebView>("webSample");
    const QWidget* focused = QApplication::focusWidget();
    if (!focused) return {};
    return browser.isAncestorOf(focused) ? browser.objectName() : focused->objectName();
  }

  static bool HasBox(FontsWindow& window) {
    const QImage image = window.Get<WebView>("webSample").grab().toImage();
    constexpr int width = 6, height = 10;
    for (int y = 0; y + height < image.height(); ++y)
      for (int x = 0; x + width < image.width(); ++x)
        if (IsBlack(image, QRect(x, y, width, height))) return true;
    return false;
  }
  static bool IsBlack(const QImage& image, const QRect& area) {
    for (int y = area.top(); y <= area.bottom(); ++y)
      for (int x = area.left(); x <= area.right(); ++x)
        if (qGray(image.pixel(x, y)) > 40) return false;
    return true;
  }

  QTemporaryDir mTemporary;
  MadeFonts mFonts;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmFontDisplayBrowserTest)
#include "frmFontDisplay_browser_test.moc"
