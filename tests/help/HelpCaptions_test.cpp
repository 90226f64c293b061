// What the windows say of themselves is what the help calls it.

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include "compare/CompareGrid.h"
#include "compare/frmCompare.h"
#include "controls/FlexGrid.h"
#include "controls/ListView.h"
#include "controls/uctSelectDir.h"
#include "help/ChmFile.h"
#include "help/HelpText.h"
#include "replace/ReplaceList.h"
#include "replace/frmReplace.h"
#include "shell/frmMain.h"
#include "shell/frmOptions.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// Without accelerators, and without what follows a caption in the window: "...", ":", or a number.
QString Plain(QString caption) {
  static const QRegularExpression tail(u"(\\.\\.\\.|:| - \\d+)$"_s);
  return caption.remove(u'&').remove(tail);
}

/// Of the controls that users read a name on.
QStringList Captions(const QWidget& window) {
  QStringList captions;
  for (const auto* button : window.findChildren<QAbstractButton*>()) captions << button->text();
  for (const auto* frame : window.findChildren<QGroupBox*>()) captions << frame->title();
  for (const auto* heading : window.findChildren<QLabel*>(QRegularExpression(u"^hdg"_s)))
    captions << heading->text();
  for (const auto* pages : window.findChildren<QTabWidget*>())
    for (int page = 0; page < pages->count(); ++page) captions << pages->tabText(page);
  captions.removeAll(QString());
  return captions;
}

/// Of the menu that the place, or a place in it, is asked for.
QStringList MenuCaptions(QWidget& place, const QPoint& at) {
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, place.mapToGlobal(at));
  QCoreApplication::sendEvent(&place, &event);
  QWidget& owner = qobject_cast<QAbstractItemView*>(place.parentWidget()) ? *place.parentWidget() : place;
  const auto* menu = owner.findChild<QMenu*>();
  if (!menu) qFatal("no menu");
  QStringList captions;
  for (const QAction* item : menu->actions()) captions << item->text();
  return captions;
}

QStringList RowMenuCaptions(QAbstractItemView& view, int column) {
  return MenuCaptions(*view.viewport(), view.visualRect(view.model()->index(0, column)).center());
}

QString PagesText(const QStringList& topics) {
  const std::optional<ChmFile> help = ChmFile::Open(BRACKWELL_HELP_FILE);
  QString text;
  for (const QString& topic : topics) {
    const std::string* page = help ? help->Find(topic.toStdString()) : nullptr;
    if (!page) qFatal("no page %s", qPrintable(topic));
    text += QString::fromStdString(PlainText(*page)) + u'\n';
  }
  return text;
}

/// The captions that the text does not hold.
QString Missing(const QStringList& captions, const QString& text) {
  QStringList missing;
  for (const QString& caption : captions)
    if (!text.contains(Plain(caption), Qt::CaseInsensitive)) missing << caption;
  return missing.join(u'\n');
}

}  // namespace

class HelpCaptionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void Options();
  void Menus();
  void Tools_data();
  void Tools();
  void MenusOfRows_data();
  void MenusOfRows();
  void MenuOfAResult();
  void MenuOfAFolderSelector();
};

void HelpCaptionsTest::Options() {
  const frmOptions options(nullptr);
  QVERIFY(Captions(options).size() >= 17);
  QCOMPARE(Missing(Captions(options), PagesText({u"options.html"_s})), QString());
}

void HelpCaptionsTest::Menus() {
  frmMain main(ToolTable());
  QStringList captions;
  for (const auto* menu : main.menuBar()->findChildren<QMenu*>()) {
    captions << menu->title();
    for (const QAction* item : menu->actions()) captions << item->text();
  }
  for (const auto* button : main.findChildren<QToolButton*>()) captions << button->toolTip();
  QVERIFY(captions.size() > 25);
  QCOMPARE(Missing(captions, PagesText({u"main-window.html"_s})), QString());
}

void HelpCaptionsTest::Tools_data() {
  QTest::addColumn<QString>("key");
  QTest::addColumn<QStringList>("topics");
  QTest::newRow("compare") << u"DirCompare"_s
                           << QStringList{u"compare.html"_s, u"compare-folders.html"_s,
                                          u"compare-options.html"_s, u"compare-fix.html"_s,
                                          u"compare-details.html"_s};
  QTest::newRow("display") << u"DirDisplay"_s
                           << QStringList{u"directory-display.html"_s, u"directory-display-formats.html"_s,
                                          u"directory-display-properties.html"_s, u"main-window.html"_s};
  QTest::newRow("fonts") << u"FontDisplay"_s << QStringList{u"fonts.html"_s, u"main-window.html"_s};
  QTest::newRow("replace") << u"Replace"_s
                           << QStringList{u"replace.html"_s, u"replace-find.html"_s,
                                          u"replace-replace.html"_s, u"main-window.html"_s};
  QTest::newRow("rename") << u"RenImages"_s << QStringList{u"rename.html"_s, u"main-window.html"_s};
  QTest::newRow("drives") << u"Drive"_s << QStringList{u"drives.html"_s};
}

void HelpCaptionsTest::Tools() {
  QFETCH(QString, key);
  QFETCH(QStringList, topics);
  frmMain main(ToolTable());
  main.findChild<QToolButton*>(key)->click();
  const auto* window = main.findChild<ToolWindow*>();
  QVERIFY(window);
  QCOMPARE(Missing(Captions(*window), PagesText(topics)), QString());
}

void HelpCaptionsTest::MenusOfRows_data() {
  QTest::addColumn<int>("column");
  QTest::newRow("source") << int(CompareGrid::NameColumn);
  QTest::newRow("target") << int(CompareGrid::FixTargetColumn);
}

void HelpCaptionsTest::MenusOfRows() {
  QFETCH(int, column);
  frmMain main(ToolTable());
  main.show();
  main.findChild<QToolButton*>(u"DirCompare"_s)->click();
  auto* window = main.findChild<frmCompare*>();
  window->Grid().AddCompareRow(MakeRow(ResultKind::SourceFileNewer, "name"));
  window->Grid().Publish();
  const QStringList captions = RowMenuCaptions(*window->findChild<FlexGrid*>(), column);
  QVERIFY(captions.size() >= 10);
  QCOMPARE(Missing(captions, PagesText({u"compare-folders.html"_s, u"compare-fix.html"_s})), QString());
}

void HelpCaptionsTest::MenuOfAResult() {
  frmMain main(ToolTable());
  main.show();
  main.findChild<QToolButton*>(u"Replace"_s)->click();
  auto* window = main.findChild<frmReplace*>();
  window->List().Rows().push_back({.Path = "/name", .Result = {}});
  window->List().PublishRows();
  const QStringList captions = RowMenuCaptions(*window->findChild<ListView*>(), 0);
  QVERIFY(captions.size() >= 3);
  QCOMPARE(Missing(captions, PagesText({u"replace-find.html"_s})), QString());
}

void HelpCaptionsTest::MenuOfAFolderSelector() {
  frmMain main(ToolTable());
  main.findChild<QToolButton*>(u"DirCompare"_s)->click();
  const QStringList captions = MenuCaptions(*main.findChild<uctSelectDir*>(), {3, 3});
  QVERIFY(captions.size() >= 2);
  QCOMPARE(Missing(captions, PagesText({u"folders.html"_s})), QString());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::HelpCaptionsTest)
#include "HelpCaptions_test.moc"
