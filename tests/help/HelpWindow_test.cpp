#include "controls/HelpWindow.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBlock>
#include <QToolButton>
#include <QTreeWidget>
#include <QWheelEvent>

#include "common/Settings.h"
#include "controls/HelpPage.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/StandInOpener.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// The window on the help file as it was built.
struct Help {
  Help() {
    Window.ShowContents();
    if (!QTest::qWaitForWindowActive(&Window)) qFatal("no window");
  }

  template <typename Control>
  Control& Get(const QString& name) {
    auto* control = Window.findChild<Control*>(name);
    if (!control) qFatal("no control %s", qPrintable(name));
    return *control;
  }

  HelpPage& Page() { return Get<HelpPage>(u"mPage"_s); }
  QString Topic() { return Page().Topic(); }
  QString Heading() { return Page().document()->firstBlock().text(); }
  void Key(const QKeySequence& key) { QTest::keySequence(&Window, key); }
  int Tab() { return Get<QTabWidget>(u"sstHelp"_s).currentIndex(); }

  void ClickContents(const QString& title) {
    auto& tree = Get<QTreeWidget>(u"trvContents"_s);
    const QList<QTreeWidgetItem*> items = tree.findItems(title, Qt::MatchExactly | Qt::MatchRecursive);
    if (items.size() != 1) qFatal("no entry %s", qPrintable(title));
    tree.scrollToItem(items[0]);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(items[0]).center());
  }

  void ClickLink(const QString& text) {
    HelpPage& page = Page();
    QTextCursor link = page.document()->find(text);
    while (!link.isNull() && !link.charFormat().isAnchor()) link = page.document()->find(text, link);
    if (link.isNull()) qFatal("no link %s", qPrintable(text));
    link.clearSelection();
    page.setTextCursor(link);
    page.ensureCursorVisible();
    link.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, 2);
    QTest::mouseClick(page.viewport(), Qt::LeftButton, {}, page.cursorRect(link).center());
  }

  QStringList Hits(const QString& query) {
    auto& txtSearch = Get<QLineEdit>(u"txtSearch"_s);
    txtSearch.clear();
    QTest::keyClicks(&txtSearch, query);
    QStringList hits;
    const auto& lstHits = Get<QListWidget>(u"lstHits"_s);
    for (int row = 0; row < lstHits.count(); ++row) hits << lstHits.item(row)->text();
    return hits;
  }

  QStringList Marked() {
    QStringList marked;
    for (const QTextEdit::ExtraSelection& mark : Page().extraSelections())
      marked << mark.cursor.selectedText();
    return marked;
  }

  HelpWindow Window{ChmFile::Open(BRACKWELL_HELP_FILE).value()};
};

}  // namespace

class HelpWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();

  void ItOpensOnTheFirstPage();
  void EveryControlHasAName();
  void AClickInTheContentsShowsThePage();
  void KeysInTheContentsShowThePages();
  void EveryPageShowsWithItsPictures();
  void LinksAreFollowed();
  void BackAndForward();
  void TheContentsFollowThePage();
  void SearchWithHits();
  void SearchWithoutHits();
  void EnterOpensTheFirstHit();
  void TheIndex();
  void FindInPage();
  void FindNothing();
  void Zoom();
  void PicturesFitThePage();
  void TheColoursOfTheDesktop();
  void WebLinksOpenInTheBrowser();
  void NothingOutsideOfTheFileIsRead();
  void TabsByKey();
  void EscapeClosesTheFindBarThenTheWindow();
  void SizeAndZoomAreRemembered();
  void NonsenseThatIsRememberedDoesNoHarm();
};

void HelpWindowTest::init() {
  for (const QString& key : {u"HelpWidth"_s, u"HelpHeight"_s, u"HelpPaneWidth"_s, u"HelpZoom"_s})
    DeleteSetting(u"General"_s, key);
}

void HelpWindowTest::ItOpensOnTheFirstPage() {
  Help help;
  QCOMPARE(help.Window.windowTitle(), u"Brackwell Help"_s);
  QCOMPARE(help.Topic(), u"welcome.html"_s);
  QCOMPARE(help.Heading(), u"Welcome to Brackwell"_s);
  QCOMPARE(help.Get<QTreeWidget>(u"trvContents"_s).currentItem()->text(0), u"Welcome to Brackwell"_s);
}

void HelpWindowTest::EveryControlHasAName() {
  Help help;
  for (const char* type : {"QToolButton", "QPushButton", "QLineEdit", "QTreeWidget", "QListWidget",
                           "QTextBrowser", "QTabWidget", "QToolBar"}) {
    for (const auto* control : help.Window.findChildren<QWidget*>()) {
      const bool ours = !control->objectName().isEmpty() && !control->objectName().startsWith(u"qt_"_s);
      if (ours && control->inherits(type))
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    }
  }
  QCOMPARE(help.Get<QToolButton>(u"cmdBack"_s).accessibleName(), u"Back"_s);
  QCOMPARE(help.Page().accessibleName(), u"Page"_s);
}

void HelpWindowTest::AClickInTheContentsShowsThePage() {
  Help help;
  help.ClickContents(u"Fixing differences"_s);
  QCOMPARE(help.Topic(), u"compare-fix.html"_s);
  QCOMPARE(help.Heading(), u"Fixing differences"_s);
}

void HelpWindowTest::KeysInTheContentsShowThePages() {
  Help help;
  QTest::keyClick(&help.Get<QTreeWidget>(u"trvContents"_s), Qt::Key_Down);
  QCOMPARE(help.Heading(), u"The main window"_s);
}

void HelpWindowTest::EveryPageShowsWithItsPictures() {
  Help help;
  const QString placeholder(QChar::ObjectReplacementCharacter);
  for (QTreeWidgetItemIterator item(&help.Get<QTreeWidget>(u"trvContents"_s)); *item; ++item) {
    (*item)->treeWidget()->setCurrentItem(*item);
    QCOMPARE(help.Heading(), (*item)->text(0));
    QTextDocument& page = *help.Page().document();
    for (QTextCursor at = page.find(placeholder); !at.isNull(); at = page.find(placeholder, at)) {
      const QUrl name(at.charFormat().toImageFormat().name());
      QVERIFY2(!page.resource(QTextDocument::ImageResource, help.Page().source().resolved(name)).isNull(),
               qPrintable(name.toString()));
    }
  }
}

void HelpWindowTest::LinksAreFollowed() {
  Help help;
  help.ClickLink(u"Image renamer"_s);
  QCOMPARE(help.Heading(), u"Image renamer"_s);
}

void HelpWindowTest::BackAndForward() {
  Help help;
  auto& back = help.Get<QToolButton>(u"cmdBack"_s);
  auto& forward = help.Get<QToolButton>(u"cmdForward"_s);
  QVERIFY(!back.isEnabled() && !forward.isEnabled());
  help.ClickContents(u"Font sampler"_s);
  help.ClickContents(u"Options"_s);
  QTest::mouseClick(&back, Qt::LeftButton);
  QCOMPARE(help.Heading(), u"Font sampler"_s);
  help.Key(u"Alt+Left"_s);
  QCOMPARE(help.Heading(), u"Welcome to Brackwell"_s);
  QVERIFY(!back.isEnabled());
  help.Key(u"Alt+Right"_s);
  QCOMPARE(help.Heading(), u"Font sampler"_s);
  QTest::mouseClick(&forward, Qt::LeftButton);
  QCOMPARE(help.Heading(), u"Options"_s);
  QVERIFY(!forward.isEnabled());
}

void HelpWindowTest::TheContentsFollowThePage() {
  Help help;
  const auto current = [&help] { return help.Get<QTreeWidget>(u"trvContents"_s).currentItem()->text(0); };
  help.ClickLink(u"What happens to your files"_s);
  QCOMPARE(current(), u"What happens to your files"_s);
  help.Key(u"Alt+Left"_s);
  help.Key(u"Alt+Right"_s);
  QCOMPARE(current(), u"What happens to your files"_s);
}

void HelpWindowTest::SearchWithHits() {
  Help help;
  help.Window.ShowSearch();
  QCOMPARE(help.Tab(), 2);
  QVERIFY(help.Get<QLineEdit>(u"txtSearch"_s).hasFocus());
  const QStringList hits = help.Hits(u"windows-1252 encoding"_s);
  QCOMPARE(hits.value(0), u"Encodings of text files"_s);
  QCOMPARE(help.Get<QLabel>(u"lblHits"_s).text(),
           hits.size() == 1 ? u"1 topic found"_s : u"%1 topics found"_s.arg(hits.size()));
  auto& lstHits = help.Get<QListWidget>(u"lstHits"_s);
  QTest::mouseClick(lstHits.viewport(), Qt::LeftButton, {}, lstHits.visualItemRect(lstHits.item(0)).center());
  QCOMPARE(help.Heading(), u"Encodings of text files"_s);
  const QStringList marked = help.Marked();
  QVERIFY(marked.contains(u"Encodings"_s) && marked.contains(u"1252"_s) && marked.contains(u"Windows"_s));
  for (const QString& word : marked)
    QVERIFY2(word.startsWith(u"encoding"_s, Qt::CaseInsensitive) ||
                 word.startsWith(u"windows"_s, Qt::CaseInsensitive) || word == u"1252"_s,
             qPrintable(word));
  help.ClickContents(u"Options"_s);
  QCOMPARE(help.Marked(), QStringList());
}

void HelpWindowTest::SearchWithoutHits() {
  Help help;
  help.Window.ShowSearch();
  QCOMPARE(help.Hits(u"hippopotamus"_s), QStringList());
  QCOMPARE(help.Get<QLabel>(u"lblHits"_s).text(), u"No topic has all of these words."_s);
  QCOMPARE(help.Hits(u" "_s), QStringList());
  QCOMPARE(help.Get<QLabel>(u"lblHits"_s).text(), QString());
}

void HelpWindowTest::EnterOpensTheFirstHit() {
  Help help;
  help.Window.ShowSearch();
  help.Hits(u"serial number"_s);
  QTest::keyClick(&help.Get<QLineEdit>(u"txtSearch"_s), Qt::Key_Return);
  QCOMPARE(help.Heading(), u"Drive information"_s);
}

void HelpWindowTest::TheIndex() {
  Help help;
  help.Key(u"Ctrl+2"_s);
  QCOMPARE(help.Tab(), 1);
  auto& txtIndex = help.Get<QLineEdit>(u"txtIndex"_s);
  QVERIFY(txtIndex.hasFocus());
  QTest::keyClicks(&txtIndex, u"xslt"_s);
  auto& lstIndex = help.Get<QListWidget>(u"lstIndex"_s);
  QStringList shown;
  for (int row = 0; row < lstIndex.count(); ++row)
    if (!lstIndex.item(row)->isHidden()) shown << lstIndex.item(row)->text();
  QCOMPARE(shown, QStringList{u"XSLT"_s});
  QTest::keyClick(&txtIndex, Qt::Key_Return);
  QCOMPARE(help.Heading(), u"Changing how the output looks"_s);
  txtIndex.setText(u"replace.htm"_s);
  const QList<QListWidgetItem*> both = lstIndex.findItems(u"replace.htm ("_s, Qt::MatchStartsWith);
  QCOMPARE(both.size(), 2);
  QTest::mouseClick(lstIndex.viewport(), Qt::LeftButton, {}, lstIndex.visualItemRect(both[0]).center());
  QCOMPARE(u"replace.htm (%1)"_s.arg(help.Heading()), both[0]->text());
}

void HelpWindowTest::FindInPage() {
  Help help;
  auto& fraFind = help.Get<QWidget>(u"fraFind"_s);
  QVERIFY(fraFind.isHidden());
  help.Key(u"Ctrl+F"_s);
  QVERIFY(fraFind.isVisible());
  auto& txtFind = help.Get<QLineEdit>(u"txtFind"_s);
  QVERIFY(txtFind.hasFocus());
  QTest::keyClicks(&txtFind, u"COMPARE"_s);
  QTest::keyClick(&txtFind, Qt::Key_Return);
  const int first = help.Page().textCursor().position();
  QCOMPARE(help.Page().textCursor().selectedText().toLower(), u"compare"_s);
  help.Key(u"F3"_s);
  QVERIFY(help.Page().textCursor().position() > first);
  help.Key(u"Shift+F3"_s);
  QCOMPARE(help.Page().textCursor().position(), first);
  QTest::mouseClick(&help.Get<QPushButton>(u"cmdPrevious"_s), Qt::LeftButton);  // on from the other end
  QVERIFY(help.Page().textCursor().position() > first);
  QTest::mouseClick(&help.Get<QPushButton>(u"cmdNext"_s), Qt::LeftButton);
  QCOMPARE(help.Page().textCursor().position(), first);
  QCOMPARE(help.Get<QLabel>(u"lblFind"_s).text(), QString());
}

void HelpWindowTest::FindNothing() {
  Help help;
  help.Key(u"F3"_s);  // shows the bar first
  auto& txtFind = help.Get<QLineEdit>(u"txtFind"_s);
  QTest::keyClick(&txtFind, Qt::Key_Return);
  QCOMPARE(help.Get<QLabel>(u"lblFind"_s).text(), QString());
  QTest::keyClicks(&txtFind, u"hippopotamus"_s);
  QTest::keyClick(&txtFind, Qt::Key_Return);
  QCOMPARE(help.Get<QLabel>(u"lblFind"_s).text(), u"Not found"_s);
  help.Window.resize(800, 600);
  QTest::qWait(200);  // the page is made anew meanwhile
  QCOMPARE(help.Get<QLabel>(u"lblFind"_s).text(), u"Not found"_s);
  QTest::keyClick(&txtFind, Qt::Key_Backspace);
  QCOMPARE(help.Get<QLabel>(u"lblFind"_s).text(), QString());
}

void HelpWindowTest::Zoom() {
  Help help;
  const double usual = help.Page().font().pointSizeF();
  const auto size = [&help] { return help.Page().font().pointSizeF(); };
  help.Key(u"Ctrl++"_s);
  help.Key(u"Ctrl+="_s);
  QCOMPARE(size(), usual + 2);
  help.Key(u"Ctrl+-"_s);
  QCOMPARE(size(), usual + 1);
  help.Key(u"Ctrl+0"_s);
  QCOMPARE(size(), usual);

  const auto turn = [&help](int angle) {
    const QPointF at(50, 50);
    QWheelEvent event(at, help.Page().viewport()->mapToGlobal(at), {}, {0, angle}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(help.Page().viewport(), &event);
  };
  turn(120);
  QCOMPARE(size(), usual + 1);
  turn(-240);
  QCOMPARE(size(), usual - 1);
  turn(60);
  QCOMPARE(size(), usual - 1);
  turn(60);
  QCOMPARE(size(), usual);
  for (int i = 0; i < 100; ++i) help.Key(u"Ctrl+-"_s);
  QVERIFY(size() > 0 && size() < usual);
}

void HelpWindowTest::PicturesFitThePage() {
  Help help;
  help.ClickContents(u"Directory comparison"_s);
  for (const int width : {700, 1200, 500}) {
    help.Window.resize(width, 600);
    QTRY_COMPARE(help.Page().horizontalScrollBar()->maximum(), 0);
    QCOMPARE(help.Heading(), u"Directory comparison"_s);
  }
}

void HelpWindowTest::TheColoursOfTheDesktop() {
  Help help;
  const QPalette before = QApplication::palette();
  const auto linkColour = [&help] {
    QTextCursor link = help.Page().document()->find(u"Image renamer"_s);
    return link.charFormat().foreground().color();
  };
  const QColor light = linkColour();
  QVERIFY(light.lightness() < 128);
  help.Page().verticalScrollBar()->setValue(30);
  QApplication::setPalette(QPalette(QColor(45, 45, 48)));
  QTRY_VERIFY(linkColour().lightness() > 128);
  QCOMPARE(help.Page().verticalScrollBar()->value(), 30);
  QApplication::setPalette(before);
  QTRY_COMPARE(linkColour(), light);
}

void HelpWindowTest::WebLinksOpenInTheBrowser() {
  Help help;
  const StandInOpener opener;
  Q_EMIT help.Page().anchorClicked(QUrl(u"https://example.org/a%20b?c=d"_s));
  QTRY_COMPARE(opener.Opened(), QStringList{u"https://example.org/a%20b?c=d"_s});
  QCOMPARE(help.Heading(), u"Welcome to Brackwell"_s);
}

void HelpWindowTest::NothingOutsideOfTheFileIsRead() {
  Help help;
  const StandInOpener opener;
  const MessageBoxes boxes;
  for (const char* link : {"file:///etc/passwd", "../../../../../../etc/passwd", "/etc/passwd",
                           "javascript:alert(1)", "mailto:a@example.org", "none.html", ""})
    Q_EMIT help.Page().anchorClicked(QUrl(QString::fromLatin1(link)));
  QCOMPARE(help.Topic(), u"welcome.html"_s);
  for (const char* name :
       {"file:///etc/passwd", "chm:/../../etc/passwd", "chm:/", "https://example.org/style.css"})
    for (const auto type : {QTextDocument::HtmlResource, QTextDocument::ImageResource})
      QVERIFY2(!help.Page().loadResource(type, QUrl(QString::fromLatin1(name))).isValid(), name);
  QVERIFY(opener.Opened().isEmpty());
  QVERIFY(boxes.Shown().empty());
}

void HelpWindowTest::TabsByKey() {
  Help help;
  for (const auto& [key, tab] : {std::pair{u"Ctrl+3"_s, 2}, {u"Ctrl+1"_s, 0}, {u"Ctrl+2"_s, 1}}) {
    help.Key(key);
    QCOMPARE(help.Tab(), tab);
  }
}

void HelpWindowTest::EscapeClosesTheFindBarThenTheWindow() {
  Help help;
  help.Key(u"Ctrl+F"_s);
  QTest::keyClick(&help.Get<QLineEdit>(u"txtFind"_s), Qt::Key_Escape);
  QVERIFY(help.Get<QWidget>(u"fraFind"_s).isHidden());
  QVERIFY(help.Window.isVisible());
  help.Key(u"Esc"_s);
  QVERIFY(!help.Window.isVisible());
}

void HelpWindowTest::SizeAndZoomAreRemembered() {
  {
    Help help;
    help.Window.resize(810, 555);
    help.Key(u"Ctrl++"_s);
    help.Window.close();
  }
  Help help;
  QCOMPARE(help.Window.size(), QSize(810, 555));
  QCOMPARE(help.Page().Zoom(), 1);
}

void HelpWindowTest::NonsenseThatIsRememberedDoesNoHarm() {
  SaveSetting(u"General"_s, u"HelpWidth"_s, u"wide"_s);
  SaveSetting(u"General"_s, u"HelpHeight"_s, u"-5"_s);
  SaveSetting(u"General"_s, u"HelpPaneWidth"_s, u"2000000000"_s);
  SaveSetting(u"General"_s, u"HelpZoom"_s, u"-2000000000"_s);
  Help help;
  QCOMPARE(help.Heading(), u"Welcome to Brackwell"_s);
  QVERIFY(help.Page().font().pointSizeF() > 0);
  QVERIFY(help.Page().width() > 0);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::HelpWindowTest)
#include "HelpWindow_test.moc"
