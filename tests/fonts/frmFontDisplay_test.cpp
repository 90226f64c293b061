#include "fonts/FontsWindow.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QToolBar>

#include "support/OwnFolders.h"
#include "support/StandInOpener.h"

namespace brackwell {

namespace {

const QString InitialText = u"ABCDEFG abcdefg 1234567890"_s;

}  // namespace

/// Pages are shown as text here: the browser has tests of its own.
class frmFontDisplayTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QCoreApplication::setLibraryPaths({}); }
  void init() {
    mTemporary = std::make_unique<QTemporaryDir>();
    mTempFolder = std::make_unique<OwnTempFolder>(mTemporary->path().toStdString());
    mFonts = std::make_unique<MadeFonts>();
    mFonts->AddFamily("b.ttf", "Made Sans");
    mFonts->AddFamily("a.ttf", "Made Serif");
    mFonts->Use();
  }
  void cleanup() {
    QFile::setPermissions(mTemporary->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    mTempFolder.reset();
  }

  // --- as it opens ---------------------------------------------------------------------

  void AsItOpens() {
    FontsWindow window;
    QCOMPARE(window.Form->windowTitle(), u"Font Sample"_s);
    QCOMPARE(window.Get<QLabel>("hdgFonts").text(), u"&Fonts - 2"_s);
    QCOMPARE(window.Items(), (QStringList{u"+Made Sans"_s, u"+Made Serif"_s}));
    QCOMPARE(window.Get<QLabel>("hdgText").text(), u"&Text to sample"_s);
    QCOMPARE(window.Get<QPlainTextEdit>("txtText").toPlainText(), InitialText);
    QCOMPARE(window.Get<QLabel>("hdgFontSize").text(), u"Si&ze (points)"_s);
    QCOMPARE(window.Get<QLineEdit>("txtFontSize").text(), u"12"_s);
    QCOMPARE(window.Get<QToolButton>("cmdAll(0)").toolTip(), u"Check all fonts"_s);
    QCOMPARE(window.Get<QToolButton>("cmdAll(1)").toolTip(), u"Uncheck all fonts"_s);
    QCOMPARE(window.Get<QPushButton>("cmdSample").text(), u"&Sample"_s);
    QCOMPARE(window.Get<QPushButton>("cmdClose").text(), u"&Close"_s);
    QCOMPARE(window.Get<WebView>("webSample").LocationURL(), QUrl(u"about:blank"_s));
    QVERIFY(window.Get<ListView>("lvwFonts").Checkboxes());
    QVERIFY(window.Boxes.Shown().empty());
  }

  void StylesAreButtonsThatStayIn() {
    FontsWindow window;
    const QList<std::pair<const char*, QString>> captions{{"chkBold", u"Bold"_s},
                                                          {"chkItalic", u"Italics"_s},
                                                          {"chkUnderline", u"Underline"_s},
                                                          {"chkStrikethru", u"Strike-thru"_s}};
    for (const auto& [name, caption] : captions) {
      auto& box = window.Get<QToolButton>(name);
      QCOMPARE(box.text(), caption);
      QVERIFY(box.isCheckable() && !box.isChecked());
      window.Click(name);
      QVERIFY(box.isChecked());
    }
  }

  void EveryControlHasAName() {
    FontsWindow window;
    for (const char* name : {"hdgFonts", "lvwFonts", "cmdAll(0)", "cmdAll(1)", "hdgText", "txtText",
                             "tlbText", "Presets", "hdgFontSize", "txtFontSize", "chkBold", "chkItalic",
                             "chkUnderline", "chkStrikethru", "cmdSample", "webSample", "cmdClose"}) {
      const QString spoken = window.Get<QWidget>(name).accessibleName();
      QVERIFY2(!spoken.isEmpty() && !spoken.contains(u'&'), name);
    }
  }

  void LabelsLeadToTheirControls() {
    FontsWindow window;
    QCOMPARE(window.Get<QLabel>("hdgFonts").buddy(), &window.Get<QWidget>("lvwFonts"));
    QCOMPARE(window.Get<QLabel>("hdgText").buddy(), &window.Get<QWidget>("txtText"));
    QCOMPARE(window.Get<QLabel>("hdgFontSize").buddy(), &window.Get<QWidget>("txtFontSize"));
    QVERIFY(QTest::qWaitForWindowActive(&window.Area));
    window.Get<QLineEdit>("txtFontSize").setFocus();
    QTest::keyClick(&window.Get<QLineEdit>("txtFontSize"), Qt::Key_T, Qt::AltModifier);
    QVERIFY(window.Get<QPlainTextEdit>("txtText").hasFocus());
    QTest::keyClick(&window.Get<QPlainTextEdit>("txtText"), Qt::Key_F, Qt::AltModifier);
    QVERIFY(window.Get<ListView>("lvwFonts").hasFocus());
    QTest::keyClick(&window.Get<ListView>("lvwFonts"), Qt::Key_Z, Qt::AltModifier);
    QVERIFY(window.Get<QLineEdit>("txtFontSize").hasFocus());
    QCOMPARE(window.Get<QLineEdit>("txtFontSize").text(), u"12"_s);
    QCOMPARE(window.Get<QPlainTextEdit>("txtText").toPlainText(), InitialText);
  }

  void TheHeadingsAreOnOneLine() {
    FontsWindow window;
    const auto middle = [&window](const char* name) {
      auto& control = window.Get<QWidget>(name);
      return control.mapTo(window.Form, control.rect().center()).y();
    };
    for (const char* name : {"cmdAll(0)", "cmdAll(1)", "hdgText", "Presets"})
      QVERIFY2(qAbs(middle(name) - middle("hdgFonts")) <= 1, name);
  }

  void PrintFollowsTheActiveWindow() {
    FontsWindow window;
    window.Form->Form_Activate();
    window.Form->Form_Deactivate();
    QCOMPARE(window.Enabled, (QStringList{u"Print+"_s, u"Print-"_s}));
    window.Click("cmdClose");
    QCOMPARE(window.Enabled, (QStringList{u"Print+"_s, u"Print-"_s, u"Print-"_s}));
    QTRY_VERIFY(!window.Form);
  }

  // --- the list ------------------------------------------------------------------------

  void NamesAreCutAtTheFirstBracketAndCountedBefore() {
    mFonts->AddFamily("c.ttf", "Name (A) (B)");
    mFonts->AddFamily("d.ttf", "Name (C)");
    mFonts->Use();
    FontsWindow window;
    QCOMPARE(window.Get<QLabel>("hdgFonts").text(), u"&Fonts - 4"_s);
    QCOMPARE(window.Items(), (QStringList{u"+Made Sans"_s, u"+Made Serif"_s, u"+Name"_s, u"+Name"_s}));
  }

  void TheirNamesAreCopied() {
    FontsWindow window;
    auto& list = window.Get<ListView>("lvwFonts");
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    QVERIFY(window.Items().size() > 1);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             window.Items().replaceInStrings(u"+"_s, QString()).join(u'\n'));
  }

  void AllOrNone() {
    FontsWindow window;
    window.Click("cmdAll(1)");
    QCOMPARE(window.Items(), (QStringList{u"-Made Sans"_s, u"-Made Serif"_s}));
    window.Click("cmdAll(1)");
    QCOMPARE(window.Items(), (QStringList{u"-Made Sans"_s, u"-Made Serif"_s}));
    window.Tick(1, true);
    QCOMPARE(window.Items(), (QStringList{u"-Made Sans"_s, u"+Made Serif"_s}));
    window.Click("cmdAll(0)");
    QCOMPARE(window.Items(), (QStringList{u"+Made Sans"_s, u"+Made Serif"_s}));
  }

  void SpaceTogglesAnItem() {
    FontsWindow window;
    auto& list = window.Get<ListView>("lvwFonts");
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Space);
    QCOMPARE(window.Items(), (QStringList{u"+Made Sans"_s, u"-Made Serif"_s}));
  }

  void NoFonts() {
    const MadeFonts none;
    none.Use();
    FontsWindow window;
    QCOMPARE(window.Get<QLabel>("hdgFonts").text(), u"&Fonts - 0"_s);
    QCOMPARE(window.Items(), QStringList());
    for (const char* button : {"cmdAll(0)", "cmdAll(1)", "cmdSample"}) window.Click(button);
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"Please select one or more fonts to include in the sample"_s});
  }

  void TheColumnIsAsWideAsTheList() {
    FontsWindow window;
    auto& list = window.Get<ListView>("lvwFonts");
    for (const int width : {700, 1000}) {
      window.Frame->resize(width, 500);
      QVERIFY(list.columnWidth(0) > list.width() * 2 / 3);
      QVERIFY(list.columnWidth(0) < list.width());
    }
  }

  // --- presets -------------------------------------------------------------------------

  void ThePresetsMenu() {
    FontsWindow window;
    const auto entries = window.Get<QToolButton>("Presets").menu()->actions();
    QStringList texts;
    for (const QAction* entry : entries) texts << entry->objectName() + u'|' + entry->text();
    QCOMPARE(texts, (QStringList{u"QBF|The quick brown fox..."_s, u"ASC127|ASCII 32 - 127"_s,
                                 u"ASC255|ASCII 32 - 255"_s}));
    QCOMPARE(window.Get<QToolButton>("Presets").text(), u"Presets"_s);
  }

  void PresetsReplaceTheText() {
    FontsWindow window;
    auto& text = window.Get<QPlainTextEdit>("txtText");
    window.Choose("QBF");
    QCOMPARE(text.toPlainText(), u"The quick brown fox jumps over the lazy dog"_s);
    window.Choose("ASC127");
    QCOMPARE(text.document()->toRawText().size(), 96);
    QVERIFY(text.toPlainText().startsWith(u" !\"#"_s));
    window.Choose("ASC255");
    QCOMPARE(text.document()->toRawText().size(), 224);
  }

  void EachCharacterOfCodePage1252ReachesThePage() {
    FontsWindow window;
    window.Tick(1, false);
    window.Choose("ASC255");
    window.Click("cmdSample");
    const QByteArray sample = Samples().value(0);
    QVERIFY(sample.startsWith("&nbsp;!\"#$%&'()*+,-./0123456789:;<=>?@A"));
    QVERIFY(sample.contains("}~\x7f&#8364;&#129;&#8218;"));
    QVERIFY(sample.contains("&#376;&#160;&#161;"));
    QVERIFY(sample.endsWith("&#254;&#255;"));
    QCOMPARE(sample.count("&nbsp;"), 1);
    QCOMPARE(sample.count("&#"), 128);
  }

  // --- checks --------------------------------------------------------------------------

  void TheChecksInTheirOrder() {
    FontsWindow window;
    window.Click("cmdAll(1)");
    window.SetSize(u"large"_s);
    window.Type({});
    window.Click("cmdSample");
    CheckComplaint(window, u"Please specify the text sample to display"_s);
    QCOMPARE(window.Form->focusWidget()->objectName(), u"txtText"_s);
    window.Type(u" "_s);
    window.Click("cmdSample");
    CheckComplaint(window, u"Please specify a valid numeric font size"_s);
    QCOMPARE(window.Form->focusWidget()->objectName(), u"txtFontSize"_s);
    window.SetSize(u"12"_s);
    window.Click("cmdSample");
    CheckComplaint(window, u"Please select one or more fonts to include in the sample"_s);
    QCOMPARE(window.Get<WebView>("webSample").LocationURL(), QUrl(u"about:blank"_s));
    QVERIFY(!QFile::exists(PagePath()));
    window.Click("cmdAll(0)");
    window.Click("cmdSample");
    QVERIFY(window.Boxes.TakeTexts().isEmpty());
    QVERIFY(QFile::exists(PagePath()));
  }

  void WhatCountsAsASize() {
    FontsWindow window;
    for (const char* size : {"", " ", "12pt", "1..2", "twelve"}) {
      window.SetSize(QString::fromLatin1(size));
      window.Click("cmdSample");
      QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Please specify a valid numeric font size"_s});
    }
    for (const char* size : {"0", "-3", "1e2", "12.5", " 8 "}) {
      window.SetSize(QString::fromLatin1(size));
      window.Click("cmdSample");
      QCOMPARE(window.Boxes.TakeTexts(), QStringList());
      QVERIFY(Page().contains(QByteArray("font-size=") + size + "pt;\">"));
    }
  }

  // --- the page ------------------------------------------------------------------------

  void ThePageToTheCharacter() {
    FontsWindow window;
    window.Click("cmdSample");
    QCOMPARE(
        Page(),
        "<html><head><title>Font Sample</title></head><body>"
        "<p><span style=\"font-family:Arial;font-size:10pt\">Made Sans</span><br>"
        "<span style=\"font-family:Made Sans;font-size=12pt;\">ABCDEFG&nbsp;abcdefg&nbsp;1234567890</span>"
        "</p>"
        "<p><span style=\"font-family:Arial;font-size:10pt\">Made Serif</span><br>"
        "<span style=\"font-family:Made Serif;font-size=12pt;\">ABCDEFG&nbsp;abcdefg&nbsp;1234567890</span>"
        "</p></body></html>");
    QCOMPARE(window.Get<WebView>("webSample").LocationURL(), QUrl::fromLocalFile(PagePath()));
  }

  void EveryStyle() {
    FontsWindow window;
    window.Tick(0, false);
    for (const char* box : {"chkStrikethru", "chkUnderline", "chkItalic", "chkBold"}) window.Click(box);
    window.Type(u"x"_s);
    window.SetSize(u"9"_s);
    window.Click("cmdSample");
    QCOMPARE(Page(),
             "<html><head><title>Font Sample</title></head><body>"
             "<p><span style=\"font-family:Arial;font-size:10pt\">Made Serif</span><br>"
             "<span style=\"font-family:Made Serif;font-size=9pt;font-weight:bold;font-style:italic;"
             "text-decoration: underline;text-decoration: line-through;\">x</span></p></body></html>");
  }

  void LinesAndMarkupAsTyped() {
    FontsWindow window;
    window.Tick(0, false);
    auto& text = window.Get<QPlainTextEdit>("txtText");
    text.clear();
    QTest::keyClicks(&text, u"one   <b>two</b>"_s);
    QTest::keyClick(&text, Qt::Key_Return);
    QTest::keyClick(&text, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&text, u"&amp;"_s);
    window.Click("cmdSample");
    QCOMPARE(Samples(), QList<QByteArray>{"one&nbsp;&nbsp;&nbsp;<b>two</b><br><br>&amp;"});
  }

  void ASampleReplacesTheLast() {
    FontsWindow window;
    window.Click("cmdSample");
    window.Type(u"again"_s);
    window.Click("cmdSample");
    QCOMPARE(Samples(), (QList<QByteArray>{"again", "again"}));
    QVERIFY(Shown(window).contains(u"again"_s));
    QVERIFY(!Shown(window).contains(u"ABCDEFG"_s));
  }

  void BrokenNamesBreakNothing() {
    MadeFonts broken;
    broken.AddFamily("a.ttf", "<h1>\"';");
    broken.AddFamily("b.ttf", "Gr\xc3\xbc\xc3\x9f");
    broken.AddFamily("c.ttf", "line\nbreak");
    broken.AddFamily("d.ttf", std::string(3000, 'x'));
    broken.Use();
    FontsWindow window;
    QCOMPARE(window.Items(), (QStringList{u"+<h1>\"';"_s, u"+Gr\u00fc\u00df"_s, u"+line\u240abreak"_s,
                                          u"+"_s + QString(3000, u'x')}));
    window.Click("cmdSample");
    QCOMPARE(Samples().size(), 4);
    QVERIFY(Page().contains("10pt\">&lt;h1&gt;&quot;';</span>"));
    QVERIFY(Page().contains("10pt\">Gr&#252;&#223;</span>"));
    QVERIFY(Shown(window).contains(u"<h1>\"';"_s));
    QVERIFY(window.Boxes.Shown().empty());
  }

  void TenThousandFonts() {
    MadeFonts many;
    for (int i = 0; i < 10000; ++i) many.AddFamily(std::to_string(i) + ".ttf", "Made N" + std::to_string(i));
    many.Use();
    FontsWindow window;
    QCOMPARE(window.Get<QLabel>("hdgFonts").text(), u"&Fonts - 10000"_s);
    window.Click("cmdAll(1)");
    window.Tick(9999, true);
    window.Click("cmdSample");
    QCOMPARE(Samples().size(), 1);
    QVERIFY(Page().contains("10pt\">Made N9999</span>"));
  }

  // --- faults --------------------------------------------------------------------------

  void AFolderThatIsGoneIsTold() {
    FontsWindow window;
    const OwnTempFolder gone(mTemporary->filePath(u"gone"_s).toStdString());
    window.Click("cmdSample");
    QCOMPARE(window.Boxes.Shown().size(), std::size_t{1});
    const ShownBox& box = window.Boxes.Shown()[0];
    const QString where = QDir::toNativeSeparators(mTemporary->filePath(u"gone"_s));
    QVERIFY2(box.Text.startsWith(u"Path not found\n"_s + where), qPrintable(box.Text));
    QCOMPARE(box.Title, u"Font Sample"_s);
    QCOMPARE(box.Icon, QMessageBox::Critical);
    QCOMPARE(window.Get<WebView>("webSample").LocationURL(), QUrl(u"about:blank"_s));
    QVERIFY(!QApplication::overrideCursor());
  }

  void AFullDiskLeavesTheLastPageWhole() {
    QFile last(PagePath());
    QVERIFY(last.open(QIODevice::WriteOnly));
    last.write("the last page");
    last.close();
    FontsWindow window(1);
    window.Click("cmdSample");
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"Disk full\n"_s + QDir::toNativeSeparators(PagePath())});
    QCOMPARE(Page(), "the last page");
  }

  // --- print ---------------------------------------------------------------------------

  void BeforeTheFirstSampleThereIsNothingToPrint() {
    const StandInOpener opener;
    FontsWindow window;
    Print(window);
    QVERIFY(opener.Opened().isEmpty());
    QVERIFY(window.Boxes.Shown().empty());
  }

  void ThePageThatIsShownIsOpened() {
    const StandInOpener opener;
    FontsWindow window;
    window.Click("cmdSample");
    window.Type(u"not sampled yet"_s);
    Print(window);
    QCOMPARE(opener.Opened(), QStringList{PagePath()});
    QVERIFY(!Page().contains("not"));
  }

  void ABrowserThatDoesNotStartIsTold() {
    StandInOpener opener;
    opener.OpenNothing();
    FontsWindow window;
    window.Click("cmdSample");
    Print(window);
    QCOMPARE(window.Boxes.TakeTexts(),
             QStringList{u"There is no application associated with the given file name extension."_s});
  }

  void APageThatIsGoneIsTold() {
    const StandInOpener opener;
    FontsWindow window;
    window.Click("cmdSample");
    QVERIFY(QFile::remove(PagePath()));
    Print(window);
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{u"The specified file was not found."_s});
    QVERIFY(opener.Opened().isEmpty());
  }

 private:
  QString PagePath() const { return mTemporary->filePath(u"font_sample.htm"_s); }
  QByteArray Page() const {
    QFile page(PagePath());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
  }
  /// The sample of each font, as the page has it.
  QList<QByteArray> Samples() const {
    QList<QByteArray> samples;
    const QByteArray end = "</span></p>";
    const QByteArray page = Page();
    for (qsizetype at = 0; (at = page.indexOf("pt;", at)) >= 0;) {
      const qsizetype start = page.indexOf("\">", at) + 2;
      samples << page.mid(start, page.indexOf(end, start) - start);
      at = start;
    }
    return samples;
  }
  static QString Shown(FontsWindow& window) { return window.Get<QTextBrowser>("txtPage").toPlainText(); }

  static void CheckComplaint(FontsWindow& window, const QString& text) {
    const ShownBox box = window.Boxes.Shown().back();
    QCOMPARE(window.Boxes.TakeTexts(), QStringList{text});
    QCOMPARE(box.Icon, QMessageBox::Warning);
    QCOMPARE(box.Title, u"Font Sample"_s);
    QCOMPARE(box.Buttons, QMessageBox::Ok);
  }

  /// By name, as the main window does.
  static void Print(FontsWindow& window) { QVERIFY(QMetaObject::invokeMethod(window.Form, "PrintData")); }

  std::unique_ptr<QTemporaryDir> mTemporary;
  std::unique_ptr<OwnTempFolder> mTempFolder;
  std::unique_ptr<MadeFonts> mFonts;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::frmFontDisplayTest)
#include "frmFontDisplay_test.moc"
